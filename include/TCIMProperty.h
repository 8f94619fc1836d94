// TCIMProperty: one property value of an instance: its declaration, its own value if any,
// and the value it held in an earlier collection.
#ifndef TCIMPROPERTY_H
#define TCIMPROPERTY_H

#include "TCIMValue.h"
#include "zelcore.h"

#include <string>
#include <vector>

class TCIMPropertyDecl;
class TCIMPropertyImpl;

/// Owns its body alone; copies are deep. Must not outlive its declaration's class.
class ZEL_API TCIMProperty {
public:
  explicit TCIMProperty(const TCIMPropertyDecl& decl);
  /// Then SetValue(value), which may throw.
  TCIMProperty(const TCIMPropertyDecl& decl, const TCIMValue& value);
  TCIMProperty(const TCIMProperty& other);
  ~TCIMProperty();
  TCIMProperty& operator=(const TCIMProperty& other);

  std::string GetName() const;
  /// The own value, else the declaration's default.
  TCIMValue GetValue() const;
  /// The previous value once one was set (the default when it was set NULL-less), else
  /// GetValue().
  TCIMValue GetPrevValue() const;
  /// Of the declaration.
  TCIMValue::TCIMType GetType() const;
  bool IsArray() const;
  const TCIMPropertyDecl& GetDeclaration() const;
  /// Type (and referenced class) must match the declaration: zelStatusTypeMismatch.
  void SetValue(const TCIMValue& value);
  /// As SetValue, but a NULL value of any type is accepted.
  void SetPrevValue(const TCIMValue& value);
  /// Marks a property that did not exist before: the previous value becomes NULL.
  void SetPrevValue();
  bool IsPrevValueDifferent() const;
  /// True exactly while there is no own value.
  bool GetPropagated() const;

  /// Display texts, driven by the declaration's qualifiers.
  std::string ToString() const;
  std::vector<std::string> ToStringVector() const;
  std::string PrevToString() const;
  std::vector<std::string> PrevToStringVector() const;

  /// Declarations by normalised name, then the own values.
  bool operator==(const TCIMProperty& other) const;
  bool operator<(const TCIMProperty& other) const;

  TCIMPropertyImpl* GetBody() const;

private:
  TCIMPropertyImpl* fBody;
};

#endif
