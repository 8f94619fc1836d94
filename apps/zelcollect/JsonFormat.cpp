// The inventory as JSON for programs: values keep their types.
#include "Format.h"
#include "Inventory.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMReference.h"
#include "TCIMValue.h"

#include <nlohmann/json.hpp>

namespace zelcollect {

typedef TCIMValue::TCIMType TType;

// A value with its JSON type: numbers, booleans, strings, null, arrays; date-times as their
// CIM text, references as their path.
nlohmann::json JsonValue(const TCIMValue& value) {
  if (value.IsNull())
    return nullptr;
  if (value.IsArray()) {
    nlohmann::json elements = nlohmann::json::array();
    TCIMValue copy(value);
    for (const TCIMValue& element : static_cast<std::vector<TCIMValue>&>(copy))
      elements.push_back(JsonValue(element));
    return elements;
  }
  switch (static_cast<TType::ECIMType>(value.GetType())) {
  case TType::kBoolean:
    return static_cast<bool>(value);
  case TType::kUint8:
  case TType::kUint16:
  case TType::kUint32:
  case TType::kUint64:
    return std::stoull(value.ToString(10));
  case TType::kSint8:
  case TType::kSint16:
  case TType::kSint32:
  case TType::kSint64:
    return std::stoll(value.ToString(10));
  case TType::kReal32:
    return static_cast<float>(value);
  case TType::kReal64:
    return static_cast<double>(value);
  default: // strings, date-times, references
    return value.ToString(10);
  }
}

void WriteJson(std::ostream& out, const TInventory& inventory) {
  nlohmann::json report;
  report["classes"] = nlohmann::json::array();
  for (TCIMClass* cls : inventory.GetClasses()) {
    nlohmann::json entry;
    entry["name"] = cls->GetName();
    entry["plugin"] = QualifierText(*cls, "PLUGINNAME");
    entry["version"] = QualifierText(*cls, "PLUGINVERSION");
    entry["instances"] = nlohmann::json::array();
    for (TCIMInstance* instance : cls->EnumerateInstances(false)) {
      nlohmann::json item;
      item["path"] = instance->BuildPath().GetPath();
      item["properties"] = nlohmann::json::object();
      item["display"] = nlohmann::json::object();
      for (const TCIMProperty* property : instance->EnumerateProperties()) {
        item["properties"][property->GetName()] = JsonValue(property->GetValue());
        item["display"][property->GetName()] = DisplayText(*property);
      }
      entry["instances"].push_back(item);
    }
    report["classes"].push_back(entry);
  }
  const TIdentity& identity = inventory.GetIdentity();
  report["identity"] = {{"name", identity.fName},
                        {"machineTypeModel", identity.fMachineTypeModel},
                        {"serialNumber", identity.fSerialNumber},
                        {"operatingSystem", identity.fOperatingSystem},
                        {"operatingSystemVersion", identity.fOperatingSystemVersion},
                        {"operatingSystemType", identity.fOperatingSystemType},
                        {"dataSourceVersion", identity.fDataSourceVersion}};
  out << report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
}

} // namespace zelcollect
