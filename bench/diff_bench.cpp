// diff_bench: the comparison of two inventories against the load of both.
//   diff_bench prepare BYTES OLD NEW  writes a generated document and a copy of it with 1% of
//                                     its instances' properties changed (keys excepted)
//   diff_bench run OLD NEW [load]     loads both into containers and, unless "load" is given,
//                                     compares them; prints one line of times and memory
// bench/run_diff.sh runs it and takes the medians.
#include "CimXmlGenerator.h"
#include "Difference.h"

#include "TContainer.h"
#include "TLogger.h"
#include "TZELException.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

typedef std::chrono::steady_clock TClock;

static double Milliseconds(TClock::time_point since) {
  return std::chrono::duration<double, std::milli>(TClock::now() - since).count();
}

// A field of /proc/self/status in kB ("VmHWM", "VmRSS").
static long StatusKB(const char* field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  size_t length = std::strlen(field);
  while (std::getline(status, line))
    if (line.compare(0, length, field) == 0 && line[length] == ':')
      return std::atol(line.c_str() + length + 1);
  return -1;
}

// The peak so far is forgotten: the next VmHWM is the peak from here on.
static void ResetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

// Every hundredth property of the instances gets another first character in its value:
// the next digit, or a letter of the other case.
static std::string ChangeOnePercent(std::string document, size_t& changed) {
  size_t at = document.find("<DECLGROUP.WITHNAME>");
  size_t count = 0;
  changed = 0;
  while ((at = document.find("<PROPERTY", at + 1)) != std::string::npos) {
    if (++count % 100 != 0 || document.compare(at, 25, "<PROPERTY NAME=\"DeviceID\"") == 0)
      continue;
    size_t value = document.find("<VALUE>", at) + 7;
    char& c = document[value];
    c = c >= '0' && c <= '8' ? c + 1 : c == '9' ? '1' : c ^ 0x20;
    ++changed;
  }
  return document;
}

static int Prepare(size_t bytes, const char* oldPath, const char* newPath) {
  std::string document = ZelGenerateCimXml(bytes);
  size_t changed = 0;
  std::ofstream(oldPath, std::ios::binary) << document;
  std::ofstream(newPath, std::ios::binary) << ChangeOnePercent(document, changed);
  size_t instances = 0;
  for (size_t at = 0; (at = document.find("<INSTANCE ", at + 1)) != std::string::npos;)
    ++instances;
  std::printf("%zu bytes, %zu instances, %zu properties changed\n", document.size(), instances,
              changed);
  return 0;
}

static int Run(const char* oldPath, const char* newPath, bool compare) {
  TLogger::Initialize();
  TContainer* old = new TContainer; // not taken down: only the load and the comparison count
  TContainer* result = new TContainer;
  TClock::time_point start = TClock::now();
  try {
    old->PopulateContainerFromFile(oldPath);
    result->PopulateContainerFromFile(newPath);
  } catch (TZELException const& e) {
    std::fprintf(stderr, "load failed: %s\n", e.what());
    return 1;
  }
  double loadMs = Milliseconds(start);
  long heldKB = StatusKB("VmRSS");
  double compareMs = 0;
  size_t changed = 0, instances = 0;
  if (compare) {
    ResetPeak();
    start = TClock::now();
    zelcollect::TDifference difference = zelcollect::CompareInventories(*result, *old, false);
    compareMs = Milliseconds(start);
    changed = difference.fChanged;
    instances = difference.fAdded + difference.fRemoved + difference.fChanged;
  }
  // load ms, compare ms, ratio, RSS holding both (kB), peak since the reset or of the whole
  // run (kB), differing instances, changed instances
  std::printf("%.1f %.1f %.3f %ld %ld %zu %zu\n", loadMs, compareMs, compareMs / loadMs, heldKB,
              StatusKB("VmHWM"), instances, changed);
  return 0;
}

int main(int argc, char** argv) {
  if (argc == 5 && std::strcmp(argv[1], "prepare") == 0)
    return Prepare(std::strtoul(argv[2], nullptr, 10), argv[3], argv[4]);
  bool load = argc == 5 && std::strcmp(argv[4], "load") == 0;
  if ((argc == 4 || load) && std::strcmp(argv[1], "run") == 0)
    return Run(argv[2], argv[3], !load);
  std::fprintf(stderr, "usage: %s prepare BYTES OLD NEW | run OLD NEW [load]\n", argv[0]);
  return 2;
}
