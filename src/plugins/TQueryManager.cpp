// TQueryManager: a collection run in two passes, ordinary classes then associations, one
// GetData call per plugin and pass, a failing plugin logged and skipped.
#include "TQueryManager.h"

#include "IPlugin.h"
#include "IPluginBasicQueryCallbacks.h"
#include "IPluginCallbacks.h"
#include "IPluginManager.h"
#include "TCIMClass.h"
#include "TCIMQualifier.h"
#include "TRootObject.h"
#include "cim/ZelQualifierHolder.h"
#include "log/ZelLog.h"

#include <algorithm>
#include <exception>
#include <sstream>

TQueryManager* TQueryManager::fgInstance = 0;

// A class is skipped only when DONTCOLLECT is present, not NULL and true.
static bool IsMarkedDontCollect(TCIMClass const& cls) {
  return ZelQualifierIsTrue(cls.FindQualifier("DONTCOLLECT"));
}

static bool IsDue(TCIMClass const& cls, std::vector<std::string> const& classNames,
                  bool associations) {
  if (!classNames.empty() &&
      std::find(classNames.begin(), classNames.end(), cls.GetName()) == classNames.end())
    return false;
  if (cls.IsAbstract() || IsMarkedDontCollect(cls))
    return false;
  // Filled classes are not asked again, by this run or by a later plugin.
  if (!cls.EnumerateInstances(false).empty())
    return false;
  return cls.IsAssociation() == associations;
}

zelStatusCode TQueryManager::Initialize() {
  fgInstance = new TQueryManager();
  return zelStatusOK;
}

TQueryManager* TQueryManager::GetInstance() { return fgInstance; }

TQueryManager::TQueryManager() {}

TQueryManager::~TQueryManager() {}

void TQueryManager::RunQuery(TContainer* container, std::vector<std::string> classNames) {
  RunAllPlugins(container, classNames, false);
  RunAllPlugins(container, classNames, true); // References can now point at instances.
}

void TQueryManager::EnumerateInstances(IPlugin* plugin, TContainer* container,
                                       std::vector<std::string> classNames,
                                       bool associations) {
  try {
    IPluginBasicQueryCallbacks* query =
        dynamic_cast<IPluginBasicQueryCallbacks*>(plugin->GetCallbacks());
    if (!query)
      ZelFail(zelStatusInvalidPlugin, "Plugin " + plugin->GetCallbacks()->GetName() +
                                          " doesn't support the IPluginBasicQueryCallbacks.");

    std::vector<TCIMClass*> classes = plugin->GetClassesCollected();
    std::vector<TCIMClass*> request;
    for (TCIMClass* cls : classes) {
      if (!IsDue(*cls, classNames, associations))
        continue;
      ZelLogLazy(zelLogDebug, [&] {
        return "Asking plugin " + plugin->GetCallbacks()->GetName() + " for " + cls->GetName();
      });
      request.push_back(cls);
    }
    if (!request.empty())
      query->GetData(container, request);
  } catch (std::exception& e) {
    std::ostringstream message;
    message << "Plugin " << plugin->GetCallbacks()->GetName() << " threw exception "
            << e.what();
    ZelLog(zelLogError, message.str());
  }
}

void TQueryManager::RunAllPlugins(TContainer* container, std::vector<std::string> classNames,
                                  bool associations) {
  std::list<boost::shared_ptr<IPlugin> >& plugins =
      TRootObject::GetPluginManager()->GetPluginsContainer();
  for (boost::shared_ptr<IPlugin> const& plugin : plugins)
    if (plugin->GetCallbacks()->GetType() == 0)
      EnumerateInstances(plugin.get(), container, classNames, associations);
}
