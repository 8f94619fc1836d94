// Text read as values without string streams, with the results stream extraction in the
// classic locale gives, and the one ASCII lower-casing and normalisation of names.
#ifndef ZELTEXT_H
#define ZELTEXT_H

#include <string>
#include <string_view>

/// Lower case for ASCII letters only, as tolower in the "C" locale, without a call.
inline char ZelAsciiLower(char c) {
  return static_cast<unsigned char>(c - 'A') < 26 ? static_cast<char>(c + ('a' - 'A')) : c;
}

inline void ZelAsciiLowerInPlace(char* begin, char* end) {
  for (; begin != end; ++begin)
    *begin = ZelAsciiLower(*begin);
}

inline void ZelAsciiLowerInPlace(std::string& text) {
  ZelAsciiLowerInPlace(&text[0], &text[0] + text.size());
}

/// Lower case, and a valid CIM name (or empty): zelStatusInvalidCIMName after one log line
/// otherwise. Every key stored in the model's maps goes through here.
std::string ZelNormalizeName(const std::string& name);

/// Whether normal, a normalised name, is that of name; makes no string.
bool ZelIsNormalFormOf(std::string_view normal, std::string_view name);

/// The normal form of a name for one lookup, checked as ZelNormalizeName checks it, made
/// without a heap block for names of up to 64 bytes. Views into itself: not copied.
class ZelNormalName {
public:
  explicit ZelNormalName(const std::string& name);
  ZelNormalName(const ZelNormalName&) = delete;
  ZelNormalName& operator=(const ZelNormalName&) = delete;
  std::string_view View() const { return fView; }

private:
  char fInline[64];
  std::string fLong;
  std::string_view fView;
};

/// Names compared after normalisation, as std::string compares.
inline bool ZelSameName(const std::string& left, const std::string& right) {
  return ZelNormalName(left).View() == ZelNormalName(right).View();
}
inline bool ZelNameBefore(const std::string& left, const std::string& right) {
  return ZelNormalName(left).View() < ZelNormalName(right).View();
}

/// What `in >> std::boolalpha >> value` reads: true when the text, after white space,
/// starts with "true"; false otherwise.
bool ZelReadBool(const std::string& text);

/// What `in >> value` reads into Number (unsigned char and signed char excepted): 0 for
/// no number, the nearest limit when out of range, trailing text ignored.
template <class Number>
Number ZelReadNumber(const std::string& text);

#endif
