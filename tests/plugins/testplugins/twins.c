/* One library, two plugins of the same name: only their versions tell them apart. */
#include "testplugin.h"

static TCPluginCallbacks* gFirst;
static TCPluginCallbacks* gSecond;

static zelPluginInfo GetFirstInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"KAPLA_Twin", "1.0", "1.0", 0, 0};
  (void)self;
  return info;
}

static zelPluginInfo GetSecondInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"KAPLA_Twin", "2.0", "1.0", 0, 0};
  (void)self;
  return info;
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  TestPluginLogGetData(self, classNames, classCount);
  return classCount > 0 ? TestPluginAddWithId(io, classNames[0], self == gFirst ? 1 : 2)
                        : zelStatusOK;
}

__attribute__((constructor)) static void RegisterTwins(void) {
  zelPluginCallbacks callbacks = {NULL, TestPluginNothingToDo, TestPluginNothingToDo, GetData,
                                  GetFirstInfo, TestPluginNothingToDo};
  zelRegisterPlugin(&callbacks, &gFirst);
  callbacks.GetInfo = GetSecondInfo; /* The table was copied: reusing it is safe. */
  zelRegisterPlugin(&callbacks, &gSecond);
}
