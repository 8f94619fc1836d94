// zelcollect: inventories this machine with the collector plugins, prints the result and
// writes it as CIM-XML. The start-up, the two collection passes and the shut-down follow
// the order the core expects of its host.
#include "ZelCollectOptions.h"
#include "ZelCollectReport.h"

#include "IPlugin.h"
#include "IPluginCallbacks.h"
#include "TCIMClass.h"
#include "TCIMXMLWriter.h"
#include "TContainer.h"
#include "TLogger.h"
#include "TPluginManager.h"
#include "TQueryManager.h"
#include "TZELException.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iostream>

#include <unistd.h>

namespace fs = std::filesystem;
typedef std::chrono::steady_clock TClock;

enum { kExitOK = 0, kExitPluginFailed = 1, kExitSetUp = 2 };

namespace {

// A set-up step that failed; the message is for the user.
class TSetUpError : public std::runtime_error {
public:
  explicit TSetUpError(const std::string& message) : std::runtime_error(message) {}
};

// Where the bundled schema and plugins are: beside an installed executable, else in the
// build tree the executable was built in.
struct TBundle {
  fs::path fSchemaDir;
  fs::path fPluginDir;
};

} // namespace

static TBundle FindBundle() {
  std::error_code error;
  fs::path self = fs::read_symlink("/proc/self/exe", error);
  fs::path bin = self.parent_path();
  TBundle installed = {bin / ZEL_INSTALL_SCHEMA_DIR, bin / ZEL_INSTALL_PLUGIN_DIR};
  if (!error && fs::is_directory(installed.fPluginDir, error))
    return installed;
  return TBundle{ZEL_BUILD_SCHEMA_DIR, ZEL_BUILD_PLUGIN_DIR};
}

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

static void LoadSchema(TContainer& schema, const fs::path& directory,
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

namespace {

// One collection run, pass by pass and plugin by plugin as the query manager's RunQuery
// does it, so that each plugin's time and failure can be told apart.
class TCollection {
public:
  TCollection(const std::vector<std::string>& classNames, bool progress)
      : fClassNames(classNames), fProgress(progress) {}

  void Run(TContainer* container) {
    std::list<boost::shared_ptr<IPlugin>>& plugins =
        TPluginManager::GetInstance()->GetPluginsContainer();
    for (bool associations : {false, true}) {
      for (const boost::shared_ptr<IPlugin>& plugin : plugins) {
        if (plugin->GetCallbacks()->GetType() == 0)
          RunPlugin(plugin.get(), container, associations);
      }
    }
  }

  std::vector<std::string> fFailures;

private:
  void RunPlugin(IPlugin* plugin, TContainer* container, bool associations) {
    std::string name = plugin->GetCallbacks()->GetName();
    size_t mark = TLogger::GetInstance()->GetLog().size();
    size_t before = CountInstances(container);
    TClock::time_point start = TClock::now();
    TQueryManager::GetInstance()->EnumerateInstances(plugin, container, fClassNames,
                                                     associations);
    double elapsed = Milliseconds(start);
    size_t added = CountInstances(container) - before;
    bool failed = false;
    for (const std::string& line : LoggedSince(mark)) {
      if (StartsWith(line, "Plugin " + name + " ")) { // " threw exception ..."
        fFailures.push_back(line);
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

  static size_t CountInstances(TContainer* container) {
    size_t count = 0;
    for (TCIMClass* cls : container->GetRootClass()->EnumerateSubClasses(true))
      count += cls->EnumerateInstances(false).size();
    return count;
  }

  std::vector<std::string> fClassNames;
  bool fProgress;
};

// The core's singletons for one run; ends the plugins and deletes the managers on the way
// out, whatever happened.
class TCoreSession {
public:
  TCoreSession() {
    TLogger::Initialize();
    TPluginManager::Initialize(".");
    TQueryManager::Initialize();
  }

  ~TCoreSession() {
    if (TPluginManager* manager = TPluginManager::GetInstance()) {
      for (const boost::shared_ptr<IPlugin>& plugin : manager->GetPluginsContainer())
        EndPlugin(*plugin);
    }
    delete TQueryManager::GetInstance();
    delete TPluginManager::GetInstance();
    delete TLogger::GetInstance();
  }

private:
  // DeInit, then PrepareForUnload, which deletes the callbacks; a plugin that refuses
  // keeps them.
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
};

} // namespace

static long FileSize(const std::string& path) {
  std::error_code error;
  std::uintmax_t size = fs::file_size(path, error);
  return error ? -1 : static_cast<long>(size);
}

// Reads the result file back into a fresh container and writes that again: the two texts
// must be the same.
static void Verify(const std::string& path, const std::string& written, double collectMs,
                   double writeMs) {
  TClock::time_point start = TClock::now();
  TContainer readBack;
  readBack.PopulateContainerFromFile(path);
  double readMs = Milliseconds(start);
  if (TCIMXMLWriter::Write(readBack) != written)
    throw TSetUpError("the result file " + path + " does not read back the same");
  std::cerr << "zelcollect: verified " << path << ": " << FileSize(path) << " bytes; "
            << std::fixed << std::setprecision(1) << "collection " << collectMs
            << " ms, writing " << writeMs << " ms, reading back " << readMs << " ms"
            << std::endl;
}

static int Collect(const ZelCollectOptions& options) {
  TBundle bundle = FindBundle();
  fs::path pluginDir = options.fPluginDir.empty() ? bundle.fPluginDir : fs::path(options.fPluginDir);
  std::string output = options.fWriteOutput ? fs::absolute(options.fOutputFile).string() : "";
  bool progress = isatty(STDERR_FILENO);

  TCoreSession session;
  TLogger* logger = TLogger::GetInstance();
  logger->SetLogThreshold(options.fLogLevel);
  if (!options.fLogFile.empty()) {
    try {
      logger->SetLogFilename(options.fLogFile);
    } catch (TZELException& e) {
      throw TSetUpError("cannot open log file " + options.fLogFile + ": " + e.what());
    }
  }
  TContainer* schema = TPluginManager::GetInstance()->GetSchema();
  LoadSchema(*schema, bundle.fSchemaDir, options.fSchemaFiles);
  std::vector<std::string> failures = LoadPlugins(pluginDir);
  if (TPluginManager::GetInstance()->GetPluginsContainer().empty())
    throw TSetUpError("no plugins in " + pluginDir.string());

  TClock::time_point start = TClock::now();
  TCollection collection(options.fClassNames, progress);
  collection.Run(schema);
  double collectMs = Milliseconds(start);
  failures.insert(failures.end(), collection.fFailures.begin(), collection.fFailures.end());

  std::vector<TCIMClass*> classes = TCIMXMLWriter::ClassesWithInstances(*schema);
  ZelIdentity identity = ZelReadIdentity(*schema);
  switch (options.fFormat) {
  case ZelCollectOptions::eText:
    ZelPrintText(std::cout, classes, identity);
    break;
  case ZelCollectOptions::eXML:
    std::cout << TCIMXMLWriter::Write(*schema, TCIMXMLWriter::eClassesWithInstances);
    break;
  case ZelCollectOptions::eJSON:
    std::cout << ZelReportJSON(classes, identity)
                     .dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
              << std::endl;
    break;
  }

  if (!output.empty()) {
    start = TClock::now();
    try {
      TCIMXMLWriter::WriteFile(output, *schema, TCIMXMLWriter::eClassesWithInstances);
    } catch (TZELException& e) {
      throw TSetUpError("cannot write " + output + ": " + e.what());
    }
    double writeMs = Milliseconds(start);
    if (options.fFormat == ZelCollectOptions::eText)
      std::cout << "\nResult file  " << output << " (" << FileSize(output) << " bytes)\n";
    if (options.fVerify)
      Verify(output, TCIMXMLWriter::Write(*schema, TCIMXMLWriter::eClassesWithInstances),
             collectMs, writeMs);
  }
  std::cout.flush();

  if (failures.empty())
    return kExitOK;
  std::cerr << "zelcollect: " << failures.size()
            << (failures.size() == 1 ? " plugin failure:" : " plugin failures:") << "\n";
  for (const std::string& failure : failures)
    std::cerr << "  " << failure << "\n";
  return kExitPluginFailed;
}

int main(int argc, char** argv) {
  ZelCollectOptions options;
  try {
    options = ZelParseOptions(argc, argv);
  } catch (ZelUsageError& e) {
    std::cerr << "zelcollect: " << e.what() << "\nTry 'zelcollect --help'.\n";
    return kExitSetUp;
  }
  if (options.fHelp) {
    std::cout << ZelUsageText();
    return kExitOK;
  }
  if (options.fVersion) {
    std::cout << "zelcollect " << ZEL_VERSION << "\n";
    return kExitOK;
  }
  try {
    return Collect(options);
  } catch (TSetUpError& e) {
    std::cerr << "zelcollect: " << e.what() << "\n";
  } catch (TZELException& e) {
    std::cerr << "zelcollect: unexpected failure: " << e.what() << "\n";
  }
  return kExitSetUp;
}
