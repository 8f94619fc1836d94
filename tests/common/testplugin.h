/* What the test plugins share. Everything is static: copies of one plugin loaded side by
 * side must not bind to each other. */
#ifndef TESTPLUGIN_H
#define TESTPLUGIN_H

#include "zelcore.h"

#include <stdarg.h>
#include <stdio.h>
#include <string.h>

static TCPluginCallbacks* gSelf;

/* One "[Status] " line in the plugin's name. */
static inline void TestPluginLog(TCPluginCallbacks* self, const char* format, ...) {
  char line[1024];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  zelWriteLog(self, zelLogStatus, line);
}

/* "GetData <count>: <class> <class> ...", so tests see every call and its order. */
static inline void TestPluginLogGetData(TCPluginCallbacks* self, const char** classNames,
                                        int classCount) {
  char line[1024];
  size_t used = (size_t)snprintf(line, sizeof line, "GetData %d:", classCount);
  int i;
  for (i = 0; i < classCount && used < sizeof line; ++i)
    used += (size_t)snprintf(line + used, sizeof line - used, " %s", classNames[i]);
  zelWriteLog(self, zelLogStatus, line);
}

/* GetData's frame: logs the call, then adds each class asked for in turn until one fails. */
static inline zelStatusCode TestPluginAddEach(TCPluginCallbacks* self, zelIOHandle* io,
                                              const char** classNames, int classCount,
                                              zelStatusCode (*add)(TCPluginCallbacks* self,
                                                                   zelIOHandle* io,
                                                                   const char* className)) {
  zelStatusCode status = zelStatusOK;
  int i;
  TestPluginLogGetData(self, classNames, classCount);
  for (i = 0; i < classCount && status == zelStatusOK; ++i)
    status = add(self, io, classNames[i]);
  return status;
}

static inline zelStatusCode Nothing(TCPluginCallbacks* self) {
  (void)self;
  return zelStatusOK;
}

/* One instance of className whose uint32 key "Id" is id. */
static inline zelStatusCode AddWithId(zelIOHandle* io, const char* className, uint32_t id) {
  zelStatusCode status = zelAddClass(io, className);
  return status != zelStatusOK ? status : zelAddUint32Property(io, "Id", id);
}

#define GET_DATA(function)                                                                  \
  static zelStatusCode function(TCPluginCallbacks* self, zelIOHandle* io,                  \
                                const char** classNames, int classCount)

#define TEST_PLUGIN_INFO(function, name, version, interfaceVersion, type)                   \
  static zelPluginInfo function(TCPluginCallbacks* self) {                                  \
    zelPluginInfo info = {name, version, interfaceVersion, type, 0};                        \
    (void)self;                                                                             \
    return info;                                                                            \
  }

/* Registers the library's plugin while it loads. */
#define TEST_PLUGIN_REGISTER(init, getData, getInfo, prepareForUnload)                      \
  __attribute__((constructor)) static void Register(void) {                                 \
    zelPluginCallbacks callbacks = {NULL, init, Nothing, getData, getInfo,                  \
                                    prepareForUnload};                                      \
    zelRegisterPlugin(&callbacks, &gSelf);                                                  \
  }

#endif
