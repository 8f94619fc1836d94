/* Two fans, and associations to them from the system that another plugin collected. */
#include "testplugin.h"

static const char* const kFans[] = {"FAN0", "FAN1"};

static zelStatusCode AddFans(zelIOHandle* io) {
  zelStatusCode status = zelStatusOK;
  int i;
  for (i = 0; i < 2 && status == zelStatusOK; ++i) {
    zelAddClass(io, "KAPLA_Fan");
    zelAddStringProperty(io, "DeviceID", kFans[i]);
    status = zelAddUint16Property(io, "Speed", (uint16_t)(1200 + i * 100));
  }
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
  zelNewCIMReference(&system, io);
  zelSetReferenceClassName(system, systemClass);
  zelReferenceAddString(system, "CreationClassName", systemClass);
  zelReferenceAddString(system, "Name", systemName);
  for (i = 0; status == zelStatusOK && i < 2; ++i) {
    TCIMReference* fan = NULL;
    zelNewCIMReference(&fan, io);
    zelSetReferenceClassName(fan, "KAPLA_Fan");
    zelReferenceAddString(fan, "DeviceID", kFans[i]);
    zelAddClass(io, "KAPLA_SystemFan");
    zelAddReferenceProperty(io, "GroupComponent", system);
    status = zelAddReferenceProperty(io, "PartComponent", fan);
    zelDeleteCIMReference(fan);
  }
  zelDeleteCIMReference(system);
  return status;
}

static zelStatusCode AddClass(TCPluginCallbacks* self, zelIOHandle* io, const char* className) {
  return strcmp(className, "KAPLA_Fan") == 0 ? AddFans(io) : AddSystemFans(self, io);
}

GET_DATA(GetData) { return TestPluginAddEach(self, io, classNames, classCount, AddClass); }

TEST_PLUGIN_INFO(GetInfo, "KAPLA_Fans", "0.9", "1.0", 0)
TEST_PLUGIN_REGISTER(Nothing, GetData, GetInfo, Nothing)
