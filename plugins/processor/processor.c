/* The processor plugin: one KAPLA_Processor per logical processor of /proc/cpuinfo, and
 * in the second pass their association with the computer system. */
#include "zelplugin.h"

typedef struct TProcessor {
  char fModel[256];
  char fVendor[64];
  double fMHz;
  unsigned long long fCacheKiB;
  long fPhysicalId;
  long fCoreId;
  int fHasMHz, fHasCache, fHasPhysicalId, fHasCoreId;
} TProcessor;

static zelStatusCode AddProcessor(zelIOHandle* io, long number, const TProcessor* cpu) {
  char id[32];
  zelStatusCode status;
  snprintf(id, sizeof id, "CPU%ld", number);
  status = ZelPluginOpenInstance(io, "KAPLA_Processor", "DeviceID", id);
  if (status != zelStatusOK)
    return status;
  if (cpu->fModel[0])
    zelAddStringProperty(io, "Name", cpu->fModel);
  if (cpu->fVendor[0])
    zelAddStringProperty(io, "Manufacturer", cpu->fVendor);
  if (cpu->fHasMHz)
    zelAddUint32Property(io, "CurrentClockSpeed", (uint32_t)(cpu->fMHz + 0.5));
  if (cpu->fHasCache)
    zelAddUint64Property(io, "CacheSize", cpu->fCacheKiB * 1024);
  if (cpu->fHasPhysicalId)
    zelAddUint32Property(io, "PhysicalID", (uint32_t)cpu->fPhysicalId);
  if (cpu->fHasCoreId)
    zelAddUint32Property(io, "CoreID", (uint32_t)cpu->fCoreId);
  return ZelPluginKeepPart(id);
}

/* Blocks of "name : value" lines separated by blank lines, one per processor. */
static zelStatusCode AddProcessors(zelIOHandle* io) {
  char line[1024];
  TProcessor cpu;
  long number = -1;
  zelStatusCode status = zelStatusOK;
  FILE* file = ZelPluginFopen("/proc/cpuinfo");
  if (!file)
    return zelStatusOK;
  memset(&cpu, 0, sizeof cpu);
  while (status == zelStatusOK && fgets(line, sizeof line, file)) {
    char* name;
    char* value;
    if (!ZelPluginSplitField(line, ':', &name, &value))
      continue;
    if (strcmp(name, "processor") == 0) {
      if (number >= 0)
        status = AddProcessor(io, number, &cpu);
      memset(&cpu, 0, sizeof cpu);
      number = strtol(value, NULL, 10);
    } else if (strcmp(name, "model name") == 0) {
      snprintf(cpu.fModel, sizeof cpu.fModel, "%s", value);
    } else if (strcmp(name, "vendor_id") == 0) {
      snprintf(cpu.fVendor, sizeof cpu.fVendor, "%s", value);
    } else if (strcmp(name, "cpu MHz") == 0) {
      cpu.fMHz = strtod(value, NULL);
      cpu.fHasMHz = 1;
    } else if (strcmp(name, "cache size") == 0) { /* "1024 KB" */
      cpu.fCacheKiB = strtoull(value, NULL, 10);
      cpu.fHasCache = 1;
    } else if (strcmp(name, "physical id") == 0) {
      cpu.fPhysicalId = strtol(value, NULL, 10);
      cpu.fHasPhysicalId = 1;
    } else if (strcmp(name, "core id") == 0) {
      cpu.fCoreId = strtol(value, NULL, 10);
      cpu.fHasCoreId = 1;
    }
  }
  if (status == zelStatusOK && number >= 0)
    status = AddProcessor(io, number, &cpu);
  fclose(file);
  return status;
}

ZEL_PARTS_PLUGIN("Processor", "KAPLA_Processor", "KAPLA_SystemProcessor", "DeviceID", AddProcessors)
