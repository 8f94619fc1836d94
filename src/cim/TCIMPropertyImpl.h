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
  /// Same declaration, copies of the own and previous values.
  TCIMPropertyImpl(TCIMProperty& owner, const TCIMPropertyImpl& other);
  ~TCIMPropertyImpl();

  std::string GetName() const;
  TCIMValue GetValue() const;
  TCIMValue GetPrevValue() const;
  const TCIMPropertyDecl& GetDeclaration() const { return *fDeclaration; }
  void SetValue(const TCIMValue& value);
  void SetPrevValue(const TCIMValue& value);
  void SetPrevValue();
  bool IsPrevValueDifferent() const { return fPrevValueDifferent; }
  bool GetPropagated() const { return fValue == 0; }
  /// The own value, null when there is none.
  const TCIMValue* GetOwnValue() const { return fValue; }

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
