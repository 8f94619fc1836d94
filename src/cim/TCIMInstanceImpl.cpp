// TCIMInstanceImpl: the properties of an instance, its key validation, path and
// association lookups.
#include "cim/TCIMInstanceImpl.h"

#include "TCIMClass.h"
#include "cim/TCIMClassImpl.h"
#include "TCIMPropertyDecl.h"
#include "cim/TCIMPropertyDeclImpl.h"
#include "cim/TCIMPropertyImpl.h"
#include "cim/TCIMReferenceImpl.h"
#include "TContainer.h"
#include "TOSSpecific.h"
#include "log/ZelLog.h"
#include "cim/ZelText.h"

#include <algorithm>
#include <functional>
#include <map>
#include <tuple>

typedef TCIMValue::TCIMType TCIMType;

// The instance a reference property names, or null when it names none.
static TCIMInstance* ResolveInstance(const TCIMProperty& property) {
  TCIMValue value = property.GetValue();
  if (value.IsNull() || !value.IsReference())
    return 0;
  TCIMReference reference = value;
  TCIMClass* cls = reference.GetClass();
  return cls->FindInstance(reference);
}

// The normalised name of a declaration that its class files under key: the key itself,
// unless the declaration was renamed since. Spares a normalisation per property and key.
static const std::string& NormalName(const std::string& key, const TCIMPropertyDecl& decl,
                                     std::string& renamed) {
  if (ZelIsNormalFormOf(key, decl.GetName()))
    return key;
  renamed = ZelNormalizeName(decl.GetName());
  return renamed;
}

TCIMInstanceImpl::TCIMInstanceImpl(TCIMInstance& owner, TCIMClass* cls)
    : fOwner(owner), fClass(cls) {
  const TCIMClassImpl::TPropertyDeclMap& decls = cls->GetBody()->PropertyDecls();
  std::string renamed;
  bool sorted = true;
  // The declarations come in the map's own order, so the names arrive sorted unless one
  // was renamed since it was filed.
  fProperties.reserve(decls.size());
  for (TCIMClassImpl::TPropertyDeclMap::const_iterator it = decls.begin(); it != decls.end();
       ++it) {
    const std::string& name = NormalName(it->first, *it->second, renamed);
    sorted = sorted && &name == &it->first;
    fProperties.emplace_back(std::piecewise_construct, std::forward_as_tuple(name),
                             std::forward_as_tuple(*it->second));
  }
  if (!sorted)
    SortProperties();
  // Stamped unasked: every instance records when it was collected.
  TPropertyMap::const_iterator stamp = Find("datetimeofcollection");
  if (stamp != fProperties.end()) {
    TCIMValue now(TOSSpecific::GetLocalTime());
    stamp->second.GetBody()->TakeValue(now);
  }
}

void TCIMInstanceImpl::SortProperties() {
  std::map<std::string_view, const TCIMProperty*> order;
  for (TPropertyMap::const_iterator it = fProperties.begin(); it != fProperties.end(); ++it)
    order.emplace(it->first, &it->second);  // the first of a name wins, as in a map
  TPropertyMap properties;
  properties.reserve(order.size());
  for (std::map<std::string_view, const TCIMProperty*>::const_iterator it = order.begin();
       it != order.end(); ++it)
    properties.emplace_back(std::string(it->first), *it->second);
  fProperties.swap(properties);
}

// The order of std::string, compared in line: names are short and mostly differ early.
static int CompareNames(std::string_view left, std::string_view right) {
  std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i)
    if (left[i] != right[i])
      return static_cast<unsigned char>(left[i]) < static_cast<unsigned char>(right[i]) ? -1 : 1;
  return left.size() < right.size() ? -1 : left.size() > right.size();
}

TCIMInstanceImpl::TPropertyMap::const_iterator
TCIMInstanceImpl::Find(std::string_view name) const {
  std::size_t low = 0, high = fProperties.size();
  while (low < high) {
    std::size_t middle = low + (high - low) / 2;
    int order = CompareNames(fProperties[middle].first, name);
    if (order == 0)
      return fProperties.begin() + middle;
    if (order < 0)
      low = middle + 1;
    else
      high = middle;
  }
  return fProperties.end();
}

TCIMInstanceImpl::~TCIMInstanceImpl() {}

void TCIMInstanceImpl::Validate() const {
  if (GetContainer().isDiffContainer())
    return;
  // The keys of EnumerateKeyNames(), walked in place.
  const TCIMClassImpl::TPropertyDeclMap& decls = fClass->GetBody()->PropertyDecls();
  std::string renamed;
  for (TCIMClassImpl::TPropertyDeclMap::const_iterator key = decls.begin(); key != decls.end();
       ++key) {
    if (!key->second->GetBody()->IsKey())
      continue;
    TPropertyMap::const_iterator it = Find(NormalName(key->first, *key->second, renamed));
    if (it == fProperties.end() || it->second.GetBody()->CurrentValue().IsNull())
      ZelFail(zelStatusInvalidInstance, "Instance " + fClass->GetName() + ": key property " +
                                            key->second->GetName() + " is NULL");
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
  TPropertyMap::const_iterator it = Find(ZelNormalName(name).View());
  return it == fProperties.end() ? 0 : &fProperties[it - fProperties.begin()].second;
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
    path.AddKeyValue(*key, Find(ZelNormalName(*key).View())->second.GetValue());
  return path;
}

// Every instance registers under this text, so it is written straight from the key values.
// The rare instance that BuildPath() treats otherwise takes the long way: a key
// declaration renamed since it was filed, key names declared out of the order of their
// normalised forms (bindings sort by the declared names), a value of another type.
std::string TCIMInstanceImpl::PathText() const {
  std::string path;
  AppendPathText(path);
  return path;
}

void TCIMInstanceImpl::AppendPathText(std::string& path) const {
  std::string::size_type start = path.size();
  path += fClass->GetName();
  const std::string* previous = 0;
  const TCIMClassImpl::TPropertyDeclMap& decls = fClass->GetBody()->PropertyDecls();
  for (TCIMClassImpl::TPropertyDeclMap::const_iterator key = decls.begin(); key != decls.end();
       ++key) {
    const TCIMPropertyDecl& decl = *key->second;
    if (!decl.GetBody()->IsKey())
      continue;
    const std::string& name = decl.GetName();
    TPropertyMap::const_iterator it = Find(key->first);
    if (!ZelIsNormalFormOf(key->first, name) || (previous && !(*previous < name)) ||
        it == fProperties.end() ||
        it->second.GetBody()->CurrentValue().GetType() != decl.GetType()) {
      path.replace(start, std::string::npos, BuildPath().GetPath());
      return;
    }
    if (!previous)
      path += '.';
    ZelAppendKeyBinding(path, name, it->second.GetBody()->CurrentValue());
    previous = &name;
  }
  if (previous)
    path.erase(path.size() - 1);  // the last binding's comma
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
          !ZelSameName((*end)->GetName(), resultRole))
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
        bool named = role.empty() || ZelSameName((*end)->GetName(), role);
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
