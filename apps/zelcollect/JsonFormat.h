// The JSON forms of values and properties, shared by the JSON format and the commands that
// compare inventories.
#ifndef ZELCOLLECT_JSONFORMAT_H
#define ZELCOLLECT_JSONFORMAT_H

#include <nlohmann/json.hpp>

class TCIMDateTime;
class TCIMProperty;
class TCIMValue;

namespace zelcollect {

class TInventory;
struct TPresentation;

/// A value with its JSON type: numbers, booleans, strings, null, arrays; date-times in
/// ISO 8601 with their offset, intervals as ISO 8601 durations; references as objects of
/// class, keys and escaped path.
nlohmann::json JsonValue(const TCIMValue& value);
/// "2026-11-22T08:38:24.000000+01:00", or "P1DT2H3M4.000005S" for an interval.
std::string IsoDateTime(const TCIMDateTime& dateTime);
/// A property as {"type", "value", "unit", "display"} and "mapped" where a value map applies.
nlohmann::json JsonProperty(const TCIMProperty& property);
/// The whole document.
nlohmann::json JsonDocument(const TInventory& inventory, const TPresentation& how);

} // namespace zelcollect

#endif
