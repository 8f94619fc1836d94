/* The machine, its processors, typed samples, and classes never to be asked for. Failed calls
 * log errors, which the tests look for, so statuses are returned only at the end. */
#include "testplugin.h"

static int gPathWasNullAtRegistration;

static zelStatusCode Init(TCPluginCallbacks* self) {
  char* path = NULL;
  IPlugin* handle = NULL;
  zelGetPluginPath(self, &path);
  zelGetHandle(self, &handle);
  TestPluginLog(self, "Init: path %s at registration, %s now; handle %p",
                gPathWasNullAtRegistration ? "NULL" : "set", path, (void*)handle);
  return zelStatusOK;
}

static zelStatusCode AddComputerSystem(zelIOHandle* io) {
  zelAddClass(io, "KAPLA_ComputerSystem");
  zelAddStringProperty(io, "CreationClassName", "KAPLA_ComputerSystem");
  zelAddStringProperty(io, "Name", "ZELHOST01");
  zelAddStringProperty(io, "ProductName", "Corvane 9000 -[6631ABC]-");
  return zelAddStringProperty(io, "SerialNumber", "KQ1234X  ");
}

static zelStatusCode AddProcessors(zelIOHandle* io) {
  zelAddClass(io, "KAPLA_Processor");
  zelAddStringProperty(io, "DeviceID", "CPU0");
  zelAddProperty(io, "MaxClockSpeed", "2400");
  zelAddClass(io, "KAPLA_Processor");
  zelAddStringProperty(io, "DeviceID", "CPU1");
  return zelAddProperty(io, "MaxClockSpeed", "2400");
}

/* One value of every kind, each at the edge of its type. */
static zelStatusCode AddSample(zelIOHandle* io) {
  TCIMDateTime* stamp = NULL;
  zelCIMValueArray* levels = NULL;
  zelStatusCode status;
  AddWithId(io, "KAPLA_Sample", 1);
  zelAddBooleanProperty(io, "Flag", 2);
  zelAddUint8Property(io, "U8", 255);
  zelAddSint8Property(io, "S8", -128);
  zelAddUint64Property(io, "U64", 18446744073709551615ull);
  zelAddSint64Property(io, "S64", -9223372036854775807ll - 1);
  zelAddStringProperty(io, "Text", "h\xc3\xa9llo, world");
  zelAddProperty(io, "Parsed", "12345");
  zelNewCIMDateTime(&stamp);
  zelSetDateTimeString(stamp, "20031107153000.000000-300");
  zelAddDateTimeProperty(io, "Stamp", stamp);
  zelDeleteCIMDateTime(stamp);
  zelNewCIMValueArray(&levels);
  zelArrayAddUint16(levels, 10);
  zelArrayAddUint16(levels, 20);
  zelArrayAddUint16(levels, 30);
  status = zelAddArrayProperty(io, "Levels", levels);
  zelDeleteCIMValueArray(levels);
  return status;
}

static zelStatusCode AddClass(TCPluginCallbacks* self, zelIOHandle* io, const char* className) {
  (void)self;
  if (strcmp(className, "KAPLA_ComputerSystem") == 0)
    return AddComputerSystem(io);
  if (strcmp(className, "KAPLA_Processor") == 0)
    return AddProcessors(io);
  if (strcmp(className, "KAPLA_Sample") == 0)
    return AddSample(io);
  return AddWithId(io, className, 1);
}

GET_DATA(GetData) { return TestPluginAddEach(self, io, classNames, classCount, AddClass); }

TEST_PLUGIN_INFO(GetInfo, "KAPLA_ComputerSystem", "1.2.0", "1.0", 0)

__attribute__((constructor)) static void Register(void) {
  zelPluginCallbacks callbacks = {NULL, Init, Nothing, GetData, GetInfo, Nothing};
  char* path = (char*)"unset";
  zelRegisterPlugin(&callbacks, &gSelf);
  gPathWasNullAtRegistration = zelGetPluginPath(gSelf, &path) == zelStatusOK && path == NULL;
}
