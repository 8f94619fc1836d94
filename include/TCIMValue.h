// TCIMValue: the value of a property, qualifier or key: any CIM type, scalar or array, or NULL.
#ifndef TCIMVALUE_H
#define TCIMVALUE_H

#include "zelcore.h"

#include <iosfwd>
#include <string>
#include <vector>

class TCIMClass;
class TCIMDateTime;
class TCIMReference;
class TCIMValueImpl;
class TContainer;

/// Copies are deep. Accessors are strict: a value yields only the native type of its exact
/// CIM type (zelStatusTypeMismatch otherwise, zelStatusValueIsNULL when NULL).
class ZEL_API TCIMValue {
public:
  class ZEL_API TCIMType {
  public:
    enum ECIMType {
      kNull = 0,
      kBoolean = 1,
      kUint8 = 2,
      kSint8 = 3,
      kUint16 = 4,
      kSint16 = 5,
      kUint32 = 6,
      kSint32 = 7,
      kUint64 = 8,
      kSint64 = 9,
      kReal32 = 10,
      kReal64 = 11,
      kChar = 12, ///< Reserved: no value of this type can be built.
      kString = 13,
      kDateTime = 14,
      kReference = 15,
      kArray = 16 ///< Bit added to an element type.
    };

    TCIMType(ECIMType type = kNull);
    /// From a type name such as "uint16" (case-insensitive; lowered in place).
    /// "char", "reference" and unknown names throw zelStatusTypeMismatch.
    TCIMType(std::string name);
    operator ECIMType() const;
    /// The element type's name; the array bit is not printed. Type 0 throws zelStatusTypeMismatch.
    std::string ToString() const;

  private:
    ECIMType fType;
  };

  TCIMValue();
  TCIMValue(bool value);
  TCIMValue(unsigned char value);
  TCIMValue(signed char value);
  TCIMValue(unsigned short value);
  TCIMValue(short value);
  TCIMValue(unsigned int value);
  TCIMValue(int value);
  TCIMValue(unsigned long value);
  TCIMValue(long value);
  TCIMValue(float value);
  TCIMValue(double value);
  TCIMValue(std::string const& value);
  TCIMValue(char const* value);
  TCIMValue(TCIMDateTime const& value);
  /// Resolves the reference first: zelStatusNotFound when it names no instance.
  TCIMValue(TCIMReference const& value);
  /// A NULL value of that type; a non-zero size makes it an array bounded by size.
  TCIMValue(TCIMType type, unsigned int size);
  /// An array value; see Set(TCIMType, unsigned int, std::vector<TCIMValue> const&).
  TCIMValue(TCIMType type, unsigned int size, std::vector<TCIMValue> const& elements);
  /// Parses text as a scalar of that type; datetime and reference text may throw.
  TCIMValue(TCIMType type, std::string& text, TContainer& container);
  TCIMValue(TCIMValue const& other);
  /// As the copy, but takes other's body instead of cloning it; other is left NULL.
  TCIMValue(TCIMValue&& other);
  ~TCIMValue();
  TCIMValue& operator=(TCIMValue const& other);
  /// As the copy assignment, but takes other's body; other is left NULL unless the values
  /// were equal.
  TCIMValue& operator=(TCIMValue&& other);

  void Set(bool value);
  void Set(unsigned char value);
  void Set(signed char value);
  void Set(unsigned short value);
  void Set(short value);
  void Set(unsigned int value);
  void Set(int value);
  void Set(unsigned long value);
  void Set(long value);
  void Set(float value);
  void Set(double value);
  void Set(std::string const& value);
  void Set(char const* value);
  void Set(TCIMDateTime const& value);
  /// Resolves the reference (zelStatusNotFound, value left NULL) and takes its class as the
  /// referenced class (zelStatusInvalidReference for a reference without a class).
  void Set(TCIMReference const& value);
  /// Builds an array; an element of another type logs and throws zelStatusInvalidProperty.
  void Set(TCIMType type, unsigned int size, std::vector<TCIMValue> const& elements);
  /// Deep copy; does nothing when the values are already equal.
  void Set(TCIMValue const& other);
  void SetNullValue(TCIMType::ECIMType type, unsigned int size);

  bool IsNull() const;
  TCIMType GetType() const;
  bool IsArray() const;
  /// Type exactly reference: an array of references is not a reference.
  bool IsReference() const;
  unsigned int GetMaxArraySize() const;
  /// The class a reference must point to; borrowed from the container, may be null.
  TCIMClass* GetReferencedClass() const;
  /// Only while the value is NULL: zelStatusInvalidOpSequence otherwise.
  void SetReferencedClass(TCIMClass& referencedClass);

  operator bool() const;
  operator unsigned char() const;
  operator signed char() const;
  operator unsigned short() const;
  operator short() const;
  operator unsigned int() const;
  operator int() const;
  operator unsigned long() const;
  operator long() const;
  operator float() const;
  operator double() const;
  operator std::string() const;
  operator TCIMDateTime() const;
  operator TCIMReference() const;
  /// The elements of an array value, modifiable in place.
  operator std::vector<TCIMValue>&();

  /// Radix 10, 16 or 8 for unsigned integers; 10 only for signed and real numbers.
  std::string ToString(unsigned char radix) const;

  bool operator==(TCIMValue const& other) const;
  bool operator!=(TCIMValue const& other) const;
  /// NULL sorts first, then by type, then by value; arrays cannot be ordered.
  bool operator<(TCIMValue const& other) const;
  bool operator>(TCIMValue const& other) const;
  bool operator>=(TCIMValue const& other) const;
  bool operator<=(TCIMValue const& other) const;

private:
  friend class TCIMValueImpl; // Bodies compare with the other value's body.

  TCIMValueImpl& Body(TCIMType::ECIMType type) const;
  bool EqualForCopy(TCIMValue const& other) const;
  void Take(TCIMValue& other);
  void Adopt(TCIMValueImpl* body, TCIMValue const& from);

  TCIMType fType;
  TCIMValueImpl* fBody;
  TCIMClass* fReferencedClass;
  unsigned int fMaxArraySize;
};

ZEL_API std::ostream& operator<<(std::ostream& out, TCIMValue::TCIMType const& type);

#endif
