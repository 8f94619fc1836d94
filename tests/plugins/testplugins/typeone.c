/* A plugin of type 1: its document is read, it is never asked for data. Its URLType counts
 * the calls to GetInfo, which shows that nothing is cached. */
#include "testplugin.h"

static TCPluginCallbacks* gSelf;
static int gInfoCalls;

static zelPluginInfo GetInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"KAPLA_TypeOne", "3.1", "1.1", 1, 0};
  (void)self;
  info.URLType = ++gInfoCalls;
  return info;
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  TestPluginLogGetData(self, classNames, classCount);
  return TestPluginAddWithId(io, "KAPLA_TypeOne", 1);
}

__attribute__((constructor)) static void RegisterTypeOne(void) {
  zelPluginCallbacks callbacks = {NULL, TestPluginNothingToDo, TestPluginNothingToDo, GetData,
                                  GetInfo, TestPluginNothingToDo};
  zelRegisterPlugin(&callbacks, &gSelf);
}
