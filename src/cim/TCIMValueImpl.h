// TCIMValueImpl and its five bodies: numbers, strings, date-times, references and arrays.
// Each body yields only its own native type; every other conversion throws.
#ifndef TCIMVALUEIMPL_H
#define TCIMVALUEIMPL_H

#include "TCIMDateTime.h"
#include "TCIMValue.h"
#include "TZELException.h"

#include <string>
#include <vector>

#include "TCIMReference.h"

/// Calls work with a null pointer to the native type of a numeric CIM type, boolean to
/// real64, and returns its answer; any other type throws zelStatusNotImplemented.
template <class Work>
auto ZelWithNumericType(TCIMValue::TCIMType::ECIMType type, Work work) {
  typedef TCIMValue::TCIMType TCIMType;
  switch (type) {
  case TCIMType::kBoolean:
    return work(static_cast<bool*>(0));
  case TCIMType::kUint8:
    return work(static_cast<unsigned char*>(0));
  case TCIMType::kSint8:
    return work(static_cast<signed char*>(0));
  case TCIMType::kUint16:
    return work(static_cast<unsigned short*>(0));
  case TCIMType::kSint16:
    return work(static_cast<short*>(0));
  case TCIMType::kUint32:
    return work(static_cast<unsigned int*>(0));
  case TCIMType::kSint32:
    return work(static_cast<int*>(0));
  case TCIMType::kUint64:
    return work(static_cast<unsigned long*>(0));
  case TCIMType::kSint64:
    return work(static_cast<long*>(0));
  case TCIMType::kReal32:
    return work(static_cast<float*>(0));
  case TCIMType::kReal64:
    return work(static_cast<double*>(0));
  default:
    throw TZELException(zelStatusNotImplemented);
  }
}

class TCIMValueImpl {
public:
  virtual ~TCIMValueImpl();
  virtual operator bool() const;
  virtual operator unsigned char() const;
  virtual operator signed char() const;
  virtual operator unsigned short() const;
  virtual operator short() const;
  virtual operator unsigned int() const;
  virtual operator int() const;
  virtual operator unsigned long() const;
  virtual operator long() const;
  virtual operator float() const;
  virtual operator double() const;
  virtual operator std::string() const;
  virtual operator TCIMDateTime() const;
  virtual operator TCIMReference() const;
  virtual operator std::vector<TCIMValue>&();
  virtual std::string ToString(unsigned char radix) const = 0;
  /// Both compare with a non-NULL value of the same CIM type; the handle checks that first.
  virtual bool operator==(TCIMValue const& other) const = 0;
  virtual bool operator<(TCIMValue const& other) const = 0;

  /// A deep copy of this body, whose value has the given type.
  TCIMValueImpl* Clone(TCIMValue::TCIMType type) const;
  /// Appends value.ToString(10) of a non-NULL value; a string's own text, uncopied.
  static void AppendText(std::string& out, TCIMValue const& value);

protected:
  /// The body of a value known to hold one of this kind.
  template <class Body>
  static Body const& BodyOf(TCIMValue const& value) {
    return static_cast<Body const&>(*value.fBody);
  }
};

class TCIMNumericValueImpl : public TCIMValueImpl {
public:
  explicit TCIMNumericValueImpl(bool value);
  explicit TCIMNumericValueImpl(unsigned char value);
  explicit TCIMNumericValueImpl(signed char value);
  explicit TCIMNumericValueImpl(unsigned short value);
  explicit TCIMNumericValueImpl(short value);
  explicit TCIMNumericValueImpl(unsigned int value);
  explicit TCIMNumericValueImpl(int value);
  explicit TCIMNumericValueImpl(unsigned long value);
  explicit TCIMNumericValueImpl(long value);
  explicit TCIMNumericValueImpl(float value);
  explicit TCIMNumericValueImpl(double value);
  TCIMNumericValueImpl(TCIMNumericValueImpl const& other);

  operator bool() const override;
  operator unsigned char() const override;
  operator signed char() const override;
  operator unsigned short() const override;
  operator short() const override;
  operator unsigned int() const override;
  operator int() const override;
  operator unsigned long() const override;
  operator long() const override;
  operator float() const override;
  operator double() const override;
  std::string ToString(unsigned char radix) const override;
  bool operator==(TCIMValue const& other) const override;
  bool operator<(TCIMValue const& other) const override;

private:
  union TStorage {
    bool fBoolean;
    unsigned char fUint8;
    signed char fSint8;
    unsigned short fUint16;
    short fSint16;
    unsigned int fUint32;
    int fSint32;
    unsigned long fUint64;
    long fSint64;
    float fReal32;
    double fReal64;
  };

  /// The stored number, read as Number: the member of that type.
  template <class Number>
  Number Stored() const;

  TCIMValue::TCIMType fType;
  TStorage fStorage;
};

/// The body of the types held as one object of their own (string, datetime, reference):
/// it yields a copy and compares through the object's own operators.
template <class Native>
class TCIMHeldValueImpl : public TCIMValueImpl {
public:
  explicit TCIMHeldValueImpl(Native const& value) : fValue(value) {}
  /// Default-made, to be set in place (a date-time read from text is not copied).
  TCIMHeldValueImpl() : fValue() {}
  Native& Held() { return fValue; }
  operator Native() const override { return fValue; }
  std::string ToString(unsigned char radix) const override;
  bool operator==(TCIMValue const& other) const override {
    return fValue == BodyOf<TCIMHeldValueImpl>(other).fValue;
  }
  bool operator<(TCIMValue const& other) const override {
    // Strings: unsigned bytes, then length.
    return fValue < BodyOf<TCIMHeldValueImpl>(other).fValue;
  }

private:
  friend class TCIMValueImpl;  // AppendText reads a string in place.
  Native fValue;
};

template <> std::string TCIMHeldValueImpl<std::string>::ToString(unsigned char) const;
template <> std::string TCIMHeldValueImpl<TCIMDateTime>::ToString(unsigned char) const;
template <> std::string TCIMHeldValueImpl<TCIMReference>::ToString(unsigned char) const;

typedef TCIMHeldValueImpl<std::string> TCIMStringValueImpl;
typedef TCIMHeldValueImpl<TCIMDateTime> TCIMDateTimeValueImpl;
typedef TCIMHeldValueImpl<TCIMReference> TCIMReferenceValueImpl;

class TCIMArrayValueImpl : public TCIMValueImpl {
public:
  explicit TCIMArrayValueImpl(std::vector<TCIMValue> const& elements) : fElements(elements) {}
  operator std::vector<TCIMValue>&() override;
  std::string ToString(unsigned char radix) const override;
  bool operator==(TCIMValue const& other) const override;
  bool operator<(TCIMValue const& other) const override;

  std::vector<TCIMValue> const& GetElements() const { return fElements; }

private:
  std::vector<TCIMValue> fElements;
};

#endif
