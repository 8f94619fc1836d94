// TCIMQualifierImpl: a qualifier's state. Every change makes it the holder's own.
#include "cim/TCIMQualifierImpl.h"

TCIMQualifierImpl::TCIMQualifierImpl(const TCIMQualifierDecl& decl, const TCIMValue& value,
                                     TCIMQualifierDecl::EFlavor flavor, bool propagated)
    : fDeclaration(decl), fValue(value), fFlavor(flavor), fPropagated(propagated) {}

void TCIMQualifierImpl::SetValue(const TCIMValue& value) {
  fValue = value;
  fPropagated = false;
}

void TCIMQualifierImpl::SetFlavor(TCIMQualifierDecl::EFlavor flavor) {
  fFlavor |= flavor;
  fPropagated = false;
}

void TCIMQualifierImpl::UnsetFlavor(TCIMQualifierDecl::EFlavor flavor) {
  fFlavor &= ~flavor;
  fPropagated = false;
}

TCIMQualifierDecl::EFlavor TCIMQualifierImpl::GetFlavor() const {
  return static_cast<TCIMQualifierDecl::EFlavor>(fFlavor);
}
