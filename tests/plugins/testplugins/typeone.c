/* A type-1 plugin, never asked for data. Its URLType counts the calls to GetInfo. */
#include "testplugin.h"

static int gInfoCalls;

static zelPluginInfo GetInfo(TCPluginCallbacks* self) {
  zelPluginInfo info = {"KAPLA_TypeOne", "3.1", "1.1", 1, 0};
  (void)self;
  info.URLType = ++gInfoCalls;
  return info;
}

GET_DATA(GetData) {
  TestPluginLogGetData(self, classNames, classCount);
  return AddWithId(io, "KAPLA_TypeOne", 1);
}

TEST_PLUGIN_REGISTER(Nothing, GetData, GetInfo, Nothing)
