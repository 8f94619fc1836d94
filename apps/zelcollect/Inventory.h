// An inventory as the formats read it: the container of a collection (or of a result file
// read back), its classes with instances in the machine's order, the system's identity and
// summary, and the display helpers that every format shares.
#ifndef ZELCOLLECT_INVENTORY_H
#define ZELCOLLECT_INVENTORY_H

#include <optional>
#include <string>
#include <vector>

class TCIMClass;
class TCIMDateTime;
class TCIMInstance;
class TCIMProperty;
class TCIMReference;
class TCIMValue;
class TContainer;

namespace zelcollect {

/// The one text of a NULL value in every format meant for people.
extern const char kNullText[];

/// One fact of the system's identity; no value when the data do not tell it.
struct TIdentityField {
  const char* fKey;   ///< its JSON name
  const char* fLabel; ///< its name for people
  std::optional<std::string> fValue;
};

/// One line of the summary: a label and a text for people.
struct TSummaryLine {
  std::string fLabel;
  std::string fText;
};

class TInventory {
public:
  explicit TInventory(TContainer& container);

  TContainer& GetContainer() const { return fContainer; }
  /// The classes that have instances: the system first, software last, then classes of no
  /// known place by name, associations at the end.
  const std::vector<TCIMClass*>& GetClasses() const { return fClasses; }
  const std::vector<TIdentityField>& GetIdentity() const { return fIdentity; }
  /// The identity's value of that key; no value when unknown.
  std::optional<std::string> Identity(const char* key) const;
  /// Identity, operating system, processors, memory, disks and addresses, for people.
  std::vector<TSummaryLine> Summary() const;
  /// The earliest collection time of the run; NULL when no instance has one.
  const TCIMValue& GetCollected() const;

private:
  TContainer& fContainer;
  std::vector<TCIMClass*> fClasses;
  std::vector<TIdentityField> fIdentity;
  std::vector<TCIMValue> fCollected; // zero or one value
};

/// The one instance of a class (its subclasses' left out); null when it has none or several.
TCIMInstance* SingleInstance(TContainer& container, const std::string& cls);

/// A class qualifier's string value; "" when absent or NULL.
std::string QualifierText(const TCIMClass& cls, const char* name);

/// The "UNITS" of a property; "" when it has none.
std::string UnitOf(const TCIMProperty& property);
/// True when a value map ("ValueMap" and "Values") gives the property's display text.
bool HasValueMap(const TCIMProperty& property);

/// The display text of a property: the library's formatting, a unit the library does not
/// scale after the number, date-times with their UTC offset, NULL as kNullText.
std::string DisplayText(const TCIMProperty& property, bool previous = false);
/// "2026-11-22 08:38:24 +01:00", or the interval as the library words it.
std::string DateTimeText(const TCIMDateTime& dateTime);
/// A reference for people: its class and key values.
std::string ReferenceText(const TCIMReference& reference);

/// Run bookkeeping shown once per run, not per instance: CreationClassName and its kin,
/// DateTimeOfCollection.
bool IsBookkeeping(const std::string& propertyName);

/// The instance named for people by its key values (bookkeeping keys left out).
std::string InstanceTitle(const TCIMInstance& instance);

/// The object path with string values quoted and their quotes and backslashes escaped,
/// numbers and booleans bare, as DSP0207 writes them.
std::string EscapedPath(const TCIMReference& reference);

/// The number of instances above which a class is shown folded, as a count and a few lines.
constexpr size_t kLargeClass = 50;

} // namespace zelcollect

#endif
