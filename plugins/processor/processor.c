/* The processor plugin: one KAPLA_Processor per logical processor of /proc/cpuinfo, its
 * caches from /sys/devices/system/cpu/cpuN/cache, and in the second pass their association
 * with the computer system. */
#include "zelplugin.h"

/* The whole-number fields of a processor's block, and the properties that hold them as they
 * are (siblings and cpu cores only give ThreadsPerCore). */
enum { kSiblings = 5, kCores = 6, kNumberCount = 7 };
static const char* const kNumberFields[kNumberCount] = {
    "physical id", "core id", "cpu family", "model", "stepping", "siblings", "cpu cores"};
static const char* const kNumberProperties[kNumberCount] = {"PhysicalID", "CoreID", "Family",
                                                            "Model",      "Stepping"};

typedef struct TProcessor {
  char fModel[256];
  char fVendor[64];
  char fMicrocode[32];
  char* fFlags; /* the "flags" line, owned */
  double fMHz;
  unsigned long long fCacheKiB;
  long fNumbers[kNumberCount];
  int fHasNumber[kNumberCount];
  int fHasMHz, fHasCache;
} TProcessor;

/* The cache sizes of one logical processor, by level and type. */
typedef struct TCaches {
  char fDirectory[128];
  unsigned long long fL1Data, fL1Instruction, fL2, fL3;
  int fHasL1Data, fHasL1Instruction, fHasL2, fHasL3;
} TCaches;

/* A sysfs cache size such as "48K" or "2048K", in Bytes. */
static int CacheBytes(const char* path, unsigned long long* bytes) {
  char text[64];
  char* unit;
  if (!ZelPluginReadLine(path, text, sizeof text))
    return 0;
  *bytes = strtoull(text, &unit, 10);
  if (unit == text)
    return 0;
  switch (*unit) {
  case 'G':
    *bytes *= 1024;
    /* fall through */
  case 'M':
    *bytes *= 1024;
    /* fall through */
  case 'K':
    *bytes *= 1024;
    break;
  default:
    break;
  }
  return 1;
}

static void SetCache(unsigned long long* size, int* has, unsigned long long bytes) {
  *size = bytes;
  *has = 1;
}

/* One indexM directory: a cache by its level, type and size. */
static zelStatusCode ReadCache(void* context, const char* index) {
  TCaches* caches = (TCaches*)context;
  char path[512];
  char type[32];
  long long level;
  unsigned long long bytes;
  snprintf(path, sizeof path, "%s/%s/level", caches->fDirectory, index);
  if (!ZelPluginReadInteger(path, &level))
    return zelStatusOK;
  snprintf(path, sizeof path, "%s/%s/type", caches->fDirectory, index);
  if (!ZelPluginReadLine(path, type, sizeof type))
    return zelStatusOK;
  snprintf(path, sizeof path, "%s/%s/size", caches->fDirectory, index);
  if (!CacheBytes(path, &bytes))
    return zelStatusOK;
  if (level == 1 && strcmp(type, "Data") == 0)
    SetCache(&caches->fL1Data, &caches->fHasL1Data, bytes);
  else if (level == 1 && strcmp(type, "Instruction") == 0)
    SetCache(&caches->fL1Instruction, &caches->fHasL1Instruction, bytes);
  else if (level == 2 && strcmp(type, "Instruction") != 0)
    SetCache(&caches->fL2, &caches->fHasL2, bytes);
  else if (level == 3 && strcmp(type, "Instruction") != 0)
    SetCache(&caches->fL3, &caches->fHasL3, bytes);
  return zelStatusOK;
}

static void AddCaches(zelIOHandle* io, long number) {
  TCaches caches;
  memset(&caches, 0, sizeof caches);
  snprintf(caches.fDirectory, sizeof caches.fDirectory, "/sys/devices/system/cpu/cpu%ld/cache",
           number);
  ZelPluginEachEntry(caches.fDirectory, "index", ReadCache, &caches);
  if (caches.fHasL1Data)
    zelAddUint64Property(io, "L1DataCacheSize", caches.fL1Data);
  if (caches.fHasL1Instruction)
    zelAddUint64Property(io, "L1InstructionCacheSize", caches.fL1Instruction);
  if (caches.fHasL2)
    zelAddUint64Property(io, "L2CacheSize", caches.fL2);
  if (caches.fHasL3)
    zelAddUint64Property(io, "L3CacheSize", caches.fL3);
}

/* The "flags" line as an array of its words. */
static zelStatusCode AddFlags(zelIOHandle* io, const char* flags) {
  zelCIMValueArray* array = NULL;
  char* copy;
  char* word;
  char* rest = NULL;
  zelStatusCode status = zelNewCIMValueArray(&array);
  if (status != zelStatusOK)
    return status;
  copy = strdup(flags);
  if (!copy) {
    zelDeleteCIMValueArray(array);
    return zelStatusOutOfMemory;
  }
  for (word = strtok_r(copy, " \t", &rest); word && status == zelStatusOK;
       word = strtok_r(NULL, " \t", &rest))
    status = zelArrayAddString(array, word);
  if (status == zelStatusOK)
    status = zelAddArrayProperty(io, "Flags", array);
  free(copy);
  zelDeleteCIMValueArray(array);
  return status;
}

static zelStatusCode AddProcessor(zelIOHandle* io, long number, const TProcessor* cpu) {
  char id[32];
  int i;
  zelStatusCode status;
  snprintf(id, sizeof id, "CPU%ld", number);
  status = ZelPluginOpenInstance(io, "KAPLA_Processor", "DeviceID", id);
  if (status != zelStatusOK)
    return status;
  ZelPluginAddText(io, "Name", cpu->fModel);
  ZelPluginAddText(io, "Manufacturer", cpu->fVendor);
  if (cpu->fHasMHz)
    zelAddUint32Property(io, "CurrentClockSpeed", (uint32_t)(cpu->fMHz + 0.5));
  if (cpu->fHasCache)
    zelAddUint64Property(io, "CacheSize", cpu->fCacheKiB * 1024);
  for (i = 0; i < kNumberCount; ++i)
    if (kNumberProperties[i] && cpu->fHasNumber[i])
      zelAddUint32Property(io, kNumberProperties[i], (uint32_t)cpu->fNumbers[i]);
  ZelPluginAddText(io, "Microcode", cpu->fMicrocode);
  /* siblings counts the logical processors of the package, cpu cores its cores. */
  if (cpu->fHasNumber[kSiblings] && cpu->fHasNumber[kCores] && cpu->fNumbers[kCores] > 0 &&
      cpu->fNumbers[kSiblings] >= cpu->fNumbers[kCores])
    zelAddUint32Property(io, "ThreadsPerCore",
                         (uint32_t)(cpu->fNumbers[kSiblings] / cpu->fNumbers[kCores]));
  AddCaches(io, number);
  if (cpu->fFlags && cpu->fFlags[0]) {
    status = AddFlags(io, cpu->fFlags);
    if (status != zelStatusOK)
      return status;
  }
  return ZelPluginKeepPart(id);
}

static void ClearProcessor(TProcessor* cpu) {
  free(cpu->fFlags);
  memset(cpu, 0, sizeof *cpu);
}

/* A whole-number field of cpuinfo into its slot; 0 when the name is none of them. */
static int SetNumber(TProcessor* cpu, const char* name, const char* value) {
  int i;
  for (i = 0; i < kNumberCount; ++i)
    if (strcmp(name, kNumberFields[i]) == 0) {
      cpu->fNumbers[i] = strtol(value, NULL, 10);
      cpu->fHasNumber[i] = 1;
      return 1;
    }
  return 0;
}

/* Blocks of "name : value" lines separated by blank lines, one per processor. */
static zelStatusCode AddProcessors(zelIOHandle* io) {
  char* line = NULL;
  size_t capacity = 0;
  TProcessor cpu;
  long number = -1;
  zelStatusCode status = zelStatusOK;
  FILE* file = ZelPluginFopen("/proc/cpuinfo");
  if (!file)
    return zelStatusOK;
  memset(&cpu, 0, sizeof cpu);
  while (status == zelStatusOK && getline(&line, &capacity, file) >= 0) { /* flags run long */
    char* name;
    char* value;
    if (!ZelPluginSplitField(line, ':', &name, &value))
      continue;
    if (SetNumber(&cpu, name, value))
      continue;
    if (strcmp(name, "processor") == 0) {
      if (number >= 0)
        status = AddProcessor(io, number, &cpu);
      ClearProcessor(&cpu);
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
    } else if (strcmp(name, "microcode") == 0) {
      snprintf(cpu.fMicrocode, sizeof cpu.fMicrocode, "%s", value);
    } else if (strcmp(name, "flags") == 0 && !cpu.fFlags) {
      cpu.fFlags = strdup(value);
    }
  }
  if (status == zelStatusOK && number >= 0)
    status = AddProcessor(io, number, &cpu);
  ClearProcessor(&cpu);
  free(line);
  fclose(file);
  return status;
}

ZEL_PARTS_PLUGIN("Processor", "KAPLA_Processor", "KAPLA_SystemProcessor", "DeviceID", AddProcessors)
