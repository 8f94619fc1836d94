/* The accounts plugin: the local accounts of /etc/passwd with their groups from /etc/group,
 * and in the second pass their association with the computer system. The password field is
 * skipped and /etc/shadow never opened. */
#include "zelplugin.h"

/* The UID range of people's accounts, from /etc/login.defs. */
typedef struct TUidRange {
  unsigned long fMin;
  unsigned long fMax;
  unsigned long fSystemMax;
} TUidRange;

/* login.defs lines are "NAME<blanks>VALUE"; absent names keep the defaults of useradd. */
static TUidRange ReadUidRange(void) {
  char line[512];
  int hasSystemMax = 0;
  TUidRange range = {1000, 60000, 999};
  FILE* file = ZelPluginFopen("/etc/login.defs");
  while (file && fgets(line, sizeof line, file)) {
    char name[64];
    unsigned long value;
    if (sscanf(line, " %63s %lu", name, &value) != 2)
      continue;
    if (strcmp(name, "UID_MIN") == 0)
      range.fMin = value;
    else if (strcmp(name, "UID_MAX") == 0)
      range.fMax = value;
    else if (strcmp(name, "SYS_UID_MAX") == 0) {
      range.fSystemMax = value;
      hasSystemMax = 1;
    }
  }
  if (file)
    fclose(file);
  if (!hasSystemMax)
    range.fSystemMax = range.fMin - 1;
  return range;
}

/* /etc/group held whole: for each account its primary group's name and the groups that
 * list it as a member. */
typedef struct TGroup {
  char* fName;
  unsigned long fGid;
  char* fMembers; /* "a,b,c" */
} TGroup;

typedef struct TGroups {
  TGroup* fItems;
  int fCount;
  int fCapacity;
} TGroups;

static void ReadGroups(TGroups* groups) {
  char* line = NULL;
  size_t capacity = 0;
  FILE* file = ZelPluginFopen("/etc/group");
  memset(groups, 0, sizeof *groups);
  if (!file)
    return;
  while (getline(&line, &capacity, file) != -1) {
    char* fields[4];
    char* at = line;
    TGroup* items;
    int i;
    for (i = 0; i < 4; ++i)
      fields[i] = strsep(&at, ":");
    if (!fields[3] || !fields[0][0])
      continue;
    items = (TGroup*)ZelPluginGrow(groups->fItems, groups->fCount, &groups->fCapacity,
                                   sizeof *items, 64);
    if (!items)
      break;
    groups->fItems = items;
    groups->fItems[groups->fCount].fName = strdup(fields[0]);
    groups->fItems[groups->fCount].fGid = strtoul(fields[2], NULL, 10);
    groups->fItems[groups->fCount].fMembers = strdup(ZelPluginTrim(fields[3]));
    ++groups->fCount;
  }
  free(line);
  fclose(file);
}

static void FreeGroups(TGroups* groups) {
  int i;
  for (i = 0; i < groups->fCount; ++i) {
    free(groups->fItems[i].fName);
    free(groups->fItems[i].fMembers);
  }
  free(groups->fItems);
}

static int IsMember(const char* members, const char* name) {
  size_t length = strlen(name);
  const char* at = members;
  while (at && *at) {
    if (strncmp(at, name, length) == 0 && (at[length] == ',' || at[length] == '\0'))
      return 1;
    at = strchr(at, ',');
    if (at)
      ++at;
  }
  return 0;
}

/* The primary group first, then the others in the order of /etc/group. */
static zelStatusCode AddGroups(zelIOHandle* io, const TGroups* groups, const char* name,
                               unsigned long gid) {
  zelCIMValueArray* names = NULL;
  int i;
  zelStatusCode status = zelNewCIMValueArray(&names);
  if (status != zelStatusOK)
    return status;
  for (i = 0; status == zelStatusOK && i < groups->fCount; ++i)
    if (groups->fItems[i].fGid == gid) {
      zelAddStringProperty(io, "PrimaryGroup", groups->fItems[i].fName);
      status = zelArrayAddString(names, groups->fItems[i].fName);
      break;
    }
  for (i = 0; status == zelStatusOK && i < groups->fCount; ++i)
    if (groups->fItems[i].fGid != gid && IsMember(groups->fItems[i].fMembers, name))
      status = zelArrayAddString(names, groups->fItems[i].fName);
  if (status == zelStatusOK)
    status = zelAddArrayProperty(io, "Groups", names);
  zelDeleteCIMValueArray(names);
  return status;
}

/* name:password:uid:gid:gecos:home:shell; the password field is never looked at. */
static zelStatusCode AddAccount(zelIOHandle* io, char* line, const TUidRange* range,
                                const TGroups* groups) {
  char* fields[7];
  char* at = line;
  unsigned long uid;
  unsigned long gid;
  zelStatusCode status;
  int i;
  for (i = 0; i < 7; ++i)
    fields[i] = strsep(&at, ":");
  if (!fields[6] || !fields[0][0] || fields[0][0] == '+' || fields[0][0] == '-')
    return zelStatusOK; /* malformed, or a NIS inclusion */
  uid = strtoul(fields[2], NULL, 10);
  gid = strtoul(fields[3], NULL, 10);
  status = ZelPluginOpenInstance(io, "KAPLA_Account", "Name", fields[0]);
  if (status != zelStatusOK)
    return status;
  zelAddUint32Property(io, "UserID", (uint32_t)uid);
  zelAddUint32Property(io, "GroupID", (uint32_t)gid);
  ZelPluginAddText(io, "HomeDirectory", fields[5]);
  ZelPluginAddText(io, "LoginShell", ZelPluginTrim(fields[6]));
  zelAddBooleanProperty(io, "SystemAccount",
                        !(uid >= range->fMin && uid <= range->fMax && uid > range->fSystemMax));
  status = AddGroups(io, groups, fields[0], gid);
  return status == zelStatusOK ? ZelPluginKeepPart(fields[0]) : status;
}

static zelStatusCode AddAccounts(zelIOHandle* io) {
  char* line = NULL;
  size_t capacity = 0;
  TUidRange range;
  TGroups groups;
  zelStatusCode status = zelStatusOK;
  FILE* file = ZelPluginFopen("/etc/passwd");
  if (!file)
    return zelStatusOK;
  range = ReadUidRange();
  ReadGroups(&groups);
  while (status == zelStatusOK && getline(&line, &capacity, file) != -1)
    status = AddAccount(io, line, &range, &groups);
  FreeGroups(&groups);
  free(line);
  fclose(file);
  return status;
}

static const ZelPluginLink kLink = {"KAPLA_AccountOnSystem", "GroupComponent", "PartComponent",
                                    "KAPLA_Account",         "Name",           1};

ZEL_LINKED_PLUGIN("Accounts", kLink, AddAccounts)
