// TCIMReference: one-line forwards to the body; copies clone it.
#include "TCIMReference.h"

#include "cim/TCIMReferenceImpl.h"

#include <boost/make_shared.hpp>
#include <utility>

TCIMReference::TCIMReference(TContainer const* container)
    : fBody(boost::make_shared<TCIMReferenceImpl>(*this, container)) {}

TCIMReference::TCIMReference(TContainer const* container, std::string path)
    : fBody(boost::make_shared<TCIMReferenceImpl>(*this, container)) {
  SetPath(path);
}

TCIMReference::TCIMReference(TCIMReference const& other)
    : fBody(boost::make_shared<TCIMReferenceImpl>(*this, *other.fBody)) {}

TCIMReference& TCIMReference::operator=(TCIMReference const& other) {
  if (this != &other)
    fBody = boost::make_shared<TCIMReferenceImpl>(*this, *other.fBody);
  return *this;
}

TCIMReference::~TCIMReference() {}
void TCIMReference::SetContainer(TContainer* container) { fBody->SetContainer(container); }
void TCIMReference::Clear() { fBody->Clear(); }
void TCIMReference::SetPath(std::string path) { fBody->SetPath(path); }
void TCIMReference::SetClassName(std::string name) { fBody->SetClassName(name); }
void TCIMReference::SetClass(TCIMClass& referencedClass) { fBody->SetClass(referencedClass); }
TCIMClass* TCIMReference::GetClass() const { return fBody->GetClass(); }
std::string TCIMReference::GetClassName() const { return fBody->GetClassName(); }
void TCIMReference::AddKeyValue(std::string name, TCIMValue value) {
  fBody->AddKeyValue(std::move(name), std::move(value));
}
TCIMReference::TKeyBindings TCIMReference::EnumerateKeyBindings() const {
  return fBody->EnumerateKeyBindings();
}
void TCIMReference::SetKeyBindings(TKeyBindings bindings) { fBody->SetKeyBindings(bindings); }
std::string TCIMReference::GetPath() const { return fBody->GetPath(); }
ICIMElement* TCIMReference::GetCIMElement() { return fBody->GetCIMElement(); }
bool TCIMReference::operator==(TCIMReference const& other) const { return *fBody == *other.fBody; }
bool TCIMReference::operator<(TCIMReference const& other) const { return *fBody < *other.fBody; }
TCIMReferenceImpl* TCIMReference::GetBody() const { return fBody.get(); }
