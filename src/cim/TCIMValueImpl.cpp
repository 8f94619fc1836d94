// The value bodies: strict native conversions, printing, equality and ordering.
#include "cim/TCIMValueImpl.h"

#include "TZELException.h"

#include <cmath>
#include <sstream>

typedef TCIMValue::TCIMType T;

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
  if (value.GetType() == T::kString)
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

ZEL_NUMERIC_BODY(bool, T::kBoolean, fBoolean)
ZEL_NUMERIC_BODY(unsigned char, T::kUint8, fUint8)
ZEL_NUMERIC_BODY(signed char, T::kSint8, fSint8)
ZEL_NUMERIC_BODY(unsigned short, T::kUint16, fUint16)
ZEL_NUMERIC_BODY(short, T::kSint16, fSint16)
ZEL_NUMERIC_BODY(unsigned int, T::kUint32, fUint32)
ZEL_NUMERIC_BODY(int, T::kSint32, fSint32)
ZEL_NUMERIC_BODY(unsigned long, T::kUint64, fUint64)
ZEL_NUMERIC_BODY(long, T::kSint64, fSint64)
ZEL_NUMERIC_BODY(float, T::kReal32, fReal32)
ZEL_NUMERIC_BODY(double, T::kReal64, fReal64)
#undef ZEL_NUMERIC_BODY

TCIMNumericValueImpl::TCIMNumericValueImpl(TCIMNumericValueImpl const& other)
    : TCIMValueImpl(), fType(other.fType), fStorage(other.fStorage) {}

std::string TCIMNumericValueImpl::ToString(unsigned char radix) const {
  if (radix != 10 && radix != 16 && radix != 8)
    throw TZELException(zelStatusNotSupported);
  switch (fType) {
  case T::kBoolean:
    return fStorage.fBoolean ? "true" : "false";
  case T::kUint8:
    return UnsignedText(fStorage.fUint8, radix);
  case T::kUint16:
    return UnsignedText(fStorage.fUint16, radix);
  case T::kUint32:
    return UnsignedText(fStorage.fUint32, radix);
  case T::kUint64:
    return UnsignedText(fStorage.fUint64, radix);
  default:
    break;
  }
  if (radix != 10) // Signed and real numbers print in decimal only.
    throw TZELException(zelStatusNotSupported);
  switch (fType) {
  case T::kSint8:
    return std::to_string(static_cast<int>(fStorage.fSint8));
  case T::kSint16:
    return std::to_string(fStorage.fSint16);
  case T::kSint32:
    return std::to_string(fStorage.fSint32);
  case T::kSint64:
    return std::to_string(fStorage.fSint64);
  case T::kReal32:
    return RealText(fStorage.fReal32);
  case T::kReal64:
    return RealText(fStorage.fReal64);
  default:
    throw TZELException(zelStatusNotImplemented);
  }
}

// Reals are equal only when neither is less than the other and neither is NaN.
template <class Real>
static bool RealEqual(Real a, Real b) {
  return !(a < b) && !(b < a) && !std::isnan(a) && !std::isnan(b);
}

bool TCIMNumericValueImpl::operator==(TCIMValue const& otherValue) const {
  TCIMNumericValueImpl const& other = BodyOf<TCIMNumericValueImpl>(otherValue);
  switch (fType) {
  case T::kBoolean:
  case T::kUint8:
  case T::kSint8:
    return fStorage.fUint8 == other.fStorage.fUint8;
  case T::kUint16:
  case T::kSint16:
    return fStorage.fUint16 == other.fStorage.fUint16;
  case T::kUint32:
  case T::kSint32:
    return fStorage.fUint32 == other.fStorage.fUint32;
  case T::kUint64:
  case T::kSint64:
    return fStorage.fUint64 == other.fStorage.fUint64;
  case T::kReal32:
    return RealEqual(fStorage.fReal32, other.fStorage.fReal32);
  case T::kReal64:
    return RealEqual(fStorage.fReal64, other.fStorage.fReal64);
  default:
    throw TZELException(zelStatusNotImplemented);
  }
}

bool TCIMNumericValueImpl::operator<(TCIMValue const& otherValue) const {
  TCIMNumericValueImpl const& other = BodyOf<TCIMNumericValueImpl>(otherValue);
  switch (fType) {
  case T::kBoolean:
  case T::kUint8:
    return fStorage.fUint8 < other.fStorage.fUint8;
  case T::kSint8:
    return fStorage.fSint8 < other.fStorage.fSint8;
  case T::kUint16:
    return fStorage.fUint16 < other.fStorage.fUint16;
  case T::kSint16:
    return fStorage.fSint16 < other.fStorage.fSint16;
  case T::kUint32:
    return fStorage.fUint32 < other.fStorage.fUint32;
  case T::kSint32:
    return fStorage.fSint32 < other.fStorage.fSint32;
  case T::kUint64:
    return fStorage.fUint64 < other.fStorage.fUint64;
  case T::kSint64:
    return fStorage.fSint64 < other.fStorage.fSint64;
  case T::kReal32:
    return fStorage.fReal32 < other.fStorage.fReal32;
  case T::kReal64:
    return fStorage.fReal64 < other.fStorage.fReal64;
  default:
    throw TZELException(zelStatusNotImplemented);
  }
}

// ---- TCIMStringValueImpl -------------------------------------------------------------------

TCIMStringValueImpl::operator std::string() const { return fValue; }

std::string TCIMStringValueImpl::ToString(unsigned char) const { return fValue; }

bool TCIMStringValueImpl::operator==(TCIMValue const& other) const {
  return fValue == BodyOf<TCIMStringValueImpl>(other).fValue;
}

bool TCIMStringValueImpl::operator<(TCIMValue const& other) const {
  // std::string orders by unsigned bytes, then by length.
  return fValue < BodyOf<TCIMStringValueImpl>(other).fValue;
}

// ---- TCIMDateTimeValueImpl -----------------------------------------------------------------

TCIMDateTimeValueImpl::operator TCIMDateTime() const { return fValue; }

std::string TCIMDateTimeValueImpl::ToString(unsigned char) const { return fValue.ToString(); }

bool TCIMDateTimeValueImpl::operator==(TCIMValue const& other) const {
  return fValue == BodyOf<TCIMDateTimeValueImpl>(other).fValue;
}

bool TCIMDateTimeValueImpl::operator<(TCIMValue const& other) const {
  return fValue < BodyOf<TCIMDateTimeValueImpl>(other).fValue;
}

// ---- TCIMReferenceValueImpl ----------------------------------------------------------------

TCIMReferenceValueImpl::operator TCIMReference() const { return fValue; }

std::string TCIMReferenceValueImpl::ToString(unsigned char) const { return fValue.GetPath(); }

bool TCIMReferenceValueImpl::operator==(TCIMValue const& other) const {
  return fValue == BodyOf<TCIMReferenceValueImpl>(other).fValue;
}

bool TCIMReferenceValueImpl::operator<(TCIMValue const& other) const {
  return fValue < BodyOf<TCIMReferenceValueImpl>(other).fValue;
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
TCIMValueImpl* TCIMValueImpl::Clone(T type) const {
  if (type & T::kArray)
    return new TCIMArrayValueImpl(static_cast<TCIMArrayValueImpl const&>(*this));
  switch (static_cast<T::ECIMType>(type)) {
  case T::kBoolean:
  case T::kUint8:
  case T::kSint8:
  case T::kUint16:
  case T::kSint16:
  case T::kUint32:
  case T::kSint32:
  case T::kUint64:
  case T::kSint64:
  case T::kReal32:
  case T::kReal64:
    return new TCIMNumericValueImpl(static_cast<TCIMNumericValueImpl const&>(*this));
  case T::kString:
    return new TCIMStringValueImpl(static_cast<TCIMStringValueImpl const&>(*this));
  case T::kDateTime:
    return new TCIMDateTimeValueImpl(static_cast<TCIMDateTimeValueImpl const&>(*this));
  case T::kReference:
    return new TCIMReferenceValueImpl(static_cast<TCIMReferenceValueImpl const&>(*this));
  default:
    throw TZELException(zelStatusTypeMismatch);
  }
}
