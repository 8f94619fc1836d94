// TCIMClassImpl: inheritance, the override rules, keys, associations and instances.
#include "cim/TCIMClassImpl.h"

#include "TCIMInstance.h"
#include "cim/TCIMInstanceImpl.h"
#include "TCIMPropertyDecl.h"
#include "cim/TCIMPropertyDeclImpl.h"
#include "TCIMReference.h"
#include "cim/TCIMReferenceImpl.h"
#include "TContainer.h"
#include "log/ZelLog.h"
#include "cim/ZelNamedMap.h"

#include <algorithm>
#include <utility>

typedef TCIMValue::TCIMType TCIMType;

static bool IsReferenceDecl(const TCIMPropertyDecl& decl) {
  return decl.GetType() == TCIMType::kReference;
}

static TCIMClass* ReferencedClass(const TCIMPropertyDecl& decl) {
  return decl.GetValue().GetReferencedClass();
}

// The reference property called role of an association, if it points at exactly target.
static bool RoleRefersTo(const TCIMClass& association, const std::string& role,
                         const TCIMClass* target) {
  TCIMPropertyDecl* decl = association.FindPropertyDecl(role);
  return decl && IsReferenceDecl(*decl) && ReferencedClass(*decl) == target;
}

TCIMClassImpl::TCIMClassImpl(TCIMClass& owner, TContainer& container, const std::string& name,
                             TCIMClass* superclass)
    : fOwner(owner), fContainer(container), fName(name), fSuperClass(superclass),
      fAdded(false) {
  if (!superclass) { // Nothing is inherited from the root class.
    fSuperClass = container.GetRootClass();
    return;
  }
  TCIMClassImpl const& parent = *superclass->GetBody();
  fPropertyDecls = parent.fPropertyDecls; // The declaration objects themselves, shared.
  for (TQualifierMap::const_iterator it = parent.fQualifiers.begin();
       it != parent.fQualifiers.end(); ++it) {
    if (!(it->second->GetFlavor() & TCIMQualifierDecl::eToSubclass))
      continue;
    boost::shared_ptr<TCIMQualifier> copy(new TCIMQualifier(*it->second));
    copy->SetPropagated(true);
    fQualifiers.emplace_hint(fQualifiers.end(), it->first, std::move(copy));
  }
}

TCIMClassImpl::~TCIMClassImpl() {}

void TCIMClassImpl::Validate() const {
  if (IsAbstract())
    return;
  for (TPropertyDeclMap::const_iterator it = fPropertyDecls.begin(); it != fPropertyDecls.end();
       ++it) {
    if (it->second->GetBody()->IsKey())
      return;
  }
  ZelFail(zelStatusInvalidClass, "Class " + fName + " has no keys");
}

TContainer& TCIMClassImpl::GetContainer() const { return fContainer; }

// Nothing after AddClass may throw: a caller that catches a failure still owns the class.
void TCIMClassImpl::AddToContainer() {
  fOwner.Validate();
  fContainer.AddClass(fOwner);
  fSuperClass->GetBody()->AddChildClass(fOwner);
  fAdded = true;
  if (!IsAssociation())
    return;
  std::vector<TCIMPropertyDecl*> targets = ReferenceTargets();
  for (std::vector<TCIMPropertyDecl*>::iterator it = targets.begin(); it != targets.end(); ++it)
    ReferencedClass(**it)->GetBody()->AddAssociationClass(fOwner);
}

bool TCIMClassImpl::IsRootClass() const { return fSuperClass == fContainer.GetRootClass(); }
bool TCIMClassImpl::IsAssociation() const { return ZelQualifierIsTrue(fQualifiers, "association"); }
bool TCIMClassImpl::IsAbstract() const { return ZelQualifierIsTrue(fQualifiers, "abstract"); }

bool TCIMClassImpl::IsSubclassOf(const TCIMClass* other) const {
  if (!other)
    return false;
  const TCIMClass* root = fContainer.GetRootClass();
  for (const TCIMClass* cls = &fOwner; cls && cls != root; cls = cls->GetSuperClass()) {
    if (*cls == *other)
      return true;
  }
  return root && *root == *other;
}

std::vector<TCIMClass*> TCIMClassImpl::EnumerateSubClasses(bool deep) const {
  std::vector<TCIMClass*> classes;
  AddSubClassesToVector(classes, deep);
  return classes;
}

void TCIMClassImpl::AddPropertyDecl(TCIMPropertyDecl& decl) {
  const std::string& property = decl.GetName();
  if (IsReferenceDecl(decl) && !IsAssociation())
    ZelFail(zelStatusNotAssociation, "Attempt to add reference property " + property +
                                         " to non-association class " + fName);
  std::string key = ZelNormalizeName(property);
  // One search: the place found is where the declaration goes.
  TPropertyDeclMap::iterator position = fPropertyDecls.lower_bound(key);
  TPropertyDeclMap::iterator existing =
      position != fPropertyDecls.end() && position->first == key ? position : fPropertyDecls.end();
  if (decl.GetBody()->HasQualifier("override")) { // Its presence decides, not its value.
    std::string attempt = "Attempt to override property " + property + " in class " + fName;
    if (existing == fPropertyDecls.end())
      ZelFail(zelStatusNotFound, attempt + ": property doesn't exist in base class");
    if (existing->second->GetType() != decl.GetType())
      ZelFail(zelStatusTypeMismatch, attempt + ": different types");
    if (existing->second->GetClass() == fOwner)
      ZelFail(zelStatusAlreadyExists, attempt + ": original was defined in this class");
    position = fPropertyDecls.erase(existing); // The superclass keeps its own.
  } else if (existing != fPropertyDecls.end()) {
    // Redeclaring an inherited property needs OVERRIDE, on purpose.
    ZelFail(zelStatusAlreadyExists,
            "Attempt to add property " + property + " to class " + fName + ": already exists");
  }
  fPropertyDecls.emplace_hint(position, std::move(key), boost::shared_ptr<TCIMPropertyDecl>(&decl));
}

TCIMPropertyDecl& TCIMClassImpl::GetPropertyDecl(const std::string& name) const {
  TCIMPropertyDecl* decl = FindPropertyDecl(name);
  if (!decl)
    throw TZELException(zelStatusNotFound);
  return *decl;
}

TCIMPropertyDecl* TCIMClassImpl::FindPropertyDecl(const std::string& name) const {
  return ZelFindIn(fPropertyDecls, name);
}

std::vector<TCIMPropertyDecl*> TCIMClassImpl::EnumeratePropertyDecls() const {
  return ZelEnumerate(fPropertyDecls);
}

void TCIMClassImpl::RemovePropertyDecl(TCIMPropertyDecl& decl) {
  std::pair<TPropertyDeclMap::const_iterator, bool> found = LookupPropertyDecl(decl.GetName());
  if (!found.second)
    throw TZELException(zelStatusNotFound);
  fPropertyDecls.erase(found.first);
}

std::vector<std::string> TCIMClassImpl::EnumerateKeyNames() const {
  std::vector<std::string> names;
  for (TPropertyDeclMap::const_iterator it = fPropertyDecls.begin(); it != fPropertyDecls.end();
       ++it) {
    if (it->second->GetBody()->IsKey())
      names.push_back(it->second->GetName());
  }
  return names;
}

void TCIMClassImpl::AddInstance(TCIMInstance& instance) {
  // The key lives as long as the instance: built in a buffer this thread keeps, it is
  // copied once at its exact size. An equal path is filed after the first, on purpose;
  // documents mostly list instances in path order, so the end is tried first.
  std::string& path = ZelPathBuffer();
  instance.GetBody()->AppendPathText(path);
  fInstances.emplace_hint(fInstances.end(), path, boost::shared_ptr<TCIMInstance>(&instance));
}

void TCIMClassImpl::RemoveInstance(TCIMInstance& instance) {
  fInstances.erase(instance.GetBody()->PathText());
}

TCIMInstance& TCIMClassImpl::GetInstance(const TCIMReference& path) const {
  TCIMInstance* instance = FindInstance(path);
  if (!instance)
    throw TZELException(zelStatusNotFound);
  return *instance;
}

TCIMInstance* TCIMClassImpl::FindInstance(const TCIMReference& path) const {
  std::string& text = ZelPathBuffer();
  path.GetBody()->AppendPath(text);
  TInstanceMap::const_iterator it = fInstances.find(std::string_view(text));
  return it == fInstances.end() ? 0 : it->second.get();
}

std::vector<TCIMInstance*> TCIMClassImpl::EnumerateInstances(bool deep) const {
  std::vector<TCIMInstance*> instances;
  AddInstancesToVector(instances, deep);
  return instances;
}

std::vector<TCIMClass*> TCIMClassImpl::Associators(const std::string& assocClass,
                                                   const std::string& resultClass,
                                                   const std::string& role,
                                                   const std::string& resultRole) const {
  std::vector<TCIMClass*> classes;
  TCIMClass* association = fContainer.FindClass(assocClass);
  TCIMClass* result = fContainer.FindClass(resultClass);
  if (!association || !result)
    return classes;
  ZelNormalName normalRole(role);
  const TCIMClass* root = fContainer.GetRootClass();
  for (const TCIMClass* level = &fOwner; level && level != root; level = level->GetSuperClass()) {
    const std::set<TCIMClass*>& candidates = level->GetBody()->fAssociationClasses;
    for (std::set<TCIMClass*>::const_iterator it = candidates.begin(); it != candidates.end();
         ++it) {
      TCIMClass& x = **it;
      if (!x.IsSubclassOf(association) || (!role.empty() && !RoleRefersTo(x, role, &fOwner)))
        continue;
      if (!resultRole.empty()) {
        TCIMPropertyDecl* decl = x.FindPropertyDecl(resultRole);
        if (decl && IsReferenceDecl(*decl) && ReferencedClass(*decl) &&
            ReferencedClass(*decl)->IsSubclassOf(result))
          classes.push_back(ReferencedClass(*decl));
        continue;
      }
      std::vector<TCIMPropertyDecl*> decls = x.EnumeratePropertyDecls();
      for (std::vector<TCIMPropertyDecl*>::iterator d = decls.begin(); d != decls.end(); ++d) {
        TCIMClass* target = ReferencedClass(**d);
        if (!IsReferenceDecl(**d) || !target)
          continue;
        bool ownEnd = role.empty() ? *target == fOwner
                                   : ZelNormalName((*d)->GetName()).View() == normalRole.View();
        if (!ownEnd && target->IsSubclassOf(result))
          classes.push_back(target);
      }
    }
  }
  return classes;
}

std::vector<TCIMClass*> TCIMClassImpl::References(const std::string& resultClass,
                                                  const std::string& role) const {
  std::vector<TCIMClass*> classes;
  TCIMClass* result = fContainer.GetClass(resultClass);
  const TCIMClass* root = fContainer.GetRootClass();
  for (const TCIMClass* level = &fOwner; level && level != root; level = level->GetSuperClass()) {
    const std::set<TCIMClass*>& candidates = level->GetBody()->fAssociationClasses;
    for (std::set<TCIMClass*>::const_iterator it = candidates.begin(); it != candidates.end();
         ++it) {
      if ((*it)->IsSubclassOf(result) && (role.empty() || RoleRefersTo(**it, role, &fOwner)))
        classes.push_back(*it);
    }
  }
  return classes;
}

void TCIMClassImpl::AddChildClass(TCIMClass& cls) { fSubClasses.push_back(&cls); }

void TCIMClassImpl::RemoveChildClass(TCIMClass& cls) {
  fSubClasses.erase(std::remove(fSubClasses.begin(), fSubClasses.end(), &cls), fSubClasses.end());
}

void TCIMClassImpl::AddAssociationClass(TCIMClass& cls) { fAssociationClasses.insert(&cls); }
void TCIMClassImpl::RemoveAssociationClass(TCIMClass& cls) { fAssociationClasses.erase(&cls); }

void TCIMClassImpl::AddSubClassesToVector(std::vector<TCIMClass*>& classes, bool deep) const {
  for (std::vector<TCIMClass*>::const_iterator it = fSubClasses.begin(); it != fSubClasses.end();
       ++it) {
    classes.push_back(*it);
    if (deep)
      (*it)->GetBody()->AddSubClassesToVector(classes, true);
  }
}

void TCIMClassImpl::AddInstancesToVector(std::vector<TCIMInstance*>& instances, bool deep) const {
  ZelAppendAll(fInstances, instances);
  if (!deep)
    return;
  for (std::vector<TCIMClass*>::const_iterator it = fSubClasses.begin(); it != fSubClasses.end();
       ++it)
    (*it)->GetBody()->AddInstancesToVector(instances, true);
}

std::pair<TQualifierMap::const_iterator, bool>
TCIMClassImpl::LookupQualifier(const std::string& name) const {
  return ZelLookup(fQualifiers, name);
}

std::pair<TCIMClassImpl::TPropertyDeclMap::const_iterator, bool>
TCIMClassImpl::LookupPropertyDecl(const std::string& name) const {
  return ZelLookup(fPropertyDecls, name);
}

std::vector<TCIMPropertyDecl*> TCIMClassImpl::ReferenceTargets() const {
  std::vector<TCIMPropertyDecl*> gathered;
  for (TPropertyDeclMap::const_iterator it = fPropertyDecls.begin(); it != fPropertyDecls.end();
       ++it) {
    if (IsReferenceDecl(*it->second) && ReferencedClass(*it->second))
      gathered.push_back(it->second.get());
  }
  // Walked in order: a declaration already dropped no longer drops others.
  for (std::vector<TCIMPropertyDecl*>::size_type i = 0; i < gathered.size(); ++i) {
    TCIMClass* target = ReferencedClass(*gathered[i]);
    for (std::vector<TCIMPropertyDecl*>::size_type j = gathered.size(); j-- > 0;) {
      if (j != i && ReferencedClass(*gathered[j])->IsSubclassOf(target)) {
        gathered.erase(gathered.begin() + j);
        if (j < i)
          --i;
      }
    }
  }
  return gathered;
}
