// TPluginManager: the plugin registry singleton: discovery, loading, registration during
// the library load, initialisation and specification documents.
#ifndef TPLUGINMANAGER_H
#define TPLUGINMANAGER_H

#include "IPlugin.h"
#include "IPluginManager.h"
#include "TContainer.h"
#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <list>
#include <string>
#include <vector>

/// Never calls DeInit or PrepareForUnload and never unloads a library: ending plugins is
/// the embedding program's task.
class ZEL_API TPluginManager : public IPluginManager {
public:
  /// One registered plugin: its callbacks, library path and collected classes.
  class ZEL_API TPlugin : public IPlugin {
  public:
    explicit TPlugin(IPluginCallbacks* callbacks);
    virtual ~TPlugin();
    virtual IPluginCallbacks* GetCallbacks() const override;
    /// Calls the plugin's Init; initialized only when it returns.
    virtual void Initialize() override;
    virtual bool IsInitialized() const override;
    virtual std::string GetPath() const override;
    /// zelStatusFail for a path without ".pi.so" or "lib".
    virtual std::string GetSpecificationPath() const override;
    /// zelStatusFail while the list is empty.
    virtual std::vector<TCIMClass*> GetClassesCollected() const override;

    void SetPath(std::string path);
    /// Reads the document into the manager's schema and stamps its classes with
    /// PLUGINNAME and PLUGINVERSION; failures propagate.
    void LoadSpecificationDocument();

  private:
    IPluginCallbacks* fCallbacks;
    std::vector<TCIMClass*> fClassesCollected;
    std::string fPath;
    bool fInitialized;
  };

  /// Creates the singleton for the plugin directory; a second call replaces the pointer
  /// and leaves the old manager alive. Returns zelStatusOK.
  static zelStatusCode Initialize(std::string path);
  /// Null before Initialize().
  static TPluginManager* GetInstance();

  virtual ~TPluginManager();
  virtual void FindAndLoadPlugins() override;
  virtual void LoadPlugin(std::string path) override;
  virtual IPlugin* RegisterPlugin(IPluginCallbacks* callbacks) override;
  virtual std::list<boost::shared_ptr<IPlugin> >& GetPluginsContainer() override;
  virtual IPlugin* SearchForPluginByName(std::string name) override;
  virtual TContainer* GetSchema() override;

  std::string GetPluginManagerPath();
  /// Takes over the plugins registered during the load of path.
  void InitializeProviders(std::string path);

  static TPluginManager* fgInstance;

private:
  explicit TPluginManager(std::string path);
  TPluginManager(TPluginManager const&);
  TPluginManager& operator=(TPluginManager const&);

  std::string fPluginManagerPath;
  std::list<boost::shared_ptr<IPlugin> > fPlugins;
  std::list<boost::shared_ptr<TPlugin> > fPendingPlugins;
  TContainer fSchema;
};

#endif
