// TCIMInstance: one-line forwards to the body.
#include "TCIMInstance.h"

#include "cim/TCIMInstanceImpl.h"
#include "TZELException.h"

#include <boost/make_shared.hpp>

TCIMInstance::TCIMInstance(TCIMClass* cls)
    : fBody(boost::make_shared<TCIMInstanceImpl>(*this, cls)) {}

// Declared for hosts but not provided: callers allocate a new instance instead.
TCIMInstance::TCIMInstance(TCIMInstance&, TCIMClass&) {
  throw TZELException(zelStatusNotImplemented);
}

TCIMInstance::~TCIMInstance() {}
void TCIMInstance::Validate() const { fBody->Validate(); }
void TCIMInstance::AddToContainer() const { fBody->AddToContainer(); }
TContainer& TCIMInstance::GetContainer() const { return fBody->GetContainer(); }
TCIMClass& TCIMInstance::GetClass() const { return fBody->GetClass(); }
void TCIMInstance::SetProperty(const TCIMProperty& property) { fBody->SetProperty(property); }

void TCIMInstance::SetPropertyValue(const std::string& name, const TCIMValue& value) {
  fBody->SetPropertyValue(name, value);
}

void TCIMInstance::SetPrevPropertyValue(const std::string& name, const TCIMValue& value) {
  fBody->SetPrevPropertyValue(name, value);
}

void TCIMInstance::SetPrevPropertyValue(const std::string& name) {
  fBody->SetPrevPropertyValue(name);
}
TCIMProperty& TCIMInstance::GetProperty(const std::string& name) const {
  return fBody->GetProperty(name);
}
TCIMProperty* TCIMInstance::FindProperty(const std::string& name) const {
  return fBody->FindProperty(name);
}

std::vector<const TCIMProperty*> TCIMInstance::EnumerateProperties() const {
  return fBody->EnumerateProperties();
}

TCIMReference TCIMInstance::BuildPath() const { return fBody->BuildPath(); }

std::vector<TCIMInstance*> TCIMInstance::Associators(const std::string& assocClass,
                                                     const std::string& resultClass,
                                                     const std::string& role,
                                                     const std::string& resultRole) const {
  return fBody->Associators(assocClass, resultClass, role, resultRole);
}

std::vector<TCIMInstance*> TCIMInstance::References(const std::string& resultClass,
                                                    const std::string& role) const {
  return fBody->References(resultClass, role);
}

bool TCIMInstance::operator==(const TCIMInstance& other) const { return *fBody == *other.fBody; }
bool TCIMInstance::operator<(const TCIMInstance& other) const { return *fBody < *other.fBody; }
boost::shared_ptr<TCIMInstanceImpl> TCIMInstance::GetBody() const { return fBody; }
