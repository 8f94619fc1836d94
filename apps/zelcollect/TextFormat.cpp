// The inventory as text for people: the summary, then one block per class in the machine's
// order, each instance headed by its key values.
#include "Format.h"
#include "Inventory.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"

#include <algorithm>

namespace zelcollect {

// How many instances a folded class shows.
static const size_t kFoldedLines = 5;

static std::string Plural(size_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

static void WriteLine(std::ostream& out, const char* indent, const std::string& label,
                      size_t width, const std::string& text) {
  out << indent << label << std::string(width - label.size() + 2, ' ') << text << "\n";
}

static void WriteInstance(std::ostream& out, const TCIMInstance& instance) {
  out << "  " << InstanceTitle(instance) << "\n";
  std::vector<const TCIMProperty*> shown;
  size_t width = 0;
  for (const TCIMProperty* property : instance.EnumerateProperties())
    if (!IsBookkeeping(property->GetName())) {
      shown.push_back(property);
      width = std::max(width, property->GetName().size());
    }
  for (const TCIMProperty* property : shown)
    WriteLine(out, "    ", property->GetName(), width, DisplayText(*property));
}

void WriteText(std::ostream& out, const TInventory& inventory, const TPresentation& how) {
  out << "Summary" << (how.fRedacted ? " (redacted)" : "") << "\n";
  std::vector<TSummaryLine> summary = inventory.Summary();
  size_t width = 0;
  for (const TSummaryLine& line : summary)
    width = std::max(width, line.fLabel.size());
  for (const TSummaryLine& line : summary)
    WriteLine(out, "  ", line.fLabel, width, line.fText);
  out << "\n";

  for (TCIMClass* cls : inventory.GetClasses()) {
    std::vector<TCIMInstance*> instances = cls->EnumerateInstances(false);
    bool whole = how.ShowsWhole(cls->GetName(), instances.size());
    out << cls->GetName() << "  (" << Plural(instances.size(), "instance");
    std::string plugin = QualifierText(*cls, "PLUGINNAME");
    if (!plugin.empty())
      out << ", plugin " << plugin << " " << QualifierText(*cls, "PLUGINVERSION");
    if (!whole)
      out << "; the first " << kFoldedLines << " shown, --full or -c " << cls->GetName()
          << " shows all";
    out << ")\n";
    if (whole) {
      for (TCIMInstance* instance : instances)
        WriteInstance(out, *instance);
    } else {
      for (size_t i = 0; i < kFoldedLines; ++i)
        out << "  " << InstanceTitle(*instances[i]) << "\n";
      out << "  ... " << instances.size() - kFoldedLines << " more\n";
    }
    out << "\n";
  }
}

} // namespace zelcollect
