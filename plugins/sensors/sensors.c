/* The sensors plugin: one KAPLA_NumericSensor per reading of the hardware monitoring chips
 * in /sys/class/hwmon (temperatures, fans, voltages, currents, power), with its limits, and
 * in the second pass their association with the computer system. */
#include "zelplugin.h"

#include <stdint.h>

/* A limit file's suffix and the ending of its property's name. */
typedef struct TLimit {
  const char* fSuffix;
  const char* fProperty;
} TLimit;

static const TLimit kLimits[] = {{"min", "Min"}, {"max", "Max"}, {"crit", "Critical"}};

/* One kind of reading: its file prefix, its sensor type code, the property of its reading
 * (limits append the endings above) and the decimals that the file's integer holds: the
 * kernel gives millidegrees, millivolts, milliamperes and microwatts, fans in whole RPM. */
typedef struct TKind {
  const char* fPrefix;
  uint16_t fSensorType;
  const char* fProperty;
  int fDecimals;
  size_t fLimitCount;
} TKind;

static const TKind kKinds[] = {
    {"temp", 2, "Temperature", 3, 3}, {"in", 3, "Voltage", 3, 3}, {"curr", 4, "Current", 3, 3},
    {"fan", 5, "FanSpeed", 0, 2},     {"power", 13, "Power", 6, 3}};

static const TKind* KindOf(const char* prefix) {
  size_t i;
  for (i = 0; i < sizeof kKinds / sizeof *kKinds; ++i)
    if (strcmp(kKinds[i].fPrefix, prefix) == 0)
      return &kKinds[i];
  return NULL;
}

/* A fixed-point integer as exact decimal text: -5500 with 3 decimals is "-5.500". */
static void DecimalText(long long value, int decimals, char* text, size_t size) {
  unsigned long long magnitude = value < 0 ? 0ULL - (unsigned long long)value : (unsigned long long)value;
  unsigned long long scale = 1;
  int i;
  for (i = 0; i < decimals; ++i)
    scale *= 10;
  snprintf(text, size, "%s%llu.%0*llu", value < 0 ? "-" : "", magnitude / scale, decimals,
           magnitude % scale);
}

/* The value of one file of the sensor (reading or limit) into the property of that name. */
static void AddValue(zelIOHandle* io, const TKind* kind, const char* path, const char* property) {
  long long value;
  char text[64];
  if (!ZelPluginReadInteger(path, &value))
    return;
  if (kind->fDecimals == 0) {
    if (value >= 0 && value <= UINT32_MAX)
      zelAddUint32Property(io, property, (uint32_t)value);
    return;
  }
  DecimalText(value, kind->fDecimals, text, sizeof text); /* real64, read from the text */
  zelAddProperty(io, property, text);
}

static zelStatusCode AddSensor(zelIOHandle* io, const char* chipDir, const char* chipId,
                               const char* chip, const TKind* kind, unsigned index,
                               const char* readingFile) {
  char id[128];
  char path[512];
  char label[256];
  char name[512];
  char property[64];
  size_t i;
  int labelled;
  zelStatusCode status;
  snprintf(id, sizeof id, "%s/%s%u", chipId, kind->fPrefix, index);
  status = ZelPluginOpenInstance(io, "KAPLA_NumericSensor", "DeviceID", id);
  if (status != zelStatusOK)
    return status;
  snprintf(path, sizeof path, "%s/%s%u_label", chipDir, kind->fPrefix, index);
  labelled = ZelPluginReadLine(path, label, sizeof label);
  if (labelled)
    zelAddStringProperty(io, "Label", label);
  ZelPluginAddText(io, "Chip", chip);
  snprintf(name, sizeof name, "%s%s%s", chip, chip[0] ? " " : "",
           labelled ? label : strchr(id, '/') + 1);
  zelAddStringProperty(io, "Name", name);
  zelAddUint16Property(io, "SensorType", kind->fSensorType);
  snprintf(path, sizeof path, "%s/%s", chipDir, readingFile);
  AddValue(io, kind, path, kind->fProperty);
  for (i = 0; i < kind->fLimitCount; ++i) {
    snprintf(path, sizeof path, "%s/%s%u_%s", chipDir, kind->fPrefix, index, kLimits[i].fSuffix);
    snprintf(property, sizeof property, "%s%s", kind->fProperty, kLimits[i].fProperty);
    AddValue(io, kind, path, property);
  }
  return ZelPluginKeepPart(id);
}

/* A reading file of the chip's directory: "<kind><index>_input", or for power the
 * "_average" that some chips give instead. */
static const TKind* ReadingOf(const char* chipDir, const char* file, unsigned* index) {
  char prefix[16];
  char suffix[16];
  char path[512];
  const TKind* kind;
  if (sscanf(file, "%15[a-z]%u_%15s", prefix, index, suffix) != 3 || !(kind = KindOf(prefix)))
    return NULL;
  if (strcmp(suffix, "input") == 0)
    return kind;
  if (strcmp(prefix, "power") != 0 || strcmp(suffix, "average") != 0)
    return NULL;
  snprintf(path, sizeof path, "%s/power%u_input", chipDir, *index);
  return ZelPluginReadLine(path, suffix, sizeof suffix) ? NULL : kind;
}

/* The chip being read: its directory under the root, its hwmonN and its name. */
typedef struct TChip {
  zelIOHandle* fIO;
  char fDirectory[256];
  const char* fId;
  char fName[128];
} TChip;

static zelStatusCode AddReading(void* context, const char* file) {
  TChip* chip = (TChip*)context;
  unsigned index;
  const TKind* kind = ReadingOf(chip->fDirectory, file, &index);
  return kind ? AddSensor(chip->fIO, chip->fDirectory, chip->fId, chip->fName, kind, index, file)
              : zelStatusOK;
}

static zelStatusCode AddChip(void* context, const char* id) {
  TChip chip;
  char path[512];
  chip.fIO = (zelIOHandle*)context;
  chip.fId = id;
  snprintf(chip.fDirectory, sizeof chip.fDirectory, "/sys/class/hwmon/%s", id);
  snprintf(path, sizeof path, "%s/name", chip.fDirectory);
  if (!ZelPluginReadLine(path, chip.fName, sizeof chip.fName))
    chip.fName[0] = '\0';
  return ZelPluginEachEntry(chip.fDirectory, "", AddReading, &chip);
}

static zelStatusCode AddSensors(zelIOHandle* io) {
  return ZelPluginEachEntry("/sys/class/hwmon", "hwmon", AddChip, io);
}

ZEL_PARTS_PLUGIN("Sensors", "KAPLA_NumericSensor", "KAPLA_SystemNumericSensor", "DeviceID",
                 AddSensors)
