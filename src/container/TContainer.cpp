// TContainer: forwards to its body; the three factories build the library's own types.
#include "TContainer.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "container/TContainerImpl.h"

TContainer::TContainer() : fBody(new TContainerImpl(*this)) { fBody->Initialize(); }

TContainer::~TContainer() {}

TCIMClass* TContainer::AllocateClass(const std::string& name, TCIMClass* superclass) const {
  return new TCIMClass(const_cast<TContainer&>(*this), name, superclass);
}

TCIMInstance* TContainer::AllocateInstance(TCIMClass* cls) const { return new TCIMInstance(cls); }

TCIMQualifierDecl* TContainer::AllocateQualifierDecl(const std::string& name,
                                                     const TCIMValue& defaultValue,
                                                     TCIMQualifierDecl::EScope scope,
                                                     TCIMQualifierDecl::EFlavor flavor) const {
  return new TCIMQualifierDecl(const_cast<TContainer&>(*this), name, defaultValue, scope, flavor);
}

void TContainer::AddClass(TCIMClass& cls) { fBody->AddClass(cls); }
void TContainer::AddQualifierDecl(TCIMQualifierDecl& decl) { fBody->AddQualifierDecl(decl); }
TCIMClass* TContainer::GetClass(const std::string& name) const { return fBody->GetClass(name); }
TCIMClass* TContainer::FindClass(const std::string& name) const { return fBody->FindClass(name); }
TCIMClass* TContainer::GetRootClass() const { return fBody->GetRootClass(); }
void TContainer::RemoveClass(TCIMClass& cls) { fBody->RemoveClass(cls); }

TCIMQualifierDecl* TContainer::GetQualifierDecl(const std::string& name) const {
  return fBody->GetQualifierDecl(name);
}

TCIMQualifierDecl* TContainer::FindQualifierDecl(const std::string& name) const {
  return fBody->FindQualifierDecl(name);
}

void TContainer::RemoveQualifierDecl(TCIMQualifierDecl& decl) { fBody->RemoveQualifierDecl(decl); }

std::vector<TCIMQualifierDecl*> TContainer::EnumerateQualifiers() const {
  return fBody->EnumerateQualifiers();
}

std::vector<TCIMClass*> TContainer::PopulateContainerFromFile(const std::string& path) {
  return fBody->PopulateContainerFromFile(path);
}

void TContainer::hackhack_TurnIntoADiffContainer() { fBody->TurnIntoADiffContainer(); }
bool TContainer::isDiffContainer() { return fBody->IsDiffContainer(); }

void TContainer::setDiffInstances(std::vector<TCIMInstance*> instances) {
  fBody->SetDiffInstances(instances);
}

std::vector<TCIMInstance*> TContainer::getDiffInstances() { return fBody->GetDiffInstances(); }
bool TContainer::hasDifferences() { return fBody->HasDifferences(); }
boost::shared_ptr<TContainerImpl> TContainer::GetBody() const { return fBody; }
