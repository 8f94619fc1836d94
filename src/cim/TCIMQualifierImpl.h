// TCIMQualifierImpl: the state of a qualifier.
#ifndef TCIMQUALIFIERIMPL_H
#define TCIMQUALIFIERIMPL_H

#include "TCIMQualifierDecl.h"
#include "TCIMValue.h"

#include <utility>

class TCIMQualifierImpl {
public:
  TCIMQualifierImpl(const TCIMQualifierDecl& decl, const TCIMValue& value,
                    TCIMQualifierDecl::EFlavor flavor, bool propagated);

  const TCIMQualifierDecl& GetDeclaration() const { return fDeclaration; }
  const TCIMValue& GetValue() const { return fValue; }
  void SetValue(const TCIMValue& value);
  /// Moves value in, as a reader that is done with it does; the flags stay as they are.
  void TakeValue(TCIMValue& value) { fValue = std::move(value); }
  void SetFlavor(TCIMQualifierDecl::EFlavor flavor);
  void UnsetFlavor(TCIMQualifierDecl::EFlavor flavor);
  TCIMQualifierDecl::EFlavor GetFlavor() const;
  bool GetPropagated() const { return fPropagated; }
  void SetPropagated(bool propagated) { fPropagated = propagated; }

private:
  const TCIMQualifierDecl& fDeclaration;
  TCIMValue fValue;
  unsigned int fFlavor;
  bool fPropagated;
};

#endif
