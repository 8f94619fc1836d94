/* A plugin library that cannot load: with immediate binding its call to a function that no
 * library defines fails before its registration runs. */
#include "testplugin.h"

zelStatusCode zelTestNoSuchFunction(void);

static TCPluginCallbacks* gSelf;

static zelPluginInfo GetInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"KAPLA_Unresolved", "1.0", "1.0", 0, 0};
  (void)self;
  return info;
}

static zelStatusCode Init(TCPluginCallbacks* self) {
  (void)self;
  return zelTestNoSuchFunction();
}

__attribute__((constructor)) static void RegisterUnresolved(void) {
  zelPluginCallbacks callbacks = {NULL, Init, TestPluginNothingToDo, NULL, GetInfo,
                                  TestPluginNothingToDo};
  zelRegisterPlugin(&callbacks, &gSelf);
}
