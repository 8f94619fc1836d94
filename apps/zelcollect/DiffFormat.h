// The differences between two inventories in each output format: one file each
// (DiffTextFormat.cpp, DiffJsonFormat.cpp, DiffXmlFormat.cpp), chosen through one table.
#ifndef ZELCOLLECT_DIFFFORMAT_H
#define ZELCOLLECT_DIFFFORMAT_H

#include "Difference.h"
#include "Format.h"

#include "TCIMValue.h"

#include <ostream>
#include <string>

namespace zelcollect {

/// Throws TUsageError for a format that has no form for differences.
void WriteDifference(std::ostream& out, EFormat format, const TDifference& difference);

// One writer per format.
void WriteDifferenceText(std::ostream& out, const TDifference& difference);
void WriteDifferenceJson(std::ostream& out, const TDifference& difference);
void WriteDifferenceXml(std::ostream& out, const TDifference& difference);

/// One side of a property that differs: its value and display text, or absent (no such
/// property, or no such instance, on that side).
struct TSide {
  bool fPresent = false;
  TCIMValue fValue;
  std::string fText;
};

TSide OldSide(const TPropertyDifference& property);
TSide NewSide(const TPropertyDifference& property, EChange change);

} // namespace zelcollect

#endif
