// TCIMPropertyDecl: one-line forwards to the body.
#include "TCIMPropertyDecl.h"

#include "TCIMPropertyDeclImpl.h"
#include "TZELException.h"
#include "ZelNamedMap.h"

typedef TCIMPropertyDecl P;

P::TCIMPropertyDecl(const std::string& name, TCIMClass& cls, const TCIMValue& value)
    : fBody(new TCIMPropertyDeclImpl(*this, name, cls, value)) {}

// Declared for hosts but not provided: callers build a new declaration instead.
P::TCIMPropertyDecl(P&, TCIMClass&) { throw TZELException(zelStatusNotImplemented); }

P::~TCIMPropertyDecl() {}
void P::AddQualifier(TCIMQualifier& qualifier) { fBody->AddQualifier(qualifier); }
TCIMQualifier& P::GetQualifier(const std::string& name) const { return fBody->GetQualifier(name); }
std::vector<TCIMQualifier*> P::EnumerateQualifiers() const { return fBody->EnumerateQualifiers(); }
void P::RemoveQualifier(TCIMQualifier& qualifier) { fBody->RemoveQualifier(qualifier); }
TCIMQualifier* P::FindQualifier(const std::string& name) const { return fBody->FindQualifier(name); }
void P::Validate() const {}
void P::AddToContainer() const { fBody->AddToContainer(); }
const std::string& P::GetName() const { return fBody->GetName(); }
void P::SetName(const std::string& name) { fBody->SetName(name); }
const TCIMValue& P::GetValue() const { return fBody->GetValue(); }
void P::SetValue(const TCIMValue& value) { fBody->SetValue(value); }
TCIMValue::TCIMType P::GetType() const { return fBody->GetValue().GetType(); }
bool P::IsArray() const { return fBody->GetValue().IsArray(); }
TCIMClass& P::GetClass() const { return fBody->GetClass(); }
bool P::operator==(const P& other) const { return ZelSameName(GetName(), other.GetName()); }
bool P::operator<(const P& other) const { return ZelNameBefore(GetName(), other.GetName()); }
boost::shared_ptr<TCIMPropertyDeclImpl> P::GetBody() const { return fBody; }
