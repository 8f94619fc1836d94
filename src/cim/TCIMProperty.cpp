// TCIMProperty: one-line forwards to the body it owns alone.
#include "TCIMProperty.h"

#include "cim/TCIMPropertyImpl.h"

#include "TCIMPropertyDecl.h"

TCIMProperty::TCIMProperty(const TCIMPropertyDecl& decl)
    : fBody(new TCIMPropertyImpl(*this, decl)) {}

TCIMProperty::TCIMProperty(const TCIMPropertyDecl& decl, const TCIMValue& value)
    : fBody(new TCIMPropertyImpl(*this, decl, value)) {}

TCIMProperty::TCIMProperty(const TCIMProperty& other)
    : fBody(new TCIMPropertyImpl(*this, *other.fBody)) {}

TCIMProperty::~TCIMProperty() { delete fBody; }

TCIMProperty& TCIMProperty::operator=(const TCIMProperty& other) {
  if (this != &other) {
    TCIMPropertyImpl* copy = new TCIMPropertyImpl(*this, *other.fBody);
    delete fBody;
    fBody = copy;
  }
  return *this;
}

std::string TCIMProperty::GetName() const { return fBody->GetName(); }
TCIMValue TCIMProperty::GetValue() const { return fBody->GetValue(); }
TCIMValue TCIMProperty::GetPrevValue() const { return fBody->GetPrevValue(); }
TCIMValue::TCIMType TCIMProperty::GetType() const { return fBody->GetType(); }
bool TCIMProperty::IsArray() const { return fBody->GetDeclaration().IsArray(); }
const TCIMPropertyDecl& TCIMProperty::GetDeclaration() const { return fBody->GetDeclaration(); }
void TCIMProperty::SetValue(const TCIMValue& value) { fBody->SetValue(value); }
void TCIMProperty::SetPrevValue(const TCIMValue& value) { fBody->SetPrevValue(value); }
void TCIMProperty::SetPrevValue() { fBody->SetPrevValue(); }
bool TCIMProperty::IsPrevValueDifferent() const { return fBody->IsPrevValueDifferent(); }
bool TCIMProperty::GetPropagated() const { return fBody->GetPropagated(); }
std::string TCIMProperty::ToString() const { return fBody->ToString(); }
std::vector<std::string> TCIMProperty::ToStringVector() const { return fBody->ToStringVector(); }
std::string TCIMProperty::PrevToString() const { return fBody->PrevToString(); }

std::vector<std::string> TCIMProperty::PrevToStringVector() const {
  return fBody->PrevToStringVector();
}

bool TCIMProperty::operator==(const TCIMProperty& other) const { return *fBody == *other.fBody; }
bool TCIMProperty::operator<(const TCIMProperty& other) const { return *fBody < *other.fBody; }
TCIMPropertyImpl* TCIMProperty::GetBody() const { return fBody; }
