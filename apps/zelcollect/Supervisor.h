// The one place where plugins are loaded and a collection runs; it learns which plugins
// failed and why.
#ifndef ZELCOLLECT_SUPERVISOR_H
#define ZELCOLLECT_SUPERVISOR_H

#include <filesystem>
#include <string>
#include <vector>

class TContainer;

namespace zelcollect {

struct TOptions;

/// What a collection came to: one line per failure, for standard error.
struct TCollectionOutcome {
  std::vector<std::string> fFailures;
  double fMilliseconds = 0;
};

class TSupervisor {
public:
  explicit TSupervisor(const TOptions& options);

  /// Loads the plugins of the directory into the plugin manager and collects into the
  /// schema container, both passes. Progress lines go to standard error when asked.
  TCollectionOutcome Run(TContainer& schema, const std::filesystem::path& pluginDir);

private:
  const TOptions& fOptions;
  bool fProgress;
};

} // namespace zelcollect

#endif
