// TCIMQualifierImpl: a qualifier's state. Every change makes it the holder's own.
#include "TCIMQualifierImpl.h"

typedef TCIMQualifierDecl D;

TCIMQualifierImpl::TCIMQualifierImpl(const D& decl, const TCIMValue& value, D::EFlavor flavor,
                                     bool propagated)
    : fDeclaration(decl), fValue(value), fFlavor(flavor), fPropagated(propagated) {}

void TCIMQualifierImpl::SetValue(const TCIMValue& value) {
  fValue = value;
  fPropagated = false;
}

void TCIMQualifierImpl::SetFlavor(D::EFlavor flavor) {
  fFlavor |= flavor;
  fPropagated = false;
}

void TCIMQualifierImpl::UnsetFlavor(D::EFlavor flavor) {
  fFlavor &= ~flavor;
  fPropagated = false;
}

D::EFlavor TCIMQualifierImpl::GetFlavor() const { return static_cast<D::EFlavor>(fFlavor); }
