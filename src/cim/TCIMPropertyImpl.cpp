// TCIMPropertyImpl: own and previous values, checked against the declaration.
#include "cim/TCIMPropertyImpl.h"

#include "TCIMClass.h"
#include "TCIMPropertyDecl.h"
#include "log/ZelLog.h"

#include <sstream>
#include <utility>

typedef TCIMValue::TCIMType TCIMType;

static std::string ClassName(const TCIMClass* cls) { return cls ? cls->GetName() : std::string(); }

// The two checks every stored value passes; operation names the caller in the log line.
static void CheckAgainstDecl(const TCIMPropertyDecl& decl, const TCIMValue& value,
                             char const* operation) {
  if (decl.GetType() != value.GetType()) {
    std::ostringstream text;
    text << operation << ": decl is type " << decl.GetType() << " but value is type "
         << value.GetType();
    ZelFail(zelStatusTypeMismatch, text.str());
  }
  if (decl.GetType() != TCIMType::kReference)
    return;
  TCIMClass* declared = decl.GetValue().GetReferencedClass();
  TCIMClass* referenced = value.GetReferencedClass();
  if (!referenced || !referenced->IsSubclassOf(declared))
    ZelFail(zelStatusTypeMismatch, std::string(operation) + ": decl references type " +
                                       ClassName(declared) + " but value references " +
                                       ClassName(referenced));
}

// Replaces an owned value with a separate copy.
static void Store(TCIMValue*& slot, const TCIMValue& value) {
  TCIMValue* copy = new TCIMValue(value);
  delete slot;
  slot = copy;
}

static const TCIMValue& OwnOrNull(const TCIMValue* value) {
  static const TCIMValue kNull;
  return value ? *value : kNull;
}

TCIMPropertyImpl::TCIMPropertyImpl(TCIMProperty& owner, const TCIMPropertyDecl& decl)
    : fOwner(&owner), fDeclaration(&decl), fValue(0), fPrevValue(0), fPrevValueDifferent(false) {}

TCIMPropertyImpl::TCIMPropertyImpl(TCIMProperty& owner, const TCIMPropertyDecl& decl,
                                   const TCIMValue& value)
    : fOwner(&owner), fDeclaration(&decl), fValue(0), fPrevValue(0), fPrevValueDifferent(false) {
  SetValue(value);
}

TCIMPropertyImpl::TCIMPropertyImpl(TCIMProperty& owner, const TCIMPropertyImpl& other)
    : fOwner(&owner), fDeclaration(other.fDeclaration), fValue(0), fPrevValue(0),
      fPrevValueDifferent(false) {
  // The source passed the checks already; only copies are made here.
  if (other.fValue)
    Store(fValue, *other.fValue);
  if (other.fPrevValueDifferent && other.fPrevValue) {
    Store(fPrevValue, *other.fPrevValue);
    fPrevValueDifferent = true;
  }
}

TCIMPropertyImpl::~TCIMPropertyImpl() {
  delete fValue;
  delete fPrevValue;
}

std::string TCIMPropertyImpl::GetName() const { return fDeclaration->GetName(); }

TCIMValue TCIMPropertyImpl::GetValue() const { return CurrentValue(); }

const TCIMValue& TCIMPropertyImpl::CurrentValue() const {
  return fValue ? *fValue : fDeclaration->GetValue();
}

TCIMValue TCIMPropertyImpl::GetPrevValue() const {
  if (!fPrevValueDifferent)
    return GetValue();
  return fPrevValue ? *fPrevValue : fDeclaration->GetValue();
}

TCIMType TCIMPropertyImpl::GetType() const { return fDeclaration->GetType(); }

void TCIMPropertyImpl::SetValue(const TCIMValue& value) {
  CheckAgainstDecl(*fDeclaration, value, "SetValue");
  Store(fValue, value);
}

void TCIMPropertyImpl::TakeValue(TCIMValue& value) {
  CheckAgainstDecl(*fDeclaration, value, "SetValue");
  TCIMValue* moved = new TCIMValue(std::move(value));
  delete fValue;
  fValue = moved;
}

void TCIMPropertyImpl::SetPrevValue(const TCIMValue& value) {
  if (!value.IsNull()) // A NULL previous value of any type is accepted, on purpose.
    CheckAgainstDecl(*fDeclaration, value, "SetPrevValue");
  Store(fPrevValue, value);
  fPrevValueDifferent = true;
}

void TCIMPropertyImpl::SetPrevValue() {
  Store(fPrevValue, TCIMValue());
  fPrevValueDifferent = true;
}

bool TCIMPropertyImpl::operator==(const TCIMPropertyImpl& other) const {
  return *fDeclaration == *other.fDeclaration && OwnOrNull(fValue) == OwnOrNull(other.fValue);
}

bool TCIMPropertyImpl::operator<(const TCIMPropertyImpl& other) const {
  if (*fDeclaration < *other.fDeclaration)
    return true;
  return *fDeclaration == *other.fDeclaration && OwnOrNull(fValue) < OwnOrNull(other.fValue);
}
