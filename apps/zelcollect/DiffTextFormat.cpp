// The differences as text for people: per class, each instance that differs, marked + (added),
// - (removed) or ~ (changed), the changed properties as "old -> new" in their display texts,
// then a line of counts.
#include "DiffFormat.h"
#include "Inventory.h"

#include "TCIMProperty.h"

namespace zelcollect {

static std::string SideText(const TSide& side) {
  if (!side.fPresent)
    return "(absent)";
  return side.fValue.IsNull() ? kNullText : side.fText;
}

static std::string TypeName(const TCIMProperty& property) {
  return property.GetType().ToString() + (property.IsArray() ? "[]" : "");
}

void WriteDifferenceText(std::ostream& out, const TDifference& difference) {
  const std::string* cls = nullptr;
  for (const TInstanceDifference& instance : difference.fInstances) {
    if (!cls || *cls != instance.fClassName) {
      cls = &instance.fClassName;
      out << *cls << "\n";
    }
    static const char kMarks[] = {'+', '-', '~'};
    out << "  " << kMarks[static_cast<int>(instance.fChange)] << " " << instance.fPath << "\n";
    if (instance.fChange != EChange::kChanged)
      continue;
    for (const TPropertyDifference& property : instance.fProperties) {
      const TCIMProperty* named = property.fNew ? property.fNew : property.fOld;
      out << "      " << named->GetName() << ": " << SideText(OldSide(property)) << " -> "
          << SideText(NewSide(property, instance.fChange));
      if (property.fNew && property.fOld && property.fNew->GetType() != property.fOld->GetType())
        out << "  (type " << TypeName(*property.fOld) << " -> " << TypeName(*property.fNew) << ")";
      out << "\n";
    }
  }
  out << difference.fAdded << " added, " << difference.fRemoved << " removed, "
      << difference.fChanged << " changed\n";
}

} // namespace zelcollect
