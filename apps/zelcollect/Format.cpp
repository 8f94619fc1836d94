// The table of output formats.
#include "Format.h"

namespace zelcollect {

namespace {

struct TFormatEntry {
  const char* fName;
  EFormat fFormat;
  void (*fWrite)(std::ostream&, const TInventory&);
};

const TFormatEntry kFormats[] = {
    {"text", EFormat::kText, WriteText},
    {"xml", EFormat::kXml, WriteXml},
    {"json", EFormat::kJson, WriteJson},
};

} // namespace

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

void WriteInventory(std::ostream& out, EFormat format, const TInventory& inventory) {
  for (const TFormatEntry& entry : kFormats)
    if (entry.fFormat == format)
      return entry.fWrite(out, inventory);
}

} // namespace zelcollect
