// IQueryManager: a collection run over the loaded plugins.
#ifndef IQUERYMANAGER_H
#define IQUERYMANAGER_H

#include "zelcore.h"

#include <string>
#include <vector>

class IPlugin;
class TContainer;

class ZEL_API IQueryManager {
public:
  virtual ~IQueryManager();
  /// Ordinary classes of every plugin first, association classes second. An empty
  /// classNames means every class the plugins collect.
  virtual void RunQuery(TContainer* container, std::vector<std::string> classNames) = 0;
  /// One GetData call for the plugin's due classes of one kind; a failing plugin is
  /// logged, not thrown.
  virtual void EnumerateInstances(IPlugin* plugin, TContainer* container,
                                  std::vector<std::string> classNames, bool associations) = 0;
};

#endif
