// The core's singletons, the bundle's place and the schema.
#include "CoreSession.h"

#include "Errors.h"
#include "Options.h"

#include "IPlugin.h"
#include "IPluginCallbacks.h"
#include "TContainer.h"
#include "TLogger.h"
#include "TPluginManager.h"
#include "TQueryManager.h"
#include "TZELException.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace zelcollect {

TBundle TBundle::Find() {
  std::error_code error;
  fs::path self = fs::read_symlink("/proc/self/exe", error);
  fs::path bin = self.parent_path();
  TBundle installed = {bin / ZEL_INSTALL_SCHEMA_DIR, bin / ZEL_INSTALL_PLUGIN_DIR};
  if (!error && fs::is_directory(installed.fPluginDir, error))
    return installed;
  return TBundle{ZEL_BUILD_SCHEMA_DIR, ZEL_BUILD_PLUGIN_DIR};
}

TCoreSession::TCoreSession(const TOptions& options) {
  TLogger::Initialize();
  TPluginManager::Initialize(".");
  TQueryManager::Initialize();
  TLogger* logger = TLogger::GetInstance();
  logger->SetLogThreshold(options.fLogLevel);
  if (!options.fLogFile.empty()) {
    try {
      logger->SetLogFilename(options.fLogFile);
    } catch (TZELException& e) {
      throw TSetUpError("cannot open log file " + options.fLogFile + ": " + e.what());
    }
  }
}

// DeInit, then PrepareForUnload, which deletes the callbacks; a plugin that refuses keeps
// them.
static void EndPlugin(IPlugin& plugin) {
  IPluginCallbacks* callbacks = plugin.GetCallbacks();
  try {
    if (plugin.IsInitialized())
      callbacks->DeInit();
  } catch (TZELException&) {
  }
  try {
    callbacks->PrepareForUnload();
  } catch (TZELException&) {
  }
}

TCoreSession::~TCoreSession() {
  if (TPluginManager* manager = TPluginManager::GetInstance()) {
    for (const boost::shared_ptr<IPlugin>& plugin : manager->GetPluginsContainer())
      EndPlugin(*plugin);
  }
  delete TQueryManager::GetInstance();
  delete TPluginManager::GetInstance();
  delete TLogger::GetInstance();
}

TContainer& TCoreSession::GetSchema() const { return *TPluginManager::GetInstance()->GetSchema(); }

void LoadSchema(TContainer& schema, const fs::path& directory,
                const std::vector<std::string>& extra) {
  std::vector<fs::path> documents;
  std::error_code error;
  for (fs::directory_iterator it(directory, error), end; !error && it != end; it.increment(error))
    if (it->path().extension() == ".xml")
      documents.push_back(it->path());
  if (error || documents.empty())
    throw TSetUpError("no schema documents in " + directory.string());
  std::sort(documents.begin(), documents.end()); // 01-qualifiers.xml first
  documents.insert(documents.end(), extra.begin(), extra.end());
  for (const fs::path& document : documents) {
    try {
      schema.PopulateContainerFromFile(document.string());
    } catch (TZELException& e) {
      throw TSetUpError("cannot load schema document " + document.string() + ": " + e.what());
    }
  }
}

} // namespace zelcollect
