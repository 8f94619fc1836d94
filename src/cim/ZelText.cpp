// Names normalised, and number and boolean texts read as stream extraction reads them,
// without the stream.
#include "cim/ZelText.h"

#include "log/ZelLog.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale.h>
#include <type_traits>

// Each byte's lower-case form where it may stand in a CIM name, else 0. Names are judged as
// in the C library's default locale, where only ASCII letters and digits are letters and
// digits; a table rather than tolower/isalnum, since every lookup of the model comes here.
namespace {
struct TNameBytes {
  char fLower[256];
  constexpr TNameBytes() : fLower() {
    for (int c = 'a'; c <= 'z'; ++c) {
      fLower[c] = static_cast<char>(c);
      fLower[c - 'a' + 'A'] = static_cast<char>(c);
    }
    for (int c = '0'; c <= '9'; ++c)
      fLower[c] = static_cast<char>(c);  // not first: tested apart
    fLower[static_cast<unsigned char>('_')] = '_';
  }
};
}  // namespace

static constexpr TNameBytes kNameBytes;

// Eight bytes at a time, each byte a lane: lanes holding a byte from low to high, given
// ASCII lanes (the high bit clear, so no sum carries into the next lane).
static uint64_t LanesIn(uint64_t bytes, unsigned char low, unsigned char high) {
  const uint64_t kOnes = 0x0101010101010101, kHighBits = 0x8080808080808080;
  return (bytes + kOnes * (0x80 - low)) & ~(bytes + kOnes * (0x7f - high)) & kHighBits;
}

// Lowers eight ASCII bytes; false when one may not stand in a name.
static bool LowerEight(uint64_t& bytes) {
  const uint64_t kOnes = 0x0101010101010101, kHighBits = 0x8080808080808080;
  if (bytes & kHighBits)
    return false;
  bytes |= LanesIn(bytes, 'A', 'Z') >> 2;  // the high bit moved to 0x20
  uint64_t underscore = bytes ^ (kOnes * '_');
  underscore = ~(((underscore & ~kHighBits) + ~kHighBits) | underscore | ~kHighBits);
  return (LanesIn(bytes, 'a', 'z') | LanesIn(bytes, '0', '9') | underscore) == kHighBits;
}

[[noreturn, gnu::cold]] static void InvalidName(const std::string& name) {
  ZelFail(zelStatusInvalidCIMName, "CIM name '" + name + "' is invalid");
}

// Writes the normal form of name to out, which has room for it: a name of eight bytes or
// more in blocks of eight, the last one ending at the end and overlapping the one before; a
// shorter one byte by byte.
static void Normalize(const std::string& name, char* out) {
  const char* in = name.data();
  std::string::size_type size = name.size();
  bool valid = size == 0 || in[0] < '0' || in[0] > '9';
  uint64_t bytes;
  if (size >= 8) {
    for (std::string::size_type i = 0; i < size - 8; i += 8) {
      std::memcpy(&bytes, in + i, 8);
      valid &= LowerEight(bytes);
      std::memcpy(out + i, &bytes, 8);
    }
    std::memcpy(&bytes, in + size - 8, 8);
    valid &= LowerEight(bytes);
    std::memcpy(out + size - 8, &bytes, 8);
  } else {
    for (std::string::size_type i = 0; i < size; ++i) {
      char c = kNameBytes.fLower[static_cast<unsigned char>(in[i])];
      valid &= c != 0;
      out[i] = c;
    }
  }
  if (!valid)
    InvalidName(name);
}

ZelNormalName::ZelNormalName(const std::string& name) {
  char* out = fInline;
  if (name.size() > sizeof fInline) {
    fLong.resize(name.size());
    out = &fLong[0];
  }
  Normalize(name, out);
  fView = std::string_view(out, name.size());
}

std::string ZelNormalizeName(const std::string& name) {
  std::string normal(name.size(), '\0');
  Normalize(name, &normal[0]);
  return normal;
}

// A byte the table does not know is 0, which a normal form never holds.
bool ZelIsNormalFormOf(std::string_view normal, std::string_view name) {
  if (normal.size() != name.size())
    return false;
  for (std::string_view::size_type i = 0; i < name.size(); ++i) {
    if (kNameBytes.fLower[static_cast<unsigned char>(name[i])] != normal[i])
      return false;
  }
  return true;
}

// The white space that extraction skips first.
static const char* SkipSpace(const char* p) {
  while (*p == ' ' || (*p >= '\t' && *p <= '\r'))
    ++p;
  return p;
}

// An optional sign, then decimal digits. A minus sign negates unsigned types too, modulo
// their range, as strtoul does; overflow gives the limit on that side.
template <class Integer>
static Integer ReadInteger(const char* p) {
  typedef std::numeric_limits<Integer> Limits;
  typedef typename std::make_unsigned<Integer>::type Unsigned;
  p = SkipSpace(p);
  bool negative = *p == '-';
  if (negative || *p == '+')
    ++p;
  const Unsigned max = negative && Limits::is_signed
                           ? static_cast<Unsigned>(0 - static_cast<Unsigned>(Limits::min()))
                           : static_cast<Unsigned>(Limits::max());
  const char* digits = p;
  Unsigned result = 0;
  bool overflow = false;
  for (; *p >= '0' && *p <= '9'; ++p) {
    Unsigned digit = static_cast<Unsigned>(*p - '0');
    if (result > max / 10) {
      overflow = true;
    } else {
      result *= 10;
      overflow |= result > max - digit;
      result += digit;
    }
  }
  if (p == digits)
    return 0;
  if (overflow)
    return negative && Limits::is_signed ? Limits::min() : Limits::max();
  return static_cast<Integer>(negative ? static_cast<Unsigned>(0 - result) : result);
}

// short and int are read as long, then held to their range.
template <class Integer>
static Integer ReadNarrowInteger(const char* p) {
  typedef std::numeric_limits<Integer> Limits;
  long wide = ReadInteger<long>(p);
  if (wide < Limits::min())
    return Limits::min();
  if (wide > Limits::max())
    return Limits::max();
  return static_cast<Integer>(wide);
}

// The number's characters are gathered first (sign, digits, one point, one exponent with
// its sign) and must then convert whole: "1e" or "." reads as 0.
template <class Real>
static Real ReadReal(const char* p) {
  p = SkipSpace(p);
  std::string gathered;
  if (*p == '+' || *p == '-')
    gathered += *p++;
  bool mantissa = false;
  for (; *p == '0'; ++p) {  // leading zeros, kept once
    if (!mantissa)
      gathered += '0';
    mantissa = true;
  }
  bool point = false, exponent = false;
  for (;; ++p) {
    char c = *p;
    if (c == '.' && !point && !exponent) {
      point = true;
    } else if (c >= '0' && c <= '9') {
      mantissa = true;
    } else if ((c == 'e' || c == 'E') && mantissa && !exponent) {
      exponent = true;
      gathered += 'e';
      if (p[1] != '+' && p[1] != '-')
        continue;
      c = *++p;
    } else {
      break;
    }
    gathered += c;
  }
  // The conversion itself in the "C" locale whatever the host set, as the stream's is.
  static const locale_t kClassic = newlocale(LC_NUMERIC_MASK, "C", static_cast<locale_t>(0));
  const char* begin = gathered.c_str();
  char* end = 0;
  Real value;
  if constexpr (std::is_same<Real, float>::value)
    value = strtof_l(begin, &end, kClassic);
  else
    value = strtod_l(begin, &end, kClassic);
  if (end == begin || *end != '\0')
    return 0;
  if (value == std::numeric_limits<Real>::infinity())
    return std::numeric_limits<Real>::max();
  if (value == -std::numeric_limits<Real>::infinity())
    return -std::numeric_limits<Real>::max();
  return value;
}

bool ZelReadBool(const std::string& text) {
  return std::strncmp(SkipSpace(text.c_str()), "true", 4) == 0;
}

template <> unsigned short ZelReadNumber(const std::string& text) {
  return ReadInteger<unsigned short>(text.c_str());
}
template <> short ZelReadNumber(const std::string& text) {
  return ReadNarrowInteger<short>(text.c_str());
}
template <> unsigned int ZelReadNumber(const std::string& text) {
  return ReadInteger<unsigned int>(text.c_str());
}
template <> int ZelReadNumber(const std::string& text) {
  return ReadNarrowInteger<int>(text.c_str());
}
template <> unsigned long ZelReadNumber(const std::string& text) {
  return ReadInteger<unsigned long>(text.c_str());
}
template <> long ZelReadNumber(const std::string& text) {
  return ReadInteger<long>(text.c_str());
}
template <> float ZelReadNumber(const std::string& text) { return ReadReal<float>(text.c_str()); }
template <> double ZelReadNumber(const std::string& text) { return ReadReal<double>(text.c_str()); }
