// zelcollect show FILE: prints a saved inventory in any output format, as a collection
// prints the inventory it has just made.
#include "Commands.h"

#include "CoreSession.h"
#include "Errors.h"
#include "Format.h"
#include "Inventory.h"
#include "Options.h"
#include "SavedInventory.h"

#include "TContainer.h"

#include <iostream>

namespace zelcollect {

int RunShow(const TOptions& options) {
  if (options.fArguments.size() != 1)
    throw TUsageError("show takes one result file");
  TCoreSession session(options);
  TContainer container;
  ReadSavedInventory(options.fArguments[0], container);
  TInventory inventory(container);
  WriteInventory(std::cout, options.fFormat, inventory);
  return kExitOK;
}

} // namespace zelcollect
