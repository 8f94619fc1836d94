/* What the bundled plugins share: reading small files of /proc and /sys, a list of names
 * kept from the first pass for the associations of the second, the association of a part
 * with the computer system, and the registration boilerplate (ZEL_PLUGIN).
 * Everything is static: each plugin library carries its own copy. A file that cannot be
 * read leaves its property NULL; it is never an error. */
#ifndef ZELPLUGIN_H
#define ZELPLUGIN_H

#include "zelcore.h"

#include <ctype.h>
#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#ifndef ZEL_PLUGIN_VERSION
#define ZEL_PLUGIN_VERSION "1.0.0"
#endif

/* The root the machine is read under: $ZEL_SYSROOT (a fixture tree in the tests), else "/".
 * Every path a plugin reads is absolute and goes through ZelPluginPath. */
static inline const char* ZelPluginRoot(void) {
  const char* root = getenv("ZEL_SYSROOT");
  return root && root[0] ? root : "/";
}

/* path (absolute, as on the machine) under the root, into buffer; returns buffer. */
static inline const char* ZelPluginPath(const char* path, char* buffer, size_t size) {
  const char* root = ZelPluginRoot();
  size_t length = strlen(root);
  while (length > 0 && root[length - 1] == '/')
    --length;
  snprintf(buffer, size, "%.*s%s", (int)length, root, path);
  return buffer;
}

static inline FILE* ZelPluginFopen(const char* path) {
  char rooted[4096];
  return fopen(ZelPluginPath(path, rooted, sizeof rooted), "r");
}

static inline DIR* ZelPluginOpendir(const char* path) {
  char rooted[4096];
  return opendir(ZelPluginPath(path, rooted, sizeof rooted));
}

/* The last component of a symbolic link's target (a driver, a subsystem); 0 when it is no
 * link. */
static inline int ZelPluginLinkName(const char* path, char* name, size_t size) {
  char rooted[4096];
  char target[4096];
  const char* slash;
  ssize_t length = readlink(ZelPluginPath(path, rooted, sizeof rooted), target, sizeof target - 1);
  if (length <= 0)
    return 0;
  target[length] = '\0';
  slash = strrchr(target, '/');
  snprintf(name, size, "%s", slash ? slash + 1 : target);
  return 1;
}

/* Cuts trailing white space in place; returns text. */
static inline char* ZelPluginTrim(char* text) {
  size_t length = strlen(text);
  while (length > 0 && isspace((unsigned char)text[length - 1]))
    text[--length] = '\0';
  return text;
}

/* Skips leading white space. */
static inline char* ZelPluginSkipSpace(char* text) {
  while (isspace((unsigned char)*text))
    ++text;
  return text;
}

/* The first line of a file, trimmed, into buffer; 0 when unreadable or empty. */
static inline int ZelPluginReadLine(const char* path, char* buffer, size_t size) {
  FILE* file = ZelPluginFopen(path);
  int found;
  if (!file)
    return 0;
  found = fgets(buffer, (int)size, file) != NULL;
  fclose(file);
  return found && ZelPluginTrim(buffer)[0] != '\0';
}

/* The value of "name<separator>value" lines such as those of /proc/meminfo or os-release:
 * the text after the separator, spaces and one pair of double quotes removed. */
static inline int ZelPluginSplitField(char* line, char separator, char** name, char** value) {
  char* at = strchr(line, separator);
  size_t length;
  if (!at)
    return 0;
  *at = '\0';
  *name = ZelPluginTrim(ZelPluginSkipSpace(line));
  *value = ZelPluginTrim(ZelPluginSkipSpace(at + 1));
  length = strlen(*value);
  if (length >= 2 && (*value)[0] == '"' && (*value)[length - 1] == '"') {
    (*value)[length - 1] = '\0';
    ++*value;
  }
  return 1;
}

/* Looks up "name" in a file of "name<separator>value" lines; 0 when absent or unreadable. */
static inline int ZelPluginFileField(const char* path, char separator, const char* wanted,
                                     char* value, size_t size) {
  char line[512];
  FILE* file = ZelPluginFopen(path);
  int found = 0;
  if (!file)
    return 0;
  while (!found && fgets(line, sizeof line, file)) {
    char* name;
    char* text;
    if (ZelPluginSplitField(line, separator, &name, &text) && strcmp(name, wanted) == 0) {
      snprintf(value, size, "%s", text);
      found = 1;
    }
  }
  fclose(file);
  return found;
}

/* A /proc/meminfo figure, in KiB as the file gives it. */
static inline int ZelPluginMemInfoKiB(const char* wanted, unsigned long long* kib) {
  char text[64];
  if (!ZelPluginFileField("/proc/meminfo", ':', wanted, text, sizeof text))
    return 0;
  *kib = strtoull(text, NULL, 10);
  return 1;
}

/* Sets a string property from the first line of a file; leaves it NULL otherwise. */
static inline void ZelPluginAddFileProperty(zelIOHandle* io, const char* name, const char* path) {
  char line[512];
  if (ZelPluginReadLine(path, line, sizeof line))
    zelAddStringProperty(io, name, line);
}

/* The host name, which names the computer system; "localhost" when there is none. */
static inline void ZelPluginHostName(char* host, size_t size) {
  if (gethostname(host, size) != 0 || !host[0])
    snprintf(host, size, "localhost");
  host[size - 1] = '\0';
}

/* A growable list of names, kept by a plugin between its two passes. */
typedef struct ZelPluginNames {
  char** fItems;
  int fCount;
  int fCapacity;
} ZelPluginNames;

static inline int ZelPluginNamesAdd(ZelPluginNames* names, const char* name) {
  if (names->fCount == names->fCapacity) {
    int capacity = names->fCapacity ? 2 * names->fCapacity : 16;
    char** items = (char**)realloc(names->fItems, (size_t)capacity * sizeof *items);
    if (!items)
      return 0;
    names->fItems = items;
    names->fCapacity = capacity;
  }
  names->fItems[names->fCount] = strdup(name);
  if (!names->fItems[names->fCount])
    return 0;
  ++names->fCount;
  return 1;
}

static inline int ZelPluginNamesHas(const ZelPluginNames* names, const char* name) {
  int i;
  for (i = 0; i < names->fCount; ++i)
    if (strcmp(names->fItems[i], name) == 0)
      return 1;
  return 0;
}

static inline void ZelPluginNamesClear(ZelPluginNames* names) {
  int i;
  for (i = 0; i < names->fCount; ++i)
    free(names->fItems[i]);
  free(names->fItems);
  names->fItems = NULL;
  names->fCount = names->fCapacity = 0;
}

/* Is className one of the classes asked for? */
static inline int ZelPluginAsked(const char** classNames, int classCount, const char* className) {
  int i;
  for (i = 0; i < classCount; ++i)
    if (strcmp(classNames[i], className) == 0)
      return 1;
  return 0;
}

/* Opens an instance keyed by its CreationClassName and one string key. */
static inline zelStatusCode ZelPluginOpenInstance(zelIOHandle* io, const char* className,
                                                  const char* key, const char* value) {
  zelStatusCode status = zelAddClass(io, className);
  if (status == zelStatusOK)
    status = zelAddStringProperty(io, "CreationClassName", className);
  if (status == zelStatusOK)
    status = zelAddStringProperty(io, key, value);
  return status;
}

/* A reference to an instance keyed by CreationClassName and one string key. */
static inline zelStatusCode ZelPluginNewReference(zelIOHandle* io, TCIMReference** ref,
                                                  const char* className, const char* key,
                                                  const char* value) {
  zelStatusCode status = zelNewCIMReference(ref, io);
  if (status != zelStatusOK)
    return status;
  status = zelSetReferenceClassName(*ref, className);
  if (status == zelStatusOK)
    status = zelReferenceAddString(*ref, "CreationClassName", className);
  if (status == zelStatusOK)
    status = zelReferenceAddString(*ref, key, value);
  if (status != zelStatusOK) {
    zelDeleteCIMReference(*ref);
    *ref = NULL;
  }
  return status;
}

static inline zelStatusCode ZelPluginAddReference(zelIOHandle* io, const char* property,
                                                  const char* className, const char* key,
                                                  const char* value) {
  TCIMReference* ref = NULL;
  zelStatusCode status = ZelPluginNewReference(io, &ref, className, key, value);
  if (status != zelStatusOK)
    return status;
  status = zelAddReferenceProperty(io, property, ref);
  zelDeleteCIMReference(ref);
  return status;
}

/* How an association relates the computer system to a part: the association class, the
 * roles of the two ends, and the part's class and key. Software elements are keyed by their
 * key alone (fByCreationClass 0), devices and the like also by CreationClassName. */
typedef struct ZelPluginLink {
  const char* fAssociation;
  const char* fSystemRole;
  const char* fPartRole;
  const char* fPartClass;
  const char* fPartKey;
  int fByCreationClass;
} ZelPluginLink;

/* One association instance per part collected in the first pass, relating it to the
 * computer system as the link says. Without a computer system there is nothing to relate:
 * no instance, no failure. */
static inline zelStatusCode ZelPluginAddLinks(TCPluginCallbacks* self, zelIOHandle* io,
                                              const ZelPluginLink* link,
                                              const ZelPluginNames* parts) {
  char* system = NULL;
  char* systemClass = NULL;
  int i;
  if (zelGetSystemName(&system) != zelStatusOK ||
      zelGetSystemCreationClassName(&systemClass) != zelStatusOK) {
    zelWriteLog(self, zelLogWarning, "no computer system: associations not collected");
    return zelStatusOK;
  }
  for (i = 0; i < parts->fCount; ++i) {
    TCIMReference* part = NULL;
    zelStatusCode status = zelAddClass(io, link->fAssociation);
    if (status == zelStatusOK)
      status = ZelPluginAddReference(io, link->fSystemRole, systemClass, "Name", system);
    if (status == zelStatusOK && link->fByCreationClass)
      status = ZelPluginAddReference(io, link->fPartRole, link->fPartClass, link->fPartKey,
                                     parts->fItems[i]);
    else if (status == zelStatusOK) {
      status = zelNewCIMReference(&part, io);
      if (status == zelStatusOK)
        status = zelSetReferenceClassName(part, link->fPartClass);
      if (status == zelStatusOK)
        status = zelReferenceAddString(part, link->fPartKey, parts->fItems[i]);
      if (status == zelStatusOK)
        status = zelAddReferenceProperty(io, link->fPartRole, part);
      if (part)
        zelDeleteCIMReference(part);
    }
    if (status != zelStatusOK)
      return status;
  }
  return zelStatusOK;
}

/* The computer system as GroupComponent, each part as PartComponent. */
static inline zelStatusCode ZelPluginAddComponents(TCPluginCallbacks* self, zelIOHandle* io,
                                                   const char* associationClass,
                                                   const char* partClass, const char* partKey,
                                                   const ZelPluginNames* parts) {
  ZelPluginLink link = {associationClass, "GroupComponent", "PartComponent", partClass,
                        partKey, 1};
  return ZelPluginAddLinks(self, io, &link, parts);
}

/* The parts that a device plugin collected in its first pass, for its associations in the
 * second; freed when the plugin ends. */
static ZelPluginNames gZelPluginParts __attribute__((unused));

static inline zelStatusCode ZelPluginForgetParts(TCPluginCallbacks* self) {
  (void)self;
  ZelPluginNamesClear(&gZelPluginParts);
  return zelStatusOK;
}

/* Records a part collected, by the value of its key. */
static inline zelStatusCode ZelPluginKeepPart(const char* key) {
  return ZelPluginNamesAdd(&gZelPluginParts, key) ? zelStatusOK : zelStatusOutOfMemory;
}

/* GetData of a plugin with one class of parts and one association class: the parts in the
 * first pass (collect calls ZelPluginKeepPart for each), the associations in the second. */
static inline zelStatusCode ZelPluginCollectLinked(TCPluginCallbacks* self, zelIOHandle* io,
                                                   const char** classNames, int classCount,
                                                   const ZelPluginLink* link,
                                                   zelStatusCode (*collect)(zelIOHandle* io)) {
  zelStatusCode status = zelStatusOK;
  if (ZelPluginAsked(classNames, classCount, link->fPartClass)) {
    ZelPluginNamesClear(&gZelPluginParts);
    status = collect(io);
  }
  if (status == zelStatusOK && ZelPluginAsked(classNames, classCount, link->fAssociation))
    status = ZelPluginAddLinks(self, io, link, &gZelPluginParts);
  return status;
}

static inline zelStatusCode ZelPluginCollectParts(TCPluginCallbacks* self, zelIOHandle* io,
                                                  const char** classNames, int classCount,
                                                  const char* partClass,
                                                  const char* associationClass,
                                                  const char* partKey,
                                                  zelStatusCode (*collect)(zelIOHandle* io)) {
  ZelPluginLink link = {associationClass, "GroupComponent", "PartComponent", partClass,
                        partKey, 1};
  return ZelPluginCollectLinked(self, io, classNames, classCount, &link, collect);
}

static inline zelStatusCode ZelPluginNothingToDo(TCPluginCallbacks* self) {
  (void)self;
  return zelStatusOK;
}

/* Declares the plugin: its name, its GetData and its DeInit, and registers it when the
 * library is loaded. */
#define ZEL_PLUGIN(name, getData, deInit)                                                   \
  static TCPluginCallbacks* gZelPluginSelf;                                                 \
  static zelPluginInfo ZelPluginGetInfo(TCPluginCallbacks* self) {                          \
    zelPluginInfo info = {name, ZEL_PLUGIN_VERSION, "1.0", 0, 0};                           \
    (void)self;                                                                             \
    return info;                                                                            \
  }                                                                                         \
  __attribute__((constructor)) static void ZelPluginRegister(void) {                        \
    zelPluginCallbacks callbacks = {NULL,     ZelPluginNothingToDo, deInit,                 \
                                    getData,  ZelPluginGetInfo,     ZelPluginNothingToDo};  \
    zelRegisterPlugin(&callbacks, &gZelPluginSelf);                                         \
  }

/* Declares a plugin of parts and their association with the computer system. */
#define ZEL_PARTS_PLUGIN(name, partClass, associationClass, partKey, collect)              \
  static zelStatusCode ZelPluginGetParts(TCPluginCallbacks* self, zelIOHandle* io,          \
                                         const char** classNames, int classCount) {         \
    return ZelPluginCollectParts(self, io, classNames, classCount, partClass,               \
                                 associationClass, partKey, collect);                       \
  }                                                                                         \
  ZEL_PLUGIN(name, ZelPluginGetParts, ZelPluginForgetParts)

/* Declares a plugin of parts related to the computer system as link (a ZelPluginLink) says. */
#define ZEL_LINKED_PLUGIN(name, link, collect)                                              \
  static zelStatusCode ZelPluginGetLinked(TCPluginCallbacks* self, zelIOHandle* io,         \
                                          const char** classNames, int classCount) {        \
    return ZelPluginCollectLinked(self, io, classNames, classCount, &(link), collect);      \
  }                                                                                         \
  ZEL_PLUGIN(name, ZelPluginGetLinked, ZelPluginForgetParts)

#endif
