// The cost of the C collection interface: N instances with M properties each, made by a real
// plugin through zelAddClass and the typed zelAdd...Property functions, against the same
// instances made directly through the object model. Verbose logging stays below the
// threshold, as in a normal run. Prints the ratio of the two at the end.
#include "IPlugin.h"
#include "IPluginBasicQueryCallbacks.h"
#include "IPluginCallbacks.h"
#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TContainer.h"
#include "TLogger.h"
#include "TPluginManager.h"
#include "TQueryManager.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <unistd.h>

namespace {

const char* const kNames[] = {"P0", "P1", "P2", "P3", "P4", "P5", "P6", "P7", "P8", "P9"};

TCIMClass* gItemClass = 0;
IPluginBasicQueryCallbacks* gPlugin = 0;

void Fail(char const* what) {
  std::fprintf(stderr, "bench_collection: %s\n", what);
  std::exit(1);
}

// Starts the core as a host does and loads the benchmark's plugin.
void StartCore() {
  TLogger::Initialize();
  TPluginManager::Initialize(ZEL_BENCH_PLUGIN_DIR);
  TQueryManager::Initialize();
  if (chdir(ZEL_BENCH_PLUGIN_DIR) != 0)
    Fail("cannot enter the plugin directory");
  TPluginManager* manager = TPluginManager::GetInstance();
  manager->LoadPlugin("./benchcollect/libbenchcollect.pi.so");
  IPlugin* plugin = manager->SearchForPluginByName("KAPLA_BenchCollect");
  if (!plugin)
    Fail("the plugin did not load");
  gPlugin = dynamic_cast<IPluginBasicQueryCallbacks*>(plugin->GetCallbacks());
  gItemClass = manager->GetSchema()->GetClass("KAPLA_BenchItem");
}

void ConfigurePlugin(int instances, int properties) {
  typedef void (*TConfigure)(int, int);
  TConfigure configure = reinterpret_cast<TConfigure>(dlsym(RTLD_DEFAULT, "zelBenchConfigure"));
  if (!configure)
    Fail("the plugin has no zelBenchConfigure");
  configure(instances, properties);
}

void RemoveInstances() {
  std::vector<TCIMInstance*> instances = gItemClass->EnumerateInstances(false);
  for (TCIMInstance* instance : instances)
    gItemClass->RemoveInstance(*instance);
}

void Count(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["property_sets_per_second"] =
      benchmark::Counter(static_cast<double>(state.iterations() * state.range(0) *
                                             (state.range(1) + 1)),
                         benchmark::Counter::kIsRate);
}

// The same values as the plugin sets, five types in turn.
TCIMValue PropertyValue(int property, unsigned int i) {
  switch (property % 5) {
  case 0:
    return TCIMValue(i);
  case 1:
    return TCIMValue("a short text value");
  case 2:
    return TCIMValue(-static_cast<long>(i));
  case 3:
    return TCIMValue((i & 1) != 0);
  default:
    return TCIMValue(static_cast<unsigned short>(i));
  }
}

void BM_CInterface(benchmark::State& state) {
  ConfigurePlugin(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  std::vector<TCIMClass*> classes(1, gItemClass);
  TContainer* schema = TPluginManager::GetInstance()->GetSchema();
  for (auto _ : state) {
    gPlugin->GetData(schema, classes);
    state.PauseTiming();
    RemoveInstances();
    state.ResumeTiming();
  }
  Count(state);
}

void BM_ObjectModel(benchmark::State& state) {
  int instances = static_cast<int>(state.range(0));
  int properties = static_cast<int>(state.range(1));
  TContainer* schema = TPluginManager::GetInstance()->GetSchema();
  for (auto _ : state) {
    for (int i = 0; i < instances; ++i) {
      TCIMInstance* instance = schema->AllocateInstance(schema->GetClass("KAPLA_BenchItem"));
      instance->SetPropertyValue("Id", TCIMValue(static_cast<unsigned int>(i)));
      for (int p = 0; p < properties; ++p)
        instance->SetPropertyValue(kNames[p], PropertyValue(p, i));
      instance->AddToContainer();
    }
    state.PauseTiming();
    RemoveInstances();
    state.ResumeTiming();
  }
  Count(state);
}

BENCHMARK(BM_CInterface)->Args({1000, 10})->Args({1000, 0})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ObjectModel)->Args({1000, 10})->Args({1000, 0})->Unit(benchmark::kMillisecond);

// Keeps each run's time per iteration, to print the ratio of the two ways at the end.
class RatioReporter : public benchmark::ConsoleReporter {
public:
  RatioReporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(std::vector<Run> const& runs) override {
    for (Run const& run : runs)
      if (run.run_type == Run::RT_Iteration)
        fTimes[run.benchmark_name()] = run.GetAdjustedRealTime();
    ConsoleReporter::ReportRuns(runs);
  }

  void PrintRatios() {
    for (char const* args : {"/1000/10", "/1000/0"}) {
      double c = fTimes[std::string("BM_CInterface") + args];
      double model = fTimes[std::string("BM_ObjectModel") + args];
      if (c > 0 && model > 0)
        std::printf("C interface / object model%s: %.3f\n", args, c / model);
    }
  }

private:
  std::map<std::string, double> fTimes;
};

} // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  StartCore();
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios();
  benchmark::Shutdown();
  return 0;
}
