/* The pci plugin: every PCI function of /sys/bus/pci/devices with its class, vendor,
 * device and subsystem IDs and their names from pci.ids, revision, driver, IOMMU group,
 * NUMA node and link, and in the second pass its association with the computer system. */
#include "zelids.h"

#include <limits.h>

static ZelIds gPciIds;

static int ReadPciFile(const char* address, const char* file, char* value, size_t size) {
  char path[PATH_MAX];
  snprintf(path, sizeof path, "/sys/bus/pci/devices/%s/%s", address, file);
  return ZelPluginReadLine(path, value, size);
}

/* A number the kernel writes in hex ("0x8086") or decimal ("-1"), by the base given. */
static int ReadPciNumber(const char* address, const char* file, int base, long* number) {
  char text[64];
  char* end;
  if (!ReadPciFile(address, file, text, sizeof text))
    return 0;
  *number = strtol(text, &end, base);
  return end != text;
}

/* "8.0 GT/s PCIe" or "2.5 GT/s": the signalling rate of one lane, which carries one bit per
 * transfer; "Unknown" and other texts give nothing. */
static int ParseLinkSpeed(const char* text, uint64_t* bitsPerSecond) {
  const char* end;
  return ZelPluginParseScaled(text, 1000000000u, bitsPerSecond, &end) &&
         strncmp(end, " GT/s", 5) == 0 && *bitsPerSecond > 0;
}

static void AddLink(zelIOHandle* io, const char* address, const char* which) {
  char file[32];
  char text[64];
  uint64_t speed;
  long width;
  snprintf(file, sizeof file, "%s_link_speed", which);
  if (ReadPciFile(address, file, text, sizeof text) && ParseLinkSpeed(text, &speed)) {
    snprintf(file, sizeof file, "%sLinkSpeed", which[0] == 'c' ? "Current" : "Max");
    zelAddUint64Property(io, file, speed);
  }
  snprintf(file, sizeof file, "%s_link_width", which);
  if (ReadPciNumber(address, file, 10, &width) && width > 0 && width <= 255) {
    snprintf(file, sizeof file, "%sLinkWidth", which[0] == 'c' ? "Current" : "Max");
    zelAddUint8Property(io, file, (uint8_t)width);
  }
}

/* Class code, vendor, device, subsystem: the IDs with their names. */
static void AddIdentity(zelIOHandle* io, const char* address) {
  static const char* const kCodes[3] = {"ClassCode", "SubClassCode", "ProgrammingInterface"};
  static const char* const kNames[3] = {"ClassName", "SubClassName", "ProgrammingInterfaceName"};
  long code, vendor, device, subVendor, subDevice;
  char keys[3][16];
  const char* path[3] = {keys[0], keys[1], keys[2]};
  if (ReadPciNumber(address, "class", 16, &code)) {
    unsigned long codes[3] = {(unsigned long)code >> 16 & 0xff, (unsigned long)code >> 8 & 0xff,
                              (unsigned long)code & 0xff};
    ZelIdsAddClass(io, &gPciIds, codes, 3, kCodes, kNames);
  }
  if (!ReadPciNumber(address, "vendor", 16, &vendor) ||
      !ReadPciNumber(address, "device", 16, &device))
    return;
  zelAddUint16Property(io, "VendorID", (uint16_t)vendor);
  zelAddUint16Property(io, "PCIDeviceID", (uint16_t)device);
  ZelIdsAddVendorNames(io, &gPciIds, (unsigned long)vendor, (unsigned long)device, "Name");
  if (!ReadPciNumber(address, "subsystem_vendor", 16, &subVendor) ||
      !ReadPciNumber(address, "subsystem_device", 16, &subDevice))
    return;
  zelAddUint16Property(io, "SubsystemVendorID", (uint16_t)subVendor);
  zelAddUint16Property(io, "SubsystemID", (uint16_t)subDevice);
  /* The subsystem is listed under its device; its vendor stands alone. */
  snprintf(keys[0], sizeof keys[0], "%04lx", vendor & 0xffff);
  snprintf(keys[1], sizeof keys[1], "%04lx", device & 0xffff);
  snprintf(keys[2], sizeof keys[2], "%04lx %04lx", subVendor & 0xffff, subDevice & 0xffff);
  ZelIdsAddName(io, "SubsystemName", &gPciIds, path, 3);
  snprintf(keys[0], sizeof keys[0], "%04lx", subVendor & 0xffff);
  ZelIdsAddName(io, "SubsystemVendorName", &gPciIds, path, 1);
}

static zelStatusCode AddFunction(void* context, const char* address) {
  zelIOHandle* io = (zelIOHandle*)context;
  char path[PATH_MAX];
  char value[256];
  long number;
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_PCIDevice", "DeviceID", address);
  if (status != zelStatusOK)
    return status;
  ZelIdsLoad(&gPciIds, "/usr/share/misc/pci.ids");
  AddIdentity(io, address);
  if (ReadPciNumber(address, "revision", 16, &number))
    zelAddUint8Property(io, "RevisionID", (uint8_t)number);
  snprintf(path, sizeof path, "/sys/bus/pci/devices/%s/driver", address);
  if (ZelPluginLinkName(path, value, sizeof value))
    zelAddStringProperty(io, "Driver", value);
  snprintf(path, sizeof path, "/sys/bus/pci/devices/%s/iommu_group", address);
  if (ZelPluginLinkName(path, value, sizeof value) && isdigit((unsigned char)value[0]))
    zelAddUint32Property(io, "IOMMUGroup", (uint32_t)strtoul(value, NULL, 10));
  /* -1 when the machine has one node or the firmware tells none. */
  if (ReadPciNumber(address, "numa_node", 10, &number) && number >= 0)
    zelAddUint32Property(io, "NUMANode", (uint32_t)number);
  AddLink(io, address, "current");
  AddLink(io, address, "max");
  return ZelPluginKeepPart(address);
}

static zelStatusCode AddFunctions(zelIOHandle* io) {
  zelStatusCode status = ZelPluginEachEntry("/sys/bus/pci/devices", "", AddFunction, io);
  ZelIdsFree(&gPciIds); /* Read again by the next run: the file may have changed. */
  return status;
}

ZEL_PARTS_PLUGIN("PCI", "KAPLA_PCIDevice", "KAPLA_SystemPCIDevice", "DeviceID", AddFunctions)
