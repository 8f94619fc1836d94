// The attributes that spell qualifier flavors and declaration scopes, for the writer and the
// reader alike.
#ifndef ZELQUALIFIERATTRIBUTES_H
#define ZELQUALIFIERATTRIBUTES_H

#include "TCIMQualifierDecl.h"

#include "cim/ZelText.h"

#include <string_view>

struct ZelAttributeBit {
  std::string_view fName;  ///< As written; the reader gets attribute names lower-cased.
  unsigned int fBit;
};

inline constexpr ZelAttributeBit kFlavorAttributes[] = {
    {"OVERRIDABLE", TCIMQualifierDecl::eOverridable},
    {"TOSUBCLASS", TCIMQualifierDecl::eToSubclass},
    {"TRANSLATABLE", TCIMQualifierDecl::eTranslatable}};

inline constexpr ZelAttributeBit kScopeAttributes[] = {
    {"CLASS", TCIMQualifierDecl::eClass},
    {"ASSOCIATION", TCIMQualifierDecl::eAssociation},
    {"PROPERTY", TCIMQualifierDecl::eProperty},
    {"REFERENCE", TCIMQualifierDecl::eReference}};

/// The bit of the attribute whose lower-cased name is given, or 0 when the table has none.
template <std::size_t N>
unsigned int ZelAttributeBitOf(const ZelAttributeBit (&table)[N], std::string_view lower) {
  for (const ZelAttributeBit& attribute : table) {
    if (attribute.fName.size() != lower.size())
      continue;
    std::size_t i = 0;
    while (i < lower.size() && ZelAsciiLower(attribute.fName[i]) == lower[i])
      ++i;
    if (i == lower.size())
      return attribute.fBit;
  }
  return 0;
}

#endif
