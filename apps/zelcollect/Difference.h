// The comparison of two inventories: the newer container becomes a difference container
// whose properties carry the older values (SetPrevValue), and a report lists what differs.
#ifndef ZELCOLLECT_DIFFERENCE_H
#define ZELCOLLECT_DIFFERENCE_H

#include <string>
#include <vector>

class TCIMInstance;
class TCIMProperty;
class TCIMQualifier;
class TContainer;

namespace zelcollect {

enum class EChange { kAdded, kRemoved, kChanged };

/// One property that differs. The old side is fNew's previous value when fNew carries one,
/// else fOld's value (a property only the old side declares, or one whose type changed,
/// which no previous value can hold); no fOld: the property did not exist before.
struct TPropertyDifference {
  const TCIMProperty* fNew; ///< in the result; null when only the old side declares it
  const TCIMProperty* fOld; ///< in the old inventory; null when it did not exist there
};

/// One instance that differs. Removed instances are carried into the result with their old
/// values as previous values; added and removed ones list every property.
struct TInstanceDifference {
  EChange fChange;
  TCIMInstance* fInstance; ///< in the result
  std::string fClassName;
  std::string fPath;
  std::vector<TPropertyDifference> fProperties;
};

struct TDifference {
  /// By class (case-insensitively), then by path.
  std::vector<TInstanceDifference> fInstances;
  size_t fAdded = 0;
  size_t fRemoved = 0;
  size_t fChanged = 0;

  bool Empty() const { return fInstances.empty(); }
};

/// Turns result (the newer inventory) into a difference container against old: instances
/// match by class (case-insensitively) and key values; "VOLATILE" properties are left out
/// unless all is set. old must outlive result and the report: both point into it.
TDifference CompareInventories(TContainer& result, TContainer& old, bool all);

/// A CIM name in lower case, the case in which names compare.
std::string LowerCase(std::string name);
/// True when the qualifier is there and its value is boolean true.
bool QualifierIsTrue(const TCIMQualifier* qualifier);

} // namespace zelcollect

#endif
