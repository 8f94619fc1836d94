/* The file-system plugin: the mounted file systems of /proc/mounts that hold data, with
 * their sizes from statvfs, and in the second pass their associations with the system and
 * with the disk or partition each resides on. */
#include "zelplugin.h"

#include <limits.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

/* The magic number that ext2, ext3 and ext4 share. */
static const unsigned long kExtMagic = 0xEF53;

/* Kernel views with no storage behind them. */
static int IsPseudo(const char* type) {
  static const char* const kPseudo[] = {
      "proc", "sysfs", "devpts", "cgroup", "cgroup2", "mqueue", "securityfs", "debugfs",
      "tracefs", "pstore", "bpf", "configfs", "fusectl", "hugetlbfs", "autofs", "binfmt_misc",
      "nsfs", "rpc_pipefs", "efivarfs", "selinuxfs", "ramfs"};
  size_t i;
  for (i = 0; i < sizeof kPseudo / sizeof *kPseudo; ++i)
    if (strcmp(type, kPseudo[i]) == 0)
      return 1;
  return 0;
}

/* /proc/mounts writes blanks, tabs, newlines and backslashes in octal: \040 and the like. */
static void Unescape(char* text) {
  char* out = text;
  for (; *text; ++text) {
    if (text[0] == '\\' && text[1] >= '0' && text[1] <= '7' && text[2] >= '0' &&
        text[2] <= '7' && text[3] >= '0' && text[3] <= '7') {
      *out++ = (char)((text[1] - '0') * 64 + (text[2] - '0') * 8 + (text[3] - '0'));
      text += 3;
    } else {
      *out++ = *text;
    }
  }
  *out = '\0';
}

/* The path under /sys/block of the block device the kernel calls name, when it is a disk
 * or a partition of one. */
static int BlockPath(const char* name, char* device, size_t size) {
  char path[PATH_MAX];
  char target[PATH_MAX];
  char* last;
  const char* parent;
  if (ZelPluginIsDisk(name)) {
    snprintf(device, size, "%s", name);
    return 1;
  }
  /* A partition sits in its disk's directory: .../block/sda/sda1, .../nvme0n1/nvme0n1p1. */
  snprintf(path, sizeof path, "/sys/class/block/%s", name);
  if (!ZelPluginReadLink(path, target, sizeof target) || !(last = strrchr(target, '/')))
    return 0;
  *last = '\0';
  parent = strrchr(target, '/') ? strrchr(target, '/') + 1 : target;
  snprintf(path, sizeof path, "/sys/block/%.255s/%s/partition", parent, name);
  if (!ZelPluginIsDisk(parent) || !ZelPluginReadLine(path, target, sizeof target))
    return 0;
  snprintf(device, size, "%s/%s", parent, name);
  return 1;
}

/* The kernel's name of the block device holding a directory, from its device number. */
static int HoldingDevice(const char* directory, char* name, size_t size) {
  char path[PATH_MAX];
  struct stat status;
  if (stat(ZelPluginPath(directory, path, sizeof path), &status) != 0 ||
      major(status.st_dev) == 0) /* no device behind: tmpfs, overlay, btrfs subvolumes */
    return 0;
  snprintf(path, sizeof path, "/sys/dev/block/%u:%u", major(status.st_dev),
           minor(status.st_dev));
  return ZelPluginLinkName(path, name, size);
}

/* The block device of a mount source: a device file, a link to one (/dev/mapper,
 * /dev/disk), or a name the kernel made up such as /dev/root, then found by the device
 * number of the mount point. */
static int SourceDevice(const char* source, const char* mountPoint, char* device, size_t size) {
  char name[NAME_MAX + 1];
  char* slash;
  if (strncmp(source, "/dev/", 5) != 0)
    return 0;
  if (!ZelPluginLinkName(source, name, sizeof name)) {
    snprintf(name, sizeof name, "%s", source + 5);
    while ((slash = strchr(name, '/')) != NULL) /* sysfs writes /dev/cciss/c0d0 cciss!c0d0 */
      *slash = '!';
  }
  return BlockPath(name, device, size) ||
         (HoldingDevice(mountPoint, name, sizeof name) && BlockPath(name, device, size));
}

static zelStatusCode AddFileSystem(zelIOHandle* io, const char* device, const char* mountPoint,
                                   const char* type, int readOnly, const char* blockPath) {
  char rooted[PATH_MAX];
  struct statvfs sizes;
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_FileSystem", "Name", mountPoint);
  if (status != zelStatusOK)
    return status;
  if (device)
    zelAddStringProperty(io, "Root", device);
  if (type)
    zelAddStringProperty(io, "FileSystemType", type);
  zelAddBooleanProperty(io, "ReadOnly", readOnly);
  if (statvfs(ZelPluginPath(mountPoint, rooted, sizeof rooted), &sizes) == 0) {
    zelAddUint64Property(io, "FileSystemSize",
                         (unsigned long long)sizes.f_blocks * sizes.f_frsize);
    zelAddUint64Property(io, "AvailableSpace",
                         (unsigned long long)sizes.f_bavail * sizes.f_frsize);
    zelAddUint32Property(io, "BlockSize", (uint32_t)sizes.f_bsize);
  }
  /* Kept for the second pass: the mount point with the device's path under /sys/block,
   * "disk" or "disk/partition". */
  if (blockPath[0] && !ZelPluginNamesAddPair(&gZelPluginPairs, mountPoint, blockPath))
    return zelStatusOutOfMemory;
  return ZelPluginKeepPart(mountPoint);
}

/* The type of a file system by its magic number, where the number names one type. */
static const char* TypeOfMagic(unsigned long magic) {
  static const struct {
    unsigned long fMagic;
    const char* fType;
  } kTypes[] = {{0x58465342, "xfs"},   {0x9123683E, "btrfs"}, {0x794C7630, "overlay"},
                {0x01021994, "tmpfs"}, {0xF2F52010, "f2fs"},  {0x2FC12FC1, "zfs"}};
  size_t i;
  for (i = 0; i < sizeof kTypes / sizeof *kTypes; ++i)
    if (kTypes[i].fMagic == magic)
      return kTypes[i].fType;
  return NULL;
}

/* In a chroot the root is no mount of its own and /proc/mounts, when there is one, does
 * not list it: what the file system itself and sysfs tell. ext2, ext3 and ext4 share one
 * magic; the ext4 driver, which mounts all three today, lists its mounts in /sys/fs/ext4. */
static zelStatusCode AddRootFileSystem(zelIOHandle* io) {
  char rooted[PATH_MAX];
  char name[NAME_MAX + 1];
  char source[NAME_MAX + 16];
  char blockPath[2 * NAME_MAX + 2] = "";
  const char* type = NULL;
  unsigned long magic = 0;
  struct statvfs root;
  struct statfs kind;
  int held = HoldingDevice("/", name, sizeof name);
  if (statvfs(ZelPluginPath("/", rooted, sizeof rooted), &root) != 0)
    return zelStatusOK;
  if (statfs(rooted, &kind) == 0) {
    magic = (unsigned long)kind.f_type;
    type = TypeOfMagic(magic);
  }
  if (held) {
    DIR* ext4;
    snprintf(source, sizeof source, "/sys/fs/ext4/%s", name);
    if (magic == kExtMagic && (ext4 = ZelPluginOpendir(source)) != NULL) {
      closedir(ext4);
      type = "ext4";
    }
    snprintf(source, sizeof source, "/dev/%s", name);
    if (!BlockPath(name, blockPath, sizeof blockPath))
      blockPath[0] = '\0';
  }
  return AddFileSystem(io, held ? source : NULL, "/", type, (root.f_flag & ST_RDONLY) != 0,
                       blockPath);
}

static zelStatusCode AddFileSystems(zelIOHandle* io) {
  char line[4096];
  char blockPath[2 * NAME_MAX + 2];
  zelStatusCode status = zelStatusOK;
  FILE* file = ZelPluginFopen("/proc/mounts");
  ZelPluginNamesClear(&gZelPluginPairs);
  while (file && status == zelStatusOK && fgets(line, sizeof line, file)) {
    char* device = strtok(line, " ");
    char* mountPoint = strtok(NULL, " ");
    char* type = strtok(NULL, " ");
    char* options = strtok(NULL, " ");
    if (!device || !mountPoint || !type || !options || IsPseudo(type))
      continue;
    Unescape(device);
    Unescape(mountPoint);
    if (ZelPluginNamesHas(&gZelPluginParts, mountPoint)) /* mounted over: the first entry names it */
      continue;
    if (!SourceDevice(device, mountPoint, blockPath, sizeof blockPath))
      blockPath[0] = '\0';
    status = AddFileSystem(io, device, mountPoint, type,
                           strncmp(options, "ro", 2) == 0 &&
                               (options[2] == ',' || options[2] == '\0'),
                           blockPath);
  }
  if (file)
    fclose(file);
  if (status == zelStatusOK && !ZelPluginNamesHas(&gZelPluginParts, "/"))
    status = AddRootFileSystem(io);
  return status;
}

/* A file system on the partition or disk it resides on, as the storage plugin names them. */
static zelStatusCode AddResidence(zelIOHandle* io, const char* mountPoint, const char* device) {
  const char* partition = strchr(device, '/');
  return ZelPluginAddDependency(io, "KAPLA_ResidesOnExtent",
                                partition ? "KAPLA_DiskPartition" : "KAPLA_DiskDrive", "DeviceID",
                                partition ? partition + 1 : device, "KAPLA_FileSystem", "Name",
                                mountPoint);
}

static zelStatusCode AddResidences(zelIOHandle* io, const char** classNames, int classCount) {
  if (!ZelPluginAsked(classNames, classCount, "KAPLA_ResidesOnExtent"))
    return zelStatusOK;
  return ZelPluginEachPair(io, AddResidence);
}

ZEL_RELATED_PARTS_PLUGIN("FileSystem", "KAPLA_FileSystem", "KAPLA_HostedFileSystem", "Name",
                         AddFileSystems, AddResidences)
