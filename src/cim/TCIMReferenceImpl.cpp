// TCIMReferenceImpl: building an object path by fields, its text, resolution and order.
#include "cim/TCIMReferenceImpl.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMPropertyDecl.h"
#include "cim/TCIMPropertyDeclImpl.h"
#include "cim/TCIMValueImpl.h"
#include "TContainer.h"
#include "log/ZelLog.h"

#include <functional>
#include <utility>

void ZelAppendKeyBinding(std::string& path, std::string const& name, TCIMValue const& value) {
  path += name;
  path += "=\"";
  if (!value.IsNull())
    TCIMValueImpl::AppendText(path, value);
  path += "\",";
}

std::string& ZelPathBuffer() {
  static thread_local std::string buffer;
  buffer.clear();
  return buffer;
}

TCIMReferenceImpl::TCIMReferenceImpl(TCIMReference& owner, TContainer const* container)
    : fOwner(&owner), fContainer(container), fClass(0), fCachedElement(0) {}

TCIMReferenceImpl::TCIMReferenceImpl(TCIMReference& owner, TCIMReferenceImpl const& other)
    : fOwner(&owner), fContainer(other.fContainer), fClass(other.fClass),
      fKeyBindings(other.fKeyBindings), fCachedElement(other.fCachedElement) {}

void TCIMReferenceImpl::SetContainer(TContainer* container) { fContainer = container; }

void TCIMReferenceImpl::Clear() {
  fContainer = 0;
  fClass = 0;
  fKeyBindings.clear();
  fCachedElement = 0;
}

void TCIMReferenceImpl::SetPath(std::string const&) {
  if (!fContainer)
    ZelFail(zelStatusInvalidOpSequence, "SetPath() called before container set");
  throw TZELException(zelStatusNotImplemented); // Paths are built by fields, never parsed.
}

void TCIMReferenceImpl::SetClassName(std::string const& name) {
  if (!fContainer)
    ZelFail(zelStatusInvalidOpSequence, "SetClassName() called before container set");
  if (!fKeyBindings.empty())
    ZelFail(zelStatusInvalidOpSequence, "SetClassName() called with keybindings filled in");
  fClass = fContainer->GetClass(name);
  fCachedElement = 0;
}

void TCIMReferenceImpl::SetClass(TCIMClass& cls) {
  if (!fKeyBindings.empty())
    ZelFail(zelStatusInvalidOpSequence, "SetClass() called with keybindings filled in");
  fClass = &cls;
  fCachedElement = 0;
}

TCIMClass* TCIMReferenceImpl::GetClass() const {
  if (!fClass) // Speaks of the container although the class is tested: the established text.
    ZelFail(zelStatusInvalidReference, "GetClass() called before container set");
  return fClass;
}

std::string TCIMReferenceImpl::GetClassName() const { return GetClass()->GetName(); }

void TCIMReferenceImpl::AddKeyValue(std::string name, TCIMValue value) {
  if (!fClass)
    ZelFail(zelStatusInvalidOpSequence, "AddKeyValue() called before class set");
  TCIMPropertyDecl& decl = fClass->GetPropertyDecl(name);
  if (decl.GetType() != value.GetType())
    ZelFail(zelStatusTypeMismatch, "Declaration type: " + decl.GetType().ToString() +
                                       " Value type: " + value.GetType().ToString());
  if (!decl.GetBody()->IsKey())
    ZelFail(zelStatusInvalidOpSequence, "AddKeyValue() called with a non-key property " + name);
  fKeyBindings.try_emplace(std::move(name), std::move(value)); // An existing one is kept.
  fCachedElement = 0;
}

void TCIMReferenceImpl::SetKeyBindings(TCIMReference::TKeyBindings const& bindings) {
  fKeyBindings = bindings;
  fCachedElement = 0;
}

std::string TCIMReferenceImpl::GetPath() const {
  std::string path;
  AppendPath(path);
  return path;
}

void TCIMReferenceImpl::AppendPath(std::string& path) const {
  path += GetClass()->GetName();
  if (fKeyBindings.empty())
    return;
  path += '.';
  for (TCIMReference::TKeyBindings::const_iterator it = fKeyBindings.begin();
       it != fKeyBindings.end(); ++it)
    ZelAppendKeyBinding(path, it->first, it->second);
  path.erase(path.size() - 1);
}

ICIMElement* TCIMReferenceImpl::GetCIMElement() {
  if (fKeyBindings.empty())
    return fClass;
  if (!fCachedElement) {
    fCachedElement = fClass->FindInstance(*fOwner);
    if (!fCachedElement)
      throw TZELException(zelStatusNotFound);
  }
  return fCachedElement;
}

bool TCIMReferenceImpl::operator==(TCIMReferenceImpl const& other) const {
  return fClass == other.fClass && fKeyBindings == other.fKeyBindings;
}

bool TCIMReferenceImpl::operator<(TCIMReferenceImpl const& other) const {
  if (fClass != other.fClass)
    return std::less<TCIMClass*>()(fClass, other.fClass);
  return fKeyBindings < other.fKeyBindings;
}
