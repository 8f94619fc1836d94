// IPlugin and IPluginCallbacks: the out-of-line destructors that anchor their vtables.
#include "IPlugin.h"

#include "IPluginCallbacks.h"

IPlugin::~IPlugin() {}

IPluginCallbacks::~IPluginCallbacks() {}
