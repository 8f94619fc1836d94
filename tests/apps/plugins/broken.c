/* A plugin that fails half-way: one instance, then a failing status. */
#include "testplugin.h"

GET_DATA(GetData) {
  (void)self;
  (void)classNames;
  (void)classCount;
  zelAddClass(io, "BROKEN_Part");
  zelAddStringProperty(io, "Name", "kept");
  zelAddClass(io, "BROKEN_Part");
  zelAddStringProperty(io, "Name", "dropped");
  return zelStatusFail;
}

TEST_PLUGIN_INFO(GetInfo, "Broken", "0.1", "1.0", 0)
TEST_PLUGIN_REGISTER(Nothing, GetData, GetInfo, Nothing)
