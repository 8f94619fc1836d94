// TCIMInstance: one-line forwards to the body.
#include "TCIMInstance.h"

#include "TCIMInstanceImpl.h"
#include "TZELException.h"

#include <boost/make_shared.hpp>

typedef TCIMInstance I;

I::TCIMInstance(TCIMClass* cls) : fBody(boost::make_shared<TCIMInstanceImpl>(*this, cls)) {}

// Declared for hosts but not provided: callers allocate a new instance instead.
I::TCIMInstance(I&, TCIMClass&) { throw TZELException(zelStatusNotImplemented); }

I::~TCIMInstance() {}
void I::Validate() const { fBody->Validate(); }
void I::AddToContainer() const { fBody->AddToContainer(); }
TContainer& I::GetContainer() const { return fBody->GetContainer(); }
TCIMClass& I::GetClass() const { return fBody->GetClass(); }
void I::SetProperty(const TCIMProperty& property) { fBody->SetProperty(property); }

void I::SetPropertyValue(const std::string& name, const TCIMValue& value) {
  fBody->SetPropertyValue(name, value);
}

void I::SetPrevPropertyValue(const std::string& name, const TCIMValue& value) {
  fBody->SetPrevPropertyValue(name, value);
}

void I::SetPrevPropertyValue(const std::string& name) { fBody->SetPrevPropertyValue(name); }
TCIMProperty& I::GetProperty(const std::string& name) const { return fBody->GetProperty(name); }
TCIMProperty* I::FindProperty(const std::string& name) const { return fBody->FindProperty(name); }

std::vector<const TCIMProperty*> I::EnumerateProperties() const {
  return fBody->EnumerateProperties();
}

TCIMReference I::BuildPath() const { return fBody->BuildPath(); }

std::vector<I*> I::Associators(const std::string& assocClass, const std::string& resultClass,
                               const std::string& role, const std::string& resultRole) const {
  return fBody->Associators(assocClass, resultClass, role, resultRole);
}

std::vector<I*> I::References(const std::string& resultClass, const std::string& role) const {
  return fBody->References(resultClass, role);
}

bool I::operator==(const I& other) const { return *fBody == *other.fBody; }
bool I::operator<(const I& other) const { return *fBody < *other.fBody; }
boost::shared_ptr<TCIMInstanceImpl> I::GetBody() const { return fBody; }
