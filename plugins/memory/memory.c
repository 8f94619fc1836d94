/* The memory plugin: main memory and swap from /proc/meminfo, and in the second pass their
 * association with the computer system. */
#include "zelplugin.h"

/* Capacity and what is available, from two /proc/meminfo fields (NULL when absent). */
static zelStatusCode AddMemory(zelIOHandle* io, const char* id, const char* name,
                               const char* totalField, const char* availableField) {
  unsigned long long kib;
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_Memory", "DeviceID", id);
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "Name", name);
  if (ZelPluginMemInfoKiB(totalField, &kib))
    zelAddUint64Property(io, "Capacity", kib * 1024);
  if (ZelPluginMemInfoKiB(availableField, &kib))
    zelAddUint64Property(io, "Available", kib * 1024);
  return ZelPluginKeepPart(id);
}

static zelStatusCode AddMemories(zelIOHandle* io) {
  unsigned long long swap = 0;
  zelStatusCode status = AddMemory(io, "Memory0", "Main memory", "MemTotal", "MemAvailable");
  if (status == zelStatusOK && ZelPluginMemInfoKiB("SwapTotal", &swap) && swap > 0)
    status = AddMemory(io, "Swap0", "Swap space", "SwapTotal", "SwapFree");
  return status;
}

ZEL_PARTS_PLUGIN("Memory", "KAPLA_Memory", "KAPLA_SystemMemory", "DeviceID", AddMemories)
