// Text read as values without string streams, with the results stream extraction in the
// classic locale gives, and the one ASCII lower-casing of names.
#ifndef ZELTEXT_H
#define ZELTEXT_H

#include <string>

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

/// What `in >> std::boolalpha >> value` reads: true when the text, after white space,
/// starts with "true"; false otherwise.
bool ZelReadBool(const std::string& text);

/// What `in >> value` reads into Number (unsigned char and signed char excepted): 0 for
/// no number, the nearest limit when out of range, trailing text ignored.
template <class Number>
Number ZelReadNumber(const std::string& text);

#endif
