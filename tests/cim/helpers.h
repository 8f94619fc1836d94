// Schema builders shared by the object-model and container tests: qualifier declarations,
// classes with keys, hierarchies and associations, all made through the container's
// factories and owned by it.
#ifndef CIM_HELPERS_H
#define CIM_HELPERS_H

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMQualifierDecl.h"
#include "TCIMReference.h"
#include "TCIMValue.h"
#include "TContainer.h"

#include <string>

typedef TCIMValue::TCIMType T;
typedef TCIMQualifierDecl D;

inline D::EFlavor Flavors(unsigned int bits) { return static_cast<D::EFlavor>(bits); }

/// The registered declaration of that name, declared with value and flavor when missing.
inline TCIMQualifierDecl& Declare(TContainer& container, const std::string& name,
                                  const TCIMValue& value, unsigned int flavor) {
  if (TCIMQualifierDecl* known = container.FindQualifierDecl(name))
    return *known;
  TCIMQualifierDecl* decl =
      container.AllocateQualifierDecl(name, value, D::eClass, Flavors(flavor));
  decl->AddToContainer();
  return *decl;
}

/// KEY and ASSOCIATION are inherited, ABSTRACT is not, OVERRIDE marks a redeclaration;
/// Description is overridable and inherited.
inline void DeclareStandardQualifiers(TContainer& container) {
  Declare(container, "KEY", TCIMValue(false), D::eToSubclass);
  Declare(container, "ASSOCIATION", TCIMValue(false), D::eToSubclass);
  Declare(container, "ABSTRACT", TCIMValue(false), 0);
  Declare(container, "OVERRIDE", TCIMValue(""), 0);
  Declare(container, "Description", TCIMValue(""), D::eOverridable | D::eToSubclass);
}

/// Attaches a new heap qualifier with the declaration's flavors; the holder owns it.
inline TCIMQualifier& Qualify(ICIMAllowQualifiers& holder, TContainer& container,
                              const std::string& name, const TCIMValue& value) {
  TCIMQualifier* qualifier = new TCIMQualifier(*container.GetQualifierDecl(name), value);
  holder.AddQualifier(*qualifier);
  return holder.GetQualifier(name);
}

/// A new, not yet added class.
inline TCIMClass& NewClass(TContainer& container, const std::string& name,
                           TCIMClass* superclass = 0) {
  return *container.AllocateClass(name, superclass);
}

/// Declares a property in cls (owned by it from then on), a key when asked.
inline TCIMPropertyDecl& Property(TCIMClass& cls, const std::string& name,
                                  const TCIMValue& value, bool key = false) {
  TCIMPropertyDecl* decl = new TCIMPropertyDecl(name, cls, value);
  if (key)
    Qualify(*decl, cls.GetContainer(), "KEY", TCIMValue(true));
  decl->AddToContainer();
  return *decl;
}

/// A reference property of an association pointing at target.
inline TCIMPropertyDecl& ReferenceProperty(TCIMClass& association, const std::string& name,
                                           TCIMClass& target, bool key = true) {
  TCIMValue value(T::kReference, 0);
  value.SetReferencedClass(target);
  return Property(association, name, value, key);
}

/// A class keyed by a string "Name", added to the container.
inline TCIMClass& KeyedClass(TContainer& container, const std::string& name,
                             TCIMClass* superclass = 0) {
  TCIMClass& cls = NewClass(container, name, superclass);
  if (!superclass)
    Property(cls, "Name", TCIMValue(T::kString, 0), true);
  cls.AddToContainer();
  return cls;
}

/// An added association class with two key references.
inline TCIMClass& Association(TContainer& container, const std::string& name,
                              const std::string& leftRole, TCIMClass& left,
                              const std::string& rightRole, TCIMClass& right) {
  TCIMClass& cls = NewClass(container, name);
  Qualify(cls, container, "ASSOCIATION", TCIMValue(true));
  ReferenceProperty(cls, leftRole, left);
  ReferenceProperty(cls, rightRole, right);
  cls.AddToContainer();
  return cls;
}

/// An instance of cls named name, added to its class (which owns it).
inline TCIMInstance& NamedInstance(TCIMClass& cls, const std::string& name) {
  TCIMInstance* instance = cls.GetContainer().AllocateInstance(&cls);
  instance->SetPropertyValue("Name", TCIMValue(name));
  instance->AddToContainer();
  return *instance;
}

/// The path of an instance of cls keyed by Name.
inline TCIMReference PathTo(TCIMClass& cls, const std::string& name) {
  TCIMReference path(&cls.GetContainer());
  path.SetClass(cls);
  path.AddKeyValue("Name", TCIMValue(name));
  return path;
}

#endif
