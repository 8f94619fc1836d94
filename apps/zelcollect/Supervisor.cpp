// Plugin loading and the collection run, pass by pass and plugin by plugin as the query
// manager's RunQuery does it, so that each plugin's time and failure can be told apart.
#include "Supervisor.h"

#include "Errors.h"
#include "Options.h"

#include "IPlugin.h"
#include "IPluginCallbacks.h"
#include "TCIMClass.h"
#include "TContainer.h"
#include "TLogger.h"
#include "TPluginManager.h"
#include "TQueryManager.h"

#include <chrono>
#include <iomanip>
#include <iostream>

#include <unistd.h>

namespace fs = std::filesystem;

namespace zelcollect {

typedef std::chrono::steady_clock TClock;

static double Milliseconds(TClock::time_point since) {
  return std::chrono::duration<double, std::milli>(TClock::now() - since).count();
}

// Log entries since a mark: the failures of the core are in its own log.
static std::vector<std::string> LoggedSince(size_t mark) {
  std::list<ILogger::TLogEntry>& log = TLogger::GetInstance()->GetLog();
  std::vector<std::string> lines;
  size_t index = 0;
  for (const ILogger::TLogEntry& entry : log) {
    if (index++ >= mark && entry.fSeverity == zelLogError && !entry.fPlugin)
      lines.push_back(entry.fText);
  }
  return lines;
}

static bool StartsWith(const std::string& text, const std::string& prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

// Loads the plugins from inside their directory: the core looks for the plugin
// subdirectories relative to the current one, and finds each specification document by
// removing the first "lib" of the library's whole path, which a path relative to the plugin
// directory leaves in the file name. Returns the libraries and documents that failed.
static std::vector<std::string> LoadPlugins(const fs::path& directory) {
  std::error_code error;
  fs::path back = fs::current_path();
  fs::current_path(directory, error);
  if (error)
    throw TSetUpError("cannot use plugin directory " + directory.string() + ": " +
                      error.message());
  size_t mark = TLogger::GetInstance()->GetLog().size();
  try {
    TPluginManager::GetInstance()->FindAndLoadPlugins();
  } catch (...) {
    fs::current_path(back);
    throw;
  }
  fs::current_path(back);
  std::vector<std::string> failures;
  for (const std::string& line : LoggedSince(mark)) {
    if (StartsWith(line, "DLL ") || StartsWith(line, "Previous error was while parsing file"))
      failures.push_back(line);
  }
  return failures;
}

static size_t CountInstances(TContainer& container) {
  size_t count = 0;
  for (TCIMClass* cls : container.GetRootClass()->EnumerateSubClasses(true))
    count += cls->EnumerateInstances(false).size();
  return count;
}

TSupervisor::TSupervisor(const TOptions& options)
    : fOptions(options), fProgress(isatty(STDERR_FILENO)) {}

TCollectionOutcome TSupervisor::Run(TContainer& schema, const fs::path& pluginDir) {
  TCollectionOutcome outcome;
  outcome.fFailures = LoadPlugins(pluginDir);
  std::list<boost::shared_ptr<IPlugin>>& plugins =
      TPluginManager::GetInstance()->GetPluginsContainer();
  if (plugins.empty())
    throw TSetUpError("no plugins in " + pluginDir.string());

  TClock::time_point start = TClock::now();
  for (bool associations : {false, true}) {
    for (const boost::shared_ptr<IPlugin>& plugin : plugins) {
      if (plugin->GetCallbacks()->GetType() != 0)
        continue;
      std::string name = plugin->GetCallbacks()->GetName();
      size_t mark = TLogger::GetInstance()->GetLog().size();
      size_t before = CountInstances(schema);
      TClock::time_point began = TClock::now();
      TQueryManager::GetInstance()->EnumerateInstances(plugin.get(), &schema,
                                                       fOptions.fClassNames, associations);
      double elapsed = Milliseconds(began);
      size_t added = CountInstances(schema) - before;
      bool failed = false;
      for (const std::string& line : LoggedSince(mark)) {
        if (StartsWith(line, "Plugin " + name + " ")) { // " threw exception ..."
          outcome.fFailures.push_back(line);
          failed = true;
        }
      }
      // The second pass only for plugins that have something to say in it.
      if (fProgress && (!associations || added || failed))
        std::cerr << "zelcollect: " << std::left << std::setw(16) << name << std::right
                  << (associations ? " associations " : " ") << std::setw(5) << added
                  << (added == 1 ? " instance " : " instances") << std::fixed
                  << std::setprecision(1) << std::setw(9) << elapsed << " ms"
                  << (failed ? "  FAILED" : "") << std::endl;
    }
  }
  outcome.fMilliseconds = Milliseconds(start);
  return outcome;
}

} // namespace zelcollect
