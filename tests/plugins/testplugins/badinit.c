/* A plugin whose Init fails, and whose first PrepareForUnload fails too. */
#include "testplugin.h"

static TCPluginCallbacks* gSelf;
static int gUnloadAttempts;

static zelPluginInfo GetInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"KAPLA_BadInit", "1.0", "1.0", 0, 0};
  (void)self;
  return info;
}

static zelStatusCode Init(TCPluginCallbacks* self) {
  TestPluginLog(self, "Init fails");
  return zelStatusNotImplemented;
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  (void)io;
  TestPluginLogGetData(self, classNames, classCount);
  return zelStatusOK;
}

static zelStatusCode PrepareForUnload(TCPluginCallbacks* self) {
  (void)self;
  return ++gUnloadAttempts == 1 ? zelStatusInvalidOpSequence : zelStatusOK;
}

__attribute__((constructor)) static void RegisterBadInit(void) {
  zelPluginCallbacks callbacks = {NULL, Init, TestPluginNothingToDo, GetData, GetInfo,
                                  PrepareForUnload};
  zelRegisterPlugin(&callbacks, &gSelf);
}
