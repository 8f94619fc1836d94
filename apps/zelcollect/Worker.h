// The worker process of a collection: it loads the schema and the plugins and runs the
// query manager, telling its supervisor before each call into a plugin which plugin it
// enters, so that a crash or a hang can be put down to that plugin.
#ifndef ZELCOLLECT_WORKER_H
#define ZELCOLLECT_WORKER_H

#include "PluginSafety.h"

#include <chrono>
#include <functional>
#include <set>
#include <string>
#include <vector>

class TContainer;

namespace zelcollect {

struct TOptions;

typedef std::chrono::steady_clock TClock;

/// The time since a moment, in milliseconds.
double Milliseconds(TClock::time_point since);

/// What a collection came to, for the result writer.
struct TCollectionOutcome {
  double fMilliseconds = 0; ///< the query manager's run
};

/// Prints and writes the collected schema, in the worker; returns kExitOK or kExitTrouble.
typedef std::function<int(TContainer& schema, const TCollectionOutcome& outcome)> TResultWriter;

/// What a worker loads, and what earlier workers found it must leave out.
struct TPlan {
  std::vector<TPluginLibrary> fLibraries;   ///< found safe to load
  std::vector<std::string> fSchemaFiles;    ///< the -s documents found safe
  std::set<std::string> fSkippedLibraries;  ///< by path: crashed or hung while loading
  std::set<std::string> fSkippedPlugins;    ///< PluginKey(): crashed or hung in a later call
};

std::string PluginKey(const std::string& name, const std::string& path);

/// The worker's side of the pipe to the supervisor: one line per event, tab-separated,
/// written whole (far below PIPE_BUF).
class TReport {
public:
  enum EKind : char {
    kLoading = 'L',    ///< PATH: a library is loaded and its plugins initialised
    kCollecting = 'C', ///< NAME PATH: GetData
    kEnding = 'E',     ///< NAME PATH: DeInit and PrepareForUnload
    kLeft = '-',       ///< back in the collector's code
    kFailure = 'F',    ///< TEXT: a failure to report
    kWritten = 'W',    ///< STATUS: the results are written; nothing is to be redone
  };

  explicit TReport(int fd) : fFd(fd) {}
  void Send(EKind kind, const std::string& first = "", const std::string& second = "");

private:
  int fFd;
};

/// Runs one worker to its end and returns its exit status. The log goes to
/// logDestination when not empty.
int RunWorker(const TOptions& options, const TPlan& plan, TReport& report,
              const std::string& logDestination, const TResultWriter& write);

} // namespace zelcollect

#endif
