/* The modules plugin: the kernel modules of /proc/modules with their versions from
 * /sys/module, and in the second pass their association with the computer system. */
#include "zelplugin.h"

#include <limits.h>

/* The modules that use this one: "a,b," or "-" for none. */
static zelStatusCode AddDependents(zelIOHandle* io, char* list) {
  zelCIMValueArray* names = NULL;
  char* next = NULL;
  char* name;
  zelStatusCode status = zelNewCIMValueArray(&names);
  if (status != zelStatusOK)
    return status;
  for (name = strtok_r(list, ",", &next); status == zelStatusOK && name;
       name = strtok_r(NULL, ",", &next))
    if (strcmp(name, "-") != 0)
      status = zelArrayAddString(names, name);
  if (status == zelStatusOK)
    status = zelAddArrayProperty(io, "Dependents", names);
  zelDeleteCIMValueArray(names);
  return status;
}

/* One line: name, size in bytes, use count, dependents, state, load address. */
static zelStatusCode AddModule(zelIOHandle* io, char* line) {
  char path[PATH_MAX];
  char* next = NULL;
  char* name = strtok_r(line, " \n", &next);
  char* size = strtok_r(NULL, " \n", &next);
  char* uses = strtok_r(NULL, " \n", &next);
  char* dependents = strtok_r(NULL, " \n", &next);
  char* state = strtok_r(NULL, " \n", &next);
  zelStatusCode status;
  if (!name || !size || !uses || !dependents || !state)
    return zelStatusOK;
  status = zelAddClass(io, "KAPLA_KernelModule");
  if (status == zelStatusOK)
    status = zelAddStringProperty(io, "Name", name);
  if (status != zelStatusOK)
    return status;
  zelAddUint64Property(io, "Size", strtoull(size, NULL, 10));
  if (strcmp(uses, "-") != 0) /* "-" when the module cannot be unloaded */
    zelAddUint32Property(io, "UseCount", (uint32_t)strtoul(uses, NULL, 10));
  status = AddDependents(io, dependents);
  if (status != zelStatusOK)
    return status;
  zelAddStringProperty(io, "State", state);
  snprintf(path, sizeof path, "/sys/module/%s/version", name);
  ZelPluginAddFileProperty(io, "Version", path);
  snprintf(path, sizeof path, "/sys/module/%s/srcversion", name);
  ZelPluginAddFileProperty(io, "SourceVersion", path);
  return ZelPluginKeepPart(name);
}

static zelStatusCode AddModules(zelIOHandle* io) {
  char line[4096];
  zelStatusCode status = zelStatusOK;
  FILE* file = ZelPluginFopen("/proc/modules");
  if (!file)
    return zelStatusOK; /* a kernel without loadable modules */
  while (status == zelStatusOK && fgets(line, sizeof line, file))
    status = AddModule(io, line);
  fclose(file);
  return status;
}

static const ZelPluginLink kLink = {
    "KAPLA_InstalledSoftwareElement", "System", "Software", "KAPLA_KernelModule", "Name", 0};

ZEL_LINKED_PLUGIN("Modules", kLink, AddModules)
