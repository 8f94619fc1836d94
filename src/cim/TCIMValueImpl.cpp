// The value bodies: strict native conversions, printing, equality and ordering.
#include "cim/TCIMValueImpl.h"

#include "TZELException.h"

#include <cmath>
#include <cstring>
#include <sstream>
#include <type_traits>

typedef TCIMValue::TCIMType TCIMType;

[[noreturn]] static void TypeMismatch() { throw TZELException(zelStatusTypeMismatch); }

// Unsigned numbers in radix 10, 16 (upper case, no prefix) or 8.
static std::string UnsignedText(unsigned long value, unsigned char radix) {
  static const char kDigits[] = "0123456789ABCDEF";
  char buffer[32];
  char* end = buffer + sizeof buffer;
  char* p = end;
  do {
    *--p = kDigits[value % radix];
    value /= radix;
  } while (value);
  return std::string(p, end);
}

static std::string RealText(double value) {
  std::ostringstream out; // Default notation: six significant digits.
  out << value;
  return out.str();
}

// ---- TCIMValueImpl: every conversion refuses -----------------------------------------------

TCIMValueImpl::~TCIMValueImpl() {}
TCIMValueImpl::operator bool() const { TypeMismatch(); }
TCIMValueImpl::operator unsigned char() const { TypeMismatch(); }
TCIMValueImpl::operator signed char() const { TypeMismatch(); }
TCIMValueImpl::operator unsigned short() const { TypeMismatch(); }
TCIMValueImpl::operator short() const { TypeMismatch(); }
TCIMValueImpl::operator unsigned int() const { TypeMismatch(); }
TCIMValueImpl::operator int() const { TypeMismatch(); }
TCIMValueImpl::operator unsigned long() const { TypeMismatch(); }
TCIMValueImpl::operator long() const { TypeMismatch(); }
TCIMValueImpl::operator float() const { TypeMismatch(); }
TCIMValueImpl::operator double() const { TypeMismatch(); }
TCIMValueImpl::operator std::string() const { TypeMismatch(); }
TCIMValueImpl::operator TCIMDateTime() const { TypeMismatch(); }
TCIMValueImpl::operator TCIMReference() const { TypeMismatch(); }
TCIMValueImpl::operator std::vector<TCIMValue>&() { TypeMismatch(); }

void TCIMValueImpl::AppendText(std::string& out, TCIMValue const& value) {
  if (value.GetType() == TCIMType::kString)
    out += BodyOf<TCIMStringValueImpl>(value).fValue;
  else
    out += value.ToString(10);
}

// ---- TCIMNumericValueImpl ------------------------------------------------------------------

#define ZEL_NUMERIC_BODY(native, type, field)                                                 \
  TCIMNumericValueImpl::TCIMNumericValueImpl(native value) : fType(type) {                  \
    fStorage.fSint64 = 0;                                                                   \
    fStorage.field = value;                                                                 \
  }                                                                                         \
  TCIMNumericValueImpl::operator native() const {                                           \
    if (fType != type)                                                                      \
      TypeMismatch();                                                                       \
    return fStorage.field;                                                                  \
  }

ZEL_NUMERIC_BODY(bool, TCIMType::kBoolean, fBoolean)
ZEL_NUMERIC_BODY(unsigned char, TCIMType::kUint8, fUint8)
ZEL_NUMERIC_BODY(signed char, TCIMType::kSint8, fSint8)
ZEL_NUMERIC_BODY(unsigned short, TCIMType::kUint16, fUint16)
ZEL_NUMERIC_BODY(short, TCIMType::kSint16, fSint16)
ZEL_NUMERIC_BODY(unsigned int, TCIMType::kUint32, fUint32)
ZEL_NUMERIC_BODY(int, TCIMType::kSint32, fSint32)
ZEL_NUMERIC_BODY(unsigned long, TCIMType::kUint64, fUint64)
ZEL_NUMERIC_BODY(long, TCIMType::kSint64, fSint64)
ZEL_NUMERIC_BODY(float, TCIMType::kReal32, fReal32)
ZEL_NUMERIC_BODY(double, TCIMType::kReal64, fReal64)
#undef ZEL_NUMERIC_BODY

TCIMNumericValueImpl::TCIMNumericValueImpl(TCIMNumericValueImpl const& other)
    : TCIMValueImpl(), fType(other.fType), fStorage(other.fStorage) {}

// Every member of the storage starts at its first byte.
template <class Number>
Number TCIMNumericValueImpl::Stored() const {
  Number value;
  std::memcpy(&value, &fStorage, sizeof value);
  return value;
}

// Booleans print as words in any radix, unsigned integers in the radix; signed and real
// numbers in decimal only.
template <class Number>
static std::string NumberText(Number value, unsigned char radix) {
  if constexpr (std::is_same<Number, bool>::value) {
    return value ? "true" : "false";
  } else if constexpr (std::is_unsigned<Number>::value) {
    return UnsignedText(value, radix);
  } else {
    if (radix != 10)
      throw TZELException(zelStatusNotSupported);
    if constexpr (std::is_floating_point<Number>::value)
      return RealText(value);
    else
      return std::to_string(static_cast<long>(value));  // sint8 as a number, not a character
  }
}

// Reals are equal only when neither is less than the other and neither is NaN.
template <class Number>
static bool NumberEqual(Number a, Number b) {
  if constexpr (std::is_floating_point<Number>::value)
    return !(a < b) && !(b < a) && !std::isnan(a) && !std::isnan(b);
  else
    return a == b;
}

std::string TCIMNumericValueImpl::ToString(unsigned char radix) const {
  if (radix != 10 && radix != 16 && radix != 8)
    throw TZELException(zelStatusNotSupported);
  return ZelWithNumericType(fType, [&](auto* type) {
    return NumberText(Stored<std::remove_pointer_t<decltype(type)> >(), radix);
  });
}

bool TCIMNumericValueImpl::operator==(TCIMValue const& otherValue) const {
  TCIMNumericValueImpl const& other = BodyOf<TCIMNumericValueImpl>(otherValue);
  return ZelWithNumericType(fType, [&](auto* type) {
    typedef std::remove_pointer_t<decltype(type)> Number;
    return NumberEqual(Stored<Number>(), other.Stored<Number>());
  });
}

// Each by the sign of its type; booleans as unsigned bytes.
bool TCIMNumericValueImpl::operator<(TCIMValue const& otherValue) const {
  TCIMNumericValueImpl const& other = BodyOf<TCIMNumericValueImpl>(otherValue);
  return ZelWithNumericType(fType, [&](auto* type) {
    typedef std::remove_pointer_t<decltype(type)> Number;
    return Stored<Number>() < other.Stored<Number>();
  });
}

// ---- String, datetime and reference bodies ---------------------------------------------------

template <>
std::string TCIMHeldValueImpl<std::string>::ToString(unsigned char) const { return fValue; }

template <>
std::string TCIMHeldValueImpl<TCIMDateTime>::ToString(unsigned char) const {
  return fValue.ToString();
}

template <>
std::string TCIMHeldValueImpl<TCIMReference>::ToString(unsigned char) const {
  return fValue.GetPath();
}

// ---- TCIMArrayValueImpl --------------------------------------------------------------------

TCIMArrayValueImpl::operator std::vector<TCIMValue>&() { return fElements; }

std::string TCIMArrayValueImpl::ToString(unsigned char radix) const {
  std::string text = "{ ";
  for (size_t i = 0; i < fElements.size(); ++i) {
    if (i)
      text += ", ";
    text += fElements[i].ToString(radix);
  }
  return text + " }";
}

bool TCIMArrayValueImpl::operator==(TCIMValue const& other) const {
  return fElements == BodyOf<TCIMArrayValueImpl>(other).fElements;
}

bool TCIMArrayValueImpl::operator<(TCIMValue const&) const {
  throw TZELException(zelStatusNotImplemented);
}

// ---- Cloning -------------------------------------------------------------------------------

// The value's type names the body's class, so a switch picks the copy: a chain of
// dynamic_casts cost a tenth of a document load.
TCIMValueImpl* TCIMValueImpl::Clone(TCIMType type) const {
  if (type & TCIMType::kArray)
    return new TCIMArrayValueImpl(static_cast<TCIMArrayValueImpl const&>(*this));
  switch (static_cast<TCIMType::ECIMType>(type)) {
  case TCIMType::kBoolean:
  case TCIMType::kUint8:
  case TCIMType::kSint8:
  case TCIMType::kUint16:
  case TCIMType::kSint16:
  case TCIMType::kUint32:
  case TCIMType::kSint32:
  case TCIMType::kUint64:
  case TCIMType::kSint64:
  case TCIMType::kReal32:
  case TCIMType::kReal64:
    return new TCIMNumericValueImpl(static_cast<TCIMNumericValueImpl const&>(*this));
  case TCIMType::kString:
    return new TCIMStringValueImpl(static_cast<TCIMStringValueImpl const&>(*this));
  case TCIMType::kDateTime:
    return new TCIMDateTimeValueImpl(static_cast<TCIMDateTimeValueImpl const&>(*this));
  case TCIMType::kReference:
    return new TCIMReferenceValueImpl(static_cast<TCIMReferenceValueImpl const&>(*this));
  default:
    throw TZELException(zelStatusTypeMismatch);
  }
}
