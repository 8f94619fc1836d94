// The inventory's order, identity and summary, and the display helpers that every format
// shares.
#include "Inventory.h"

#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMReference.h"
#include "TCIMSchemaHelper.h"
#include "TCIMValue.h"
#include "TCIMXMLWriter.h"
#include "TContainer.h"
#include "TZELException.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>

namespace zelcollect {

typedef TCIMValue::TCIMType TType;

const char kNullText[] = "-";

// Where a class stands in the machine: system, processors, memory, disks and file systems,
// network, devices, software. Classes not listed come after, by name.
static const char* const kClassOrder[] = {
    "KAPLA_ComputerSystem",   "KAPLA_SystemBIOSElement", "KAPLA_OperatingSystem",
    "KAPLA_Processor",        "KAPLA_Memory",            "KAPLA_PhysicalMemory",
    "KAPLA_DiskDrive",        "KAPLA_DiskPartition",     "KAPLA_FileSystem",
    "KAPLA_NetworkAdapter",   "KAPLA_IPProtocolEndpoint", "KAPLA_PCIDevice",
    "KAPLA_USBDevice",        "KAPLA_VideoController",   "KAPLA_NumericSensor",
    "KAPLA_KernelModule",     "KAPLA_Service",           "KAPLA_Account",
    "KAPLA_SoftwarePackage",  "KAPLA_VOKProduct"};

static size_t Rank(const TCIMClass& cls) {
  const size_t known = sizeof kClassOrder / sizeof *kClassOrder;
  for (size_t i = 0; i < known; ++i)
    if (cls.GetName() == kClassOrder[i])
      return i;
  return cls.IsAssociation() ? known + 1 : known;
}

static std::vector<TCIMClass*> MachineOrder(const TContainer& container) {
  std::vector<TCIMClass*> classes = TCIMXMLWriter::ClassesWithInstances(container);
  std::stable_sort(classes.begin(), classes.end(), [](TCIMClass* a, TCIMClass* b) {
    size_t rankA = Rank(*a), rankB = Rank(*b);
    return rankA != rankB ? rankA < rankB : a->GetName() < b->GetName();
  });
  return classes;
}

static std::vector<TCIMInstance*> InstancesOf(TContainer& container, const std::string& cls) {
  TCIMClass* found = container.FindClass(cls);
  return found ? found->EnumerateInstances(false) : std::vector<TCIMInstance*>();
}

// A property's value as text when it is set; none when NULL or absent.
static std::optional<std::string> Raw(const TCIMInstance& instance, const char* name) {
  TCIMProperty* property = instance.FindProperty(name);
  if (!property || property->GetValue().IsNull())
    return std::nullopt;
  TCIMValue value = property->GetValue();
  if (value.GetType() == TType::kString)
    return static_cast<std::string>(value);
  return DisplayText(*property);
}

TCIMInstance* SingleInstance(TContainer& container, const std::string& cls) {
  std::vector<TCIMInstance*> instances = InstancesOf(container, cls);
  return instances.size() == 1 ? instances[0] : nullptr;
}

// The raw value of a property of the single instance of a class.
static std::optional<std::string> Single(TContainer& container, const std::string& cls,
                                         const char* name, bool display = false) {
  TCIMInstance* instance = SingleInstance(container, cls);
  if (!instance)
    return std::nullopt;
  if (display) {
    TCIMProperty* property = instance->FindProperty(name);
    if (!property || property->GetValue().IsNull())
      return std::nullopt;
    return property->ToString();
  }
  return Raw(*instance, name);
}

// An identity getter's answer; none when the data do not have it.
static std::optional<std::string> Ask(const std::function<std::string()>& getter) {
  try {
    std::string text = getter();
    if (text.empty())
      return std::nullopt;
    return text;
  } catch (TZELException&) {
    return std::nullopt;
  }
}

static std::vector<TIdentityField> ReadIdentity(TContainer& container) {
  TContainer* c = &container;
  const std::string& system = TCIMSchemaHelper::kSystemCreationClassName;
  const std::string& os = TCIMSchemaHelper::kOperatingSystemCreationClassName;
  std::optional<std::string> serial = Ask([&] { return TCIMSchemaHelper::GetSerialNumber(c); });
  if (!serial) // Not the 7-character form: as it is.
    serial = Single(container, system, "SerialNumber");
  return {
      {"name", "Name", Ask([&] { return TCIMSchemaHelper::GetSystemName(c); })},
      {"manufacturer", "Manufacturer", Single(container, system, "Manufacturer")},
      {"product", "Product", Single(container, system, "ProductName")},
      {"machineTypeModel", "Machine type and model",
       Ask([&] { return TCIMSchemaHelper::GetMTM(c); })},
      {"serialNumber", "Serial number", serial},
      {"uuid", "UUID", Single(container, system, "UUID")},
      {"operatingSystem", "Operating system",
       Ask([&] { return TCIMSchemaHelper::GetOperatingSystemName(c); })},
      {"operatingSystemVersion", "Version",
       Ask([&] { return TCIMSchemaHelper::GetOperatingSystemVersion(c); })},
      {"operatingSystemType", "Type",
       Single(container, os, "OSType", /*display=*/true)},
      {"kernel", "Kernel", Single(container, os, "KernelRelease")},
      {"dataSourceVersion", "Data source version",
       Ask([&] { return TCIMSchemaHelper::GetDataSourceVersion(c); })},
  };
}

static std::vector<TCIMValue> EarliestCollection(const std::vector<TCIMClass*>& classes) {
  std::vector<TCIMValue> earliest;
  for (TCIMClass* cls : classes)
    for (TCIMInstance* instance : cls->EnumerateInstances(false)) {
      TCIMProperty* stamp = instance->FindProperty("DateTimeOfCollection");
      if (!stamp || stamp->GetValue().IsNull())
        continue;
      TCIMDateTime when = stamp->GetValue();
      if (earliest.empty() || when < static_cast<TCIMDateTime>(earliest[0]))
        earliest.assign(1, stamp->GetValue());
    }
  return earliest;
}

TInventory::TInventory(TContainer& container)
    : fContainer(container), fClasses(MachineOrder(container)),
      fIdentity(ReadIdentity(container)), fCollected(EarliestCollection(fClasses)) {}

std::optional<std::string> TInventory::Identity(const char* key) const {
  for (const TIdentityField& field : fIdentity)
    if (std::string(field.fKey) == key)
      return field.fValue;
  return std::nullopt;
}

const TCIMValue& TInventory::GetCollected() const {
  static const TCIMValue kNone(TCIMValue::TCIMType(TCIMValue::TCIMType::kDateTime), 0);
  return fCollected.empty() ? kNone : fCollected[0];
}

static std::string Join(const std::vector<std::string>& parts, const char* separator) {
  std::string text;
  for (const std::string& part : parts)
    text += (text.empty() ? "" : separator) + part;
  return text.empty() ? kNullText : text;
}

// The display text of the first of these properties that the instance has set.
static std::string FirstDisplayed(const TCIMInstance& instance,
                                  std::initializer_list<const char*> names) {
  for (const char* name : names) {
    TCIMProperty* property = instance.FindProperty(name);
    if (property && !property->GetValue().IsNull())
      return DisplayText(*property);
  }
  return "";
}

// "title value" for each instance of a class, value from the first of those properties.
static std::vector<std::string> Listed(TContainer& container, const char* cls,
                                       std::initializer_list<const char*> names) {
  std::vector<std::string> parts;
  for (TCIMInstance* instance : InstancesOf(container, cls)) {
    std::string value = FirstDisplayed(*instance, names);
    if (!value.empty())
      parts.push_back(InstanceTitle(*instance) + " " + value);
  }
  return parts;
}

std::vector<TSummaryLine> TInventory::Summary() const {
  std::vector<TSummaryLine> lines;
  for (const TIdentityField& field : fIdentity)
    if (std::string(field.fKey).compare(0, 15, "operatingSystem") != 0 &&
        std::string(field.fKey) != "kernel")
      lines.push_back({field.fLabel, field.fValue.value_or(kNullText)});

  std::vector<std::string> os;
  for (const char* key : {"operatingSystem", "operatingSystemType", "kernel"})
    if (std::optional<std::string> value = Identity(key))
      os.push_back(*value);
  if (std::optional<std::string> arch = Single(fContainer, TCIMSchemaHelper::kOperatingSystemCreationClassName,
                                               "Architecture"))
    os.push_back(*arch);
  lines.push_back({"Operating system", Join(os, ", ")});

  // Processors of one model counted together, in the order first seen.
  std::vector<std::pair<std::string, size_t>> models;
  for (TCIMInstance* processor : InstancesOf(fContainer, "KAPLA_Processor")) {
    std::string model = FirstDisplayed(*processor, {"Name"});
    std::string speed = FirstDisplayed(*processor, {"CurrentClockSpeed", "MaxClockSpeed"});
    if (!speed.empty())
      model += (model.empty() ? "" : ", ") + speed;
    auto same = std::find_if(models.begin(), models.end(),
                             [&](const auto& entry) { return entry.first == model; });
    if (same == models.end())
      models.push_back({model, 1});
    else
      ++same->second;
  }
  std::vector<std::string> processors;
  for (const auto& model : models)
    processors.push_back(std::to_string(model.second) + " x " + model.first);
  lines.push_back({"Processors", Join(processors, "; ")});

  std::vector<std::string> memory = Listed(fContainer, "KAPLA_Memory", {"Capacity"});
  size_t modules = InstancesOf(fContainer, "KAPLA_PhysicalMemory").size();
  if (modules)
    memory.push_back(std::to_string(modules) + (modules == 1 ? " module" : " modules"));
  lines.push_back({"Memory", Join(memory, ", ")});

  lines.push_back(
      {"Disks", Join(Listed(fContainer, "KAPLA_DiskDrive", {"Size", "Capacity", "MaxMediaSize"}),
                     ", ")});
  std::vector<std::string> addresses;
  for (TCIMInstance* endpoint : InstancesOf(fContainer, "KAPLA_IPProtocolEndpoint")) {
    std::string address = FirstDisplayed(*endpoint, {"Address", "IPv4Address", "IPv6Address"});
    if (!address.empty())
      addresses.push_back(address);
  }
  for (const std::string& adapter :
       Listed(fContainer, "KAPLA_NetworkAdapter", {"PermanentAddress"}))
    addresses.push_back(adapter);
  lines.push_back({"Addresses", Join(addresses, ", ")});
  lines.push_back({"Collected", GetCollected().IsNull()
                                    ? std::string(kNullText)
                                    : DateTimeText(static_cast<TCIMDateTime>(GetCollected()))});
  return lines;
}

std::string QualifierText(const TCIMClass& cls, const char* name) {
  TCIMQualifier* qualifier = cls.FindQualifier(name);
  if (!qualifier || qualifier->GetValue().IsNull())
    return "";
  return static_cast<std::string>(qualifier->GetValue());
}

std::string UnitOf(const TCIMProperty& property) {
  TCIMQualifier* units = property.GetDeclaration().FindQualifier("UNITS");
  if (!units || units->GetValue().IsNull() || units->GetValue().GetType() != TType::kString)
    return "";
  return static_cast<std::string>(units->GetValue());
}

bool HasValueMap(const TCIMProperty& property) {
  const TCIMPropertyDecl& decl = property.GetDeclaration();
  return decl.FindQualifier("ValueMap") && decl.FindQualifier("Values");
}

static bool IsNumber(TType type) {
  switch (static_cast<TType::ECIMType>(type)) {
  case TType::kUint8: case TType::kUint16: case TType::kUint32: case TType::kUint64:
  case TType::kSint8: case TType::kSint16: case TType::kSint32: case TType::kSint64:
  case TType::kReal32: case TType::kReal64:
    return true;
  default:
    return false;
  }
}

// Whether the library writes the unit itself: the scaled units and durations.
static bool LibraryShowsUnit(std::string unit) {
  for (const char* prefix : {"Peta", "Tera", "Giga", "Mega", "Kilo", "Milli", "Micro", "Nano"})
    if (unit.compare(0, std::char_traits<char>::length(prefix), prefix) == 0) {
      unit.erase(0, std::char_traits<char>::length(prefix));
      break;
    }
  return unit == "Bytes" || unit == "Bits" || unit == "Bytes per Second" ||
         unit == "Bits per Second" || unit == "Seconds";
}

std::string DateTimeText(const TCIMDateTime& dateTime) {
  if (dateTime.IsNull())
    return kNullText;
  if (dateTime.IsInterval())
    return dateTime.ToUIString();
  int offset = dateTime.GetUTCOffset();
  char text[64];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u %c%02d:%02d",
                dateTime.GetYear(), dateTime.GetMonth(), dateTime.GetDay(), dateTime.GetHour(),
                dateTime.GetMinute(), dateTime.GetSecond(), offset < 0 ? '-' : '+',
                std::abs(offset) / 60, std::abs(offset) % 60);
  return text;
}

std::string DisplayText(const TCIMProperty& property, bool previous) {
  TCIMValue value = previous ? property.GetPrevValue() : property.GetValue();
  if (value.IsNull())
    return kNullText;
  if (value.GetType() == TType::kDateTime)
    return DateTimeText(static_cast<TCIMDateTime>(value));
  if (value.GetType() == TType::kReference)
    return ReferenceText(static_cast<TCIMReference>(value));
  std::string text = previous ? property.PrevToString() : property.ToString();
  std::string unit = UnitOf(property);
  if (!unit.empty() && IsNumber(value.GetType()) && !HasValueMap(property) &&
      !LibraryShowsUnit(unit))
    text += " " + unit;
  return text;
}

bool IsBookkeeping(const std::string& name) {
  static const std::string kCreation = "CreationClassName";
  return name == "DateTimeOfCollection" ||
         (name.size() >= kCreation.size() &&
          name.compare(name.size() - kCreation.size(), kCreation.size(), kCreation) == 0);
}

// The key values of a reference's bindings for people, bookkeeping keys left out.
static std::string KeyTitle(const TCIMReference::TKeyBindings& bindings) {
  std::vector<std::pair<std::string, std::string>> keys;
  for (const auto& binding : bindings) {
    if (IsBookkeeping(binding.first))
      continue;
    const TCIMValue& value = binding.second;
    std::string text = value.IsNull()        ? std::string(kNullText)
                       : value.IsReference() ? ReferenceText(static_cast<TCIMReference>(value))
                       : value.GetType() == TType::kDateTime
                           ? DateTimeText(static_cast<TCIMDateTime>(value))
                           : value.ToString(10);
    keys.push_back({binding.first, text});
  }
  if (keys.size() == 1)
    return keys[0].second;
  std::string title;
  for (const auto& key : keys)
    title += (title.empty() ? "" : ", ") + key.first + " " + key.second;
  return title;
}

std::string ReferenceText(const TCIMReference& reference) {
  std::string keys = KeyTitle(reference.EnumerateKeyBindings());
  return reference.GetClassName() + (keys.empty() ? "" : " " + keys);
}

std::string InstanceTitle(const TCIMInstance& instance) {
  std::string title = KeyTitle(instance.BuildPath().EnumerateKeyBindings());
  return title.empty() ? instance.GetClass().GetName() : title;
}

static std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\')
      quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string EscapedPath(const TCIMReference& reference) {
  std::string path = reference.GetClassName();
  char separator = '.';
  for (const auto& binding : reference.EnumerateKeyBindings()) {
    const TCIMValue& value = binding.second;
    path += separator + binding.first + "=";
    separator = ',';
    if (value.IsNull())
      path += "\"\"";
    else if (value.IsReference())
      path += Quoted(EscapedPath(static_cast<TCIMReference>(value)));
    else if (value.GetType() == TType::kString || value.GetType() == TType::kDateTime)
      path += Quoted(value.ToString(10));
    else if (value.GetType() == TType::kBoolean)
      path += static_cast<bool>(value) ? "true" : "false";
    else
      path += value.ToString(10);
  }
  return path;
}

} // namespace zelcollect
