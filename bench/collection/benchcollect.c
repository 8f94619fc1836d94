/* The collection benchmark's plugin: N instances of KAPLA_BenchItem, each with its key and
 * M of its properties (P0 to P9, five types in turn), set through the typed C functions. */
#include "zelcore.h"

#include <stddef.h>
#include <stdint.h>

static TCPluginCallbacks* gSelf;
static int gInstances = 1;
static int gProperties = 10;
static const char* const kNames[] = {"P0", "P1", "P2", "P3", "P4", "P5", "P6", "P7", "P8", "P9"};

/* Looked up by the benchmark through the global scope. */
void zelBenchConfigure(int instances, int properties) {
  gInstances = instances;
  gProperties = properties;
}

static zelPluginInfo GetInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"KAPLA_BenchCollect", "1.0", "1.0", 0, 0};
  (void)self;
  return info;
}

static zelStatusCode NothingToDo(TCPluginCallbacks* self) {
  (void)self;
  return zelStatusOK;
}

static zelStatusCode SetProperty(zelIOHandle* io, int property, uint32_t value) {
  const char* name = kNames[property];
  switch (property % 5) {
  case 0:
    return zelAddUint32Property(io, name, value);
  case 1:
    return zelAddStringProperty(io, name, "a short text value");
  case 2:
    return zelAddSint64Property(io, name, -(int64_t)value);
  case 3:
    return zelAddBooleanProperty(io, name, (int)(value & 1));
  default:
    return zelAddUint16Property(io, name, (uint16_t)value);
  }
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  int i, p;
  (void)self;
  (void)classNames;
  (void)classCount;
  for (i = 0; i < gInstances; ++i) {
    zelStatusCode status = zelAddClass(io, "KAPLA_BenchItem");
    if (status == zelStatusOK)
      status = zelAddUint32Property(io, "Id", (uint32_t)i);
    for (p = 0; status == zelStatusOK && p < gProperties; ++p)
      status = SetProperty(io, p, (uint32_t)i);
    if (status != zelStatusOK)
      return status;
  }
  return zelStatusOK;
}

__attribute__((constructor)) static void RegisterBenchCollect(void) {
  zelPluginCallbacks callbacks = {NULL, NothingToDo, NothingToDo, GetData, GetInfo, NothingToDo};
  zelRegisterPlugin(&callbacks, &gSelf);
}
