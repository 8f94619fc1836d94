/* The network plugin: the interfaces of /sys/class/net with address, speed, MTU, state and
 * driver, and in the second pass their association with the computer system. */
#include "zelplugin.h"

#include <limits.h>
#include <unistd.h>

static int ReadNetFile(const char* adapter, const char* file, char* value, size_t size) {
  char path[PATH_MAX];
  snprintf(path, sizeof path, "/sys/class/net/%s/%s", adapter, file);
  return ZelPluginReadLine(path, value, size);
}

static zelStatusCode AddAdapter(zelIOHandle* io, const char* adapter) {
  char value[256];
  char path[PATH_MAX];
  char target[PATH_MAX];
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_NetworkAdapter", "DeviceID", adapter);
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "Name", adapter);
  if (ReadNetFile(adapter, "address", value, sizeof value))
    zelAddStringProperty(io, "PermanentAddress", value);
  /* Mb/s; unreadable or -1 while the link is down or for virtual devices: left NULL. */
  if (ReadNetFile(adapter, "speed", value, sizeof value) && atol(value) > 0)
    zelAddUint64Property(io, "Speed", (uint64_t)atol(value) * 1000000u);
  if (ReadNetFile(adapter, "mtu", value, sizeof value))
    zelAddUint32Property(io, "MTU", (uint32_t)strtoul(value, NULL, 10));
  if (ReadNetFile(adapter, "operstate", value, sizeof value))
    zelAddStringProperty(io, "LinkState", value);
  snprintf(path, sizeof path, "/sys/class/net/%s/device/driver", adapter);
  if (ZelPluginLinkName(path, target, sizeof target))
    zelAddStringProperty(io, "Driver", target);
  return ZelPluginKeepPart(adapter);
}

static zelStatusCode AddAdapters(zelIOHandle* io) {
  return ZelPluginEachEntry(io, "/sys/class/net", AddAdapter);
}

ZEL_PARTS_PLUGIN("Network", "KAPLA_NetworkAdapter", "KAPLA_SystemNetworkAdapter", "DeviceID", AddAdapters)
