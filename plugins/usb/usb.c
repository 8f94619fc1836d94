/* The usb plugin: every USB device of /sys/bus/usb/devices (root hubs, hubs and what hangs
 * on them) with its IDs and their names from usb.ids, descriptor strings, speed, class and
 * drivers; in the second pass its association with the computer system, with the hub it
 * hangs on, and of each root hub with the PCI function of its host controller. */
#include "zelids.h"

#include <limits.h>

static ZelIds gUsbIds;

static int ReadUsbFile(const char* device, const char* file, char* value, size_t size) {
  char path[PATH_MAX];
  snprintf(path, sizeof path, "/sys/bus/usb/devices/%s/%s", device, file);
  return ZelPluginReadLine(path, value, size);
}

static int ReadUsbNumber(const char* device, const char* file, int base, unsigned long* number) {
  char text[64];
  char* end;
  if (!ReadUsbFile(device, file, text, sizeof text))
    return 0;
  *number = strtoul(text, &end, base);
  return end != text;
}

/* A string file as a property, trimmed of the blanks some descriptors carry. */
static void AddUsbString(zelIOHandle* io, const char* device, const char* file,
                         const char* property) {
  char text[256];
  if (ReadUsbFile(device, file, text, sizeof text) && *ZelPluginSkipSpace(text))
    zelAddStringProperty(io, property, ZelPluginSkipSpace(text));
}

/* Vendor and product IDs with their names in usb.ids. */
static void AddIdentity(zelIOHandle* io, const char* device) {
  unsigned long vendor, product;
  if (!ReadUsbNumber(device, "idVendor", 16, &vendor) ||
      !ReadUsbNumber(device, "idProduct", 16, &product))
    return;
  zelAddUint16Property(io, "VendorID", (uint16_t)vendor);
  zelAddUint16Property(io, "ProductID", (uint16_t)product);
  ZelIdsAddVendorNames(io, &gUsbIds, vendor, product, "ProductName");
}

/* Device class, subclass and protocol with their names. */
static void AddClass(zelIOHandle* io, const char* device) {
  static const char* const kFiles[3] = {"bDeviceClass", "bDeviceSubClass", "bDeviceProtocol"};
  static const char* const kCodes[3] = {"ClassCode", "SubClassCode", "ProtocolCode"};
  static const char* const kNames[3] = {"ClassName", "SubClassName", "ProtocolName"};
  unsigned long codes[3];
  int count = 0;
  while (count < 3 && ReadUsbNumber(device, kFiles[count], 16, &codes[count]))
    ++count;
  ZelIdsAddClass(io, &gUsbIds, codes, count, kCodes, kNames);
}

/* The drivers bound to the device's interfaces ("1-1.2:1.0"), each once. */
static void AddInterfaceDrivers(zelIOHandle* io, const char* device,
                                const ZelPluginNames* entries) {
  zelCIMValueArray* drivers = NULL;
  ZelPluginNames seen = {NULL, 0, 0};
  size_t length = strlen(device);
  int i, j;
  for (i = 0; i < entries->fCount; ++i) {
    char path[PATH_MAX];
    char driver[128];
    const char* entry = entries->fItems[i];
    if (strncmp(entry, device, length) != 0 || entry[length] != ':')
      continue;
    snprintf(path, sizeof path, "/sys/bus/usb/devices/%s/driver", entry);
    if (!ZelPluginLinkName(path, driver, sizeof driver))
      continue;
    for (j = 0; j < seen.fCount && strcmp(seen.fItems[j], driver) != 0; ++j)
      ;
    if (j < seen.fCount || !ZelPluginNamesAdd(&seen, driver))
      continue;
    if (!drivers && zelNewCIMValueArray(&drivers) != zelStatusOK)
      break;
    zelArrayAddString(drivers, driver);
  }
  if (drivers) {
    zelAddArrayProperty(io, "InterfaceDrivers", drivers);
    zelDeleteCIMValueArray(drivers);
  }
  ZelPluginNamesClear(&seen);
}

static zelStatusCode AddDevice(zelIOHandle* io, const char* device, const ZelPluginNames* entries) {
  char path[PATH_MAX];
  char text[256];
  unsigned long number;
  uint64_t speed;
  const char* end;
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_USBDevice", "DeviceID", device);
  if (status != zelStatusOK)
    return status;
  if (ReadUsbNumber(device, "busnum", 10, &number))
    zelAddUint8Property(io, "BusNumber", (uint8_t)number);
  if (ReadUsbNumber(device, "devnum", 10, &number))
    zelAddUint8Property(io, "DeviceNumber", (uint8_t)number);
  AddUsbString(io, device, "devpath", "PortPath");
  AddIdentity(io, device);
  AddUsbString(io, device, "product", "Name");
  AddUsbString(io, device, "manufacturer", "Manufacturer");
  AddUsbString(io, device, "serial", "SerialNumber");
  /* Mb/s: "1.5", "12", "480", "5000". */
  if (ReadUsbFile(device, "speed", text, sizeof text) &&
      ZelPluginParseScaled(text, 1000000u, &speed, &end) && speed > 0)
    zelAddUint64Property(io, "Speed", speed);
  AddUsbString(io, device, "version", "USBVersion");
  AddClass(io, device);
  if (ReadUsbNumber(device, "maxchild", 10, &number) && number > 0)
    zelAddUint8Property(io, "NumberOfPorts", (uint8_t)number);
  /* "100mA"; "0mA" for a self-powered device. */
  if (ReadUsbNumber(device, "bMaxPower", 10, &number))
    zelAddUint16Property(io, "MaxPower", (uint16_t)number);
  snprintf(path, sizeof path, "/sys/bus/usb/devices/%s/driver", device);
  if (ZelPluginLinkName(path, text, sizeof text))
    zelAddStringProperty(io, "Driver", text);
  AddInterfaceDrivers(io, device, entries);
  return ZelPluginKeepPart(device);
}

static zelStatusCode AddDevices(zelIOHandle* io) {
  ZelPluginNames entries = {NULL, 0, 0};
  zelStatusCode status = zelStatusOK;
  int i;
  ZelPluginListDirectory("/sys/bus/usb/devices", &entries);
  /* Devices are "usb1", "1-4", "1-4.2"; names with a colon are their interfaces. */
  for (i = 0; status == zelStatusOK && i < entries.fCount; ++i)
    if (!strchr(entries.fItems[i], ':')) {
      ZelIdsLoad(&gUsbIds, "/usr/share/misc/usb.ids");
      status = AddDevice(io, entries.fItems[i], &entries);
    }
  ZelPluginNamesClear(&entries);
  ZelIdsFree(&gUsbIds);
  return status;
}

/* Each device with the hub it hangs on: "1-4.2" on "1-4", "1-4" on the root hub "usb1";
 * each root hub with the PCI function of its host controller, the directory it sits in. */
static zelStatusCode AddConnections(zelIOHandle* io, const char** classNames, int classCount) {
  int hubs = ZelPluginAsked(classNames, classCount, "KAPLA_USBConnection");
  int controllers = ZelPluginAsked(classNames, classCount, "KAPLA_USBControllerHasHub");
  zelStatusCode status = zelStatusOK;
  int i;
  for (i = 0; status == zelStatusOK && i < gZelPluginParts.fCount; ++i) {
    const char* device = gZelPluginParts.fItems[i];
    ZelPluginEnd dependent = {"Dependent", "KAPLA_USBDevice", "DeviceID", device};
    char parent[256];
    const char* dot = strrchr(device, '.');
    const char* dash = strchr(device, '-');
    if (dash && hubs) {
      ZelPluginEnd antecedent = {"Antecedent", "KAPLA_USBDevice", "DeviceID", parent};
      if (dot)
        snprintf(parent, sizeof parent, "%.*s", (int)(dot - device), device);
      else
        snprintf(parent, sizeof parent, "usb%.*s", (int)(dash - device), device);
      status = ZelPluginAddAssociation(io, "KAPLA_USBConnection", antecedent, dependent);
    } else if (!dash && controllers) {
      ZelPluginEnd antecedent = {"Antecedent", "KAPLA_PCIDevice", "DeviceID", parent};
      char path[PATH_MAX];
      snprintf(path, sizeof path, "/sys/bus/usb/devices/%s", device);
      if (ZelPluginLinkComponent(path, 1, parent, sizeof parent))
        status = ZelPluginAddAssociation(io, "KAPLA_USBControllerHasHub", antecedent, dependent);
    }
  }
  return status;
}

ZEL_RELATED_PARTS_PLUGIN("USB", "KAPLA_USBDevice", "KAPLA_SystemUSBDevice", "DeviceID", AddDevices,
                         AddConnections)
