// The inventory as text for people: one block per class, then the system's identity.
#include "Format.h"
#include "Inventory.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMReference.h"

#include <algorithm>

namespace zelcollect {

static std::string Plural(size_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void WriteText(std::ostream& out, const TInventory& inventory) {
  for (TCIMClass* cls : inventory.GetClasses()) {
    std::vector<TCIMInstance*> instances = cls->EnumerateInstances(false);
    out << cls->GetName() << "  (" << Plural(instances.size(), "instance");
    std::string plugin = QualifierText(*cls, "PLUGINNAME");
    if (!plugin.empty())
      out << ", plugin " << plugin << " " << QualifierText(*cls, "PLUGINVERSION");
    out << ")\n";
    for (TCIMInstance* instance : instances) {
      out << "  " << instance->BuildPath().GetPath() << "\n";
      std::vector<const TCIMProperty*> properties = instance->EnumerateProperties();
      size_t width = 0;
      for (const TCIMProperty* property : properties)
        width = std::max(width, property->GetName().size());
      for (const TCIMProperty* property : properties) {
        std::string name = property->GetName();
        out << "    " << name << std::string(width - name.size() + 2, ' ')
            << DisplayText(*property) << "\n";
      }
    }
    out << "\n";
  }
  const TIdentity& identity = inventory.GetIdentity();
  const std::pair<const char*, const std::string*> kLines[] = {
      {"Name", &identity.fName},
      {"Machine type and model", &identity.fMachineTypeModel},
      {"Serial number", &identity.fSerialNumber},
      {"Operating system", &identity.fOperatingSystem},
      {"Version", &identity.fOperatingSystemVersion},
      {"Type", &identity.fOperatingSystemType},
      {"Data source version", &identity.fDataSourceVersion}};
  out << "System identity\n";
  for (const auto& line : kLines)
    out << "  " << line.first << std::string(24 - std::string(line.first).size(), ' ')
        << *line.second << "\n";
}

} // namespace zelcollect
