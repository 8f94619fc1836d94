// zelcollect's commands, one file each; main() picks one by the first argument.
#ifndef ZELCOLLECT_COMMANDS_H
#define ZELCOLLECT_COMMANDS_H

#include <ostream>
#include <string>

class TContainer;

namespace zelcollect {

struct TOptions;

typedef int (*TCommand)(const TOptions& options);

/// The command of that name ("collect", "diff", ...); null when there is none.
TCommand FindCommand(const std::string& name);

/// Collects this machine, prints the inventory and writes the result file.
int RunCollect(const TOptions& options);

/// Uploads a result file written earlier.
int RunUpload(const TOptions& options);

/// Compares two saved inventories; prints the differences.
int RunDiff(const TOptions& options);
/// Prints a saved inventory.
int RunShow(const TOptions& options);
/// Turns result into the difference container against old and prints the differences, in
/// the options' format; kExitFailed when there are some (diff and collect --compare).
int ReportDifferences(const TOptions& options, TContainer& result, TContainer& old,
                      std::ostream& out);

} // namespace zelcollect

#endif
