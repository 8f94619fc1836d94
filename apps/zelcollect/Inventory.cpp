// The inventory's identity and the display helpers that every format shares.
#include "Inventory.h"

#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMSchemaHelper.h"
#include "TCIMValue.h"
#include "TCIMXMLWriter.h"
#include "TContainer.h"
#include "TZELException.h"

#include <functional>

namespace zelcollect {

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

static TIdentity ReadIdentity(TContainer& container) {
  TContainer* c = &container;
  TIdentity identity;
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

TInventory::TInventory(TContainer& container)
    : fContainer(container), fClasses(TCIMXMLWriter::ClassesWithInstances(container)),
      fIdentity(ReadIdentity(container)) {}

std::string QualifierText(const TCIMClass& cls, const char* name) {
  TCIMQualifier* qualifier = cls.FindQualifier(name);
  if (!qualifier || qualifier->GetValue().IsNull())
    return "";
  return static_cast<std::string>(qualifier->GetValue());
}

// The library shows a unit only where it scales the number (Bytes, Bits ...): any other unit
// (MegaHertz, DegreesCelsius) follows the bare number here, so that no quantity reads unitless.
std::string DisplayText(const TCIMProperty& property) {
  TCIMValue value = property.GetValue();
  if (value.IsNull())
    return property.ToString();
  if (value.GetType() == TCIMValue::TCIMType::kDateTime)
    return static_cast<TCIMDateTime>(value).ToUIString();
  std::string text = property.ToString();
  TCIMQualifier* units = property.GetDeclaration().FindQualifier("UNITS");
  if (units && !units->GetValue().IsNull() && !value.IsArray() && text == value.ToString(10))
    text += " " + static_cast<std::string>(units->GetValue());
  return text;
}

} // namespace zelcollect
