// TRootObject: the one door to the process-wide singletons; none is created on demand.
#ifndef TROOTOBJECT_H
#define TROOTOBJECT_H

#include "zelcore.h"

class IQueryManager;
class IPluginManager;
class ILogger;

class ZEL_API TRootObject {
public:
  /// Null until TQueryManager::Initialize().
  static IQueryManager* GetQueryManager();
  /// Null until TPluginManager::Initialize().
  static IPluginManager* GetPluginManager();
  /// Null until TLogger::Initialize().
  static ILogger* GetCoreLogger();
};

#endif
