// The differences as JSON for programs: added, removed and changed instances with their
// values typed as in the inventory's JSON, and the counts.
#include "DiffFormat.h"

#include "TCIMProperty.h"

#include <nlohmann/json.hpp>

namespace zelcollect {

static nlohmann::json SideJson(const TSide& side) {
  return side.fPresent ? JsonValue(side.fValue) : nlohmann::json(nullptr);
}

void WriteDifferenceJson(std::ostream& out, const TDifference& difference) {
  nlohmann::json report = {{"added", nlohmann::json::array()},
                           {"removed", nlohmann::json::array()},
                           {"changed", nlohmann::json::array()}};
  static const char* const kLists[] = {"added", "removed", "changed"};
  for (const TInstanceDifference& instance : difference.fInstances) {
    nlohmann::json properties = nlohmann::json::object();
    for (const TPropertyDifference& property : instance.fProperties) {
      TSide old = OldSide(property), now = NewSide(property, instance.fChange);
      const TCIMProperty* named = property.fNew ? property.fNew : property.fOld;
      if (instance.fChange == EChange::kChanged)
        properties[named->GetName()] = {{"old", SideJson(old)}, {"new", SideJson(now)}};
      else
        properties[named->GetName()] = SideJson(instance.fChange == EChange::kAdded ? now : old);
    }
    report[kLists[static_cast<int>(instance.fChange)]].push_back(
        {{"class", instance.fClassName}, {"path", instance.fPath}, {"properties", properties}});
  }
  report["summary"] = {{"added", difference.fAdded},
                       {"removed", difference.fRemoved},
                       {"changed", difference.fChanged}};
  out << report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << std::endl;
}

} // namespace zelcollect
