// TCIMQualifierDecl: one-line forwards to the body.
#include "TCIMQualifierDecl.h"

#include "cim/TCIMQualifierDeclImpl.h"
#include "cim/ZelText.h"

TCIMQualifierDecl::TCIMQualifierDecl(TContainer& container)
    : fBody(new TCIMQualifierDeclImpl(*this, container, std::string(), TCIMValue(),
                                      static_cast<EScope>(0), static_cast<EFlavor>(0))) {}

TCIMQualifierDecl::TCIMQualifierDecl(TContainer& container, const std::string& name,
                                     const TCIMValue& value, EScope scope, EFlavor flavor)
    : fBody(new TCIMQualifierDeclImpl(*this, container, name, value, scope, flavor)) {}

TCIMQualifierDecl::~TCIMQualifierDecl() {}
void TCIMQualifierDecl::Validate() const { fBody->Validate(); }
void TCIMQualifierDecl::AddToContainer() const { fBody->AddToContainer(); }
const std::string& TCIMQualifierDecl::GetName() const { return fBody->GetName(); }
void TCIMQualifierDecl::SetName(const std::string& name) { fBody->SetName(name); }
TCIMValue::TCIMType TCIMQualifierDecl::GetType() const { return fBody->GetValue().GetType(); }
bool TCIMQualifierDecl::IsArray() const { return fBody->GetValue().IsArray(); }
TCIMValue TCIMQualifierDecl::GetValue() const { return fBody->GetValue(); }
void TCIMQualifierDecl::SetValue(const TCIMValue& value) { fBody->SetValue(value); }
TContainer& TCIMQualifierDecl::GetContainer() const { return fBody->GetContainer(); }
TCIMQualifierDecl::EScope TCIMQualifierDecl::GetScope() const { return fBody->GetScope(); }
void TCIMQualifierDecl::SetFlavor(EFlavor flavor) { fBody->SetFlavor(flavor); }
void TCIMQualifierDecl::UnsetFlavor(EFlavor flavor) { fBody->UnsetFlavor(flavor); }
TCIMQualifierDecl::EFlavor TCIMQualifierDecl::GetFlavor() const { return fBody->GetFlavor(); }
bool TCIMQualifierDecl::operator==(const TCIMQualifierDecl& other) const {
  return ZelSameName(GetName(), other.GetName());
}
bool TCIMQualifierDecl::operator<(const TCIMQualifierDecl& other) const {
  return ZelNameBefore(GetName(), other.GetName());
}
boost::shared_ptr<TCIMQualifierDeclImpl> TCIMQualifierDecl::GetBody() const { return fBody; }
