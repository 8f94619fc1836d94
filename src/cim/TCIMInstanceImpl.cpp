// TCIMInstanceImpl: the properties of an instance, its key validation, path and
// association lookups.
#include "TCIMInstanceImpl.h"

#include "TCIMClass.h"
#include "TCIMPropertyDecl.h"
#include "TContainer.h"
#include "TContainerImpl.h"
#include "TOSSpecific.h"
#include "ZelLog.h"

#include <functional>
#include <tuple>

typedef TCIMValue::TCIMType T;

// The instance a reference property names, or null when it names none.
static TCIMInstance* ResolveInstance(const TCIMProperty& property) {
  TCIMValue value = property.GetValue();
  if (value.IsNull() || !value.IsReference())
    return 0;
  TCIMReference reference = value;
  TCIMClass* cls = reference.GetClass();
  return cls->FindInstance(reference);
}

TCIMInstanceImpl::TCIMInstanceImpl(TCIMInstance& owner, TCIMClass* cls)
    : fOwner(owner), fClass(cls) {
  std::vector<TCIMPropertyDecl*> decls = cls->EnumeratePropertyDecls();
  for (std::vector<TCIMPropertyDecl*>::iterator it = decls.begin(); it != decls.end(); ++it)
    fProperties.emplace(std::piecewise_construct,
                        std::forward_as_tuple(TContainerImpl::NormalizeName((*it)->GetName())),
                        std::forward_as_tuple(**it));
  // Stamped unasked: every instance records when it was collected.
  if (TCIMProperty* stamp = FindProperty("DateTimeOfCollection"))
    stamp->SetValue(TCIMValue(TOSSpecific::GetLocalTime()));
}

TCIMInstanceImpl::~TCIMInstanceImpl() {}

void TCIMInstanceImpl::Validate() const {
  if (GetContainer().isDiffContainer())
    return;
  std::vector<std::string> keys = fClass->EnumerateKeyNames();
  for (std::vector<std::string>::iterator key = keys.begin(); key != keys.end(); ++key) {
    TPropertyMap::const_iterator it = fProperties.find(TContainerImpl::NormalizeName(*key));
    if (it == fProperties.end() || it->second.GetValue().IsNull())
      ZelFail(zelStatusInvalidInstance,
              "Instance " + fClass->GetName() + ": key property " + *key + " is NULL");
  }
}

TContainer& TCIMInstanceImpl::GetContainer() const { return fClass->GetContainer(); }

void TCIMInstanceImpl::AddToContainer() {
  fOwner.Validate();
  fClass->AddInstance(fOwner);
}

void TCIMInstanceImpl::SetProperty(const TCIMProperty& property) {
  GetProperty(property.GetName()) = property;
}

void TCIMInstanceImpl::SetPropertyValue(const std::string& name, const TCIMValue& value) {
  GetProperty(name).SetValue(value);
}

void TCIMInstanceImpl::SetPrevPropertyValue(const std::string& name, const TCIMValue& value) {
  GetProperty(name).SetPrevValue(value);
}

void TCIMInstanceImpl::SetPrevPropertyValue(const std::string& name) {
  GetProperty(name).SetPrevValue();
}

TCIMProperty& TCIMInstanceImpl::GetProperty(const std::string& name) {
  TCIMProperty* property = FindProperty(name);
  if (!property)
    throw TZELException(zelStatusNotFound);
  return *property;
}

TCIMProperty* TCIMInstanceImpl::FindProperty(const std::string& name) {
  TPropertyMap::iterator it = fProperties.find(TContainerImpl::NormalizeName(name));
  return it == fProperties.end() ? 0 : &it->second;
}

std::vector<const TCIMProperty*> TCIMInstanceImpl::EnumerateProperties() const {
  std::vector<const TCIMProperty*> properties;
  properties.reserve(fProperties.size());
  for (TPropertyMap::const_iterator it = fProperties.begin(); it != fProperties.end(); ++it)
    properties.push_back(&it->second);
  return properties;
}

TCIMReference TCIMInstanceImpl::BuildPath() const {
  TCIMReference path(0);
  path.SetClass(*fClass);
  std::vector<std::string> keys = fClass->EnumerateKeyNames();
  for (std::vector<std::string>::iterator key = keys.begin(); key != keys.end(); ++key)
    path.AddKeyValue(*key, fProperties.find(TContainerImpl::NormalizeName(*key))->second.GetValue());
  return path;
}

std::vector<TCIMInstance*> TCIMInstanceImpl::Associators(const std::string& assocClass,
                                                         const std::string& resultClass,
                                                         const std::string& role,
                                                         const std::string& resultRole) const {
  std::vector<TCIMInstance*> found;
  TCIMClass* result = GetContainer().FindClass(resultClass);
  if (!result)
    return found;
  std::vector<TCIMInstance*> links = References(assocClass, role);
  for (std::vector<TCIMInstance*>::iterator link = links.begin(); link != links.end(); ++link) {
    std::vector<const TCIMProperty*> ends = (*link)->EnumerateProperties();
    for (std::vector<const TCIMProperty*>::iterator end = ends.begin(); end != ends.end(); ++end) {
      if (!resultRole.empty() &&
          TContainerImpl::NormalizeName((*end)->GetName()) != TContainerImpl::NormalizeName(resultRole))
        continue;
      TCIMInstance* other = ResolveInstance(**end);
      if (other && other != &fOwner && other->GetClass().IsSubclassOf(result))
        found.push_back(other);
    }
  }
  return found;
}

std::vector<TCIMInstance*> TCIMInstanceImpl::References(const std::string& resultClass,
                                                        const std::string& role) const {
  std::vector<TCIMInstance*> found;
  std::vector<TCIMClass*> associations = fClass->References(resultClass, role);
  for (std::vector<TCIMClass*>::iterator cls = associations.begin(); cls != associations.end();
       ++cls) {
    std::vector<TCIMInstance*> links = (*cls)->EnumerateInstances(false);
    for (std::vector<TCIMInstance*>::iterator link = links.begin(); link != links.end(); ++link) {
      std::vector<const TCIMProperty*> ends = (*link)->EnumerateProperties();
      for (std::vector<const TCIMProperty*>::iterator end = ends.begin(); end != ends.end();
           ++end) {
        bool named = role.empty() || TContainerImpl::NormalizeName((*end)->GetName()) ==
                                         TContainerImpl::NormalizeName(role);
        if (named && ResolveInstance(**end) == &fOwner) {
          found.push_back(*link);
          break;
        }
      }
    }
  }
  return found;
}

bool TCIMInstanceImpl::operator==(const TCIMInstanceImpl& other) const {
  return fClass == other.fClass && fProperties == other.fProperties;
}

bool TCIMInstanceImpl::operator<(const TCIMInstanceImpl& other) const {
  return std::less<const TCIMClass*>()(fClass, other.fClass); // Identity only, on purpose.
}
