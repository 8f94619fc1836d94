// TRootObject: the singletons' own static pointers, never created on demand.
#include "TRootObject.h"

#include "TLogger.h"
#include "TPluginManager.h"
#include "TQueryManager.h"

IQueryManager* TRootObject::GetQueryManager() { return TQueryManager::GetInstance(); }

IPluginManager* TRootObject::GetPluginManager() { return TPluginManager::GetInstance(); }

ILogger* TRootObject::GetCoreLogger() { return TLogger::GetInstance(); }
