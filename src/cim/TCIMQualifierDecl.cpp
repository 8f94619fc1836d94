// TCIMQualifierDecl: one-line forwards to the body.
#include "TCIMQualifierDecl.h"

#include "TCIMQualifierDeclImpl.h"
#include "ZelNamedMap.h"

typedef TCIMQualifierDecl D;

D::TCIMQualifierDecl(TContainer& container)
    : fBody(new TCIMQualifierDeclImpl(*this, container, std::string(), TCIMValue(),
                                      static_cast<EScope>(0), static_cast<EFlavor>(0))) {}

D::TCIMQualifierDecl(TContainer& container, const std::string& name, const TCIMValue& value,
                     EScope scope, EFlavor flavor)
    : fBody(new TCIMQualifierDeclImpl(*this, container, name, value, scope, flavor)) {}

D::~TCIMQualifierDecl() {}
void D::Validate() const { fBody->Validate(); }
void D::AddToContainer() const { fBody->AddToContainer(); }
const std::string& D::GetName() const { return fBody->GetName(); }
void D::SetName(const std::string& name) { fBody->SetName(name); }
TCIMValue::TCIMType D::GetType() const { return fBody->GetValue().GetType(); }
bool D::IsArray() const { return fBody->GetValue().IsArray(); }
TCIMValue D::GetValue() const { return fBody->GetValue(); }
void D::SetValue(const TCIMValue& value) { fBody->SetValue(value); }
TContainer& D::GetContainer() const { return fBody->GetContainer(); }
D::EScope D::GetScope() const { return fBody->GetScope(); }
void D::SetFlavor(EFlavor flavor) { fBody->SetFlavor(flavor); }
void D::UnsetFlavor(EFlavor flavor) { fBody->UnsetFlavor(flavor); }
D::EFlavor D::GetFlavor() const { return fBody->GetFlavor(); }
bool D::operator==(const D& other) const { return ZelSameName(GetName(), other.GetName()); }
bool D::operator<(const D& other) const { return ZelNameBefore(GetName(), other.GetName()); }
boost::shared_ptr<TCIMQualifierDeclImpl> D::GetBody() const { return fBody; }
