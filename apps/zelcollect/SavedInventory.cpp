// Reading saved inventories.
#include "SavedInventory.h"

#include "Errors.h"
#include "ResultFile.h"

#include "TCIMXMLWriter.h"
#include "TContainer.h"

namespace zelcollect {

void ReadSavedInventory(const std::string& path, TContainer& container) {
  ReadResultFile(path, container);
  if (TCIMXMLWriter::ClassesWithInstances(container).empty())
    throw TSetUpError(path + " is not an inventory: it holds no instances");
}

} // namespace zelcollect
