/* The memory plugin: main memory and swap from /proc/meminfo, and in the second pass their
 * association with the computer system. */
#include "zelplugin.h"

/* Capacity and what is available, from two /proc/meminfo fields (NULL when absent). */
static zelStatusCode AddMemory(zelIOHandle* io, const char* id, const char* name,
                               const char* totalField, const char* availableField) {
  unsigned long long bytes;
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_Memory", "DeviceID", id);
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "Name", name);
  if (ZelPluginMemInfoBytes(totalField, &bytes))
    zelAddUint64Property(io, "Capacity", bytes);
  if (ZelPluginMemInfoBytes(availableField, &bytes))
    zelAddUint64Property(io, "Available", bytes);
  return ZelPluginKeepPart(id);
}

static zelStatusCode AddMemories(zelIOHandle* io) {
  unsigned long long swap = 0;
  zelStatusCode status = AddMemory(io, "Memory0", "Main memory", "MemTotal", "MemAvailable");
  if (status == zelStatusOK && ZelPluginMemInfoBytes("SwapTotal", &swap) && swap > 0)
    status = AddMemory(io, "Swap0", "Swap space", "SwapTotal", "SwapFree");
  return status;
}

ZEL_PARTS_PLUGIN("Memory", "KAPLA_Memory", "KAPLA_SystemMemory", "DeviceID", AddMemories)
