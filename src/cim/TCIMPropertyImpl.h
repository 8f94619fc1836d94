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
  /// SetValue that moves the value in rather than copying it; value is left NULL.
  void TakeValue(TCIMValue& value);
  /// What GetValue() copies: the own value, else the declaration's default.
  const TCIMValue& CurrentValue() const;
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

  // Value maps. "ValueMap" entry i names the codes shown as "Values" entry i; without a
  // "ValueMap" the codes are the indexes 0, 1, 2... Booleans are the codes 0 and 1. An
  // entry is a number (decimal, or hex after "0x") or a range: "3..5" holds 3 to 5, and an
  // open end reaches to the neighbour entry: "..7" starts after the entry before it (at 0
  // when first), "9.." stops before the entry after it (at the largest code when last),
  // ".." fills the gap between both. In the usual ascending map that means "the codes not
  // named elsewhere". Two open ends facing each other ("3.." then ".." or "..7"), a
  // non-string list or lists of unequal length make the map faulty: it is logged as a
  // warning each time it is read and not used. Entries that are neither number nor range
  // are skipped; the first entry holding the code wins; a code no entry holds shows as if
  // there were no map.
  // The vector forms give one text per array element (a NULL element shows the NULL text),
  // none for a NULL array, and the text of ToString() for a scalar.
  struct TValueMapEntry {
    unsigned long long fLow;
    unsigned long long fHigh; ///< Below fLow when the entry holds no code.
    bool fOpenLow;            ///< Written "..7" or "..".
    bool fOpenHigh;           ///< Written "9.." or "..".
    std::string fText;
  };

  std::string ToStringWithQualifiers(const TCIMValue& value) const;
  std::string ToStringWithBase(const TCIMValue& value) const;
  /// False when there is no usable map; error then holds the fault, if any.
  bool BuildValueMapEntryArray(std::vector<TValueMapEntry>& entries, std::string& error) const;
  /// False when no entry holds the value's code.
  bool LookupInTable(const TCIMValue& value, std::vector<TValueMapEntry>& entries,
                     std::string& text) const;
  std::vector<std::string> ToStringVectorWithBase() const;
  std::vector<std::string> PrevToStringVectorWithBase() const;

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
