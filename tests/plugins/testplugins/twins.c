/* One library, two plugins of the same name: only their versions tell them apart. */
#include "testplugin.h"

static TCPluginCallbacks* gSecond;

TEST_PLUGIN_INFO(GetFirstInfo, "KAPLA_Twin", "1.0", "1.0", 0)
TEST_PLUGIN_INFO(GetSecondInfo, "KAPLA_Twin", "2.0", "1.0", 0)

__attribute__((constructor)) static void RegisterTwins(void) {
  zelPluginCallbacks callbacks = {NULL, Nothing, Nothing, NULL, GetFirstInfo, Nothing};
  zelRegisterPlugin(&callbacks, &gSelf);
  callbacks.GetInfo = GetSecondInfo; /* The table was copied: reusing it is safe. */
  zelRegisterPlugin(&callbacks, &gSecond);
}
