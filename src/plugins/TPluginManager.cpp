// TPluginManager: finding and loading plugin libraries, taking over the plugins that a load
// registered, and reading their specification documents into the shared schema.
#include "TPluginManager.h"

#include "IPluginCallbacks.h"
#include "TCIMClass.h"
#include "TCIMQualifier.h"
#include "TOSSpecific.h"
#include "log/ZelLog.h"

#include <cstdio>
#include <memory>

TPluginManager* TPluginManager::fgInstance = 0;

// Adds a string qualifier to cls. The class keeps an equal qualifier it already holds, so
// ours is deleted unless the class took it.
static void StampQualifier(TCIMClass& cls, TCIMQualifierDecl const& decl,
                           std::string const& value) {
  std::unique_ptr<TCIMQualifier> qualifier(new TCIMQualifier(decl, TCIMValue(value)));
  cls.AddQualifier(*qualifier);
  if (cls.FindQualifier(decl.GetName()) == qualifier.get())
    qualifier.release();
}

// ---- TPlugin ------------------------------------------------------------------------------

TPluginManager::TPlugin::TPlugin(IPluginCallbacks* callbacks)
    : fCallbacks(callbacks), fInitialized(false) {}

TPluginManager::TPlugin::~TPlugin() {}

IPluginCallbacks* TPluginManager::TPlugin::GetCallbacks() const { return fCallbacks; }

void TPluginManager::TPlugin::Initialize() {
  fCallbacks->Init();
  fInitialized = true;
}

bool TPluginManager::TPlugin::IsInitialized() const { return fInitialized; }

std::string TPluginManager::TPlugin::GetPath() const { return fPath; }

std::string TPluginManager::TPlugin::GetSpecificationPath() const {
  return TOSSpecific::BuildSpecificationPath(fPath);
}

std::vector<TCIMClass*> TPluginManager::TPlugin::GetClassesCollected() const {
  if (fClassesCollected.empty())
    throw TZELException(zelStatusFail);
  return fClassesCollected;
}

void TPluginManager::TPlugin::SetPath(std::string path) { fPath = path; }

void TPluginManager::TPlugin::LoadSpecificationDocument() {
  TContainer* schema = TPluginManager::GetInstance()->GetSchema();
  fClassesCollected = schema->PopulateContainerFromFile(GetSpecificationPath());

  TCIMQualifierDecl* nameDecl;
  TCIMQualifierDecl* versionDecl;
  try {
    nameDecl = schema->GetQualifierDecl("PLUGINNAME");
    versionDecl = schema->GetQualifierDecl("PLUGINVERSION");
  } catch (TZELException& e) {
    ZelFail(e.GetCode(), "Couldn't find PLUGINNAME/PLUGINVERSION qualifier decl");
  }
  for (TCIMClass* cls : fClassesCollected) {
    StampQualifier(*cls, *nameDecl, fCallbacks->GetName());
    StampQualifier(*cls, *versionDecl, fCallbacks->GetVersion());
  }
}

// ---- TPluginManager -----------------------------------------------------------------------

zelStatusCode TPluginManager::Initialize(std::string path) {
  fgInstance = new TPluginManager(path);
  return zelStatusOK;
}

TPluginManager* TPluginManager::GetInstance() { return fgInstance; }

TPluginManager::TPluginManager(std::string path) : fPluginManagerPath(path) {}

TPluginManager::~TPluginManager() {}

void TPluginManager::FindAndLoadPlugins() {
  std::vector<std::string> paths = TOSSpecific::FindPlugins(fPluginManagerPath);
  for (std::string const& path : paths) {
    try {
      LoadPlugin(path);
    } catch (TZELException&) {
      // A broken plugin must not keep the others from loading; it has logged its reason.
    }
  }
}

void TPluginManager::LoadPlugin(std::string path) {
  for (boost::shared_ptr<IPlugin> const& plugin : fPlugins)
    if (plugin->GetPath() == path)
      return;

  ZelLog(zelLogDebug, path);
  fPendingPlugins.clear(); // Registrations made outside a load have no library to go with.
  try {
    TOSSpecific::LoadPluginLibrary(path);
  } catch (TZELException&) {
    char message[1024];
    std::snprintf(message, sizeof message, "DLL %s failed to initialize properly",
                  path.c_str());
    zelWriteLog(0, zelLogError, message);
    return;
  }
  InitializeProviders(path);
}

IPlugin* TPluginManager::RegisterPlugin(IPluginCallbacks* callbacks) {
  boost::shared_ptr<TPlugin> plugin(new TPlugin(callbacks));
  fPendingPlugins.push_back(plugin);
  return plugin.get();
}

std::list<boost::shared_ptr<IPlugin> >& TPluginManager::GetPluginsContainer() {
  return fPlugins;
}

IPlugin* TPluginManager::SearchForPluginByName(std::string name) {
  for (boost::shared_ptr<IPlugin> const& plugin : fPlugins)
    if (plugin->GetCallbacks()->GetName() == name)
      return plugin.get();
  return 0;
}

TContainer* TPluginManager::GetSchema() { return &fSchema; }

std::string TPluginManager::GetPluginManagerPath() { return fPluginManagerPath; }

void TPluginManager::InitializeProviders(std::string path) {
  while (!fPendingPlugins.empty()) {
    boost::shared_ptr<TPlugin> plugin = fPendingPlugins.front();
    fPendingPlugins.pop_front();
    plugin->SetPath(path);
    fPlugins.push_back(plugin);
    try {
      plugin->Initialize();
    } catch (...) {
      continue; // Stays registered, uninitialised and without classes.
    }
    int type = plugin->GetCallbacks()->GetType();
    if (type == 0 || type == 1)
      plugin->LoadSpecificationDocument();
  }
}
