/* The memory modules plugin: one KAPLA_PhysicalMemory per installed memory device that the
 * firmware's SMBIOS table describes (type 17 records of /sys/firmware/dmi/tables/DMI, which
 * only root can read), and in the second pass their association with the computer system. */
#include "zelplugin.h"

#include <stdint.h>

enum {
  kHeaderLength = 4, /* type, length, handle */
  kMemoryDevice = 17,
  kEndOfTable = 127,
  kLargestTable = 1 << 20 /* far beyond any firmware's; a bigger file is not a table */
};

/* Offsets in a memory device record; a field lies beyond the length of older records. */
enum {
  kSize = 0x0C,
  kFormFactor = 0x0E,
  kDeviceLocator = 0x10,
  kBankLocator = 0x11,
  kMemoryType = 0x12,
  kSpeed = 0x15,
  kManufacturer = 0x17,
  kSerialNumber = 0x18,
  kPartNumber = 0x1A,
  kExtendedSize = 0x1C,
  kConfiguredSpeed = 0x20,
  kExtendedSpeed = 0x54,
  kExtendedConfiguredSpeed = 0x58
};

/* One record: its formatted area (header included) and its string set. */
typedef struct TRecord {
  const unsigned char* fData;
  size_t fLength;
  const char* fStrings;
  const char* fStringsEnd;
} TRecord;

/* What firmware writes into a string it has nothing for: NULL, not a value. */
static const char* const kPlaceholders[] = {
    "", "Not Specified", "Unknown", "None", "Not Available", "NO DIMM", "To Be Filled By O.E.M.",
    "Default string"};

static int HasField(const TRecord* record, size_t offset, size_t width) {
  return offset + width <= record->fLength;
}

static unsigned Byte(const TRecord* record, size_t offset) {
  return record->fData[offset];
}

/* Fields are little-endian whatever the machine. */
static unsigned Word(const TRecord* record, size_t offset) {
  return (unsigned)record->fData[offset] | (unsigned)record->fData[offset + 1] << 8;
}

static uint32_t DoubleWord(const TRecord* record, size_t offset) {
  return (uint32_t)Word(record, offset) | (uint32_t)Word(record, offset + 2) << 16;
}

/* The string that the byte at offset numbers (1 is the first of the set), trimmed into
 * text; 0 for the number 0, a number beyond the set, or a placeholder. */
static int String(const TRecord* record, size_t offset, char* text, size_t size) {
  const char* at = record->fStrings;
  unsigned number;
  size_t i;
  if (!HasField(record, offset, 1) || (number = Byte(record, offset)) == 0)
    return 0;
  for (; number > 1 && at < record->fStringsEnd; --number)
    at += strlen(at) + 1;
  if (at >= record->fStringsEnd)
    return 0;
  snprintf(text, size, "%s", at);
  ZelPluginTrim(text);
  for (i = 0; i < sizeof kPlaceholders / sizeof *kPlaceholders; ++i)
    if (strcmp(text, kPlaceholders[i]) == 0)
      return 0;
  return 1;
}

static void AddString(zelIOHandle* io, const TRecord* record, size_t offset, const char* name) {
  char text[256];
  if (String(record, offset, text, sizeof text))
    zelAddStringProperty(io, name, text);
}

/* The module's size: 0 when the slot is empty, -1 when unknown, 1 with bytes set. */
static int ModuleSize(const TRecord* record, unsigned long long* bytes) {
  unsigned size = Word(record, kSize);
  if (size == 0)
    return 0;
  if (size == 0xFFFF)
    return -1;
  if (size == 0x7FFF) { /* 32 GiB - 1 MiB or more: the extended size, in MiB */
    if (!HasField(record, kExtendedSize, 4))
      return -1;
    *bytes = (unsigned long long)(DoubleWord(record, kExtendedSize) & 0x7FFFFFFF) << 20;
    return 1;
  }
  *bytes = (unsigned long long)(size & 0x7FFF) << (size & 0x8000 ? 10 : 20); /* KiB or MiB */
  return 1;
}

/* A speed in MT/s, 0xFFFF sending to its extended field; 0 means unknown. */
static void AddSpeed(zelIOHandle* io, const TRecord* record, size_t offset, size_t extended,
                     const char* name) {
  uint32_t speed;
  if (!HasField(record, offset, 2))
    return;
  speed = Word(record, offset);
  if (speed == 0xFFFF)
    speed = HasField(record, extended, 4) ? DoubleWord(record, extended) & 0x7FFFFFFF : 0;
  if (speed != 0)
    zelAddUint32Property(io, name, speed);
}

/* A code of the record's enumerations; 0 is no code and 2 says "Unknown": both NULL. */
static void AddCode(zelIOHandle* io, const TRecord* record, size_t offset, const char* name) {
  unsigned code;
  if (!HasField(record, offset, 1))
    return;
  code = Byte(record, offset);
  if (code != 0 && code != 2)
    zelAddUint16Property(io, name, (uint16_t)code);
}

static zelStatusCode AddModule(zelIOHandle* io, const TRecord* record) {
  char tag[16];
  unsigned long long bytes = 0;
  int known;
  zelStatusCode status;
  if (!HasField(record, kSize, 2) || (known = ModuleSize(record, &bytes)) == 0)
    return zelStatusOK; /* an empty slot */
  snprintf(tag, sizeof tag, "0x%04X", Word(record, 2));
  status = ZelPluginOpenInstance(io, "KAPLA_PhysicalMemory", "Tag", tag);
  if (status != zelStatusOK)
    return status;
  if (known > 0)
    zelAddUint64Property(io, "Capacity", bytes);
  AddString(io, record, kDeviceLocator, "DeviceLocator");
  AddString(io, record, kBankLocator, "BankLabel");
  AddCode(io, record, kFormFactor, "FormFactor");
  AddCode(io, record, kMemoryType, "MemoryType");
  AddSpeed(io, record, kSpeed, kExtendedSpeed, "Speed");
  AddSpeed(io, record, kConfiguredSpeed, kExtendedConfiguredSpeed, "ConfiguredSpeed");
  AddString(io, record, kManufacturer, "Manufacturer");
  AddString(io, record, kSerialNumber, "SerialNumber");
  AddString(io, record, kPartNumber, "PartNumber");
  return ZelPluginKeepPart(tag);
}

/* The whole table file into a buffer that the caller frees; NULL when unreadable. */
static unsigned char* ReadTable(size_t* size) {
  unsigned char* table = NULL;
  size_t capacity = 0;
  FILE* file = ZelPluginFopen("/sys/firmware/dmi/tables/DMI");
  *size = 0;
  if (!file)
    return NULL;
  for (;;) {
    size_t got;
    if (*size == capacity) {
      unsigned char* grown;
      if (capacity >= kLargestTable)
        break;
      capacity = capacity ? 2 * capacity : 8192;
      grown = (unsigned char*)realloc(table, capacity);
      if (!grown)
        break;
      table = grown;
    }
    got = fread(table + *size, 1, capacity - *size, file);
    *size += got;
    if (got == 0)
      break;
  }
  fclose(file);
  return table;
}

/* Walks the records: each is its formatted area (length from its header) followed by its
 * strings, the set ending with an empty string (two NULs, even with no string at all). A
 * record that overruns the table ends the walk; what came before it stands. */
static zelStatusCode AddModules(zelIOHandle* io) {
  size_t size;
  unsigned char* table = ReadTable(&size);
  const unsigned char* at = table;
  const unsigned char* end = table + size;
  zelStatusCode status = zelStatusOK;
  if (!table)
    return zelStatusOK;
  while (status == zelStatusOK && (size_t)(end - at) >= kHeaderLength) {
    TRecord record;
    const unsigned char* text;
    record.fData = at;
    record.fLength = at[1];
    if (record.fLength < kHeaderLength || record.fLength > (size_t)(end - at))
      break;
    text = at + record.fLength;
    while (end - text >= 2 && (text[0] != 0 || text[1] != 0))
      ++text;
    if (end - text < 2)
      break;
    record.fStrings = (const char*)at + record.fLength;
    record.fStringsEnd = (const char*)text + 1;
    if (at[0] == kEndOfTable)
      break;
    if (at[0] == kMemoryDevice)
      status = AddModule(io, &record);
    at = text + 2;
  }
  free(table);
  return status;
}

ZEL_PARTS_PLUGIN("MemoryModules", "KAPLA_PhysicalMemory", "KAPLA_SystemPhysicalMemory", "Tag",
                 AddModules)
