// TCIMSchemaHelper: reads the examined system's identity from the single instances of the
// computer-system, operating-system, BIOS and product classes.
#include "TCIMSchemaHelper.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TContainer.h"
#include "log/ZelLog.h"

#include <cctype>
#include <cstring>

const std::string TCIMSchemaHelper::kSystemCreationClassName = "KAPLA_ComputerSystem";
const std::string TCIMSchemaHelper::kOperatingSystemCreationClassName = "KAPLA_OperatingSystem";

static const char kBIOSClassName[] = "KAPLA_SystemBIOSElement";
static const char kProductClassName[] = "KAPLA_VOKProduct";
static const char kUnknownModel[] = "xxx";

// Names that predate the "-[MTM]-" convention.
static const struct {
  const char* fProductName;
  const char* fMTM;
} kLegacyProducts[] = {
    {"Corvane 3100    ", "4410xxx"}, // Can no longer match once blanks are cut; kept as is.
    {"Corvane 3100", "4410xxx"},
    {"Corvane 3100 M10", "4411xxx"},
    {"Corvane 3000    ", "4409xxx"}, // Same as above.
    {"Corvane 3000", "4409xxx"},
    {"Corvane 4000 M10", "4430xxx"},
    {"Corvane 3100 M20", "4412xxx"},
};

// The one product whose name ends "-[MTM]" without the closing dash.
static const char kUnclosedProductPrefix[] = "Corvane 4400 M20-[";
static_assert(sizeof kUnclosedProductPrefix - 1 == 18, "the prefix is 18 characters");

// zelStatusNotFound, after the debug line when there is one.
[[noreturn]] static void NotFound(std::string const& text) {
  if (!text.empty())
    ZelFail(zelStatusNotFound, text, zelLogDebug);
  throw TZELException(zelStatusNotFound);
}

// The single instance of a class, including its subclasses' instances; the texts, when
// given, are logged for a missing class and for another count of instances.
static TCIMInstance& SingleInstance(TContainer* container, std::string const& className,
                                    const char* noClass = "", const char* notOne = "") {
  TCIMClass* cls = container->FindClass(className);
  if (!cls)
    NotFound(noClass);
  std::vector<TCIMInstance*> instances = cls->EnumerateInstances(true);
  if (instances.size() != 1)
    NotFound(notOne);
  return *instances.front();
}

// The property's value; a missing property is not checked for.
static TCIMValue PropertyValue(TContainer* container, std::string const& className,
                               std::string const& property) {
  return SingleInstance(container, className).FindProperty(property)->GetValue();
}

// A string property of the computer system, each missing piece logged at debug.
static std::string ComputerSystemString(TContainer* container, std::string const& property) {
  TCIMProperty* found =
      SingleInstance(container, TCIMSchemaHelper::kSystemCreationClassName,
                     "TCIMSchemaHelper: no computer system",
                     "TCIMSchemaHelper: computer system instances != 1")
          .FindProperty(property);
  if (!found)
    NotFound("TCIMSchemaHelper: didn't find " + property + " property");
  TCIMValue value = found->GetValue();
  if (value.IsNull())
    NotFound("TCIMSchemaHelper: " + property + " is NULL");
  if (value.GetType() != TCIMValue::TCIMType::kString)
    NotFound("TCIMSchemaHelper: " + property + " wasn't a string");
  return value;
}

// A dot's position in the data source's version; a version without one is not found.
static std::string::size_type VersionDot(std::string::size_type position) {
  if (position == std::string::npos)
    throw TZELException(zelStatusNotFound);
  return position;
}

static std::string WithoutTrailingBlanks(std::string const& text) {
  std::string::size_type last = text.find_last_not_of(' ');
  return last == std::string::npos ? std::string() : text.substr(0, last + 1);
}

static bool AllAlphanumeric(std::string const& text, std::string::size_type from,
                            std::string::size_type count) {
  for (std::string::size_type i = from; i < from + count; ++i)
    if (!std::isalnum(static_cast<unsigned char>(text[i])))
      return false;
  return true;
}

// The MTM form of a product name, or empty when it has none. Legacy and unclosed names
// are final; the others still get the blank-model rule.
static std::string MTMFromProductName(std::string const& s, bool& final) {
  final = true;
  for (auto const& legacy : kLegacyProducts)
    if (s == legacy.fProductName)
      return legacy.fMTM;
  if (s.size() == 26 && s.compare(0, 18, kUnclosedProductPrefix) == 0 && s[25] == ']' &&
      TCIMSchemaHelper::IsValidMTM(s.substr(18, 7)))
    return s.substr(18, 7);

  final = false;
  std::string::size_type p = s.find("-[");
  if (p == std::string::npos)
    return s.size() == 7 && TCIMSchemaHelper::IsValidMTM(s) ? s : std::string();
  if (s.size() > p + 10 && s[p + 9] == ']' && s[p + 10] == '-' &&
      TCIMSchemaHelper::IsValidMTM(s.substr(p + 2, 7)))
    return s.substr(p + 2, 7);
  if (s.size() > p + 7 && s[p + 6] == ']' && s[p + 7] == '-' &&
      TCIMSchemaHelper::IsValidMachineType(s.substr(p + 2, 4)))
    return s.substr(p + 2, 4) + kUnknownModel;
  return std::string();
}

std::string TCIMSchemaHelper::GetSystemCreationClassName(TContainer*) {
  return kSystemCreationClassName;
}

std::string TCIMSchemaHelper::GetSystemName(TContainer* container) {
  return PropertyValue(container, kSystemCreationClassName, "Name");
}

std::string TCIMSchemaHelper::GetSystemProductName(TContainer* container) {
  return PropertyValue(container, kSystemCreationClassName, "ProductName");
}

std::string TCIMSchemaHelper::GetOperatingSystemCreationClassName(TContainer*) {
  return kOperatingSystemCreationClassName;
}

std::string TCIMSchemaHelper::GetOperatingSystemName(TContainer* container) {
  return PropertyValue(container, kOperatingSystemCreationClassName, "Name");
}

std::string TCIMSchemaHelper::GetOperatingSystemVersion(TContainer* container) {
  return PropertyValue(container, kOperatingSystemCreationClassName, "Version");
}

unsigned short TCIMSchemaHelper::GetOperatingSystemType(TContainer* container) {
  return PropertyValue(container, kOperatingSystemCreationClassName, "OSType");
}

bool TCIMSchemaHelper::IsValidMachineType(const std::string& machineType) {
  return machineType.size() >= 4 && AllAlphanumeric(machineType, 0, 4);
}

bool TCIMSchemaHelper::IsValidMTM(const std::string& mtm) {
  if (mtm.size() < 7 || !IsValidMachineType(mtm))
    return false;
  for (std::string::size_type i = 4; i < 7; ++i)
    if (!std::isalnum(static_cast<unsigned char>(mtm[i])) && mtm[i] != ' ')
      return false;
  return true;
}

std::string TCIMSchemaHelper::GetRawMTMString(TContainer* container) {
  if (TCIMClass* bios = container->FindClass(kBIOSClassName)) {
    std::vector<TCIMInstance*> instances = bios->EnumerateInstances(true);
    if (!instances.empty())
      if (TCIMProperty* mtm = instances.front()->FindProperty("MachineTypeModel"))
        if (!mtm->GetValue().IsNull())
          return mtm->GetValue();
  }
  return ComputerSystemString(container, "ProductName");
}

std::string TCIMSchemaHelper::GetMTM(TContainer* container) {
  std::string s = WithoutTrailingBlanks(GetRawMTMString(container));
  bool final;
  std::string mtm = MTMFromProductName(s, final);
  if (mtm.empty())
    throw TZELException(zelStatusInvalidFormat);
  if (!final && mtm.compare(4, 3, "   ") == 0)
    mtm = mtm.substr(0, 4) + kUnknownModel;
  ZelLog(zelLogDebug, "TCIMSchemaHelper- Detected MTM " + mtm);
  return mtm;
}

std::string TCIMSchemaHelper::GetMachineType(TContainer* container) {
  return GetMTM(container).substr(0, 4);
}

std::string TCIMSchemaHelper::GetModelNumber(TContainer* container) {
  return GetMTM(container).substr(4, 3);
}

std::string TCIMSchemaHelper::GetRawSerialNumberString(TContainer* container) {
  return ComputerSystemString(container, "SerialNumber");
}

std::string TCIMSchemaHelper::GetSerialNumber(TContainer* container) {
  std::string serial = WithoutTrailingBlanks(GetRawSerialNumberString(container));
  if (serial.size() != 7 || !AllAlphanumeric(serial, 0, 7))
    throw TZELException(zelStatusInvalidFormat);
  return serial;
}

std::string TCIMSchemaHelper::GetDataSourceVersion(TContainer* container) {
  return PropertyValue(container, kProductClassName, "Version");
}

std::string TCIMSchemaHelper::GetDataSourceMajorVersion(TContainer* container) {
  std::string version = GetDataSourceVersion(container);
  return version.substr(0, VersionDot(version.find('.')));
}

std::string TCIMSchemaHelper::GetDataSourceMinorVersion(TContainer* container) {
  std::string version = GetDataSourceVersion(container);
  std::string::size_type p = VersionDot(version.find('.'));
  // The second "." is searched from p itself and so found at p: the length is p + 1, on
  // purpose ("1.23.456" gives "23", "2.1.0" gives "1.").
  return version.substr(p + 1, p + 1);
}

std::string TCIMSchemaHelper::GetDataSourceBuildVersion(TContainer* container) {
  std::string version = GetDataSourceVersion(container);
  return version.substr(VersionDot(version.rfind('.')) + 1);
}
