/* A plugin library that cannot load: with immediate binding its call to a function that no
 * library defines fails before its registration runs. */
#include "testplugin.h"

zelStatusCode zelTestNoSuchFunction(void);

static zelStatusCode Init(TCPluginCallbacks* self) {
  (void)self;
  return zelTestNoSuchFunction();
}

TEST_PLUGIN_INFO(GetInfo, "KAPLA_Unresolved", "1.0", "1.0", 0)
TEST_PLUGIN_REGISTER(Init, NULL, GetInfo, Nothing)
