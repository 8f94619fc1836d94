// TContainerImpl: name normalisation, the class and qualifier-declaration registries, the
// root class and the diff state.
#include "container/TContainerImpl.h"

#include "TCIMClass.h"
#include "cim/TCIMClassImpl.h"
#include "TCIMQualifierDecl.h"
#include "log/ZelLog.h"
#include "cim/ZelNamedMap.h"
#include "cim/ZelText.h"


// Enters the very object passed under its normalised name; the map's shared pointer becomes
// its one owner. A taken name leaves the object with the caller.
template <class Map, class Object>
static void Register(Map& map, Object& object, char const* kind) {
  std::string key = ZelNormalizeName(object.GetName());
  typename Map::iterator position = map.lower_bound(key);
  if (position != map.end() && position->first == key)
    ZelFail(zelStatusAlreadyExists,
            std::string("TContainer: ") + kind + " " + object.GetName() + " already defined",
            zelLogDebug);
  map.insert(position, std::make_pair(key, typename Map::mapped_type(&object)));
}

template <class Object>
static Object* Require(Object* object) {
  if (!object)
    throw TZELException(zelStatusNotFound);
  return object;
}

TContainerImpl::TContainerImpl(TContainer& owner)
    : fOwner(owner), fRootClass(0), fDiff(false) {}

void TContainerImpl::Initialize() {
  // Never deleted on purpose: classes handed out may outlive the container and still walk
  // up to the root.
  fRootClass = fOwner.AllocateClass("<root>", 0);
}

std::string TContainerImpl::NormalizeName(const std::string& name) {
  return ZelNormalizeName(name);
}

void TContainerImpl::AddClass(TCIMClass& cls) { Register(fClasses, cls, "class"); }

void TContainerImpl::AddQualifierDecl(TCIMQualifierDecl& decl) {
  Register(fQualifierDecls, decl, "qualifier");
}

TCIMClass* TContainerImpl::GetClass(const std::string& name) const {
  return Require(FindClass(name));
}

TCIMClass* TContainerImpl::FindClass(const std::string& name) const {
  if (name.empty())
    return fRootClass;
  return ZelFindIn(fClasses, name);
}

void TContainerImpl::RemoveClass(TCIMClass& cls) {
  std::pair<TClassMap::const_iterator, bool> found = LookupClass(cls.GetName());
  if (!found.second)
    throw TZELException(zelStatusNotFound);
  TCIMClass& registered = *found.first->second;
  // No class still registered keeps a pointer to the one that leaves.
  fRootClass->GetBody()->RemoveChildClass(registered);
  for (TClassMap::const_iterator it = fClasses.begin(); it != fClasses.end(); ++it) {
    it->second->GetBody()->RemoveChildClass(registered);
    it->second->GetBody()->RemoveAssociationClass(registered);
  }
  fClasses.erase(found.first);
}

TCIMQualifierDecl* TContainerImpl::GetQualifierDecl(const std::string& name) const {
  return Require(FindQualifierDecl(name));
}

TCIMQualifierDecl* TContainerImpl::FindQualifierDecl(const std::string& name) const {
  return ZelFindIn(fQualifierDecls, name);
}

void TContainerImpl::RemoveQualifierDecl(TCIMQualifierDecl& decl) {
  std::pair<TQualifierDeclMap::const_iterator, bool> found = LookupQualifier(decl.GetName());
  if (!found.second)
    throw TZELException(zelStatusNotFound);
  fQualifierDecls.erase(found.first);
}

std::vector<TCIMQualifierDecl*> TContainerImpl::EnumerateQualifiers() const {
  return ZelEnumerate(fQualifierDecls);
}

void TContainerImpl::CheckDiffContainer() const {
  if (!fDiff) // The misspelling is the established text.
    ZelFail(zelStatusNotSupported,
            "TContainer: Cannot access DiffInstances if the containter is not a Diff Container");
}

void TContainerImpl::SetDiffInstances(const std::vector<TCIMInstance*>& instances) {
  CheckDiffContainer();
  fDiffInstances = instances;
}

std::vector<TCIMInstance*> TContainerImpl::GetDiffInstances() const {
  CheckDiffContainer();
  return fDiffInstances;
}

bool TContainerImpl::HasDifferences() const {
  CheckDiffContainer();
  return !fDiffInstances.empty();
}

std::pair<TContainerImpl::TClassMap::const_iterator, bool>
TContainerImpl::LookupClass(const std::string& name) const {
  return ZelLookup(fClasses, name);
}

std::pair<TContainerImpl::TQualifierDeclMap::const_iterator, bool>
TContainerImpl::LookupQualifier(const std::string& name) const {
  return ZelLookup(fQualifierDecls, name);
}
