// An inventory as the formats read it: the container of a collection (or of a result file
// read back), its classes with instances, and the system's identity.
#ifndef ZELCOLLECT_INVENTORY_H
#define ZELCOLLECT_INVENTORY_H

#include <string>
#include <vector>

class TCIMClass;
class TCIMProperty;
class TContainer;

namespace zelcollect {

/// The identity of the examined system; "unknown" where the data do not tell.
struct TIdentity {
  std::string fName;
  std::string fMachineTypeModel;
  std::string fSerialNumber;
  std::string fOperatingSystem;
  std::string fOperatingSystemVersion;
  std::string fOperatingSystemType;
  std::string fDataSourceVersion;
};

class TInventory {
public:
  explicit TInventory(TContainer& container);

  TContainer& GetContainer() const { return fContainer; }
  /// The classes that have instances, in the writer's order.
  const std::vector<TCIMClass*>& GetClasses() const { return fClasses; }
  const TIdentity& GetIdentity() const { return fIdentity; }

private:
  TContainer& fContainer;
  std::vector<TCIMClass*> fClasses;
  TIdentity fIdentity;
};

/// A class qualifier's string value; "" when absent or NULL.
std::string QualifierText(const TCIMClass& cls, const char* name);

/// The library's display text of a property; date-times as people read them.
std::string DisplayText(const TCIMProperty& property);

} // namespace zelcollect

#endif
