/* The video plugin: the graphics adapters, that is the DRM cards of /sys/class/drm and the
 * PCI functions of the display controller class (03) without one, with their names from
 * pci.ids, driver, video memory where the driver tells it and connectors; in the second
 * pass their association with the computer system and with their PCI function. */
#include "zelids.h"

#include <limits.h>

static ZelIds gPciIds;

/* The entries of /sys/class/drm, sorted: cards ("card0"), their connectors
 * ("card0-HDMI-A-1"), render nodes. */
static ZelPluginNames gDrm;

static int CompareNames(const void* a, const void* b) {
  return strcmp(*(char* const*)a, *(char* const*)b);
}

/* "card0" but not "card0-DP-1". */
static int IsCard(const char* name) {
  return strncmp(name, "card", 4) == 0 && name[4] &&
         strspn(name + 4, "0123456789") == strlen(name + 4);
}

static int IsPciFunction(const char* address) {
  char path[PATH_MAX];
  char text[32];
  snprintf(path, sizeof path, "/sys/bus/pci/devices/%s/class", address);
  return ZelPluginReadLine(path, text, sizeof text);
}

static int ReadHexFile(const char* directory, const char* file, unsigned long* number) {
  char path[PATH_MAX];
  char text[32];
  char* end;
  snprintf(path, sizeof path, "%s/%s", directory, file);
  if (!ZelPluginReadLine(path, text, sizeof text))
    return 0;
  *number = strtoul(text, &end, 16);
  return end != text;
}

/* The card's connectors, and those with a display attached. */
static void AddConnectors(zelIOHandle* io, const char* card) {
  zelCIMValueArray* all = NULL;
  zelCIMValueArray* connected = NULL;
  size_t length = strlen(card);
  int allCount = 0, connectedCount = 0;
  int i;
  if (zelNewCIMValueArray(&all) != zelStatusOK || zelNewCIMValueArray(&connected) != zelStatusOK) {
    if (all)
      zelDeleteCIMValueArray(all);
    return;
  }
  for (i = 0; i < gDrm.fCount; ++i) {
    const char* entry = gDrm.fItems[i];
    char path[PATH_MAX];
    char status[32];
    if (strncmp(entry, card, length) != 0 || entry[length] != '-')
      continue;
    zelArrayAddString(all, entry + length + 1);
    ++allCount;
    snprintf(path, sizeof path, "/sys/class/drm/%s/status", entry);
    if (ZelPluginReadLine(path, status, sizeof status) && strcmp(status, "connected") == 0) {
      zelArrayAddString(connected, entry + length + 1);
      ++connectedCount;
    }
  }
  if (allCount)
    zelAddArrayProperty(io, "Connectors", all);
  if (connectedCount)
    zelAddArrayProperty(io, "ConnectedConnectors", connected);
  zelDeleteCIMValueArray(all);
  zelDeleteCIMValueArray(connected);
}

/* One adapter: keyed by its PCI address when it is a PCI function (pci non-zero), else by
 * its card; card NULL for a display controller that no DRM driver drives. */
static zelStatusCode AddController(zelIOHandle* io, const char* device, int pci, const char* card) {
  char directory[PATH_MAX];
  char path[PATH_MAX + 32];
  char text[256];
  unsigned long vendor, product;
  uint64_t memory;
  const char* end;
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_VideoController", "DeviceID",
                                               pci ? device : card);
  if (status != zelStatusOK)
    return status;
  if (pci) {
    snprintf(directory, sizeof directory, "/sys/bus/pci/devices/%s", device);
    zelAddStringProperty(io, "PCIAddress", device);
    ZelIdsLoad(&gPciIds, "/usr/share/misc/pci.ids");
    if (ReadHexFile(directory, "vendor", &vendor) && ReadHexFile(directory, "device", &product))
      ZelIdsAddVendorNames(io, &gPciIds, vendor, product, "Name");
  } else {
    snprintf(directory, sizeof directory, "/sys/class/drm/%s/device", card);
  }
  if (card)
    zelAddStringProperty(io, "Card", card);
  snprintf(path, sizeof path, "%s/driver", directory);
  if (ZelPluginLinkName(path, text, sizeof text))
    zelAddStringProperty(io, "Driver", text);
  /* Bytes, where the driver tells them (amdgpu). */
  snprintf(path, sizeof path, "%s/mem_info_vram_total", directory);
  if (ZelPluginReadLine(path, text, sizeof text) && ZelPluginParseScaled(text, 1, &memory, &end) &&
      memory > 0)
    zelAddUint64Property(io, "VideoMemory", memory);
  if (card)
    AddConnectors(io, card);
  return ZelPluginKeepPart(pci ? device : card);
}

/* A PCI function of the display controller class that no card has named. */
static zelStatusCode AddDisplayFunction(void* context, const char* address) {
  zelIOHandle* io = (zelIOHandle*)context;
  char path[PATH_MAX];
  unsigned long code;
  snprintf(path, sizeof path, "/sys/bus/pci/devices/%s", address);
  if (!ReadHexFile(path, "class", &code) || (code >> 16) != 0x03 ||
      ZelPluginNamesHas(&gZelPluginParts, address))
    return zelStatusOK;
  return AddController(io, address, 1, NULL);
}

static zelStatusCode AddControllers(zelIOHandle* io) {
  zelStatusCode status = zelStatusOK;
  int i;
  ZelPluginListDirectory("/sys/class/drm", &gDrm);
  if (gDrm.fCount > 1) /* Connectors in order of their names. */
    qsort(gDrm.fItems, (size_t)gDrm.fCount, sizeof *gDrm.fItems, CompareNames);
  for (i = 0; status == zelStatusOK && i < gDrm.fCount; ++i) {
    const char* card = gDrm.fItems[i];
    char path[PATH_MAX];
    char device[256] = "";
    int pci;
    if (!IsCard(card))
      continue;
    snprintf(path, sizeof path, "/sys/class/drm/%s/device", card);
    pci = ZelPluginLinkName(path, device, sizeof device) && IsPciFunction(device);
    /* A function with two cards is one adapter. */
    if (!ZelPluginNamesHas(&gZelPluginParts, pci ? device : card))
      status = AddController(io, device, pci, card);
  }
  if (status == zelStatusOK)
    status = ZelPluginEachEntry("/sys/bus/pci/devices", "", AddDisplayFunction, io);
  ZelPluginNamesClear(&gDrm);
  ZelIdsFree(&gPciIds);
  return status;
}

/* Each adapter that is a PCI function with that function: the keys with a colon are PCI
 * addresses, the others card names. */
static zelStatusCode AddIdentities(zelIOHandle* io, const char** classNames, int classCount) {
  zelStatusCode status = zelStatusOK;
  int i;
  if (!ZelPluginAsked(classNames, classCount, "KAPLA_PCIDeviceVideoController"))
    return zelStatusOK;
  for (i = 0; status == zelStatusOK && i < gZelPluginParts.fCount; ++i) {
    const char* device = gZelPluginParts.fItems[i];
    ZelPluginEnd function = {"SystemElement", "KAPLA_PCIDevice", "DeviceID", device};
    ZelPluginEnd controller = {"SameElement", "KAPLA_VideoController", "DeviceID", device};
    if (strchr(device, ':'))
      status = ZelPluginAddAssociation(io, "KAPLA_PCIDeviceVideoController", function, controller);
  }
  return status;
}

ZEL_RELATED_PARTS_PLUGIN("Video", "KAPLA_VideoController", "KAPLA_SystemVideoController",
                         "DeviceID", AddControllers, AddIdentities)
