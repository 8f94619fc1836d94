// The inventory as CIM-XML: the classes that have instances, then the instances.
#include "Format.h"
#include "Inventory.h"

#include "TCIMXMLWriter.h"

namespace zelcollect {

void WriteXml(std::ostream& out, const TInventory& inventory, const TPresentation&) {
  out << TCIMXMLWriter::Write(inventory.GetContainer(), TCIMXMLWriter::eClassesWithInstances);
}

} // namespace zelcollect
