/* A plugin whose GetData fails half-way: one instance done, the next one open. */
#include "testplugin.h"

GET_DATA(GetData) {
  TestPluginLogGetData(self, classNames, classCount);
  AddWithId(io, "KAPLA_Half", 1);
  AddWithId(io, "KAPLA_Half", 2); /* Commits the first one. */
  return zelStatusErrorCollectingClass;
}

TEST_PLUGIN_INFO(GetInfo, "KAPLA_HalfData", "1.0", "1.0", 0)
TEST_PLUGIN_REGISTER(Nothing, GetData, GetInfo, Nothing)
