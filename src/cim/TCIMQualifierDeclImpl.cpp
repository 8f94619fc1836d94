// TCIMQualifierDeclImpl: a declaration's state and its registration.
#include "cim/TCIMQualifierDeclImpl.h"

#include "TContainer.h"

TCIMQualifierDeclImpl::TCIMQualifierDeclImpl(TCIMQualifierDecl& owner, TContainer& container,
                                             const std::string& name, const TCIMValue& value,
                                             TCIMQualifierDecl::EScope scope,
                                             TCIMQualifierDecl::EFlavor flavor)
    : fOwner(owner),
      fContainer(container),
      fName(name),
      fValue(value),
      fScope(scope),
      fFlavor(flavor) {}

TCIMQualifierDeclImpl::TCIMQualifierDeclImpl(TCIMQualifierDecl& owner, TContainer& container,
                                             const TCIMQualifierDeclImpl& other)
    : fOwner(owner), fContainer(container), fName(other.fName), fValue(other.fValue),
      fScope(other.fScope), fFlavor(other.fFlavor) {}

void TCIMQualifierDeclImpl::Validate() const {}

void TCIMQualifierDeclImpl::AddToContainer() const {
  fOwner.Validate();
  fContainer.AddQualifierDecl(fOwner);
}

TCIMQualifierDecl::EScope TCIMQualifierDeclImpl::GetScope() const {
  return static_cast<TCIMQualifierDecl::EScope>(fScope);
}
void TCIMQualifierDeclImpl::SetFlavor(TCIMQualifierDecl::EFlavor flavor) { fFlavor |= flavor; }
void TCIMQualifierDeclImpl::UnsetFlavor(TCIMQualifierDecl::EFlavor flavor) { fFlavor &= ~flavor; }
TCIMQualifierDecl::EFlavor TCIMQualifierDeclImpl::GetFlavor() const {
  return static_cast<TCIMQualifierDecl::EFlavor>(fFlavor);
}
