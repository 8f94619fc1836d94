// TCIMValue: the handle that owns one value body; construction, copying, strict access,
// printing and comparison.
#include "TCIMValue.h"

#include "cim/TCIMDateTimeImpl.h"
#include "cim/TCIMValueImpl.h"
#include "cim/ZelText.h"
#include "log/ZelLog.h"

#include <memory>
#include <ostream>
#include <string_view>
#include <type_traits>

typedef TCIMValue::TCIMType TCIMType;

// Type names by ECIMType (array bit masked off); empty where a type has no name. Views, so
// that matching a name compares lengths first.
static std::string_view const kTypeNames[16] = {
    {},       "boolean", "uint8",  "sint8",  "uint16", "sint16", "uint32", "sint32",
    "uint64", "sint64",  "real32", "real64", "char",   "string", "datetime", "reference"};

// The names a type can be built from, in the order they are tried.
static const TCIMType::ECIMType kNamedTypes[] = {
    TCIMType::kUint8,  TCIMType::kSint8,   TCIMType::kUint16,  TCIMType::kSint16, TCIMType::kUint32,
    TCIMType::kSint32, TCIMType::kUint64,  TCIMType::kSint64,  TCIMType::kReal32, TCIMType::kReal64,
    TCIMType::kString, TCIMType::kBoolean, TCIMType::kDateTime};

// What stream extraction reads as a number of that type; uint8 and sint8 are read wide, then
// truncated to 8 bits.
template <class Number>
static Number ReadNumber(std::string const& text) {
  if constexpr (std::is_same<Number, bool>::value)
    return ZelReadBool(text);
  else if constexpr (std::is_same<Number, unsigned char>::value)
    return static_cast<unsigned char>(ZelReadNumber<unsigned int>(text));
  else if constexpr (std::is_same<Number, signed char>::value)
    return static_cast<signed char>(ZelReadNumber<int>(text));
  else
    return ZelReadNumber<Number>(text);
}

// ---- TCIMValue::TCIMType -------------------------------------------------------------------

TCIMValue::TCIMType::TCIMType(ECIMType type) : fType(type) {}

TCIMValue::TCIMType::TCIMType(std::string name) : fType(kNull) {
  ZelAsciiLowerInPlace(name);  // every typed attribute of a document comes through here
  for (ECIMType candidate : kNamedTypes) {
    if (std::string_view(name) == kTypeNames[candidate]) {
      fType = candidate;
      return;
    }
  }
  throw TZELException(zelStatusTypeMismatch);
}

TCIMValue::TCIMType::operator ECIMType() const { return fType; }

std::string TCIMValue::TCIMType::ToString() const {
  std::string_view name = kTypeNames[fType & 15];
  if (name.empty() || (fType & ~31))
    throw TZELException(zelStatusTypeMismatch);
  return std::string(name);
}

std::ostream& operator<<(std::ostream& out, TCIMValue::TCIMType const& type) {
  return out << type.ToString();
}

// ---- Construction --------------------------------------------------------------------------

TCIMValue::TCIMValue() : fType(TCIMType::kNull), fBody(0), fReferencedClass(0), fMaxArraySize(0) {}

#define ZEL_SCALAR_VALUE(native, type)                                                        \
  TCIMValue::TCIMValue(native value)                                                        \
      : fType(type), fBody(new TCIMNumericValueImpl(value)), fReferencedClass(0),           \
        fMaxArraySize(0) {}                                                                 \
  void TCIMValue::Set(native value) {                                                       \
    fType = type;                                                                           \
    delete fBody;                                                                           \
    fBody = 0;                                                                              \
    fBody = new TCIMNumericValueImpl(value);                                                \
  }                                                                                         \
  TCIMValue::operator native() const { return static_cast<native>(Body(type)); }

ZEL_SCALAR_VALUE(bool, TCIMType::kBoolean)
ZEL_SCALAR_VALUE(unsigned char, TCIMType::kUint8)
ZEL_SCALAR_VALUE(signed char, TCIMType::kSint8)
ZEL_SCALAR_VALUE(unsigned short, TCIMType::kUint16)
ZEL_SCALAR_VALUE(short, TCIMType::kSint16)
ZEL_SCALAR_VALUE(unsigned int, TCIMType::kUint32)
ZEL_SCALAR_VALUE(int, TCIMType::kSint32)
ZEL_SCALAR_VALUE(unsigned long, TCIMType::kUint64)
ZEL_SCALAR_VALUE(long, TCIMType::kSint64)
ZEL_SCALAR_VALUE(float, TCIMType::kReal32)
ZEL_SCALAR_VALUE(double, TCIMType::kReal64)
#undef ZEL_SCALAR_VALUE

TCIMValue::TCIMValue(std::string const& value)
    : fType(TCIMType::kString), fBody(new TCIMStringValueImpl(value)), fReferencedClass(0),
      fMaxArraySize(0) {}

TCIMValue::TCIMValue(char const* value)
    : fType(TCIMType::kString), fBody(new TCIMStringValueImpl(value)), fReferencedClass(0),
      fMaxArraySize(0) {}

TCIMValue::TCIMValue(TCIMDateTime const& value)
    : fType(TCIMType::kDateTime), fBody(new TCIMDateTimeValueImpl(value)), fReferencedClass(0),
      fMaxArraySize(0) {}

TCIMValue::TCIMValue(TCIMReference const& value)
    : fType(TCIMType::kNull), fBody(0), fReferencedClass(0), fMaxArraySize(0) {
  try {
    Set(value);
  } catch (...) {
    // Set keeps its new body when the class is missing; no destructor runs for an
    // abandoned construction, so it goes here.
    delete fBody;
    throw;
  }
}

TCIMValue::TCIMValue(TCIMType type, unsigned int size)
    : fType(type), fBody(0), fReferencedClass(0), fMaxArraySize(0) {
  if (size != 0) {
    fType = static_cast<TCIMType::ECIMType>(type | TCIMType::kArray);
    fMaxArraySize = size;
  }
}

TCIMValue::TCIMValue(TCIMType type, unsigned int size, std::vector<TCIMValue> const& elements)
    : fType(TCIMType::kNull), fBody(0), fReferencedClass(0), fMaxArraySize(0) {
  try {
    Set(type, size, elements);
  } catch (...) {
    delete fBody; // Set keeps its new body, but a constructor that throws runs no destructor.
    throw;
  }
}

TCIMValue::TCIMValue(TCIMType type, std::string& text, TContainer& container)
    : fType(TCIMType::kNull), fBody(0), fReferencedClass(0), fMaxArraySize(0) {
  switch (static_cast<TCIMType::ECIMType>(type)) {
  case TCIMType::kString:
    Set(text);
    break;
  case TCIMType::kDateTime: {
    // Read into the body that keeps it: no copy of the text, nor of the date-time.
    std::unique_ptr<TCIMDateTimeValueImpl> body(new TCIMDateTimeValueImpl());
    body->Held().GetBody()->Set(text);
    fType = TCIMType::kDateTime;
    fBody = body.release();
    break;
  }
  case TCIMType::kReference: // Path text is never parsed: this always throws.
    Set(TCIMReference(&container, text));
    break;
  default:
    if (type < TCIMType::kBoolean || type > TCIMType::kReal64)
      throw TZELException(zelStatusTypeMismatch);
    ZelWithNumericType(type, [&](auto* native) {
      Set(ReadNumber<std::remove_pointer_t<decltype(native)> >(text));
    });
  }
}

TCIMValue::TCIMValue(TCIMValue const& other)
    : fType(TCIMType::kNull), fBody(0), fReferencedClass(0), fMaxArraySize(0) {
  Set(other);
}

TCIMValue::TCIMValue(TCIMValue&& other)
    : fType(TCIMType::kNull), fBody(0), fReferencedClass(0), fMaxArraySize(0) {
  Take(other);
}

TCIMValue::~TCIMValue() { delete fBody; }

TCIMValue& TCIMValue::operator=(TCIMValue const& other) {
  Set(other);
  return *this;
}

TCIMValue& TCIMValue::operator=(TCIMValue&& other) {
  Take(other);
  return *this;
}

// ---- Setters -------------------------------------------------------------------------------

void TCIMValue::Set(std::string const& value) {
  fType = TCIMType::kString;
  delete fBody;
  fBody = 0;
  fBody = new TCIMStringValueImpl(value);
}

void TCIMValue::Set(char const* value) { Set(std::string(value)); }

void TCIMValue::Set(TCIMDateTime const& value) {
  fType = TCIMType::kDateTime;
  delete fBody;
  fBody = 0;
  fBody = new TCIMDateTimeValueImpl(value);
}

void TCIMValue::Set(TCIMReference const& value) {
  fType = TCIMType::kReference;
  delete fBody;
  fBody = 0;
  TCIMReference resolved(value);
  resolved.GetCIMElement(); // A path naming no instance leaves the value NULL.
  fBody = new TCIMReferenceValueImpl(resolved);
  fReferencedClass = resolved.GetClass();
}

void TCIMValue::Set(TCIMType type, unsigned int size, std::vector<TCIMValue> const& elements) {
  // Copied before the old body goes: the elements may be the old body's own.
  TCIMArrayValueImpl* body = new TCIMArrayValueImpl(elements);
  delete fBody;
  fBody = body;
  fType = static_cast<TCIMType::ECIMType>(type | TCIMType::kArray);
  fMaxArraySize = size; // Not checked against the number of elements.
  TCIMType elementType(static_cast<TCIMType::ECIMType>(type & ~TCIMType::kArray));
  for (TCIMValue const& element : body->GetElements()) {
    if (element.GetType() != elementType) {
      // The value keeps its new body: the caller sees the exception and discards it.
      ZelFail(zelStatusInvalidProperty, "ERROR: Attempting to create array of type " +
                                            elementType.ToString() +
                                            ", but element is of type " +
                                            element.GetType().ToString() + ".");
    }
  }
}

void TCIMValue::Set(TCIMValue const& other) {
  if (this == &other || EqualForCopy(other))
    return;
  Adopt(other.fBody ? other.fBody->Clone(other.fType) : 0, other);
}

// The copy with other's body moved over: the same rules, one allocation fewer.
void TCIMValue::Take(TCIMValue& other) {
  if (this == &other || EqualForCopy(other))
    return;
  TCIMValueImpl* body = other.fBody;
  other.fBody = 0;
  Adopt(body, other);
}

// The rest of a copy, once the body is made: from's fields are read before the own body goes,
// since from may be one of its elements.
void TCIMValue::Adopt(TCIMValueImpl* body, TCIMValue const& from) {
  TCIMType type = from.fType;
  TCIMClass* referencedClass = from.fReferencedClass;
  unsigned int maxArraySize = from.fMaxArraySize;
  delete fBody;
  fBody = body;
  fType = type;
  if (IsArray()) {
    fMaxArraySize = maxArraySize;
    return;
  }
  switch (static_cast<TCIMType::ECIMType>(fType)) {
  case TCIMType::kNull:
  case TCIMType::kChar: // Never with a body: no value of these types holds one.
    throw TZELException(zelStatusTypeMismatch);
  case TCIMType::kReference:
    fReferencedClass = referencedClass;
    break;
  default:
    break;
  }
}

void TCIMValue::SetNullValue(TCIMType::ECIMType type, unsigned int size) {
  fType = type;
  if (type & TCIMType::kArray)
    fMaxArraySize = size;
  delete fBody;
  fBody = 0;
}

// ---- Queries -------------------------------------------------------------------------------

bool TCIMValue::IsNull() const { return fBody == 0; }
TCIMType TCIMValue::GetType() const { return fType; }
bool TCIMValue::IsArray() const { return (fType & TCIMType::kArray) != 0; }
bool TCIMValue::IsReference() const { return fType == TCIMType::kReference; }
unsigned int TCIMValue::GetMaxArraySize() const { return fMaxArraySize; }
TCIMClass* TCIMValue::GetReferencedClass() const { return fReferencedClass; }

void TCIMValue::SetReferencedClass(TCIMClass& referencedClass) {
  if (fBody)
    throw TZELException(zelStatusInvalidOpSequence);
  fReferencedClass = &referencedClass;
}

// ---- Accessors -----------------------------------------------------------------------------

TCIMValueImpl& TCIMValue::Body(TCIMType::ECIMType type) const {
  if (!fBody)
    throw TZELException(zelStatusValueIsNULL);
  if (fType != type)
    throw TZELException(zelStatusTypeMismatch);
  return *fBody;
}

TCIMValue::operator std::string() const {
  return static_cast<std::string>(Body(TCIMType::kString));
}

TCIMValue::operator TCIMDateTime() const {
  return static_cast<TCIMDateTime>(Body(TCIMType::kDateTime));
}

TCIMValue::operator TCIMReference() const {
  return static_cast<TCIMReference>(Body(TCIMType::kReference));
}

TCIMValue::operator std::vector<TCIMValue>&() {
  if (!fBody)
    throw TZELException(zelStatusValueIsNULL);
  if (!IsArray())
    throw TZELException(zelStatusTypeMismatch);
  return static_cast<std::vector<TCIMValue>&>(*fBody);
}

// ---- Text and comparison -------------------------------------------------------------------

std::string TCIMValue::ToString(unsigned char radix) const {
  if (!fBody)
    throw TZELException(zelStatusValueIsNULL);
  return fBody->ToString(radix);
}

bool TCIMValue::operator==(TCIMValue const& other) const {
  if (!fBody && !other.fBody) {
    if (fType != other.fType)
      return false;
    if (fType == TCIMType::kReference && fReferencedClass != other.fReferencedClass)
      return false;
    return !IsArray() || fMaxArraySize == other.fMaxArraySize;
  }
  if (!fBody || !other.fBody || fType != other.fType)
    return false;
  return *fBody == other;
}

// Equality as the copy's shortcut: bodies that refuse to compare (a timestamp against an
// interval) are simply different, so the copy goes ahead.
bool TCIMValue::EqualForCopy(TCIMValue const& other) const {
  try {
    return *this == other;
  } catch (TZELException&) {
    return false;
  }
}

bool TCIMValue::operator!=(TCIMValue const& other) const { return !(*this == other); }

bool TCIMValue::operator<(TCIMValue const& other) const {
  if (!fBody)
    return other.fBody != 0;
  if (!other.fBody)
    return false;
  if (fType != other.fType)
    return fType < other.fType;
  return *fBody < other;
}

bool TCIMValue::operator>(TCIMValue const& other) const {
  return !(*this == other) && !(*this < other);
}

bool TCIMValue::operator>=(TCIMValue const& other) const { return !(*this < other); }

bool TCIMValue::operator<=(TCIMValue const& other) const {
  return *this == other || *this < other;
}
