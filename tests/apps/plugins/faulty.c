/* A plugin that fails for real, built once per fault (tests/apps/CMakeLists.txt):
 * FAULT_SEGV dereferences NULL, FAULT_ABORT calls abort(), FAULT_SLEEP sleeps forever,
 * in GetData of pass FAULT_PASS (1 ordinary classes, 2 associations); FAULT_INIT_HANG
 * sleeps forever in Init. Otherwise it collects one PREFIX_Part named "kept". */
#include "testplugin.h"

#include <stdlib.h>
#include <unistd.h>

#define TEXT(x) #x
#define STRING(x) TEXT(x)

/* The NULL store is meant to reach the kernel as SIGSEGV, in the sanitizer build too. */
__attribute__((no_sanitize_undefined)) static void Fail(void) {
#if defined(FAULT_SEGV)
  *(volatile int*)0 = 1;
#elif defined(FAULT_ABORT)
  abort();
#elif defined(FAULT_SLEEP)
  for (;;)
    pause();
#endif
}

static zelStatusCode Init(TCPluginCallbacks* self) {
  (void)self;
#if defined(FAULT_INIT_HANG)
  for (;;)
    pause();
#endif
  return zelStatusOK;
}

GET_DATA(GetData) {
  int associations = classCount > 0 && strstr(classNames[0], "_Link") != NULL;
  (void)self;
  if (associations == (FAULT_PASS == 2))
    Fail();
  if (!associations) {
    zelAddClass(io, STRING(PREFIX) "_Part");
    zelAddStringProperty(io, "Name", "kept");
  }
  return zelStatusOK;
}

TEST_PLUGIN_INFO(GetInfo, STRING(NAME), "0.1", "1.0", 0)
TEST_PLUGIN_REGISTER(Init, GetData, GetInfo, Nothing)
