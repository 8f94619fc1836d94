// Schema builders shared by the object-model and container tests.
#ifndef SCHEMAHELPERS_H
#define SCHEMAHELPERS_H

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TContainer.h"
#include "ZelTest.h"

#include <string>
#include <vector>

typedef TCIMValue::TCIMType TCIMType;

typedef std::vector<std::string> TNames;

inline TCIMQualifierDecl::EFlavor Flavors(unsigned int bits) {
  return static_cast<TCIMQualifierDecl::EFlavor>(bits);
}

inline TCIMQualifierDecl& Declare(TContainer& container, const std::string& name,
                                  const TCIMValue& value, unsigned int flavor) {
  TCIMQualifierDecl* decl =
      container.AllocateQualifierDecl(name, value, TCIMQualifierDecl::eClass, Flavors(flavor));
  decl->AddToContainer();
  return *decl;
}

/// KEY and ASSOCIATION are inherited, ABSTRACT is not, OVERRIDE marks a redeclaration;
/// Description is overridable and inherited.
inline void DeclareStandardQualifiers(TContainer& container) {
  Declare(container, "KEY", TCIMValue(false), TCIMQualifierDecl::eToSubclass);
  Declare(container, "ASSOCIATION", TCIMValue(false), TCIMQualifierDecl::eToSubclass);
  Declare(container, "ABSTRACT", TCIMValue(false), 0);
  Declare(container, "OVERRIDE", TCIMValue(""), 0);
  Declare(container, "Description", TCIMValue(""),
          TCIMQualifierDecl::eOverridable | TCIMQualifierDecl::eToSubclass);
}

/// Attaches a new qualifier with the declaration's flavors; the holder owns it.
inline TCIMQualifier& Qualify(ICIMAllowQualifiers& holder, TContainer& container,
                              const std::string& name, const TCIMValue& value) {
  holder.AddQualifier(*new TCIMQualifier(*container.GetQualifierDecl(name), value));
  return holder.GetQualifier(name);
}

/// Declares a property in cls (which owns it from then on), a key when asked.
inline TCIMPropertyDecl& Property(TCIMClass& cls, const std::string& name,
                                  const TCIMValue& value, bool key = false) {
  TCIMPropertyDecl* decl = new TCIMPropertyDecl(name, cls, value);
  if (key)
    Qualify(*decl, cls.GetContainer(), "KEY", TCIMValue(true));
  decl->AddToContainer();
  return *decl;
}

inline TCIMValue Pointing(TCIMClass& cls) {
  TCIMValue value(TCIMType::kReference, 0);
  value.SetReferencedClass(cls);
  return value;
}

/// A class keyed by a string "Name" (unless inherited), added to the container.
inline TCIMClass& KeyedClass(TContainer& container, const std::string& name,
                             TCIMClass* superclass = 0) {
  TCIMClass& cls = *container.AllocateClass(name, superclass);
  if (!superclass)
    Property(cls, "Name", TCIMValue(TCIMType::kString, 0), true);
  cls.AddToContainer();
  return cls;
}

inline TCIMClass& Association(TContainer& container, const std::string& name,
                              const std::string& leftRole, TCIMClass& left,
                              const std::string& rightRole, TCIMClass& right) {
  TCIMClass& cls = *container.AllocateClass(name, 0);
  Qualify(cls, container, "ASSOCIATION", TCIMValue(true));
  Property(cls, leftRole, Pointing(left), true);
  Property(cls, rightRole, Pointing(right), true);
  cls.AddToContainer();
  return cls;
}

/// An instance of cls keyed by Name, owned by its class.
inline TCIMInstance& NamedInstance(TCIMClass& cls, const std::string& name) {
  TCIMInstance* instance = cls.GetContainer().AllocateInstance(&cls);
  instance->SetPropertyValue("Name", TCIMValue(name));
  instance->AddToContainer();
  return *instance;
}

inline TCIMReference PathTo(TCIMClass& cls, const std::string& name) {
  TCIMReference path(&cls.GetContainer());
  path.SetClass(cls);
  path.AddKeyValue("Name", TCIMValue(name));
  return path;
}

template <class TElement> TNames Names(const std::vector<TElement*>& elements) {
  TNames names;
  for (TElement* element : elements)
    names.push_back(element->GetName());
  return names;
}

/// Zel_Element (abstract, described) <- Zel_Device (key Name, Caption) <- Zel_Disk (Size) <-
/// Zel_SubDisk, and the association Zel_SystemDevice from Owner (Zel_System) to Part (Zel_Disk).
class SchemaTest : public ZelTest {
protected:
  SchemaTest() {
    DeclareStandardQualifiers(fContainer);
    fElement = fContainer.AllocateClass("Zel_Element", 0);
    Qualify(*fElement, fContainer, "ABSTRACT", TCIMValue(true));
    Qualify(*fElement, fContainer, "Description", TCIMValue("root of all"));
    fElement->AddToContainer();
    fDevice = fContainer.AllocateClass("Zel_Device", fElement);
    Property(*fDevice, "Name", TCIMValue(TCIMType::kString, 0), true);
    Property(*fDevice, "Caption", TCIMValue("none"));
    fDevice->AddToContainer();
    fDisk = fContainer.AllocateClass("Zel_Disk", fDevice);
    Property(*fDisk, "Size", TCIMValue(TCIMType::kUint64, 0));
    fDisk->AddToContainer();
    fSubDisk = &KeyedClass(fContainer, "Zel_SubDisk", fDisk);
    fSystem = &KeyedClass(fContainer, "Zel_System");
    fLink = &Association(fContainer, "Zel_SystemDevice", "Owner", *fSystem, "Part", *fDisk);
  }

  TContainer fContainer;
  TCIMClass *fElement, *fDevice, *fDisk, *fSubDisk, *fSystem, *fLink;
};

#endif
