// TCIMPropertyDeclImpl: a declaration's state; its class decides acceptance.
#include "cim/TCIMPropertyDeclImpl.h"

#include "TCIMClass.h"

TCIMPropertyDeclImpl::TCIMPropertyDeclImpl(TCIMPropertyDecl& owner, const std::string& name,
                                           TCIMClass& cls, const TCIMValue& value)
    : fOwner(owner), fName(name), fClass(cls), fValue(value) {}

void TCIMPropertyDeclImpl::AddToContainer() const {
  fOwner.Validate();
  fClass.AddPropertyDecl(fOwner);
}
