// The worker: schema, plugins and the query manager's run, each call into a plugin
// announced to the supervisor first.
#include "Worker.h"

#include "Catalog.h"
#include "CoreSession.h"
#include "Errors.h"
#include "LoadErrors.h"
#include "Options.h"
#include "ResultFile.h"

#include "IPlugin.h"
#include "IPluginBasicQueryCallbacks.h"
#include "IPluginCallbacks.h"
#include "TCIMClass.h"
#include "TContainer.h"
#include "TPluginManager.h"
#include "TQueryManager.h"
#include "TZELException.h"

#include <boost/make_shared.hpp>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace zelcollect {

double Milliseconds(TClock::time_point since) {
  return std::chrono::duration<double, std::milli>(TClock::now() - since).count();
}

std::string PluginKey(const std::string& name, const std::string& path) {
  return name + "\t" + path;
}

static std::string OneLine(std::string text) {
  for (char& c : text)
    if (c == '\n' || c == '\t')
      c = ' ';
  return text;
}

void TReport::Send(EKind kind, const std::string& first, const std::string& second) {
  std::string line(1, static_cast<char>(kind));
  for (const std::string* field : {&first, &second})
    if (!field->empty())
      line += "\t" + OneLine(*field);
  line += "\n";
  // A supervisor that is gone leaves nobody to tell.
  (void)!write(fFd, line.data(), line.size());
}

namespace {

// A loaded plugin, named once while it loads (GetName calls into it).
struct TLoaded {
  IPlugin* fPlugin;
  std::string fName;
  std::string fPath;
};

// A plugin as the query manager sees it during the run: it forwards everything to the
// plugin and announces each GetData, so that the query manager's own two passes run
// unchanged while the supervisor knows which plugin they are in.
class TWatchedPlugin : public IPlugin,
                       public IPluginCallbacks,
                       public IPluginBasicQueryCallbacks {
public:
  TWatchedPlugin(const TLoaded& loaded, TReport& report, bool progress)
      : fLoaded(loaded), fReport(report), fProgress(progress),
        fCallbacks(loaded.fPlugin->GetCallbacks()),
        fQuery(dynamic_cast<IPluginBasicQueryCallbacks*>(fCallbacks)) {}

  IPluginCallbacks* GetCallbacks() const override {
    // Without the query interface the core's own message says so.
    return fQuery ? const_cast<TWatchedPlugin*>(this) : fCallbacks;
  }
  void Initialize() override { fLoaded.fPlugin->Initialize(); }
  bool IsInitialized() const override { return fLoaded.fPlugin->IsInitialized(); }
  std::string GetPath() const override { return fLoaded.fPlugin->GetPath(); }
  std::string GetSpecificationPath() const override {
    return fLoaded.fPlugin->GetSpecificationPath();
  }
  std::vector<TCIMClass*> GetClassesCollected() const override {
    return fLoaded.fPlugin->GetClassesCollected();
  }

  int GetType() override { return fCallbacks->GetType(); }
  std::string GetName() override { return fCallbacks->GetName(); }
  std::string GetVersion() override { return fCallbacks->GetVersion(); }
  std::string GetInterfaceVersion() override { return fCallbacks->GetInterfaceVersion(); }
  void PrepareForUnload() override { fCallbacks->PrepareForUnload(); }
  void Init() override { fCallbacks->Init(); }
  void DeInit() override { fCallbacks->DeInit(); }
  int GetURLType() override { return fCallbacks->GetURLType(); }

  void GetData(TContainer* container, std::vector<TCIMClass*>& classes) override;

private:
  static size_t CountInstances(TContainer& container);
  void Progress(bool associations, size_t added, double elapsed, bool failed) const;

  TLoaded fLoaded;
  TReport& fReport;
  bool fProgress;
  IPluginCallbacks* fCallbacks;
  IPluginBasicQueryCallbacks* fQuery;
};

size_t TWatchedPlugin::CountInstances(TContainer& container) {
  size_t count = 0;
  for (TCIMClass* cls : container.GetRootClass()->EnumerateSubClasses(true))
    count += cls->EnumerateInstances(false).size();
  return count;
}

void TWatchedPlugin::Progress(bool associations, size_t added, double elapsed,
                              bool failed) const {
  std::cerr << "zelcollect: " << std::left << std::setw(16) << fLoaded.fName << std::right
            << (associations ? " associations " : " ") << std::setw(5) << added
            << (added == 1 ? " instance " : " instances") << std::fixed << std::setprecision(1)
            << std::setw(9) << elapsed << " ms" << (failed ? "  FAILED" : "") << std::endl;
}

void TWatchedPlugin::GetData(TContainer* container, std::vector<TCIMClass*>& classes) {
  bool associations = !classes.empty() && classes[0]->IsAssociation();
  size_t before = fProgress ? CountInstances(*container) : 0;
  size_t mark = LogMark();
  TClock::time_point start = TClock::now();
  fReport.Send(TReport::kCollecting, fLoaded.fName, fLoaded.fPath);
  try {
    fQuery->GetData(container, classes);
  } catch (std::exception& e) {
    fReport.Send(TReport::kLeft);
    // The query manager logs and contains it; the reason is what was logged meanwhile.
    std::string problems = LoggedProblems(mark, fLoaded.fPlugin);
    fReport.Send(TReport::kFailure,
                 "plugin " + fLoaded.fName + " (" + fLoaded.fPath + "): GetData " +
                     (problems.empty() ? std::string("returned ") + e.what()
                                       : "failed: " + problems));
    if (fProgress)
      Progress(associations, CountInstances(*container) - before, Milliseconds(start), true);
    throw;
  }
  fReport.Send(TReport::kLeft);
  if (fProgress)
    Progress(associations, CountInstances(*container) - before, Milliseconds(start), false);
}

// Puts the watched plugins in the manager's list for the run, and the plugins back after.
class TWatchedList {
public:
  explicit TWatchedList(std::list<boost::shared_ptr<IPlugin>> watched)
      : fList(TPluginManager::GetInstance()->GetPluginsContainer()), fSaved(fList) {
    fList = std::move(watched);
  }
  ~TWatchedList() { fList = fSaved; }
  TWatchedList(const TWatchedList&) = delete;
  TWatchedList& operator=(const TWatchedList&) = delete;

private:
  std::list<boost::shared_ptr<IPlugin>>& fList;
  std::list<boost::shared_ptr<IPlugin>> fSaved;
};

// Loads each library from inside its plugin directory: the core derives each plugin's
// specification document by removing the first "lib" of the whole path, which a path
// relative to the plugin directory leaves in the file name.
class TLoader {
public:
  TLoader(TContainer& schema, TReport& report) : fSchema(schema), fReport(report) {}

  /// Loads the library; its plugins go to fLoaded, those that collect also to fRunning
  /// and the catalog.
  void Load(const TPluginLibrary& library, const TPlan& plan, TCatalog& catalog);

  std::vector<TLoaded> fLoaded;
  std::vector<TLoaded> fRunning;

private:
  void Fail(const std::string& text) { fReport.Send(TReport::kFailure, text); }

  TContainer& fSchema;
  TReport& fReport;
};

void TLoader::Load(const TPluginLibrary& library, const TPlan& plan, TCatalog& catalog) {
  TPluginManager* manager = TPluginManager::GetInstance();
  std::list<boost::shared_ptr<IPlugin>>& plugins = manager->GetPluginsContainer();
  size_t before = plugins.size(), mark = LogMark();
  bool threw = false;
  zelStatusCode code = zelStatusOK;
  // O_PATH: the way back needs no right to read the working directory.
  int back = open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (back < 0)
    throw TSetUpError(std::string("cannot keep the working directory: ") + std::strerror(errno));
  if (chdir(library.fDirectory.c_str()) != 0) {
    int error = errno;
    close(back);
    throw TSetUpError("cannot use plugin directory " + library.fDirectory + ": " +
                      std::strerror(error));
  }
  fReport.Send(TReport::kLoading, library.fPath);
  try {
    manager->LoadPlugin(library.fLoadPath);
  } catch (TZELException& e) {
    threw = true;
    code = e.GetCode();
  }
  std::vector<TLoaded> loaded;
  for (auto it = std::next(plugins.begin(), static_cast<long>(before)); it != plugins.end(); ++it)
    loaded.push_back({it->get(), (*it)->GetCallbacks()->GetName(), library.fPath});
  std::string loader = loaded.empty() ? LoaderFailure(library.fLoadPath) : "";
  fReport.Send(TReport::kLeft);
  if (fchdir(back) != 0)
    throw TSetUpError(std::string("cannot return to the working directory: ") +
                      std::strerror(errno));
  close(back);

  if (!loader.empty())
    Fail("plugin " + library.fPath + ": cannot load: " + loader);
  fLoaded.insert(fLoaded.end(), loaded.begin(), loaded.end());
  for (const TLoaded& plugin : loaded) {
    IPlugin& core = *plugin.fPlugin;
    if (!core.IsInitialized()) {
      std::string problems = LoggedProblems(mark, &core);
      Fail("plugin " + plugin.fName + " (" + library.fPath + "): Init failed" +
           (problems.empty() ? "" : ": " + problems));
      continue;
    }
    int type = core.GetCallbacks()->GetType();
    if (type != 0 && type != 1)
      continue; // no document, never asked
    std::vector<TCIMClass*> classes;
    try {
      classes = core.GetClassesCollected();
    } catch (TZELException&) {
      std::string document = library.fDocument;
      if (!threw)
        Fail("plugin " + plugin.fName + ": its specification document " + document +
             " declares no class");
      else if (access(document.c_str(), F_OK) != 0)
        Fail("plugin " + plugin.fName + ": its specification document " + document +
             " is missing");
      else
        Fail("plugin " + plugin.fName + ": specification document " + document +
             DocumentFailure(document, mark, code, fSchema));
      continue;
    }
    if (type != 0 || plan.fSkippedPlugins.count(PluginKey(plugin.fName, plugin.fPath)))
      continue;
    catalog.Add(&core, plugin.fName, core.GetCallbacks()->GetVersion(), library.fPath,
                classes);
    fRunning.push_back(plugin);
  }
}

} // namespace

int RunWorker(const TOptions& options, const TPlan& plan, TReport& report,
              const std::string& logDestination, const TResultWriter& write) {
  TCoreSession session(options, logDestination);
  TContainer& schema = session.GetSchema();
  LoadSchema(schema, TBundle::Find().fSchemaDir, plan.fSchemaFiles);

  TCatalog catalog(schema);
  TLoader loader(schema, report);
  for (const TPluginLibrary& library : plan.fLibraries)
    if (!plan.fSkippedLibraries.count(library.fPath))
      loader.Load(library, plan, catalog);

  int status = kExitOK;
  if (options.fList) {
    std::ostringstream list;
    catalog.Print(list);
    status = WriteStandardOutput(list.str());
  } else {
    std::vector<std::string> names = catalog.Select(options.fClassNames, options.fExcludedClasses);
    if (loader.fRunning.empty())
      throw TSetUpError("no plugin could be loaded");
    bool progress = isatty(STDERR_FILENO);
    std::list<boost::shared_ptr<IPlugin>> watched;
    for (const TLoaded& plugin : loader.fRunning)
      watched.push_back(boost::make_shared<TWatchedPlugin>(plugin, report, progress));
    TCollectionOutcome outcome;
    TClock::time_point start = TClock::now();
    {
      TWatchedList swap(watched);
      TQueryManager::GetInstance()->RunQuery(&schema, names);
    }
    outcome.fMilliseconds = Milliseconds(start);
    status = write(schema, outcome);
  }
  report.Send(TReport::kWritten, std::to_string(status));
  session.EndPlugins([&](IPlugin& plugin, bool entering) {
    if (!entering)
      return report.Send(TReport::kLeft);
    for (const TLoaded& loaded : loader.fLoaded)
      if (loaded.fPlugin == &plugin)
        return report.Send(TReport::kEnding, loaded.fName, loaded.fPath);
  });
  return status;
}

} // namespace zelcollect
