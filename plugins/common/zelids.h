/* Names from the PCI and USB ID databases (/usr/share/misc/pci.ids, usb.ids): read whole
 * under the root once per run, top-level lines indexed, then each name looked up by its
 * path of keys. Without the file every lookup finds nothing and its property stays NULL.
 * Format: "key  name" lines; a top-level key is a vendor ("8086") or a section entry
 * ("C 03"); one tab before a line under it, two tabs before a line under that. */
#ifndef ZELIDS_H
#define ZELIDS_H

#include "zelplugin.h"

#include <strings.h>

typedef struct ZelIds {
  char* fText;     /* the whole file, NUL-terminated */
  size_t* fTop;    /* offsets of the top-level lines */
  size_t fTopCount;
  int fLoaded;     /* 1 once read (or found missing): the file is read at most once */
} ZelIds;

/* Reads the database at path (as on the machine) unless already done; 0 without it. */
static inline int ZelIdsLoad(ZelIds* ids, const char* path) {
  FILE* file;
  long size;
  size_t capacity = 0;
  char* at;
  if (ids->fLoaded)
    return ids->fText != NULL;
  ids->fLoaded = 1;
  file = ZelPluginFopen(path);
  if (!file)
    return 0;
  if (fseek(file, 0, SEEK_END) != 0 || (size = ftell(file)) < 0 || fseek(file, 0, SEEK_SET) != 0 ||
      !(ids->fText = (char*)malloc((size_t)size + 1))) {
    fclose(file);
    return 0;
  }
  size = (long)fread(ids->fText, 1, (size_t)size, file);
  fclose(file);
  ids->fText[size] = '\0';
  for (at = ids->fText; *at; ) {
    char* end = strchr(at, '\n');
    if (*at != '\t' && *at != '#' && *at != '\n') {
      if (ids->fTopCount == capacity) {
        size_t* top;
        capacity = capacity ? 2 * capacity : 1024;
        top = (size_t*)realloc(ids->fTop, capacity * sizeof *top);
        if (!top)
          break;
        ids->fTop = top;
      }
      ids->fTop[ids->fTopCount++] = (size_t)(at - ids->fText);
    }
    if (!end)
      break;
    at = end + 1;
  }
  return 1;
}

static inline void ZelIdsFree(ZelIds* ids) {
  free(ids->fText);
  free(ids->fTop);
  memset(ids, 0, sizeof *ids);
}

/* Does the line at text, after depth tabs, hold key followed by two spaces? Keys are
 * compared without regard to case: the sysfs files and the databases both use hex. */
static inline const char* ZelIdsMatch(const char* line, int depth, const char* key) {
  size_t length = strlen(key);
  int i;
  for (i = 0; i < depth; ++i)
    if (line[i] != '\t')
      return NULL;
  line += depth;
  if (line[0] == '\t' || strncasecmp(line, key, length) != 0 ||
      strncmp(line + length, "  ", 2) != 0)
    return NULL;
  return line + length + 2;
}

/* The name at keys[0] / keys[1] / ... (depth keys, at most 3) into name; 0 when absent. */
static inline int ZelIdsName(const ZelIds* ids, const char* const* keys, int depth, char* name,
                             size_t size) {
  const char* line = NULL;
  const char* found = NULL;
  size_t i;
  int level;
  if (!ids->fText || depth < 1)
    return 0;
  for (i = 0; i < ids->fTopCount && !found; ++i) {
    line = ids->fText + ids->fTop[i];
    found = ZelIdsMatch(line, 0, keys[0]);
  }
  for (level = 1; found && level < depth; ++level) {
    found = NULL;
    /* Walk the lines under the one found, until a line less indented than this level. */
    while (!found && (line = strchr(line, '\n')) != NULL) {
      int tabs = 0;
      ++line;
      if (line[0] == '#' || line[0] == '\n')
        continue;
      while (line[tabs] == '\t')
        ++tabs;
      if (tabs < level)
        break;
      if (tabs == level)
        found = ZelIdsMatch(line, level, keys[level]);
    }
  }
  if (!found)
    return 0;
  for (i = 0; found[i] && found[i] != '\n' && i + 1 < size; ++i)
    name[i] = found[i];
  name[i] = '\0';
  return ZelPluginTrim(name)[0] != '\0';
}

/* Sets a string property to the name at keys, or leaves it NULL. */
static inline void ZelIdsAddName(zelIOHandle* io, const char* property, const ZelIds* ids,
                                 const char* const* keys, int depth) {
  char name[256];
  if (ZelIdsName(ids, keys, depth, name, sizeof name))
    zelAddStringProperty(io, property, name);
}

/* A vendor's name and its device's (or product's) name: keys "8086" and "1234". */
static inline void ZelIdsAddVendorNames(zelIOHandle* io, const ZelIds* ids, unsigned long vendor,
                                        unsigned long device, const char* deviceProperty) {
  char keys[2][8];
  const char* path[2] = {keys[0], keys[1]};
  snprintf(keys[0], sizeof keys[0], "%04lx", vendor & 0xffff);
  snprintf(keys[1], sizeof keys[1], "%04lx", device & 0xffff);
  ZelIdsAddName(io, "VendorName", ids, path, 1);
  ZelIdsAddName(io, deviceProperty, ids, path, 2);
}

/* A class code of up to three levels (class, subclass, programming interface or protocol)
 * with the names of the "C" section: codes[i] set as codeProperties[i], its name as
 * nameProperties[i]. */
static inline void ZelIdsAddClass(zelIOHandle* io, const ZelIds* ids, const unsigned long* codes,
                                  int count, const char* const* codeProperties,
                                  const char* const* nameProperties) {
  char keys[3][8];
  const char* path[3] = {keys[0], keys[1], keys[2]};
  int level;
  for (level = 0; level < count && level < 3; ++level) {
    zelAddUint8Property(io, codeProperties[level], (uint8_t)codes[level]);
    snprintf(keys[level], sizeof keys[level], level == 0 ? "C %02lx" : "%02lx",
             codes[level] & 0xff);
    ZelIdsAddName(io, nameProperties[level], ids, path, level + 1);
  }
}

#endif
