// The output formats of an inventory: one file each (TextFormat.cpp, JsonFormat.cpp, ...),
// chosen by name through one table (Format.cpp).
#ifndef ZELCOLLECT_FORMAT_H
#define ZELCOLLECT_FORMAT_H

#include <nlohmann/json_fwd.hpp>

#include <ostream>
#include <string>
#include <vector>

class TCIMValue;

namespace zelcollect {

class TInventory;

enum class EFormat { kText, kXml, kJson, kHtml };

/// How much the formats for people show.
struct TPresentation {
  bool fFull = false;                   ///< every instance of the large classes too
  std::vector<std::string> fFullClasses; ///< these classes in full
  bool fRedacted = false;               ///< the inventory's SENSITIVE values are hashed

  /// Whether a class of that many instances is shown whole.
  bool ShowsWhole(const std::string& className, size_t instances) const;
};

/// false when no format has that name.
bool FormatByName(const std::string& name, EFormat& format);
/// The names, for messages: "text, xml, json or html".
std::string FormatNames();
/// The format that a result file's name says (.xml, .json, .html, each optionally .gz);
/// false when the name says none.
bool FormatOfFile(const std::string& path, EFormat& format);
/// Whether a result file of that name is compressed.
bool IsGzipName(const std::string& path);

/// Writes the inventory in that format.
void WriteInventory(std::ostream& out, EFormat format, const TInventory& inventory,
                    const TPresentation& presentation = TPresentation());

// One writer per format.
void WriteText(std::ostream& out, const TInventory& inventory, const TPresentation& how);
void WriteXml(std::ostream& out, const TInventory& inventory, const TPresentation& how);
void WriteJson(std::ostream& out, const TInventory& inventory, const TPresentation& how);
void WriteHtml(std::ostream& out, const TInventory& inventory, const TPresentation& how);

/// A value as the JSON format types it (differences use it too).
nlohmann::json JsonValue(const TCIMValue& value);

} // namespace zelcollect

#endif
