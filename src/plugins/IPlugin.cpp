// The plugin interfaces: the out-of-line destructors that anchor their vtables.
#include "IPlugin.h"

#include "IPluginBasicQueryCallbacks.h"
#include "IPluginCallbacks.h"
#include "IPluginManager.h"
#include "IQueryManager.h"

IPlugin::~IPlugin() {}

IPluginCallbacks::~IPluginCallbacks() {}

IPluginBasicQueryCallbacks::~IPluginBasicQueryCallbacks() {}

IPluginManager::~IPluginManager() {}

IQueryManager::~IQueryManager() {}
