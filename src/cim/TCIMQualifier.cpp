// TCIMQualifier: one-line forwards to the body; copies make a new body.
#include "TCIMQualifier.h"

#include "cim/TCIMQualifierImpl.h"
#include "cim/ZelText.h"

#include <boost/make_shared.hpp>

TCIMQualifier::TCIMQualifier(const TCIMQualifierDecl& decl, const TCIMValue& value)
    : fBody(boost::make_shared<TCIMQualifierImpl>(decl, value, decl.GetFlavor(), false)) {}

TCIMQualifier::TCIMQualifier(const TCIMQualifierDecl& decl, const TCIMValue& value,
                             TCIMQualifierDecl::EFlavor flavor)
    : fBody(boost::make_shared<TCIMQualifierImpl>(decl, value, flavor, false)) {}

TCIMQualifier::TCIMQualifier(const TCIMQualifier& other)
    : fBody(boost::make_shared<TCIMQualifierImpl>(*other.fBody)) {}

TCIMQualifier& TCIMQualifier::operator=(const TCIMQualifier& other) {
  if (this != &other)
    fBody = boost::make_shared<TCIMQualifierImpl>(*other.fBody);
  return *this;
}

const std::string& TCIMQualifier::GetName() const { return GetDeclaration().GetName(); }
TCIMValue::TCIMType TCIMQualifier::GetType() const { return fBody->GetValue().GetType(); }
bool TCIMQualifier::IsArray() const { return fBody->GetValue().IsArray(); }
const TCIMQualifierDecl& TCIMQualifier::GetDeclaration() const { return fBody->GetDeclaration(); }
TCIMValue TCIMQualifier::GetValue() const { return fBody->GetValue(); }
void TCIMQualifier::SetValue(const TCIMValue& value) { fBody->SetValue(value); }
void TCIMQualifier::SetFlavor(TCIMQualifierDecl::EFlavor flavor) { fBody->SetFlavor(flavor); }
void TCIMQualifier::UnsetFlavor(TCIMQualifierDecl::EFlavor flavor) { fBody->UnsetFlavor(flavor); }
TCIMQualifierDecl::EFlavor TCIMQualifier::GetFlavor() const { return fBody->GetFlavor(); }
bool TCIMQualifier::GetPropagated() const { return fBody->GetPropagated(); }
void TCIMQualifier::SetPropagated(bool propagated) { fBody->SetPropagated(propagated); }

bool TCIMQualifier::operator==(const TCIMQualifier& other) const {
  return ZelSameName(GetName(), other.GetName());
}

bool TCIMQualifier::operator<(const TCIMQualifier& other) const {
  return ZelNameBefore(GetName(), other.GetName());
}

boost::shared_ptr<TCIMQualifierImpl> TCIMQualifier::GetBody() const { return fBody; }
