// TCIMReference: one-line forwards to the body; copies clone it.
#include "TCIMReference.h"

#include "TCIMReferenceImpl.h"

#include <boost/make_shared.hpp>

typedef TCIMReference R;

R::TCIMReference(TContainer const* container)
    : fBody(boost::make_shared<TCIMReferenceImpl>(*this, container)) {}

R::TCIMReference(TContainer const* container, std::string path)
    : fBody(boost::make_shared<TCIMReferenceImpl>(*this, container)) {
  SetPath(path);
}

R::TCIMReference(R const& other)
    : fBody(boost::make_shared<TCIMReferenceImpl>(*this, *other.fBody)) {}

R& R::operator=(R const& other) {
  if (this != &other)
    fBody = boost::make_shared<TCIMReferenceImpl>(*this, *other.fBody);
  return *this;
}

R::~TCIMReference() {}
void R::SetContainer(TContainer* container) { fBody->SetContainer(container); }
void R::Clear() { fBody->Clear(); }
void R::SetPath(std::string path) { fBody->SetPath(path); }
void R::SetClassName(std::string name) { fBody->SetClassName(name); }
void R::SetClass(TCIMClass& referencedClass) { fBody->SetClass(referencedClass); }
TCIMClass* R::GetClass() const { return fBody->GetClass(); }
std::string R::GetClassName() const { return fBody->GetClassName(); }
void R::AddKeyValue(std::string name, TCIMValue value) { fBody->AddKeyValue(name, value); }
R::TKeyBindings R::EnumerateKeyBindings() const { return fBody->EnumerateKeyBindings(); }
void R::SetKeyBindings(TKeyBindings bindings) { fBody->SetKeyBindings(bindings); }
std::string R::GetPath() const { return fBody->GetPath(); }
ICIMElement* R::GetCIMElement() { return fBody->GetCIMElement(); }
bool R::operator==(R const& other) const { return *fBody == *other.fBody; }
bool R::operator<(R const& other) const { return *fBody < *other.fBody; }
TCIMReferenceImpl* R::GetBody() const { return fBody.get(); }
