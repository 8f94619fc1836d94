/* The storage plugin: the disks of /sys/block with their partitions, and in the second pass
 * each disk's association with the computer system and each partition's with its disk. */
#include "zelplugin.h"

#include <limits.h>

static const char kDiskClass[] = "KAPLA_DiskDrive";
static const char kPartitionClass[] = "KAPLA_DiskPartition";

/* The sizes of /sys/block count 512-byte sectors whatever the device's block size. */
static const unsigned long long kSectorBytes = 512;

static int ReadBlockFile(const char* device, const char* file, char* value, size_t size) {
  char path[PATH_MAX];
  snprintf(path, sizeof path, "/sys/block/%s/%s", device, file);
  return ZelPluginReadLine(path, value, size);
}

static void AddBlockString(zelIOHandle* io, const char* property, const char* device,
                           const char* file) {
  char value[PATH_MAX];
  if (ReadBlockFile(device, file, value, sizeof value))
    zelAddStringProperty(io, property, value);
}

static void AddBlockNumber(zelIOHandle* io, const char* property, const char* device,
                           const char* file, unsigned long long scale) {
  char value[64];
  if (ReadBlockFile(device, file, value, sizeof value))
    zelAddUint64Property(io, property, strtoull(value, NULL, 10) * scale);
}

static void AddBlockFlag(zelIOHandle* io, const char* property, const char* device,
                         const char* file) {
  char value[64];
  if (ReadBlockFile(device, file, value, sizeof value))
    zelAddBooleanProperty(io, property, strcmp(value, "0") != 0);
}

/* The first of the files that can be read, trimmed; 0 when none can. */
static int ReadFirstOf(const char* disk, const char* const* files, char* value, size_t size) {
  for (; *files; ++files)
    if (ReadBlockFile(disk, *files, value, size))
      return 1;
  return 0;
}

/* The unit serial number of a SCSI disk, from the payload of its inquiry page 0x80: a
 * four-byte header ending with the length, then the number padded with spaces. */
static int ReadScsiSerial(const char* disk, char* serial, size_t size) {
  char path[PATH_MAX];
  unsigned char page[260];
  size_t length;
  size_t read;
  char* start;
  FILE* file;
  snprintf(path, sizeof path, "/sys/block/%s/device/vpd_pg80", disk);
  file = ZelPluginFopen(path);
  if (!file)
    return 0;
  read = fread(page, 1, sizeof page, file);
  fclose(file);
  if (read < 4 || page[1] != 0x80)
    return 0;
  length = (size_t)page[2] << 8 | page[3];
  if (length > read - 4)
    length = read - 4;
  if (length >= size)
    length = size - 1;
  memcpy(serial, page + 4, length);
  serial[length] = '\0';
  start = ZelPluginSkipSpace(ZelPluginTrim(serial));
  memmove(serial, start, strlen(start) + 1);
  return serial[0] != '\0';
}

/* How the disk is reached: the kernel's own kind for virtual disks, else the bus of its
 * device; a SCSI disk tells SATA and USB apart by the path to its host. */
static const char* Transport(const char* disk) {
  static const char* const kByName[][2] = {
      {"loop", "loop"}, {"zram", "zram"}, {"dm-", "dm"}, {"md", "md"}, {"nbd", "nbd"}};
  static const char* const kByBus[][2] = {
      {"nvme", "nvme"}, {"nvme-subsystem", "nvme"}, {"virtio", "virtio"}, {"mmc", "mmc"}};
  char link[PATH_MAX];
  char bus[64];
  size_t i;
  for (i = 0; i < sizeof kByName / sizeof *kByName; ++i)
    if (strncmp(disk, kByName[i][0], strlen(kByName[i][0])) == 0)
      return kByName[i][1];
  snprintf(link, sizeof link, "/sys/block/%s/device/subsystem", disk);
  if (!ZelPluginLinkName(link, bus, sizeof bus))
    return NULL;
  for (i = 0; i < sizeof kByBus / sizeof *kByBus; ++i)
    if (strcmp(bus, kByBus[i][0]) == 0)
      return kByBus[i][1];
  if (strcmp(bus, "scsi") != 0)
    return NULL;
  snprintf(bus, sizeof bus, "/sys/block/%s", disk);
  if (!ZelPluginReadLink(bus, link, sizeof link))
    return "scsi";
  if (strstr(link, "/usb"))
    return "usb";
  return strstr(link, "/ata") ? "sata" : "scsi";
}

static zelStatusCode AddDisk(zelIOHandle* io, const char* disk) {
  static const char* const kModel[] = {"device/model", "device/name", NULL};
  static const char* const kSerial[] = {"device/serial", "serial", NULL};
  static const char* const kWWN[] = {"wwid", "device/wwid", NULL};
  static const char* const kFirmware[] = {"device/firmware_rev", "device/rev", "device/fwrev",
                                          NULL};
  char value[256];
  const char* transport = Transport(disk);
  zelStatusCode status = ZelPluginOpenInstance(io, kDiskClass, "DeviceID", disk);
  if (status != zelStatusOK)
    return status;
  snprintf(value, sizeof value, "/dev/%s", disk);
  zelAddStringProperty(io, "Name", value);
  if (ReadFirstOf(disk, kModel, value, sizeof value))
    zelAddStringProperty(io, "Model", value);
  /* A name, not the numeric vendor IDs that virtio and MMC devices give. */
  if (ReadBlockFile(disk, "device/vendor", value, sizeof value) && strncmp(value, "0x", 2) != 0)
    zelAddStringProperty(io, "Manufacturer", value);
  if (ReadFirstOf(disk, kSerial, value, sizeof value) ||
      ReadScsiSerial(disk, value, sizeof value))
    zelAddStringProperty(io, "SerialNumber", value);
  if (ReadFirstOf(disk, kWWN, value, sizeof value))
    zelAddStringProperty(io, "WWN", value);
  if (ReadFirstOf(disk, kFirmware, value, sizeof value))
    zelAddStringProperty(io, "FirmwareRevision", value);
  AddBlockNumber(io, "Size", disk, "size", kSectorBytes);
  AddBlockNumber(io, "LogicalBlockSize", disk, "queue/logical_block_size", 1);
  AddBlockNumber(io, "PhysicalBlockSize", disk, "queue/physical_block_size", 1);
  AddBlockFlag(io, "Rotational", disk, "queue/rotational");
  AddBlockFlag(io, "Removable", disk, "removable");
  AddBlockFlag(io, "ReadOnly", disk, "ro");
  if (transport)
    zelAddStringProperty(io, "Transport", transport);
  AddBlockString(io, "BackingFile", disk, "loop/backing_file");
  return ZelPluginKeepPart(disk);
}

/* What udev learnt from the partition table, from its database entry for the device
 * ("E:KEY=value" lines), so that no disk is read here. */
static void AddUdevProperty(zelIOHandle* io, const char* property, const char* number,
                            const char* key) {
  char path[PATH_MAX];
  char value[256];
  snprintf(path, sizeof path, "/run/udev/data/b%s", number);
  if (ZelPluginFileField(path, '=', key, value, sizeof value))
    ZelPluginAddText(io, property, value);
}

/* A walk of /sys/block: what it collects, and the disk whose partitions it walks. */
typedef struct TBlockWalk {
  zelIOHandle* fIo;
  int fDisks;
  int fPartitions;
  const char* fDisk;
} TBlockWalk;

/* An entry of a disk's directory of /sys/block that has a partition file. */
static zelStatusCode AddPartition(void* context, const char* partition) {
  const TBlockWalk* walk = (const TBlockWalk*)context;
  zelIOHandle* io = walk->fIo;
  char path[2 * NAME_MAX + 2];
  char value[PATH_MAX];
  char name[256];
  char number[64];
  zelStatusCode status;
  snprintf(path, sizeof path, "%s/%s", walk->fDisk, partition);
  if (!ReadBlockFile(path, "partition", number, sizeof number))
    return zelStatusOK;
  status = ZelPluginOpenInstance(io, kPartitionClass, "DeviceID", partition);
  if (status != zelStatusOK)
    return status;
  snprintf(value, sizeof value, "/dev/%s", partition);
  zelAddStringProperty(io, "Name", value);
  zelAddUint32Property(io, "PartitionNumber", (uint32_t)strtoul(number, NULL, 10));
  AddBlockNumber(io, "StartingOffset", path, "start", kSectorBytes);
  AddBlockNumber(io, "Size", path, "size", kSectorBytes);
  AddBlockFlag(io, "ReadOnly", path, "ro");
  snprintf(value, sizeof value, "/sys/block/%s/uevent", path);
  if (ZelPluginFileField(value, '=', "PARTNAME", name, sizeof name))
    ZelPluginAddText(io, "PartitionName", name);
  if (ReadBlockFile(path, "dev", number, sizeof number)) {
    AddUdevProperty(io, "PartitionScheme", number, "E:ID_PART_ENTRY_SCHEME");
    AddUdevProperty(io, "PartitionType", number, "E:ID_PART_ENTRY_TYPE");
    AddUdevProperty(io, "PartitionUUID", number, "E:ID_PART_ENTRY_UUID");
  }
  /* Kept for the second pass: the disk with the partition. */
  return ZelPluginNamesAddPair(&gZelPluginPairs, walk->fDisk, partition) ? zelStatusOK
                                                                         : zelStatusOutOfMemory;
}

/* An entry of /sys/block that is a disk, with its partitions: the entries of its directory
 * named after it. */
static zelStatusCode AddBlockDevice(void* context, const char* disk) {
  TBlockWalk* walk = (TBlockWalk*)context;
  char path[PATH_MAX];
  zelStatusCode status = zelStatusOK;
  if (!ZelPluginIsDisk(disk))
    return zelStatusOK;
  if (walk->fDisks)
    status = AddDisk(walk->fIo, disk);
  if (status == zelStatusOK && walk->fPartitions) {
    walk->fDisk = disk;
    snprintf(path, sizeof path, "/sys/block/%s", disk);
    status = ZelPluginEachEntry(path, disk, AddPartition, walk);
  }
  return status;
}

/* A partition on its disk, when both were collected. */
static zelStatusCode AddMediaPresent(zelIOHandle* io, const char* disk, const char* partition) {
  return ZelPluginAddDependency(io, "KAPLA_MediaPresent", kDiskClass, "DeviceID", disk,
                                kPartitionClass, "DeviceID", partition);
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  TBlockWalk walk = {io, ZelPluginAsked(classNames, classCount, kDiskClass),
                     ZelPluginAsked(classNames, classCount, kPartitionClass), NULL};
  zelStatusCode status = zelStatusOK;
  if (walk.fDisks || walk.fPartitions) {
    ZelPluginNamesClear(&gZelPluginParts);
    ZelPluginNamesClear(&gZelPluginPairs);
    status = ZelPluginEachEntry("/sys/block", "", AddBlockDevice, &walk);
    if (!walk.fDisks) /* nothing for their associations to name */
      ZelPluginNamesClear(&gZelPluginPairs);
  }
  if (status == zelStatusOK && ZelPluginAsked(classNames, classCount, "KAPLA_SystemDiskDrive"))
    status = ZelPluginAddComponents(self, io, "KAPLA_SystemDiskDrive", kDiskClass, "DeviceID",
                                    &gZelPluginParts);
  if (status == zelStatusOK && ZelPluginAsked(classNames, classCount, "KAPLA_MediaPresent"))
    status = ZelPluginEachPair(io, AddMediaPresent);
  return status;
}

ZEL_PLUGIN("Storage", GetData, ZelPluginForgetParts)
