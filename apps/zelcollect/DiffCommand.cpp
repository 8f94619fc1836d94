// zelcollect diff OLD NEW: what was added, removed and changed between two inventories, and
// the same against the inventory just collected (--compare).
#include "Commands.h"

#include "CoreSession.h"
#include "DiffFormat.h"
#include "Difference.h"
#include "Errors.h"
#include "Options.h"
#include "SavedInventory.h"

#include "TContainer.h"

#include <iostream>

namespace zelcollect {

int RunDiff(const TOptions& options) {
  if (options.fArguments.size() != 2)
    throw TUsageError("diff takes two result files, the older first");
  TCoreSession session(options);
  TContainer old, result; // old outlives result: the result's previous values point into it
  ReadSavedInventory(options.fArguments[0], old);
  ReadSavedInventory(options.fArguments[1], result);
  return ReportDifferences(options, result, old);
}

int ReportDifferences(const TOptions& options, TContainer& result, TContainer& old) {
  TDifference difference = CompareInventories(result, old, options.fAll);
  WriteDifference(std::cout, options.fFormat, difference);
  std::cout.flush();
  return difference.Empty() ? kExitOK : kExitFailed;
}

} // namespace zelcollect
