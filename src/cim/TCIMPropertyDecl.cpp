// TCIMPropertyDecl: one-line forwards to the body.
#include "TCIMPropertyDecl.h"

#include "cim/TCIMPropertyDeclImpl.h"
#include "TZELException.h"
#include "cim/ZelText.h"

TCIMPropertyDecl::TCIMPropertyDecl(const std::string& name, TCIMClass& cls, const TCIMValue& value)
    : fBody(new TCIMPropertyDeclImpl(*this, name, cls, value)) {}

// Declared for hosts but not provided: callers build a new declaration instead.
TCIMPropertyDecl::TCIMPropertyDecl(TCIMPropertyDecl&, TCIMClass&) {
  throw TZELException(zelStatusNotImplemented);
}

TCIMPropertyDecl::~TCIMPropertyDecl() {}
void TCIMPropertyDecl::AddQualifier(TCIMQualifier& qualifier) { fBody->AddQualifier(qualifier); }
TCIMQualifier& TCIMPropertyDecl::GetQualifier(const std::string& name) const {
  return fBody->GetQualifier(name);
}
std::vector<TCIMQualifier*> TCIMPropertyDecl::EnumerateQualifiers() const {
  return fBody->EnumerateQualifiers();
}
void TCIMPropertyDecl::RemoveQualifier(TCIMQualifier& qualifier) {
  fBody->RemoveQualifier(qualifier);
}
TCIMQualifier* TCIMPropertyDecl::FindQualifier(const std::string& name) const {
  return fBody->FindQualifier(name);
}
void TCIMPropertyDecl::Validate() const {}
void TCIMPropertyDecl::AddToContainer() const { fBody->AddToContainer(); }
const std::string& TCIMPropertyDecl::GetName() const { return fBody->GetName(); }
void TCIMPropertyDecl::SetName(const std::string& name) { fBody->SetName(name); }
const TCIMValue& TCIMPropertyDecl::GetValue() const { return fBody->GetValue(); }
void TCIMPropertyDecl::SetValue(const TCIMValue& value) { fBody->SetValue(value); }
TCIMValue::TCIMType TCIMPropertyDecl::GetType() const { return fBody->GetValue().GetType(); }
bool TCIMPropertyDecl::IsArray() const { return fBody->GetValue().IsArray(); }
TCIMClass& TCIMPropertyDecl::GetClass() const { return fBody->GetClass(); }
bool TCIMPropertyDecl::operator==(const TCIMPropertyDecl& other) const {
  return ZelSameName(GetName(), other.GetName());
}
bool TCIMPropertyDecl::operator<(const TCIMPropertyDecl& other) const {
  return ZelNameBefore(GetName(), other.GetName());
}
boost::shared_ptr<TCIMPropertyDeclImpl> TCIMPropertyDecl::GetBody() const { return fBody; }
