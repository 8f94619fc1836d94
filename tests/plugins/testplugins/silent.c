/* A plugin library that registers nothing while it loads. */
#include "testplugin.h"

__attribute__((constructor)) static void LoadQuietly(void) {}
