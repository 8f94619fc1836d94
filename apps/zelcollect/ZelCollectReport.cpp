// The inventory as text and as JSON, both from the collected container.
#include "ZelCollectReport.h"

#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMReference.h"
#include "TCIMSchemaHelper.h"
#include "TCIMValue.h"
#include "TContainer.h"
#include "TZELException.h"

#include <algorithm>
#include <functional>

typedef TCIMValue::TCIMType T;

static const char kUnknown[] = "unknown";

// An identity getter's answer, or "unknown" when the data do not have it.
static std::string Ask(const std::function<std::string()>& getter) {
  try {
    std::string text = getter();
    return text.empty() ? kUnknown : text;
  } catch (TZELException&) {
    return kUnknown;
  }
}

// The displayed value of a property of the single instance of a class.
static std::string Displayed(TContainer& container, const std::string& cls,
                             const std::string& property) {
  return Ask([&] {
    TCIMClass* found = container.FindClass(cls);
    std::vector<TCIMInstance*> instances =
        found ? found->EnumerateInstances(true) : std::vector<TCIMInstance*>();
    if (instances.size() != 1)
      throw TZELException(zelStatusNotFound);
    return instances[0]->GetProperty(property).ToString();
  });
}

ZelIdentity ZelReadIdentity(TContainer& container) {
  TContainer* c = &container;
  ZelIdentity identity;
  identity.fName = Ask([&] { return TCIMSchemaHelper::GetSystemName(c); });
  identity.fMachineTypeModel = Ask([&] { return TCIMSchemaHelper::GetMTM(c); });
  identity.fSerialNumber = Ask([&] { return TCIMSchemaHelper::GetSerialNumber(c); });
  if (identity.fSerialNumber == kUnknown) // Not the 7-character form: show it as it is.
    identity.fSerialNumber = Displayed(container, "KAPLA_ComputerSystem", "SerialNumber");
  identity.fOperatingSystem = Ask([&] { return TCIMSchemaHelper::GetOperatingSystemName(c); });
  identity.fOperatingSystemVersion =
      Ask([&] { return TCIMSchemaHelper::GetOperatingSystemVersion(c); });
  identity.fOperatingSystemType = Displayed(container, "KAPLA_OperatingSystem", "OSType");
  identity.fDataSourceVersion = Ask([&] { return TCIMSchemaHelper::GetDataSourceVersion(c); });
  return identity;
}

static std::string QualifierText(const TCIMClass& cls, const char* name) {
  TCIMQualifier* qualifier = cls.FindQualifier(name);
  if (!qualifier || qualifier->GetValue().IsNull())
    return "";
  return static_cast<std::string>(qualifier->GetValue());
}

// The library's display text; date-times as people read them rather than in CIM form. The
// library shows a unit only where it scales the number (Bytes, Bits ...): any other unit
// (MegaHertz, DegreesCelsius) follows the bare number here, so that no quantity reads unitless.
static std::string DisplayText(const TCIMProperty& property) {
  TCIMValue value = property.GetValue();
  if (value.IsNull())
    return property.ToString();
  if (value.GetType() == T::kDateTime)
    return static_cast<TCIMDateTime>(value).ToUIString();
  std::string text = property.ToString();
  TCIMQualifier* units = property.GetDeclaration().FindQualifier("UNITS");
  if (units && !units->GetValue().IsNull() && !value.IsArray() && text == value.ToString(10))
    text += " " + static_cast<std::string>(units->GetValue());
  return text;
}

static std::string Plural(size_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void ZelPrintText(std::ostream& out, const std::vector<TCIMClass*>& classes,
                  const ZelIdentity& identity) {
  for (TCIMClass* cls : classes) {
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

// A value with its JSON type: numbers, booleans, strings, null, arrays; date-times as their
// CIM text, references as their path.
static nlohmann::json JSONOf(const TCIMValue& value) {
  if (value.IsNull())
    return nullptr;
  if (value.IsArray()) {
    nlohmann::json elements = nlohmann::json::array();
    TCIMValue copy(value);
    for (const TCIMValue& element : static_cast<std::vector<TCIMValue>&>(copy))
      elements.push_back(JSONOf(element));
    return elements;
  }
  switch (static_cast<T::ECIMType>(value.GetType())) {
  case T::kBoolean:
    return static_cast<bool>(value);
  case T::kUint8:
  case T::kUint16:
  case T::kUint32:
  case T::kUint64:
    return std::stoull(value.ToString(10));
  case T::kSint8:
  case T::kSint16:
  case T::kSint32:
  case T::kSint64:
    return std::stoll(value.ToString(10));
  case T::kReal32:
    return static_cast<float>(value);
  case T::kReal64:
    return static_cast<double>(value);
  default: // strings, date-times, references
    return value.ToString(10);
  }
}

nlohmann::json ZelReportJSON(const std::vector<TCIMClass*>& classes, const ZelIdentity& identity) {
  nlohmann::json report;
  report["classes"] = nlohmann::json::array();
  for (TCIMClass* cls : classes) {
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
        item["properties"][property->GetName()] = JSONOf(property->GetValue());
        item["display"][property->GetName()] = DisplayText(*property);
      }
      entry["instances"].push_back(item);
    }
    report["classes"].push_back(entry);
  }
  report["identity"] = {{"name", identity.fName},
                        {"machineTypeModel", identity.fMachineTypeModel},
                        {"serialNumber", identity.fSerialNumber},
                        {"operatingSystem", identity.fOperatingSystem},
                        {"operatingSystemVersion", identity.fOperatingSystemVersion},
                        {"operatingSystemType", identity.fOperatingSystemType},
                        {"dataSourceVersion", identity.fDataSourceVersion}};
  return report;
}
