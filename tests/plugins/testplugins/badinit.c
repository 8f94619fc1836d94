/* A plugin whose Init fails, and whose first PrepareForUnload fails too. */
#include "testplugin.h"

static int gUnloadAttempts;

static zelStatusCode Init(TCPluginCallbacks* self) {
  TestPluginLog(self, "Init fails");
  return zelStatusNotImplemented;
}

GET_DATA(GetData) {
  (void)io;
  TestPluginLogGetData(self, classNames, classCount);
  return zelStatusOK;
}

static zelStatusCode PrepareForUnload(TCPluginCallbacks* self) {
  (void)self;
  return ++gUnloadAttempts == 1 ? zelStatusInvalidOpSequence : zelStatusOK;
}

TEST_PLUGIN_INFO(GetInfo, "KAPLA_BadInit", "1.0", "1.0", 0)
TEST_PLUGIN_REGISTER(Init, GetData, GetInfo, PrepareForUnload)
