// TRootObject: the singletons' own static pointers, never created on demand.
#include "TRootObject.h"

#include "TLogger.h"

IQueryManager* TRootObject::GetQueryManager() { return 0; }

IPluginManager* TRootObject::GetPluginManager() { return 0; }

ILogger* TRootObject::GetCoreLogger() { return TLogger::GetInstance(); }
