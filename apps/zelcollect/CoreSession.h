// The core's singletons for one command, and where the bundled schema and plugins are.
#ifndef ZELCOLLECT_CORESESSION_H
#define ZELCOLLECT_CORESESSION_H

#include <filesystem>
#include <string>
#include <vector>

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
  ~TCoreSession();
  TCoreSession(const TCoreSession&) = delete;
  TCoreSession& operator=(const TCoreSession&) = delete;

  /// The plugin manager's schema container, where collections run.
  TContainer& GetSchema() const;
};

/// Loads the schema documents of a directory (in name order), then the extra ones.
void LoadSchema(TContainer& schema, const std::filesystem::path& directory,
                const std::vector<std::string>& extra);

} // namespace zelcollect

#endif
