// zelcollect diff OLD NEW: what was added, removed and changed between two inventories, and
// the same against the inventory just collected (--compare).
#include "Commands.h"

#include "CoreSession.h"
#include "DiffFormat.h"
#include "Difference.h"
#include "Errors.h"
#include "Options.h"
#include "ResultFile.h"
#include "SavedInventory.h"

#include "TContainer.h"

#include <algorithm>
#include <iostream>
#include <sstream>

namespace zelcollect {

int RunDiff(const TOptions& options) {
  if (options.fArguments.size() != 2)
    throw TUsageError("diff takes two result files, the older first");
  TCoreSession session(options);
  TContainer old, result; // old outlives result: the result's previous values point into it
  ReadSavedInventory(options.fArguments[0], old);
  ReadSavedInventory(options.fArguments[1], result);
  std::ostringstream printed;
  int status = ReportDifferences(options, result, old, printed);
  return std::max(status, WriteStandardOutput(printed.str()));
}

int ReportDifferences(const TOptions& options, TContainer& result, TContainer& old,
                      std::ostream& out) {
  TDifference difference = CompareInventories(result, old, options.fAll);
  WriteDifference(out, options.fFormat, difference);
  return difference.Empty() ? kExitOK : kExitFailed;
}

} // namespace zelcollect
