/* The association plugin: two fans, and an association from the computer system (found
 * through zelGetSystemName, collected by another plugin) to each fan. */
#include "testplugin.h"

static TCPluginCallbacks* gSelf;
static const char* const kFans[] = {"FAN0", "FAN1"};

static zelPluginInfo GetInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"KAPLA_Fans", "0.9", "1.0", 0, 0};
  (void)self;
  return info;
}

static zelStatusCode AddFans(zelIOHandle* io) {
  int i;
  for (i = 0; i < 2; ++i) {
    zelStatusCode status = zelAddClass(io, "KAPLA_Fan");
    if (status == zelStatusOK)
      status = zelAddStringProperty(io, "DeviceID", kFans[i]);
    if (status == zelStatusOK)
      status = zelAddUint16Property(io, "Speed", (uint16_t)(1200 + i * 100));
    if (status != zelStatusOK)
      return status;
  }
  return zelStatusOK;
}

/* A reference to an existing instance, by its string keys. */
static zelStatusCode NewReference(zelIOHandle* io, TCIMReference** ref, const char* className,
                                  const char* key1, const char* value1, const char* key2,
                                  const char* value2) {
  zelStatusCode status = zelNewCIMReference(ref, io);
  if (status == zelStatusOK)
    status = zelSetReferenceClassName(*ref, className);
  if (status == zelStatusOK)
    status = zelReferenceAddString(*ref, key1, value1);
  if (status == zelStatusOK && key2)
    status = zelReferenceAddString(*ref, key2, value2);
  return status;
}

static zelStatusCode AddSystemFans(TCPluginCallbacks* self, zelIOHandle* io) {
  char* systemName = NULL;
  char* systemClass = NULL;
  TCIMReference* system = NULL;
  zelStatusCode status = zelGetSystemName(&systemName);
  int i;
  if (status == zelStatusOK)
    status = zelGetSystemCreationClassName(&systemClass);
  if (status != zelStatusOK)
    return status;
  TestPluginLog(self, "System %s of class %s", systemName, systemClass);

  status = NewReference(io, &system, systemClass, "CreationClassName", systemClass, "Name",
                        systemName);
  for (i = 0; status == zelStatusOK && i < 2; ++i) {
    TCIMReference* fan = NULL;
    status = NewReference(io, &fan, "KAPLA_Fan", "DeviceID", kFans[i], NULL, NULL);
    if (status == zelStatusOK)
      status = zelAddClass(io, "KAPLA_SystemFan");
    if (status == zelStatusOK)
      status = zelAddReferenceProperty(io, "GroupComponent", system);
    if (status == zelStatusOK)
      status = zelAddReferenceProperty(io, "PartComponent", fan);
    if (fan)
      zelDeleteCIMReference(fan);
  }
  if (system)
    zelDeleteCIMReference(system);
  return status;
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  int i;
  TestPluginLogGetData(self, classNames, classCount);
  for (i = 0; i < classCount; ++i) {
    zelStatusCode status = strcmp(classNames[i], "KAPLA_Fan") == 0 ? AddFans(io)
                                                                  : AddSystemFans(self, io);
    if (status != zelStatusOK)
      return status;
  }
  return zelStatusOK;
}

__attribute__((constructor)) static void RegisterFans(void) {
  zelPluginCallbacks callbacks = {NULL, TestPluginNothingToDo, TestPluginNothingToDo, GetData,
                                  GetInfo, TestPluginNothingToDo};
  zelRegisterPlugin(&callbacks, &gSelf);
}
