/* A plugin library that registers nothing while it loads. */
#include "testplugin.h"

int zelTestSilentLoaded = 1;
