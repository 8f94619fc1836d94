/* The operating-system plugin: name and version from os-release, kernel from uname, boot
 * time from /proc/stat, memory from /proc/meminfo. */
#include "zelplugin.h"

#include <sys/utsname.h>
#include <time.h>

static void AddBootTime(zelIOHandle* io) {
  char text[64];
  time_t boot;
  struct tm local;
  TCIMDateTime* when = NULL;
  if (!ZelPluginFileField("/proc/stat", ' ', "btime", text, sizeof text))
    return;
  boot = (time_t)strtoll(text, NULL, 10);
  if (!localtime_r(&boot, &local) || zelNewCIMDateTime(&when) != zelStatusOK)
    return;
  if (zelSetDateTime(when, (unsigned short)(local.tm_year + 1900),
                     (unsigned short)(local.tm_mon + 1), (unsigned int)local.tm_mday,
                     (unsigned short)local.tm_hour, (unsigned short)local.tm_min,
                     (unsigned short)local.tm_sec, 0,
                     (short)(local.tm_gmtoff / 60)) == zelStatusOK)
    zelAddDateTimeProperty(io, "LastBootUpTime", when);
  zelDeleteCIMDateTime(when);
}

static zelStatusCode AddOperatingSystem(zelIOHandle* io) {
  char host[256];
  char text[256];
  struct utsname kernel;
  unsigned long long bytes;
  zelStatusCode status = zelAddClass(io, "KAPLA_OperatingSystem");
  if (status != zelStatusOK)
    return status;
  ZelPluginHostName(host, sizeof host);
  zelAddStringProperty(io, "CSCreationClassName", "KAPLA_ComputerSystem");
  zelAddStringProperty(io, "CSName", host);
  zelAddStringProperty(io, "CreationClassName", "KAPLA_OperatingSystem");
  if (!ZelPluginFileField("/etc/os-release", '=', "PRETTY_NAME", text, sizeof text) &&
      !ZelPluginFileField("/usr/lib/os-release", '=', "PRETTY_NAME", text, sizeof text))
    snprintf(text, sizeof text, "Linux");
  zelAddStringProperty(io, "Name", text);
  if (ZelPluginFileField("/etc/os-release", '=', "VERSION_ID", text, sizeof text) ||
      ZelPluginFileField("/usr/lib/os-release", '=', "VERSION_ID", text, sizeof text))
    zelAddStringProperty(io, "Version", text);
  if (uname(&kernel) == 0) {
    zelAddStringProperty(io, "KernelRelease", kernel.release);
    zelAddStringProperty(io, "Architecture", kernel.machine);
  }
  zelAddUint16Property(io, "OSType", 36);
  AddBootTime(io);
  if (ZelPluginMemInfoBytes("MemTotal", &bytes))
    zelAddUint64Property(io, "TotalVisibleMemorySize", bytes);
  if (ZelPluginMemInfoBytes("MemAvailable", &bytes))
    zelAddUint64Property(io, "FreePhysicalMemory", bytes);
  if (ZelPluginMemInfoBytes("SwapTotal", &bytes))
    zelAddUint64Property(io, "TotalSwapSpaceSize", bytes);
  zelAddUint32Property(io, "NumberOfProcessors", (uint32_t)sysconf(_SC_NPROCESSORS_ONLN));
  return zelStatusOK;
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  (void)self;
  if (ZelPluginAsked(classNames, classCount, "KAPLA_OperatingSystem"))
    return AddOperatingSystem(io);
  return zelStatusOK;
}

ZEL_PLUGIN("OperatingSystem", GetData, ZelPluginNothingToDo)
