// The table of output formats.
#include "Format.h"
#include "Inventory.h"

#include <algorithm>

namespace zelcollect {

namespace {

struct TFormatEntry {
  const char* fName;
  const char* fSuffix; ///< of a result file in this format
  EFormat fFormat;
  void (*fWrite)(std::ostream&, const TInventory&, const TPresentation&);
};

const TFormatEntry kFormats[] = {
    {"text", nullptr, EFormat::kText, WriteText},
    {"xml", ".xml", EFormat::kXml, WriteXml},
    {"json", ".json", EFormat::kJson, WriteJson},
    {"html", ".html", EFormat::kHtml, WriteHtml},
};

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

} // namespace

bool TPresentation::ShowsWhole(const std::string& className, size_t instances) const {
  return fFull || instances <= kLargeClass ||
         std::find(fFullClasses.begin(), fFullClasses.end(), className) != fFullClasses.end();
}

bool FormatByName(const std::string& name, EFormat& format) {
  for (const TFormatEntry& entry : kFormats)
    if (name == entry.fName) {
      format = entry.fFormat;
      return true;
    }
  return false;
}

std::string FormatNames() {
  std::string names;
  size_t count = sizeof kFormats / sizeof *kFormats;
  for (size_t i = 0; i < count; ++i)
    names += (i == 0 ? "" : i + 1 == count ? " or " : ", ") + std::string(kFormats[i].fName);
  return names;
}

bool IsGzipName(const std::string& path) { return EndsWith(path, ".gz"); }

bool FormatOfFile(const std::string& path, EFormat& format) {
  std::string name = IsGzipName(path) ? path.substr(0, path.size() - 3) : path;
  for (const TFormatEntry& entry : kFormats)
    if (entry.fSuffix && EndsWith(name, entry.fSuffix)) {
      format = entry.fFormat;
      return true;
    }
  return false;
}

void WriteInventory(std::ostream& out, EFormat format, const TInventory& inventory,
                    const TPresentation& presentation) {
  for (const TFormatEntry& entry : kFormats)
    if (entry.fFormat == format)
      return entry.fWrite(out, inventory, presentation);
}

} // namespace zelcollect
