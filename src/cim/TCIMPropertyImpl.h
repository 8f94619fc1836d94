// TCIMPropertyImpl: the state of a property: its declaration, own value and previous value.
// The display forms live in their own source file.
#ifndef TCIMPROPERTYIMPL_H
#define TCIMPROPERTYIMPL_H

#include "TCIMProperty.h"
#include "TCIMValue.h"

#include <string>
#include <vector>

class TCIMPropertyDecl;

class TCIMPropertyImpl {
public:
  TCIMPropertyImpl(TCIMProperty& owner, const TCIMPropertyDecl& decl);
  /// Then SetValue(value); nothing is held when that throws.
  TCIMPropertyImpl(TCIMProperty& owner, const TCIMPropertyDecl& decl, const TCIMValue& value);
  /// Same declaration, copies of the own and previous values.
  TCIMPropertyImpl(TCIMProperty& owner, const TCIMPropertyImpl& other);
  ~TCIMPropertyImpl();

  std::string GetName() const;
  TCIMValue GetValue() const;
  TCIMValue GetPrevValue() const;
  TCIMValue::TCIMType GetType() const;
  const TCIMPropertyDecl& GetDeclaration() const { return *fDeclaration; }
  void SetValue(const TCIMValue& value);
  void SetPrevValue(const TCIMValue& value);
  void SetPrevValue();
  bool IsPrevValueDifferent() const { return fPrevValueDifferent; }
  bool GetPropagated() const { return fValue == 0; }
  /// Declarations by normalised name, then the own values (absent ones as untyped NULL).
  bool operator==(const TCIMPropertyImpl& other) const;
  bool operator<(const TCIMPropertyImpl& other) const;

  std::string ToString() const;
  std::vector<std::string> ToStringVector() const;
  std::string PrevToString() const;
  std::vector<std::string> PrevToStringVector() const;

private:
  TCIMPropertyImpl(const TCIMPropertyImpl&);
  TCIMPropertyImpl& operator=(const TCIMPropertyImpl&);

  TCIMProperty* fOwner;
  const TCIMPropertyDecl* fDeclaration;
  TCIMValue* fValue;
  TCIMValue* fPrevValue;
  bool fPrevValueDifferent;
};

#endif
