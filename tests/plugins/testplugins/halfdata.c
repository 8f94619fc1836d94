/* A plugin whose GetData fails half-way: one instance done, the next one open. */
#include "testplugin.h"

static TCPluginCallbacks* gSelf;

static zelPluginInfo GetInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"KAPLA_HalfData", "1.0", "1.0", 0, 0};
  (void)self;
  return info;
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  TestPluginLogGetData(self, classNames, classCount);
  TestPluginAddWithId(io, "KAPLA_Half", 1);
  TestPluginAddWithId(io, "KAPLA_Half", 2); /* Commits the first one. */
  return zelStatusErrorCollectingClass;
}

__attribute__((constructor)) static void RegisterHalfData(void) {
  zelPluginCallbacks callbacks = {NULL, TestPluginNothingToDo, TestPluginNothingToDo, GetData,
                                  GetInfo, TestPluginNothingToDo};
  zelRegisterPlugin(&callbacks, &gSelf);
}
