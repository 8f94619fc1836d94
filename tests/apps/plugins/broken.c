/* A plugin that fails half-way: one instance, then a failing status. zelcollect must report
 * it, keep what the other plugins collected, and exit with 1. */
#include "zelcore.h"

#include <stddef.h>

static TCPluginCallbacks* gSelf;

static zelPluginInfo GetInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"Broken", "0.1", "1.0", 0, 0};
  (void)self;
  return info;
}

static zelStatusCode Nothing(TCPluginCallbacks* self) {
  (void)self;
  return zelStatusOK;
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  (void)self;
  (void)classNames;
  (void)classCount;
  zelAddClass(io, "BROKEN_Part");
  zelAddStringProperty(io, "Name", "kept");
  zelAddClass(io, "BROKEN_Part");
  zelAddStringProperty(io, "Name", "dropped");
  return zelStatusFail;
}

__attribute__((constructor)) static void Register(void) {
  zelPluginCallbacks callbacks = {NULL, Nothing, Nothing, GetData, GetInfo, Nothing};
  zelRegisterPlugin(&callbacks, &gSelf);
}
