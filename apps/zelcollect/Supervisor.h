// The supervisor of a collection: it decides which plugins may be loaded, runs the
// collection in a worker process (Worker.h), and when a plugin crashes or exceeds its time
// starts a new worker without it. It reports every failure once.
#ifndef ZELCOLLECT_SUPERVISOR_H
#define ZELCOLLECT_SUPERVISOR_H

#include "Worker.h"

#include <string>
#include <vector>

namespace zelcollect {

struct TOptions;

class TSupervisor {
public:
  explicit TSupervisor(const TOptions& options);
  ~TSupervisor();
  TSupervisor(const TSupervisor&) = delete;
  TSupervisor& operator=(const TSupervisor&) = delete;

  /// Collects (or lists, with --list) in workers until one ends; the last hands the
  /// collection to write. Prints the failures on standard error and returns the exit
  /// status: that of write, or kExitFailed when something failed, or kExitTrouble.
  int Run(const TResultWriter& write);

private:
  struct TCall;
  struct TWorkerEnd;

  TPlan MakePlan();
  void Fail(const std::string& failure);
  TWorkerEnd Watch(int pid, int control);

  const TOptions& fOptions;
  std::vector<std::string> fFailures; ///< in the order found, each once
  int fLogFd = -1;                    ///< where the workers' log lines go; -1 none
};

} // namespace zelcollect

#endif
