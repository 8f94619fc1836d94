// TCIMQualifier: a qualifier attached to a class or a property declaration: its
// declaration, its own value and flavors, and whether it was inherited.
#ifndef TCIMQUALIFIER_H
#define TCIMQUALIFIER_H

#include "TCIMQualifierDecl.h"
#include "TCIMValue.h"
#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <string>

class TCIMQualifierImpl;

/// Copies are deep: two handles never share a body. The declaration must outlive it.
class ZEL_API TCIMQualifier {
public:
  /// Flavors from the declaration.
  TCIMQualifier(const TCIMQualifierDecl& decl, const TCIMValue& value);
  TCIMQualifier(const TCIMQualifierDecl& decl, const TCIMValue& value,
                TCIMQualifierDecl::EFlavor flavor);
  TCIMQualifier(const TCIMQualifier& other);
  TCIMQualifier& operator=(const TCIMQualifier& other);

  /// The declaration's name.
  const std::string& GetName() const;
  /// Of the qualifier's own value, not of the declaration.
  TCIMValue::TCIMType GetType() const;
  bool IsArray() const;
  const TCIMQualifierDecl& GetDeclaration() const;
  TCIMValue GetValue() const;
  /// The three modifiers clear the propagated mark.
  void SetValue(const TCIMValue& value);
  void SetFlavor(TCIMQualifierDecl::EFlavor flavor);
  void UnsetFlavor(TCIMQualifierDecl::EFlavor flavor);
  TCIMQualifierDecl::EFlavor GetFlavor() const;
  /// True when copied down from a superclass.
  bool GetPropagated() const;
  void SetPropagated(bool propagated);

  /// By normalised name only.
  bool operator==(const TCIMQualifier& other) const;
  bool operator<(const TCIMQualifier& other) const;

  boost::shared_ptr<TCIMQualifierImpl> GetBody() const;

private:
  boost::shared_ptr<TCIMQualifierImpl> fBody;
};

#endif
