// The core's singletons for one command, and where the bundled schema and plugins are.
#ifndef ZELCOLLECT_CORESESSION_H
#define ZELCOLLECT_CORESESSION_H

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

class IPlugin;
class TContainer;

namespace zelcollect {

struct TOptions;

/// The bundled schema and plugins: beside an installed executable, else in the build tree
/// the executable was built in.
struct TBundle {
  std::filesystem::path fSchemaDir;
  std::filesystem::path fPluginDir;

  static TBundle Find();
};

/// Starts the logger and the managers, as the core expects of its host, with the log file
/// and level of the options; ends the plugins and deletes the managers on the way out,
/// whatever happened.
class TCoreSession {
public:
  explicit TCoreSession(const TOptions& options);
  /// The log goes to logDestination instead of the options' file; nowhere when empty.
  TCoreSession(const TOptions& options, const std::string& logDestination);
  ~TCoreSession();
  TCoreSession(const TCoreSession&) = delete;
  TCoreSession& operator=(const TCoreSession&) = delete;

  /// The plugin manager's schema container, where collections run.
  TContainer& GetSchema() const;

  /// Ends the plugins now rather than on the way out, telling watch before each plugin's
  /// end (true) and after it (false).
  void EndPlugins(const std::function<void(IPlugin& plugin, bool entering)>& watch);

private:
  bool fEnded = false;
};

/// Loads the schema documents of a directory (in name order), then the extra ones; throws
/// TSetUpError "schema document PATH, line N: REASON".
void LoadSchema(TContainer& schema, const std::filesystem::path& directory,
                const std::vector<std::string>& extra);

} // namespace zelcollect

#endif
