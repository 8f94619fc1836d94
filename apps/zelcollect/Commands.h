// zelcollect's commands, one file each; main() picks one by the first argument.
#ifndef ZELCOLLECT_COMMANDS_H
#define ZELCOLLECT_COMMANDS_H

#include <string>

namespace zelcollect {

struct TOptions;

typedef int (*TCommand)(const TOptions& options);

/// The command of that name ("collect", "diff", ...); null when there is none.
TCommand FindCommand(const std::string& name);

/// Collects this machine, prints the inventory and writes the result file.
int RunCollect(const TOptions& options);

/// Uploads a result file written earlier.
int RunUpload(const TOptions& options);

} // namespace zelcollect

#endif
