// cimxml_load_rss FILE: loads a CIM-XML file into a fresh container and prints the file's size,
// the process's peak resident memory and their ratio, then the resident memory once the
// container is destroyed and the heap trimmed, as zelcollect does when it drops one. Run it
// once per file: the peak is the whole process's, from start to the end of the load.
#include "TContainer.h"
#include "TZELException.h"

#include <cstdio>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

// Resident memory now, from /proc/self/statm.
static double ResidentMB() {
  long pages = 0, resident = 0;
  if (FILE* statm = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2)
      resident = 0;
    std::fclose(statm);
  }
  return resident * (sysconf(_SC_PAGESIZE) / 1048576.0);
}

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FILE\n", argv[0]);
    return 2;
  }
  struct stat file;
  if (stat(argv[1], &file) != 0)
    return 1;
  TContainer* container = new TContainer;
  try {
    container->PopulateContainerFromFile(argv[1]);
  } catch (TZELException const& e) {
    std::fprintf(stderr, "load failed: %s\n", e.what());
    return 1;
  }
  struct rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  double fileMB = file.st_size / 1048576.0, peakMB = usage.ru_maxrss / 1024.0;
  delete container;
  malloc_trim(0);
  std::printf("%8.1f MB file  %8.1f MB peak RSS  %5.2fx  %6.1f MB after destroy\n", fileMB,
              peakMB, peakMB / fileMB, ResidentMB());
  return 0;
}
