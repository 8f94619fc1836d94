/* The software plugin: the packages that dpkg lists as installed, from its status file. */
#include "zelplugin.h"

/* The fields of one stanza of the status file that become properties. */
typedef struct TPackage {
  char fName[256];
  char fVersion[256];
  char fArchitecture[64];
  char fMaintainer[256];
  char fStatus[128];
  unsigned long long fInstalledKiB;
  int fHasSize;
} TPackage;

static zelStatusCode AddPackage(zelIOHandle* io, const TPackage* package) {
  zelStatusCode status;
  /* dpkg writes an Architecture for every installed package; it is half the key. */
  if (!package->fName[0] || !package->fArchitecture[0] ||
      strcmp(package->fStatus, "install ok installed") != 0)
    return zelStatusOK;
  status = zelAddClass(io, "KAPLA_SoftwarePackage");
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "Name", package->fName);
  zelAddStringProperty(io, "Architecture", package->fArchitecture);
  ZelPluginAddText(io, "Version", package->fVersion);
  ZelPluginAddText(io, "Manufacturer", package->fMaintainer);
  if (package->fHasSize)
    zelAddUint64Property(io, "InstalledSize", package->fInstalledKiB);
  return zelStatusOK;
}

static void Keep(char* field, size_t size, const char* value) {
  snprintf(field, size, "%s", value);
}

/* Stanzas of "Name: value" lines, separated by blank lines; continuation lines start with
 * a blank and are skipped. */
static zelStatusCode AddPackages(zelIOHandle* io, const char* path) {
  char* line = NULL;
  size_t capacity = 0;
  TPackage package;
  zelStatusCode status = zelStatusOK;
  FILE* file = ZelPluginFopen(path);
  if (!file)
    return zelStatusOK;
  memset(&package, 0, sizeof package);
  while (status == zelStatusOK && getline(&line, &capacity, file) != -1) {
    char* name;
    char* value;
    if (line[0] == '\n') {
      status = AddPackage(io, &package);
      memset(&package, 0, sizeof package);
      continue;
    }
    if (line[0] == ' ' || line[0] == '\t' || !ZelPluginSplitField(line, ':', &name, &value))
      continue;
    if (strcmp(name, "Package") == 0)
      Keep(package.fName, sizeof package.fName, value);
    else if (strcmp(name, "Status") == 0)
      Keep(package.fStatus, sizeof package.fStatus, value);
    else if (strcmp(name, "Version") == 0)
      Keep(package.fVersion, sizeof package.fVersion, value);
    else if (strcmp(name, "Architecture") == 0)
      Keep(package.fArchitecture, sizeof package.fArchitecture, value);
    else if (strcmp(name, "Maintainer") == 0)
      Keep(package.fMaintainer, sizeof package.fMaintainer, value);
    else if (strcmp(name, "Installed-Size") == 0) {
      package.fInstalledKiB = strtoull(value, NULL, 10);
      package.fHasSize = 1;
    }
  }
  if (status == zelStatusOK)
    status = AddPackage(io, &package);
  free(line);
  fclose(file);
  return status;
}

static zelStatusCode GetData(TCPluginCallbacks* self, zelIOHandle* io, const char** classNames,
                             int classCount) {
  (void)self;
  if (ZelPluginAsked(classNames, classCount, "KAPLA_SoftwarePackage"))
    return AddPackages(io, "/var/lib/dpkg/status");
  return zelStatusOK;
}

ZEL_PLUGIN("Software", GetData, ZelPluginNothingToDo)
