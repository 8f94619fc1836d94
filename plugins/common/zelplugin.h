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

/* path (absolute, as on the machine) under the root, into buffer; returns buffer. A path
 * too long for buffer becomes "", which opens nothing, rather than another path cut short. */
static inline const char* ZelPluginPath(const char* path, char* buffer, size_t size) {
  const char* root = ZelPluginRoot();
  size_t length = strlen(root);
  while (length > 0 && root[length - 1] == '/')
    --length;
  if ((size_t)snprintf(buffer, size, "%.*s%s", (int)length, root, path) >= size)
    buffer[0] = '\0'; /* too long to name a file: opens nothing */
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

/* A component of a symbolic link's target, counted from its end (0: the last, such as a
 * driver's name; 1: the one before, such as the device a device hangs under); 0 when it
 * is no link or has no such component. */
static inline int ZelPluginLinkComponent(const char* path, int fromEnd, char* name, size_t size) {
  char rooted[4096];
  char target[4096];
  char* slash;
  ssize_t length = readlink(ZelPluginPath(path, rooted, sizeof rooted), target, sizeof target - 1);
  if (length <= 0)
    return 0;
  target[length] = '\0';
  for (; fromEnd > 0; --fromEnd) {
    if (!(slash = strrchr(target, '/')))
      return 0;
    *slash = '\0';
  }
  slash = strrchr(target, '/');
  return (size_t)snprintf(name, size, "%s", slash ? slash + 1 : target) < size && name[0] != '\0';
}

static inline int ZelPluginLinkName(const char* path, char* name, size_t size) {
  return ZelPluginLinkComponent(path, 0, name, size);
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

/* A decimal number with an optional fraction ("2.5", "480") times scale, truncated below
 * one unit of scale's smallest step; *end after the number. 0 when text holds no number. */
static inline int ZelPluginParseScaled(const char* text, uint64_t scale, uint64_t* value,
                                       const char** end) {
  uint64_t result = 0;
  if (!isdigit((unsigned char)*text))
    return 0;
  for (; isdigit((unsigned char)*text); ++text)
    result = result * 10 + (uint64_t)(*text - '0');
  result *= scale;
  if (*text == '.')
    for (++text; isdigit((unsigned char)*text); ++text)
      if (scale > 1)
        result += (uint64_t)(*text - '0') * (scale /= 10);
  *value = result;
  *end = text;
  return 1;
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

/* The same figure in Bytes, the one unit of every size the plugins report. */
static inline int ZelPluginMemInfoBytes(const char* wanted, unsigned long long* bytes) {
  if (!ZelPluginMemInfoKiB(wanted, bytes))
    return 0;
  *bytes *= 1024;
  return 1;
}

/* A file holding one decimal integer (sysfs attributes); 0 when unreadable or not a number. */
static inline int ZelPluginReadInteger(const char* path, long long* number) {
  char line[64];
  char* end;
  if (!ZelPluginReadLine(path, line, sizeof line))
    return 0;
  *number = strtoll(line, &end, 10);
  return end != line && *ZelPluginSkipSpace(end) == '\0';
}

/* Calls visit for each entry of a directory whose name begins with prefix ("" for every
 * entry but "." and ".."), until one fails; a directory that cannot be read has none. */
static inline zelStatusCode ZelPluginEachEntry(const char* path, const char* prefix,
                                               zelStatusCode (*visit)(void* context,
                                                                      const char* name),
                                               void* context) {
  struct dirent* entry;
  zelStatusCode status = zelStatusOK;
  DIR* dir = ZelPluginOpendir(path);
  if (!dir)
    return zelStatusOK;
  while (status == zelStatusOK && (entry = readdir(dir)) != NULL)
    if (strncmp(entry->d_name, prefix, strlen(prefix)) == 0 && strcmp(entry->d_name, ".") != 0 &&
        strcmp(entry->d_name, "..") != 0)
      status = visit(context, entry->d_name);
  closedir(dir);
  return status;
}

/* Sets a string property to text; an empty text leaves it NULL. */
static inline void ZelPluginAddText(zelIOHandle* io, const char* name, const char* text) {
  if (text[0])
    zelAddStringProperty(io, name, text);
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

/* items, an array of count items of size bytes, with room for one more: its capacity
 * doubled, from first items, when it is full. NULL when out of memory, items untouched. */
static inline void* ZelPluginGrow(void* items, int count, int* capacity, size_t size,
                                  int first) {
  int grown;
  if (count < *capacity)
    return items;
  grown = *capacity ? 2 * *capacity : first;
  items = realloc(items, (size_t)grown * size);
  if (items)
    *capacity = grown;
  return items;
}

/* A growable list of names, kept by a plugin between its two passes. */
typedef struct ZelPluginNames {
  char** fItems;
  int fCount;
  int fCapacity;
} ZelPluginNames;

static inline int ZelPluginNamesAdd(ZelPluginNames* names, const char* name) {
  char** items = (char**)ZelPluginGrow(names->fItems, names->fCount, &names->fCapacity,
                                       sizeof *items, 16);
  if (!items)
    return 0;
  names->fItems = items;
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

/* A name kept with a second text as one item: the name, its NUL, then the second text. */
static inline int ZelPluginNamesAddPair(ZelPluginNames* names, const char* name,
                                        const char* second) {
  size_t length = strlen(name) + 1;
  char* item;
  if (!ZelPluginNamesAdd(names, name))
    return 0;
  item = (char*)realloc(names->fItems[names->fCount - 1], length + strlen(second) + 1);
  if (!item) {
    free(names->fItems[--names->fCount]);
    return 0;
  }
  strcpy(item + length, second);
  names->fItems[names->fCount - 1] = item;
  return 1;
}

/* The second text of an item added by ZelPluginNamesAddPair. */
static inline const char* ZelPluginNamesSecond(const char* item) {
  return item + strlen(item) + 1;
}

/* The entries of a directory (but "." and the hidden ones) appended to names; 0 when it
 * cannot be read. */
static inline int ZelPluginListDirectory(const char* path, ZelPluginNames* names) {
  struct dirent* entry;
  int complete = 1;
  DIR* directory = ZelPluginOpendir(path);
  if (!directory)
    return 0;
  while (complete && (entry = readdir(directory)) != NULL)
    if (entry->d_name[0] != '.')
      complete = ZelPluginNamesAdd(names, entry->d_name);
  closedir(directory);
  return complete;
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

/* One end of an association: its reference property and the instance it names. */
typedef struct ZelPluginEnd {
  const char* fRole;
  const char* fClass;
  const char* fKey;
  const char* fValue;
} ZelPluginEnd;

/* Does end name an instance already collected? Another plugin's part is not there when
 * only some classes are asked for. Resolving it as the key of a scratch reference to the
 * association tells, silently. */
static inline int ZelPluginCollected(zelIOHandle* io, const char* association, ZelPluginEnd end) {
  TCIMReference* scratch = NULL;
  TCIMReference* ref = NULL;
  int found = 0;
  if (zelNewCIMReference(&scratch, io) != zelStatusOK)
    return 0;
  if (zelSetReferenceClassName(scratch, association) == zelStatusOK &&
      ZelPluginNewReference(io, &ref, end.fClass, end.fKey, end.fValue) == zelStatusOK) {
    found = zelReferenceAddReference(scratch, end.fRole, ref) == zelStatusOK;
    zelDeleteCIMReference(ref);
  }
  zelDeleteCIMReference(scratch);
  return found;
}

/* One association instance between two ends that the caller knows are collected. */
static inline zelStatusCode ZelPluginAddPair(zelIOHandle* io, const char* association,
                                             ZelPluginEnd first, ZelPluginEnd second) {
  zelStatusCode status = zelAddClass(io, association);
  if (status == zelStatusOK)
    status = ZelPluginAddReference(io, first.fRole, first.fClass, first.fKey, first.fValue);
  if (status == zelStatusOK)
    status = ZelPluginAddReference(io, second.fRole, second.fClass, second.fKey, second.fValue);
  return status;
}

/* One association instance between two collected instances; nothing when either is not
 * collected. */
static inline zelStatusCode ZelPluginAddAssociation(zelIOHandle* io, const char* association,
                                                    ZelPluginEnd first, ZelPluginEnd second) {
  if (!ZelPluginCollected(io, association, first) || !ZelPluginCollected(io, association, second))
    return zelStatusOK;
  return ZelPluginAddPair(io, association, first, second);
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
 * second, and the pairs of names (ZelPluginNamesAddPair) that its second pass relates to
 * each other; freed when the plugin ends. */
static ZelPluginNames gZelPluginParts __attribute__((unused));
static ZelPluginNames gZelPluginPairs __attribute__((unused));

static inline zelStatusCode ZelPluginForgetParts(TCPluginCallbacks* self) {
  (void)self;
  ZelPluginNamesClear(&gZelPluginParts);
  ZelPluginNamesClear(&gZelPluginPairs);
  return zelStatusOK;
}

/* Calls relate for each pair kept, with its two names, until one fails. */
static inline zelStatusCode ZelPluginEachPair(zelIOHandle* io,
                                              zelStatusCode (*relate)(zelIOHandle* io,
                                                                      const char* first,
                                                                      const char* second)) {
  zelStatusCode status = zelStatusOK;
  int i;
  for (i = 0; status == zelStatusOK && i < gZelPluginPairs.fCount; ++i) {
    const char* first = gZelPluginPairs.fItems[i];
    status = relate(io, first, ZelPluginNamesSecond(first));
  }
  return status;
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


/* Block devices and the dependencies between parts: a disk and its partitions, a file
 * system and the partition or disk it resides on. */

/* The target of a symbolic link as it is written; 0 when it is no link. */
static inline int ZelPluginReadLink(const char* path, char* target, size_t size) {
  char rooted[4096];
  ssize_t length = readlink(ZelPluginPath(path, rooted, sizeof rooted), target, size - 1);
  if (length <= 0)
    return 0;
  target[length] = '\0';
  return 1;
}

/* Is the entry of /sys/block a disk: not hidden (a path of a multipath NVMe disk), not a
 * loop device with no file attached, not an optical drive (SCSI peripheral type 5). */
static inline int ZelPluginIsDisk(const char* name) {
  char path[512];
  char value[64];
  snprintf(path, sizeof path, "/sys/block/%s/size", name);
  if (strchr(name, '/') || !ZelPluginReadLine(path, value, sizeof value))
    return 0;
  snprintf(path, sizeof path, "/sys/block/%s/hidden", name);
  if (ZelPluginReadLine(path, value, sizeof value) && strcmp(value, "1") == 0)
    return 0;
  snprintf(path, sizeof path, "/sys/block/%s/loop/backing_file", name);
  if (strncmp(name, "loop", 4) == 0 && !ZelPluginReadLine(path, value, sizeof value))
    return 0;
  snprintf(path, sizeof path, "/sys/block/%s/device/type", name);
  return !ZelPluginReadLine(path, value, sizeof value) || strcmp(value, "5") != 0;
}

/* An association of two parts keyed by CreationClassName and one string key each: the
 * Antecedent the Dependent relies on. */
static inline zelStatusCode ZelPluginAddDependency(zelIOHandle* io, const char* className,
                                                   const char* antecedentClass,
                                                   const char* antecedentKey,
                                                   const char* antecedent,
                                                   const char* dependentClass,
                                                   const char* dependentKey,
                                                   const char* dependent) {
  ZelPluginEnd first = {"Antecedent", antecedentClass, antecedentKey, antecedent};
  ZelPluginEnd second = {"Dependent", dependentClass, dependentKey, dependent};
  return ZelPluginAddPair(io, className, first, second);
}

/* Declares a plugin of parts, their association with the computer system and, in the
 * second pass, the associations that relate adds (it checks which were asked for). */
#define ZEL_RELATED_PARTS_PLUGIN(name, partClass, associationClass, partKey, collect, relate) \
  static zelStatusCode ZelPluginGetRelatedParts(TCPluginCallbacks* self, zelIOHandle* io,   \
                                                const char** classNames, int classCount) {  \
    zelStatusCode status = ZelPluginCollectParts(self, io, classNames, classCount,          \
                                                 partClass, associationClass, partKey,      \
                                                 collect);                                  \
    return status == zelStatusOK ? relate(io, classNames, classCount) : status;             \
  }                                                                                         \
  ZEL_PLUGIN(name, ZelPluginGetRelatedParts, ZelPluginForgetParts)

/* Declares a plugin of parts related to the computer system as link (a ZelPluginLink) says. */
#define ZEL_LINKED_PLUGIN(name, link, collect)                                              \
  static zelStatusCode ZelPluginGetLinked(TCPluginCallbacks* self, zelIOHandle* io,         \
                                          const char** classNames, int classCount) {        \
    return ZelPluginCollectLinked(self, io, classNames, classCount, &(link), collect);      \
  }                                                                                         \
  ZEL_PLUGIN(name, ZelPluginGetLinked, ZelPluginForgetParts)

#endif
