// Display forms of a property's value: the NULL text, the number base, units with metric
// prefixes, durations, and value maps, all driven by the declaration's qualifiers.
#include "cim/TCIMPropertyImpl.h"

#include "TCIMDateTime.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "log/ZelLog.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>

typedef TCIMValue::TCIMType TType;
typedef TCIMPropertyImpl::TValueMapEntry TEntry;

static const int kNoPrefix = 5;
static const char* const kPrefixes[] = {"Peta", "Tera", "Giga", "Mega", "Kilo",
                                        "",     "Milli", "Micro", "Nano"};
static const char* const kPrefixAbbreviations[] = {"P", "T", "G", "M", "K", "", "m", "u", "n"};

namespace {
struct TScaledUnit {
  const char* fName;
  const char* fAbbreviation;
  float fDivisor;
};
} // namespace

static const TScaledUnit kScaledUnits[] = {
    {"Bytes", "B", 1024},
    {"Bits", "b", 1024}, // Bits step by 1024 but bits per second by 1000, on purpose.
    {"Bytes per Second", "B/s", 1024},
    {"Bits per Second", "bps", 1000},
};

static const unsigned long long kLargestCode = std::numeric_limits<unsigned long long>::max();

// The value of the declaration's qualifier of that name; an untyped NULL when absent.
static TCIMValue QualifierValue(const TCIMPropertyDecl& decl, const char* name) {
  const TCIMQualifier* qualifier = decl.FindQualifier(name);
  return qualifier ? qualifier->GetValue() : TCIMValue();
}

// True, with the text, when the qualifier holds a non-NULL string.
static bool QualifierText(const TCIMPropertyDecl& decl, const char* name, std::string& text) {
  TCIMValue value = QualifierValue(decl, name);
  if (value.IsNull() || value.GetType() != TType::kString)
    return false;
  text = static_cast<std::string>(value);
  return true;
}

// A flag qualifier counts when it holds any non-NULL value, false included.
static bool QualifierSet(const TCIMPropertyDecl& decl, const char* name) {
  return !QualifierValue(decl, name).IsNull();
}

// Reads the value as its own native type, widened; true, for the switches below.
template <class Native>
static bool ReadNumber(const TCIMValue& value, unsigned long long& number) {
  number = static_cast<Native>(value);
  return true;
}

// The number of a non-NULL uint8 to uint64 value; false for every other type.
static bool UnsignedNumber(const TCIMValue& value, unsigned long long& number) {
  switch (value.GetType()) {
  case TType::kUint8:
    return ReadNumber<unsigned char>(value, number);
  case TType::kUint16:
    return ReadNumber<unsigned short>(value, number);
  case TType::kUint32:
    return ReadNumber<unsigned int>(value, number);
  case TType::kUint64:
    return ReadNumber<unsigned long>(value, number);
  default:
    return false;
  }
}

// Booleans and unsigned integers are the types whose values can be codes of a value map.
static bool IsCodeType(TType::ECIMType type) {
  return type == TType::kBoolean || type == TType::kUint8 || type == TType::kUint16 ||
         type == TType::kUint32 || type == TType::kUint64;
}

// A boolean's code is 1 or 0.
static bool CodeOf(const TCIMValue& value, unsigned long long& code) {
  if (value.GetType() == TType::kBoolean)
    return ReadNumber<bool>(value, code);
  return UnsignedNumber(value, code);
}

// A seconds quantity with its prefix as an interval; Peta to Kilo leave it NULL on purpose.
static TCIMDateTime Interval(unsigned long long number, int prefix) {
  TCIMDateTime interval;
  unsigned long long seconds = 0, micro = 0;
  switch (prefix) {
  case kNoPrefix:
    seconds = number;
    break;
  case 6: // Milli
    seconds = number / 1000;
    micro = number % 1000 * 1000;
    break;
  case 7: // Micro
    seconds = number / 1000000;
    micro = number % 1000000;
    break;
  case 8: // Nano, truncated to whole microseconds
    seconds = number / 1000000000;
    micro = number / 1000 % 1000000;
    break;
  default:
    return interval;
  }
  interval.Set(static_cast<unsigned int>(seconds / 86400),
               static_cast<unsigned short>(seconds / 3600 % 24),
               static_cast<unsigned short>(seconds / 60 % 60),
               static_cast<unsigned short>(seconds % 60),
               static_cast<unsigned int>(micro));
  return interval;
}

// One decimal, dropped when it is 0. The classic locale gives en_US's decimal point
// whatever the global locale, without digit grouping: 1024 Bytes reads "1024".
static std::string ScaledNumberText(float amount) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << std::fixed << std::setprecision(1) << static_cast<double>(amount);
  std::string text = out.str();
  if (text.size() >= 2 && text.compare(text.size() - 2, 2, ".0") == 0)
    text.erase(text.size() - 2);
  return text;
}

// The "DISPLAYFIXEDUNITS" prefix index, or -1 for automatic scaling ("Peta" is not offered).
static int FixedPrefix(const TCIMPropertyDecl& decl) {
  std::string fixed;
  if (QualifierText(decl, "DISPLAYFIXEDUNITS", fixed))
    for (int i = 1; i < kNoPrefix; ++i)
      if (fixed == kPrefixes[i])
        return i;
  return -1;
}

// A number of a scaled unit, rescaled in single precision: digits beyond the float's
// mantissa are lost on purpose.
static std::string ScaledText(const TCIMPropertyDecl& decl, unsigned long long number, int prefix,
                              const TScaledUnit& unit) {
  float amount = static_cast<float>(number);
  const float divisor = unit.fDivisor;
  int target = FixedPrefix(decl);
  if (target >= 0) {
    for (; prefix > target; --prefix)
      amount /= divisor;
  } else {
    for (; amount > divisor && prefix >= 1; --prefix) // Equal to the divisor stays as is.
      amount /= divisor;
  }
  std::string unitText = QualifierSet(decl, "ABBREVIATEUNITS")
                             ? std::string(kPrefixAbbreviations[prefix]) + unit.fAbbreviation
                             : std::string(kPrefixes[prefix]) + unit.fName;
  return ScaledNumberText(amount) + " " + unitText;
}

// The strings of a string or string-array qualifier value; a NULL element gives "".
static std::vector<std::string> Strings(TCIMValue value) {
  std::vector<std::string> texts;
  if (!value.IsArray()) {
    texts.push_back(static_cast<std::string>(value));
    return texts;
  }
  std::vector<TCIMValue>& elements = value;
  for (size_t i = 0; i < elements.size(); ++i)
    texts.push_back(elements[i].IsNull() ? std::string() : static_cast<std::string>(elements[i]));
  return texts;
}

// A decimal number, or hex after "0x"; the whole text must be the number.
static bool ParseCode(const std::string& text, unsigned long long& code) {
  bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const char* digits = text.c_str() + (hex ? 2 : 0);
  if (*digits == '\0' || std::strspn(digits, hex ? "0123456789abcdefABCDEF" : "0123456789") !=
                             std::strlen(digits))
    return false;
  errno = 0;
  code = std::strtoull(digits, 0, hex ? 16 : 10);
  return errno == 0;
}

// One "ValueMap" entry with its open ends still unresolved; false for an unusable text.
static bool ParseEntry(const std::string& text, TEntry& entry) {
  std::string::size_type dots = text.find("..");
  if (dots == std::string::npos) {
    entry.fOpenLow = entry.fOpenHigh = false;
    if (!ParseCode(text, entry.fLow))
      return false;
    entry.fHigh = entry.fLow;
    return true;
  }
  std::string low = text.substr(0, dots), high = text.substr(dots + 2);
  entry.fOpenLow = low.empty();
  entry.fOpenHigh = high.empty();
  entry.fLow = 0;
  entry.fHigh = kLargestCode;
  return (entry.fOpenLow || ParseCode(low, entry.fLow)) &&
         (entry.fOpenHigh || ParseCode(high, entry.fHigh));
}

// Builds the map for codes of that type when the declaration has a sound one; a faulty
// map is logged and not used.
static bool ValueMapFor(const TCIMPropertyImpl& property, TType::ECIMType type,
                        std::vector<TEntry>& entries) {
  if (!IsCodeType(type))
    return false;
  std::string error;
  if (property.BuildValueMapEntryArray(entries, error))
    return true;
  if (!error.empty())
    ZelLog(zelLogWarning, error);
  return false;
}

// One element or scalar: its map entry when the map holds its code, else the qualifiers'
// rules.
static std::string ElementText(const TCIMPropertyImpl& property, const TCIMValue& value,
                               bool mapped, std::vector<TEntry>& entries) {
  std::string text;
  if (mapped && !value.IsNull() && property.LookupInTable(value, entries, text))
    return text;
  return property.ToStringWithQualifiers(value);
}

// The one text of a whole value; an array is printed whole, not through the map.
static std::string DisplayText(const TCIMPropertyImpl& property, const TCIMValue& value) {
  std::vector<TEntry> entries;
  bool mapped = !value.IsNull() &&
                ValueMapFor(property, property.GetDeclaration().GetType(), entries);
  return ElementText(property, value, mapped, entries);
}

// One text per element of an array (none when it is NULL), the one text of a scalar.
template <class TextOf>
static std::vector<std::string> EachText(TCIMValue value, TextOf textOf) {
  std::vector<std::string> texts;
  if (!value.IsArray()) {
    texts.push_back(textOf(value));
  } else if (!value.IsNull()) {
    std::vector<TCIMValue>& elements = value;
    for (size_t i = 0; i < elements.size(); ++i)
      texts.push_back(textOf(elements[i]));
  }
  return texts;
}

static std::vector<std::string> DisplayTexts(const TCIMPropertyImpl& property,
                                             const TCIMValue& value) {
  std::vector<TEntry> entries;
  TType::ECIMType elementType =
      static_cast<TType::ECIMType>(property.GetDeclaration().GetType() & ~TType::kArray);
  bool mapped = !value.IsNull() && ValueMapFor(property, elementType, entries);
  return EachText(value, [&](const TCIMValue& element) {
    return ElementText(property, element, mapped, entries);
  });
}

// The declared base, except for NULL, which has no digits but the NULL text.
static std::vector<std::string> BaseTexts(const TCIMPropertyImpl& property,
                                          const TCIMValue& value) {
  return EachText(value, [&](const TCIMValue& element) {
    return element.IsNull() ? property.ToStringWithQualifiers(element)
                            : property.ToStringWithBase(element);
  });
}

std::string TCIMPropertyImpl::ToString() const {
  return DisplayText(*this, GetValue());
}

std::vector<std::string> TCIMPropertyImpl::ToStringVector() const {
  return DisplayTexts(*this, GetValue());
}

std::string TCIMPropertyImpl::PrevToString() const {
  return DisplayText(*this, GetPrevValue());
}

std::vector<std::string> TCIMPropertyImpl::PrevToStringVector() const {
  return DisplayTexts(*this, GetPrevValue());
}

std::string TCIMPropertyImpl::ToStringWithQualifiers(const TCIMValue& value) const {
  const TCIMPropertyDecl& decl = *fDeclaration;
  if (value.IsNull()) {
    std::string text;
    QualifierText(decl, "NULLDISPLAY", text);
    return text;
  }
  unsigned long long number;
  std::string units;
  if (!UnsignedNumber(value, number) || !QualifierText(decl, "UNITS", units))
    return ToStringWithBase(value);

  int prefix = kNoPrefix;
  std::string unit = units;
  for (int i = 0; i < static_cast<int>(sizeof kPrefixes / sizeof *kPrefixes); ++i) {
    size_t length = std::strlen(kPrefixes[i]);
    if (i != kNoPrefix && units.compare(0, length, kPrefixes[i]) == 0) {
      prefix = i;
      unit = units.substr(length);
      break;
    }
  }
  if (unit == "Seconds") {
    TCIMDateTime interval = Interval(number, prefix);
    return QualifierSet(decl, "DISPLAYCPUTIME") ? interval.ToAbbrUIString() : interval.ToUIString();
  }
  for (size_t i = 0; i < sizeof kScaledUnits / sizeof *kScaledUnits; ++i)
    if (unit == kScaledUnits[i].fName)
      return ScaledText(decl, number, prefix, kScaledUnits[i]);
  return ToStringWithBase(value);
}

std::string TCIMPropertyImpl::ToStringWithBase(const TCIMValue& value) const {
  unsigned char base = 10;
  TCIMValue qualifier = QualifierValue(*fDeclaration, "BASE");
  if (!qualifier.IsNull() && qualifier.GetType() == TType::kUint8)
    base = static_cast<unsigned char>(qualifier);
  return value.ToString(base);
}

bool TCIMPropertyImpl::BuildValueMapEntryArray(std::vector<TValueMapEntry>& entries,
                                               std::string& error) const {
  entries.clear();
  error.clear();
  const TCIMPropertyDecl& decl = *fDeclaration;
  TCIMValue values = QualifierValue(decl, "Values");
  if (values.IsNull())
    return false;
  if ((values.GetType() & ~TType::kArray) != TType::kString) {
    error = "Property " + GetName() + " has a VALUE qualifier that isn't a string!";
    return false;
  }
  std::vector<std::string> texts = Strings(values);
  TCIMValue valueMap = QualifierValue(decl, "ValueMap");
  if (valueMap.IsNull()) {
    for (size_t i = 0; i < texts.size(); ++i) {
      TValueMapEntry entry = {i, i, false, false, texts[i]};
      entries.push_back(entry);
    }
    return true;
  }
  if ((valueMap.GetType() & ~TType::kArray) != TType::kString) {
    error = "Property " + GetName() + " has a VALUEMAP qualifier that isn't a string!";
    return false;
  }
  std::vector<std::string> codes = Strings(valueMap);
  if (codes.size() != texts.size()) {
    error = "Property " + GetName() +
            " has VALUE and VALUEMAP qualifiers that aren't the same size!";
    return false;
  }
  for (size_t i = 0; i < codes.size(); ++i) {
    TValueMapEntry entry;
    entry.fText = texts[i];
    if (ParseEntry(codes[i], entry))
      entries.push_back(entry);
  }

  // An open low end starts after the entry before, an open high end stops before the entry
  // after; two open ends facing each other leave the boundary unknown.
  std::vector<TValueMapEntry> resolved = entries;
  for (size_t i = 0; i < entries.size(); ++i) {
    TValueMapEntry& entry = resolved[i];
    bool empty = false;
    if (entry.fOpenLow && i > 0) {
      const TValueMapEntry& before = entries[i - 1];
      if (before.fOpenHigh) {
        error = "Property " + GetName() +
                (entry.fOpenHigh
                     ? " has a .. VALUEMAP entry after another entry that ends with ..!"
                     : " has a ..<value> VALUEMAP entry after another entry that ends with ..!");
        entries.clear();
        return false;
      }
      empty = before.fHigh == kLargestCode;
      entry.fLow = before.fHigh + 1;
    }
    if (entry.fOpenHigh && i + 1 < entries.size()) {
      unsigned long long after = entries[i + 1].fLow;
      empty = empty || after == 0;
      entry.fHigh = after - 1;
    }
    if (empty)
      entry.fLow = kLargestCode, entry.fHigh = 0;
  }
  entries.swap(resolved);
  return true;
}

bool TCIMPropertyImpl::LookupInTable(const TCIMValue& value, std::vector<TValueMapEntry>& entries,
                                     std::string& text) const {
  unsigned long long code;
  if (value.IsNull() || !CodeOf(value, code))
    return false;
  for (size_t i = 0; i < entries.size(); ++i)
    if (entries[i].fLow <= code && code <= entries[i].fHigh) {
      text = entries[i].fText;
      return true;
    }
  return false;
}

std::vector<std::string> TCIMPropertyImpl::ToStringVectorWithBase() const {
  return BaseTexts(*this, GetValue());
}

std::vector<std::string> TCIMPropertyImpl::PrevToStringVectorWithBase() const {
  return BaseTexts(*this, GetPrevValue());
}
