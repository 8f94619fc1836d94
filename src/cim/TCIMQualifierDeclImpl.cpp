// TCIMQualifierDeclImpl: a declaration's state and its registration.
#include "TCIMQualifierDeclImpl.h"

#include "TContainer.h"

typedef TCIMQualifierDecl D;

TCIMQualifierDeclImpl::TCIMQualifierDeclImpl(D& owner, TContainer& container,
                                             const std::string& name, const TCIMValue& value,
                                             D::EScope scope, D::EFlavor flavor)
    : fOwner(owner), fContainer(container), fName(name), fValue(value), fScope(scope),
      fFlavor(flavor) {}

TCIMQualifierDeclImpl::TCIMQualifierDeclImpl(D& owner, TContainer& container,
                                             const TCIMQualifierDeclImpl& other)
    : fOwner(owner), fContainer(container), fName(other.fName), fValue(other.fValue),
      fScope(other.fScope), fFlavor(other.fFlavor) {}

void TCIMQualifierDeclImpl::Validate() const {}

void TCIMQualifierDeclImpl::AddToContainer() const {
  fOwner.Validate();
  fContainer.AddQualifierDecl(fOwner);
}

D::EScope TCIMQualifierDeclImpl::GetScope() const { return static_cast<D::EScope>(fScope); }
void TCIMQualifierDeclImpl::SetFlavor(D::EFlavor flavor) { fFlavor |= flavor; }
void TCIMQualifierDeclImpl::UnsetFlavor(D::EFlavor flavor) { fFlavor &= ~flavor; }
D::EFlavor TCIMQualifierDeclImpl::GetFlavor() const { return static_cast<D::EFlavor>(fFlavor); }
