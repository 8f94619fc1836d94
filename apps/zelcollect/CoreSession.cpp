// The core's singletons, the bundle's place and the schema.
#include "CoreSession.h"

#include "Errors.h"
#include "LoadErrors.h"
#include "Options.h"

#include "IPlugin.h"
#include "IPluginCallbacks.h"
#include "TContainer.h"
#include "TLogger.h"
#include "TPluginManager.h"
#include "TQueryManager.h"
#include "TZELException.h"

#include <algorithm>
#include <malloc.h>
#ifdef ZEL_WITH_MIMALLOC
#include <mimalloc.h>
#endif

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

TCoreSession::TCoreSession(const TOptions& options)
    : TCoreSession(options, options.fLogFile) {}

TCoreSession::TCoreSession(const TOptions& options, const std::string& logDestination) {
#ifdef ZEL_WITH_MIMALLOC
  // Pages that frees empty go back to the system at once rather than after a delay: a
  // dropped container then leaves nothing resident, for a few percent of a load's time.
  mi_option_enable(mi_option_page_reset);
  mi_option_set(mi_option_decommit_delay, 0);
#endif
  TLogger::Initialize();
  TPluginManager::Initialize(".");
  TQueryManager::Initialize();
  TLogger* logger = TLogger::GetInstance();
  logger->SetLogThreshold(options.fLogLevel);
  if (!logDestination.empty()) {
    try {
      logger->SetLogFilename(logDestination);
    } catch (TZELException& e) {
      throw TSetUpError("cannot open log file " + logDestination + ": " + e.what());
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

void TCoreSession::EndPlugins(const std::function<void(IPlugin&, bool)>& watch) {
  if (fEnded)
    return;
  fEnded = true;
  if (TPluginManager* manager = TPluginManager::GetInstance()) {
    for (const boost::shared_ptr<IPlugin>& plugin : manager->GetPluginsContainer()) {
      if (watch)
        watch(*plugin, true);
      EndPlugin(*plugin);
      if (watch)
        watch(*plugin, false);
    }
  }
}

TCoreSession::~TCoreSession() {
  EndPlugins(nullptr);
  delete TQueryManager::GetInstance();
  delete TPluginManager::GetInstance();
  delete TLogger::GetInstance();
  // The containers are gone (the collection's with the plugin manager, those of show and
  // diff before the session): their freed blocks go back to the system, not to the heap's
  // lists, where a large inventory would keep hundreds of megabytes resident.
#ifdef ZEL_WITH_MIMALLOC
  mi_collect(true);
#endif
  malloc_trim(0);
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
    size_t mark = LogMark();
    try {
      schema.PopulateContainerFromFile(document.string());
    } catch (TZELException& e) {
      throw TSetUpError("schema document " + document.string() +
                        DocumentFailure(document.string(), mark, e.GetCode(), schema));
    }
  }
}

} // namespace zelcollect
