// TOSSpecific: plugin discovery, library loading, files and directories, time and identity.
#include "TOSSpecific.h"

#include "ZelLog.h"

#include <sys/timeb.h>
#include <time.h>

const std::string TOSSpecific::kPluginExtension = ".pi.so";
const std::string TOSSpecific::kSpecificationExtension = ".properties.xml";
const std::string TOSSpecific::kFileSeparator = "/";

void TOSSpecific::OutputLogString(std::string) {}

TCIMDateTime TOSSpecific::GetLocalTime() {
  struct timeb now;
  ftime(&now);
  struct tm local;
  localtime_r(&now.time, &local);
  // glibc's ftime no longer fills its zone fields; the broken-down time carries the
  // same offset (minutes east of UTC, daylight saving included).
  int offset = static_cast<int>(local.tm_gmtoff / 60);
  return TCIMDateTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                      local.tm_min, local.tm_sec, now.millitm * 1000u, offset);
}
