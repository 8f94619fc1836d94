// IPluginManager: the registry of collector plugins and the schema their documents fill.
#ifndef IPLUGINMANAGER_H
#define IPLUGINMANAGER_H

#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <list>
#include <string>

class IPlugin;
class IPluginCallbacks;
class TContainer;

class ZEL_API IPluginManager {
public:
  virtual ~IPluginManager();
  /// Loads every plugin library one level below the plugin directory; a library that fails
  /// with TZELException is skipped.
  virtual void FindAndLoadPlugins() = 0;
  /// Loads one library at most once, registers, initialises and describes its plugins.
  virtual void LoadPlugin(std::string path) = 0;
  /// Called during a library load; the returned handle is owned by the manager.
  virtual IPlugin* RegisterPlugin(IPluginCallbacks* callbacks) = 0;
  /// The registered plugins in registration order (not copied).
  virtual std::list<boost::shared_ptr<IPlugin> >& GetPluginsContainer() = 0;
  /// The first plugin of that exact name, or null.
  virtual IPlugin* SearchForPluginByName(std::string name) = 0;
  /// The shared schema the specification documents are read into.
  virtual TContainer* GetSchema() = 0;
};

#endif
