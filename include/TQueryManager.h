// TQueryManager: the query manager singleton: which classes each plugin is asked for, in
// which order, and how a failing plugin is contained.
#ifndef TQUERYMANAGER_H
#define TQUERYMANAGER_H

#include "IQueryManager.h"
#include "zelcore.h"

#include <string>
#include <vector>

class ZEL_API TQueryManager : public IQueryManager {
public:
  /// Creates the singleton (a second call replaces the pointer); returns zelStatusOK.
  static zelStatusCode Initialize();
  /// Null before Initialize().
  static TQueryManager* GetInstance();

  virtual ~TQueryManager();
  virtual void RunQuery(TContainer* container, std::vector<std::string> classNames) override;
  virtual void EnumerateInstances(IPlugin* plugin, TContainer* container,
                                  std::vector<std::string> classNames, bool associations) override;

  /// One pass over the plugins of type 0, in registration order.
  void RunAllPlugins(TContainer* container, std::vector<std::string> classNames,
                     bool associations);

  static TQueryManager* fgInstance;

private:
  TQueryManager();
  TQueryManager(TQueryManager const&);
  TQueryManager& operator=(TQueryManager const&);
};

#endif
