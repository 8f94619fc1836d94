// Fuzz target: the CIM date-time text parser. What it accepts must print back as 25
// characters that parse to the same text again.
#include "TCIMDateTime.h"
#include "TZELException.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  std::string printed;
  try {
    TCIMDateTime dateTime(text);
    printed = dateTime.ToString();
    dateTime.ToUIString();
    if (dateTime.IsInterval())
      dateTime.ToAbbrUIString();
  } catch (TZELException const&) {
    return 0;
  }
  if (printed.size() != 25 || TCIMDateTime(printed).ToString() != printed)
    std::abort();
  return 0;
}
