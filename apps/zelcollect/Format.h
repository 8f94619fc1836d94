// The output formats of an inventory: one file each (TextFormat.cpp, JsonFormat.cpp, ...),
// chosen by name through one table (Format.cpp).
#ifndef ZELCOLLECT_FORMAT_H
#define ZELCOLLECT_FORMAT_H

#include <nlohmann/json_fwd.hpp>

#include <ostream>
#include <string>

class TCIMValue;

namespace zelcollect {

class TInventory;

enum class EFormat { kText, kXml, kJson };

/// false when no format has that name.
bool FormatByName(const std::string& name, EFormat& format);
/// The names, for messages: "text, xml or json".
std::string FormatNames();

/// Writes the inventory in that format.
void WriteInventory(std::ostream& out, EFormat format, const TInventory& inventory);

// One writer per format.
void WriteText(std::ostream& out, const TInventory& inventory);
void WriteXml(std::ostream& out, const TInventory& inventory);
void WriteJson(std::ostream& out, const TInventory& inventory);

/// A value as the JSON format types it (differences use it too).
nlohmann::json JsonValue(const TCIMValue& value);

} // namespace zelcollect

#endif
