// The inventory as JSON for programs: values keep their types, units and mapped texts ride
// along, unknown identity is null.
#include "JsonFormat.h"

#include "Format.h"
#include "Inventory.h"

#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMReference.h"
#include "TCIMValue.h"

#include <cstdio>

namespace zelcollect {

typedef TCIMValue::TCIMType TType;

std::string IsoDateTime(const TCIMDateTime& dateTime) {
  char text[80];
  if (dateTime.IsInterval()) {
    std::snprintf(text, sizeof text, "P%uDT%uH%uM%u.%06uS", dateTime.GetDay(),
                  dateTime.GetHour(), dateTime.GetMinute(), dateTime.GetSecond(),
                  dateTime.GetMicroSeconds());
  } else {
    int offset = dateTime.GetUTCOffset();
    std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u.%06u%c%02d:%02d",
                  dateTime.GetYear(), dateTime.GetMonth(), dateTime.GetDay(),
                  dateTime.GetHour(), dateTime.GetMinute(), dateTime.GetSecond(),
                  dateTime.GetMicroSeconds(), offset < 0 ? '-' : '+', std::abs(offset) / 60,
                  std::abs(offset) % 60);
  }
  return text;
}

static nlohmann::json JsonReference(const TCIMReference& reference) {
  nlohmann::json keys = nlohmann::json::object();
  for (const auto& binding : reference.EnumerateKeyBindings())
    keys[binding.first] = JsonValue(binding.second);
  return {{"class", reference.GetClassName()}, {"keys", keys}, {"path", EscapedPath(reference)}};
}

nlohmann::json JsonValue(const TCIMValue& value) {
  if (value.IsNull())
    return nullptr;
  if (value.IsArray()) {
    nlohmann::json elements = nlohmann::json::array();
    TCIMValue copy(value); // The element view is not const.
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
  case TType::kDateTime:
    return IsoDateTime(static_cast<TCIMDateTime>(value));
  case TType::kReference:
    return JsonReference(static_cast<TCIMReference>(value));
  default: // strings
    return static_cast<std::string>(value);
  }
}

static std::string TypeName(const TCIMValue& declared) {
  TType element = TType::ECIMType(declared.GetType() & ~TType::kArray);
  return element.ToString() + (declared.IsArray() ? "[]" : "");
}

static nlohmann::json OrNull(const std::string& text) {
  return text.empty() ? nlohmann::json(nullptr) : nlohmann::json(text);
}

nlohmann::json JsonProperty(const TCIMProperty& property) {
  TCIMValue value = property.GetValue();
  nlohmann::json entry = {{"type", TypeName(property.GetDeclaration().GetValue())},
                          {"value", JsonValue(value)},
                          {"unit", OrNull(UnitOf(property))},
                          {"display", DisplayText(property)}};
  if (HasValueMap(property))
    entry["mapped"] = value.IsNull() ? nlohmann::json(nullptr) : nlohmann::json(property.ToString());
  return entry;
}

nlohmann::json JsonDocument(const TInventory& inventory, const TPresentation& how) {
  nlohmann::json identity = nlohmann::json::object();
  for (const TIdentityField& field : inventory.GetIdentity())
    identity[field.fKey] = field.fValue ? nlohmann::json(*field.fValue) : nlohmann::json(nullptr);
  nlohmann::json classes = nlohmann::json::array();
  for (TCIMClass* cls : inventory.GetClasses()) {
    nlohmann::json instances = nlohmann::json::array();
    for (TCIMInstance* instance : cls->EnumerateInstances(false)) {
      TCIMReference path = instance->BuildPath();
      nlohmann::json keys = nlohmann::json::object();
      for (const auto& binding : path.EnumerateKeyBindings())
        keys[binding.first] = JsonValue(binding.second);
      nlohmann::json properties = nlohmann::json::object();
      for (const TCIMProperty* property : instance->EnumerateProperties())
        properties[property->GetName()] = JsonProperty(*property);
      instances.push_back(
          {{"path", EscapedPath(path)}, {"keys", keys}, {"properties", properties}});
    }
    classes.push_back({{"name", cls->GetName()},
                       {"plugin", OrNull(QualifierText(*cls, "PLUGINNAME"))},
                       {"pluginVersion", OrNull(QualifierText(*cls, "PLUGINVERSION"))},
                       {"association", cls->IsAssociation()},
                       {"instanceCount", instances.size()},
                       {"instances", instances}});
  }
  return {{"format", "zelcollect inventory"},
          {"formatVersion", 1},
          {"redacted", how.fRedacted},
          {"collected", JsonValue(inventory.GetCollected())},
          {"identity", identity},
          {"classes", classes}};
}

void WriteJson(std::ostream& out, const TInventory& inventory, const TPresentation& how) {
  out << JsonDocument(inventory, how).dump(1, ' ', false, nlohmann::json::error_handler_t::replace)
      << std::endl;
}

} // namespace zelcollect
