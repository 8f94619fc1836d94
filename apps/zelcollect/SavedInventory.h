// A result file read back as an inventory, for the commands that read saved ones.
#ifndef ZELCOLLECT_SAVEDINVENTORY_H
#define ZELCOLLECT_SAVEDINVENTORY_H

#include <string>

class TContainer;

namespace zelcollect {

/// Reads a result file into the container; throws TSetUpError when it cannot be read or
/// holds no instance (a schema or another document, not an inventory).
void ReadSavedInventory(const std::string& path, TContainer& container);

} // namespace zelcollect

#endif
