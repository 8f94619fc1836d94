// TCIMPropertyDeclImpl: the state of a property declaration.
#ifndef TCIMPROPERTYDECLIMPL_H
#define TCIMPROPERTYDECLIMPL_H

#include "TCIMPropertyDecl.h"
#include "TCIMValue.h"
#include "cim/ZelQualifierHolder.h"

#include <string>
#include <string_view>

class TCIMClass;

class TCIMPropertyDeclImpl {
public:
  TCIMPropertyDeclImpl(TCIMPropertyDecl& owner, const std::string& name, TCIMClass& cls,
                       const TCIMValue& value);

  void AddToContainer() const;
  const std::string& GetName() const { return fName; }
  void SetName(const std::string& name) { fName = name; }
  const TCIMValue& GetValue() const { return fValue; }
  void SetValue(const TCIMValue& value) { fValue = value; }
  TCIMClass& GetClass() const { return fClass; }
  ZEL_QUALIFIER_OPERATIONS
  /// True when the declaration carries a non-NULL true "KEY" qualifier.
  bool IsKey() const { return ZelQualifierIsTrue(fQualifiers, "key"); }
  /// Whether a qualifier of that normalised name is there, whatever its value.
  bool HasQualifier(std::string_view normalName) const {
    return fQualifiers.find(normalName) != fQualifiers.end();
  }

private:
  TCIMPropertyDecl& fOwner;
  std::string fName;
  TCIMClass& fClass;
  TCIMValue fValue;
  TQualifierMap fQualifiers;
};

#endif
