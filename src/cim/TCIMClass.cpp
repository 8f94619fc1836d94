// TCIMClass: one-line forwards to the body.
#include "TCIMClass.h"

#include "TCIMClassImpl.h"

typedef TCIMClass C;

C::TCIMClass(TContainer& container, std::string name, C* superclass)
    : fBody(new TCIMClassImpl(*this, container, name, superclass)) {}

C::~TCIMClass() {}
void C::Validate() const { fBody->Validate(); }
void C::AddToContainer() const { fBody->AddToContainer(); }
TContainer& C::GetContainer() const { return fBody->GetContainer(); }
void C::AddQualifier(TCIMQualifier& qualifier) { fBody->AddQualifier(qualifier); }
TCIMQualifier& C::GetQualifier(const std::string& name) const { return fBody->GetQualifier(name); }
std::vector<TCIMQualifier*> C::EnumerateQualifiers() const { return fBody->EnumerateQualifiers(); }
void C::RemoveQualifier(TCIMQualifier& qualifier) { fBody->RemoveQualifier(qualifier); }
const std::string& C::GetName() const { return fBody->GetName(); }
C* C::GetSuperClass() const { return fBody->GetSuperClass(); }
bool C::IsRootClass() const { return fBody->IsRootClass(); }
bool C::IsAssociation() const { return fBody->IsAssociation(); }
bool C::IsAbstract() const { return fBody->IsAbstract(); }
bool C::IsSubclassOf(const C* other) const { return fBody->IsSubclassOf(other); }
std::vector<C*> C::EnumerateSubClasses(bool deep) const { return fBody->EnumerateSubClasses(deep); }
TCIMQualifier* C::FindQualifier(const std::string& name) const { return fBody->FindQualifier(name); }
void C::AddPropertyDecl(TCIMPropertyDecl& decl) { fBody->AddPropertyDecl(decl); }

TCIMPropertyDecl& C::GetPropertyDecl(const std::string& name) const {
  return fBody->GetPropertyDecl(name);
}

TCIMPropertyDecl* C::FindPropertyDecl(const std::string& name) const {
  return fBody->FindPropertyDecl(name);
}

std::vector<TCIMPropertyDecl*> C::EnumeratePropertyDecls() const {
  return fBody->EnumeratePropertyDecls();
}

void C::RemovePropertyDecl(TCIMPropertyDecl& decl) { fBody->RemovePropertyDecl(decl); }
std::vector<std::string> C::EnumerateKeyNames() const { return fBody->EnumerateKeyNames(); }
void C::AddInstance(TCIMInstance& instance) { fBody->AddInstance(instance); }
void C::RemoveInstance(TCIMInstance& instance) { fBody->RemoveInstance(instance); }
TCIMInstance& C::GetInstance(const TCIMReference& path) const { return fBody->GetInstance(path); }
TCIMInstance* C::FindInstance(const TCIMReference& path) const { return fBody->FindInstance(path); }

std::vector<TCIMInstance*> C::EnumerateInstances(bool deep) const {
  return fBody->EnumerateInstances(deep);
}

std::vector<C*> C::Associators(const std::string& assocClass, const std::string& resultClass,
                               const std::string& role, const std::string& resultRole) const {
  return fBody->Associators(assocClass, resultClass, role, resultRole);
}

std::vector<C*> C::References(const std::string& resultClass, const std::string& role) const {
  return fBody->References(resultClass, role);
}

bool C::operator==(const C& other) const { return GetName() == other.GetName(); }
bool C::operator<(const C& other) const { return GetName() < other.GetName(); }
boost::shared_ptr<TCIMClassImpl> C::GetBody() const { return fBody; }
