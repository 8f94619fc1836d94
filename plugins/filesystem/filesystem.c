/* The file-system plugin: the mounted file systems of /proc/mounts that hold data, with
 * their sizes from statvfs, and in the second pass their association with the system. */
#include "zelplugin.h"

#include <sys/statvfs.h>

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

static zelStatusCode AddFileSystem(zelIOHandle* io, const char* device, const char* mountPoint,
                                   const char* type, const char* options) {
  struct statvfs sizes;
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_FileSystem", "Name", mountPoint);
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "Root", device);
  zelAddStringProperty(io, "FileSystemType", type);
  zelAddBooleanProperty(io, "ReadOnly", strncmp(options, "ro", 2) == 0 &&
                                            (options[2] == ',' || options[2] == '\0'));
  if (statvfs(mountPoint, &sizes) == 0) {
    zelAddUint64Property(io, "FileSystemSize",
                         (unsigned long long)sizes.f_blocks * sizes.f_frsize);
    zelAddUint64Property(io, "AvailableSpace",
                         (unsigned long long)sizes.f_bavail * sizes.f_frsize);
    zelAddUint32Property(io, "BlockSize", (uint32_t)sizes.f_bsize);
  }
  return ZelPluginKeepPart(mountPoint);
}

static zelStatusCode AddFileSystems(zelIOHandle* io) {
  char line[4096];
  zelStatusCode status = zelStatusOK;
  FILE* file = ZelPluginFopen("/proc/mounts");
  if (!file)
    return zelStatusOK;
  while (status == zelStatusOK && fgets(line, sizeof line, file)) {
    char* device = strtok(line, " ");
    char* mountPoint = strtok(NULL, " ");
    char* type = strtok(NULL, " ");
    char* options = strtok(NULL, " ");
    if (!device || !mountPoint || !type || !options || IsPseudo(type))
      continue;
    Unescape(device);
    Unescape(mountPoint);
    if (!ZelPluginNamesHas(&gZelPluginParts, mountPoint)) /* mounted over: the first entry names it */
      status = AddFileSystem(io, device, mountPoint, type, options);
  }
  fclose(file);
  return status;
}

ZEL_PARTS_PLUGIN("FileSystem", "KAPLA_FileSystem", "KAPLA_HostedFileSystem", "Name", AddFileSystems)
