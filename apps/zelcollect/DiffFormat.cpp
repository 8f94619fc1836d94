// The table of the differences' formats, and the two sides of a property that differs.
#include "DiffFormat.h"

#include "Errors.h"
#include "Inventory.h"

#include "TCIMProperty.h"

namespace zelcollect {

namespace {

struct TDiffFormatEntry {
  EFormat fFormat;
  void (*fWrite)(std::ostream&, const TDifference&);
};

const TDiffFormatEntry kDiffFormats[] = {
    {EFormat::kText, WriteDifferenceText},
    {EFormat::kXml, WriteDifferenceXml},
    {EFormat::kJson, WriteDifferenceJson},
};

} // namespace

void WriteDifference(std::ostream& out, EFormat format, const TDifference& difference) {
  for (const TDiffFormatEntry& entry : kDiffFormats)
    if (entry.fFormat == format)
      return entry.fWrite(out, difference);
  throw TUsageError("differences are written as text, xml or json only");
}

TSide OldSide(const TPropertyDifference& property) {
  TSide side;
  if (!property.fOld)
    return side;
  side.fPresent = true;
  if (property.fNew && property.fNew->IsPrevValueDifferent()) {
    side.fValue = property.fNew->GetPrevValue();
    side.fText = DisplayText(*property.fNew, true);
  } else { // no previous value can hold it: the old inventory's own property
    side.fValue = property.fOld->GetValue();
    side.fText = DisplayText(*property.fOld);
  }
  return side;
}

TSide NewSide(const TPropertyDifference& property, EChange change) {
  TSide side;
  if (!property.fNew || change == EChange::kRemoved)
    return side;
  side.fPresent = true;
  side.fValue = property.fNew->GetValue();
  side.fText = DisplayText(*property.fNew);
  return side;
}

} // namespace zelcollect
