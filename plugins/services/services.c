/* The services plugin: the system services of systemd, and in the second pass their
 * association with the computer system. Descriptions and enabled states come from the unit
 * files; what only the running manager knows (load, active and sub state, main PID) from one
 * run of systemctl, on this machine only. Without systemd there is nothing. */
#include "zelplugin.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>

extern char** environ;

typedef struct TService {
  char fName[256];
  char fDescription[512];
  char fUnitFileState[32];
  char fLoadState[32];
  char fActiveState[32];
  char fSubState[64];
  unsigned long fMainPID;
} TService;

typedef struct TServices {
  TService* fItems;
  int fCount;
  int fCapacity;
} TServices;

static TService* FindService(TServices* services, const char* name) {
  int i;
  for (i = 0; i < services->fCount; ++i)
    if (strcmp(services->fItems[i].fName, name) == 0)
      return &services->fItems[i];
  return NULL;
}

/* The service of that name, added when new; NULL when out of memory. */
static TService* GetService(TServices* services, const char* name) {
  TService* found = FindService(services, name);
  TService* items;
  if (found)
    return found;
  items = (TService*)ZelPluginGrow(services->fItems, services->fCount, &services->fCapacity,
                                   sizeof *items, 64);
  if (!items)
    return NULL;
  services->fItems = items;
  found = &services->fItems[services->fCount++];
  memset(found, 0, sizeof *found);
  snprintf(found->fName, sizeof found->fName, "%s", name);
  return found;
}

/* The unit directories in systemd's order of precedence: the first file of a name wins.
 * Generated and transient units are states of their own. */
static const struct {
  const char* fPath;
  const char* fState;
} kUnitDirectories[] = {{"/etc/systemd/system", NULL},
                        {"/run/systemd/transient", "transient"},
                        {"/run/systemd/generator.early", "generated"},
                        {"/run/systemd/system", NULL},
                        {"/run/systemd/generator", "generated"},
                        {"/usr/local/lib/systemd/system", NULL},
                        {"/usr/lib/systemd/system", NULL},
                        {"/lib/systemd/system", NULL},
                        {"/run/systemd/generator.late", "generated"}};

/* The Description of [Unit] and whether an [Install] section says how to enable it. */
static void ReadUnitFile(const char* path, TService* service, int* installable) {
  char line[1024];
  char section[64] = "";
  FILE* file = ZelPluginFopen(path);
  *installable = 0;
  if (!file)
    return;
  while (fgets(line, sizeof line, file)) {
    char* name;
    char* value;
    char* text = ZelPluginTrim(ZelPluginSkipSpace(line));
    if (text[0] == '[') {
      snprintf(section, sizeof section, "%s", text);
      continue;
    }
    if (text[0] == '#' || text[0] == ';' || !ZelPluginSplitField(text, '=', &name, &value))
      continue;
    if (strcmp(section, "[Unit]") == 0 && strcmp(name, "Description") == 0)
      snprintf(service->fDescription, sizeof service->fDescription, "%s", value);
    else if (strcmp(section, "[Install]") == 0 &&
             (strcmp(name, "WantedBy") == 0 || strcmp(name, "RequiredBy") == 0 ||
              strcmp(name, "Alias") == 0 || strcmp(name, "Also") == 0))
      *installable = 1;
  }
  fclose(file);
}

/* A unit that a link of a .wants or .requires directory names: an enabled one. */
static zelStatusCode AddEnabled(void* context, const char* name) {
  ZelPluginNames* enabled = (ZelPluginNames*)context;
  if (name[0] == '.' || ZelPluginNamesHas(enabled, name))
    return zelStatusOK;
  return ZelPluginNamesAdd(enabled, name) ? zelStatusOK : zelStatusOutOfMemory;
}

static zelStatusCode ReadWanted(void* context, const char* name) {
  const char* dot = strrchr(name, '.');
  char path[PATH_MAX];
  if (!dot || (strcmp(dot, ".wants") != 0 && strcmp(dot, ".requires") != 0))
    return zelStatusOK;
  snprintf(path, sizeof path, "/etc/systemd/system/%s", name);
  return ZelPluginEachEntry(path, "", AddEnabled, context);
}

/* The units that some unit wants or requires through a link in /etc/systemd/system: the
 * enabled ones. */
static zelStatusCode ReadEnabled(ZelPluginNames* enabled) {
  return ZelPluginEachEntry("/etc/systemd/system", "", ReadWanted, enabled);
}

/* The unit files of one directory, walked in the order of precedence. */
typedef struct TUnitWalk {
  TServices* fServices;
  const ZelPluginNames* fEnabled;
  const char* fDirectory;
  const char* fState;
} TUnitWalk;

static int IsServiceFile(const char* name) {
  size_t length = strlen(name);
  return length > 8 && strcmp(name + length - 8, ".service") == 0 && name[length - 9] != '@';
}

/* One unit file: a service, masked, or an alias of another (skipped). */
static zelStatusCode AddUnitFile(void* context, const char* name) {
  const TUnitWalk* walk = (const TUnitWalk*)context;
  TServices* services = walk->fServices;
  char path[PATH_MAX];
  char target[PATH_MAX];
  const char* base;
  int linked;
  int installable = 0;
  TService* service;
  if (!IsServiceFile(name))
    return zelStatusOK;
  if (FindService(services, name))
    return zelStatusOK; /* a file of higher precedence gave it */
  snprintf(path, sizeof path, "%s/%s", walk->fDirectory, name);
  linked = ZelPluginReadLink(path, target, sizeof target);
  if (linked) {
    base = strrchr(target, '/');
    base = base ? base + 1 : target;
    if (strcmp(target, "/dev/null") != 0 && strcmp(base, name) != 0)
      return zelStatusOK; /* an alias: the service is listed under its own name */
  }
  service = GetService(services, name);
  if (!service)
    return zelStatusOutOfMemory;
  if (linked && strcmp(target, "/dev/null") == 0) {
    snprintf(service->fUnitFileState, sizeof service->fUnitFileState, "masked");
    return zelStatusOK;
  }
  if (linked && target[0] == '/') /* linked from elsewhere on the machine */
    snprintf(path, sizeof path, "%s", target);
  ReadUnitFile(path, service, &installable);
  snprintf(service->fUnitFileState, sizeof service->fUnitFileState, "%s",
           walk->fState                              ? walk->fState
           : ZelPluginNamesHas(walk->fEnabled, name) ? "enabled"
           : installable                             ? "disabled"
                                                     : "static");
  return zelStatusOK;
}

static zelStatusCode ReadUnitFiles(TServices* services) {
  ZelPluginNames enabled = {NULL, 0, 0};
  TUnitWalk walk = {services, &enabled, NULL, NULL};
  size_t i;
  zelStatusCode status = ReadEnabled(&enabled);
  for (i = 0; status == zelStatusOK && i < sizeof kUnitDirectories / sizeof *kUnitDirectories;
       ++i) {
    walk.fDirectory = kUnitDirectories[i].fPath;
    walk.fState = kUnitDirectories[i].fState;
    status = ZelPluginEachEntry(walk.fDirectory, "", AddUnitFile, &walk);
  }
  ZelPluginNamesClear(&enabled);
  return status;
}

/* The manager's view of its loaded services, as systemctl show prints it: blocks of
 * "Name=value" lines, one block per unit, Id first. */
static zelStatusCode ReadShowOutput(TServices* services, char* text) {
  TService* service = NULL;
  char* next = NULL;
  char* line;
  for (line = strtok_r(text, "\n", &next); line; line = strtok_r(NULL, "\n", &next)) {
    char* value = strchr(line, '=');
    if (!value)
      continue;
    *value++ = '\0';
    if (strcmp(line, "Id") == 0) {
      service = GetService(services, value);
      if (!service)
        return zelStatusOutOfMemory;
    } else if (!service) {
      continue;
    } else if (strcmp(line, "LoadState") == 0) {
      snprintf(service->fLoadState, sizeof service->fLoadState, "%s", value);
    } else if (strcmp(line, "ActiveState") == 0) {
      snprintf(service->fActiveState, sizeof service->fActiveState, "%s", value);
    } else if (strcmp(line, "SubState") == 0) {
      snprintf(service->fSubState, sizeof service->fSubState, "%s", value);
    } else if (strcmp(line, "MainPID") == 0) {
      service->fMainPID = strtoul(value, NULL, 10);
    } else if (strcmp(line, "Description") == 0 && !service->fDescription[0]) {
      snprintf(service->fDescription, sizeof service->fDescription, "%s", value);
    } else if (strcmp(line, "UnitFileState") == 0 && !service->fUnitFileState[0] && value[0]) {
      snprintf(service->fUnitFileState, sizeof service->fUnitFileState, "%s", value);
    }
  }
  return zelStatusOK;
}

enum { kMaxOutput = 8 << 20, kDeadlineMs = 2000 };

static long ElapsedMs(const struct timespec* start) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return (now.tv_sec - start->tv_sec) * 1000 + (now.tv_nsec - start->tv_nsec) / 1000000;
}

/* Runs systemctl with its output into a pipe, read up to a size and a deadline; a child
 * still running after that is killed. NULL when it could not run; the caller frees. */
static char* RunSystemctl(void) {
  static const char* const kPrograms[] = {"/usr/bin/systemctl", "/bin/systemctl"};
  char* argv[] = {NULL,
                  "show",
                  "--no-pager",
                  "--property=Id,Description,LoadState,ActiveState,SubState,UnitFileState,MainPID",
                  "--",
                  "*.service",
                  NULL};
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  struct timespec start;
  size_t used = 0;
  size_t i;
  int pipeFds[2];
  int waitStatus = 0;
  int complete = 0;
  pid_t child = -1;
  pid_t ended = 0;
  char* text;
  for (i = 0; i < sizeof kPrograms / sizeof *kPrograms && !argv[0]; ++i)
    if (access(kPrograms[i], X_OK) == 0)
      argv[0] = (char*)kPrograms[i];
  if (!argv[0] || pipe(pipeFds) != 0)
    return NULL;
  fcntl(pipeFds[0], F_SETFD, FD_CLOEXEC); /* neither end leaks into other children */
  fcntl(pipeFds[1], F_SETFD, FD_CLOEXEC);
  text = (char*)malloc(kMaxOutput + 1);
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP); /* killed as a group */
  posix_spawnattr_setpgroup(&attributes, 0);
  if (!text || posix_spawn(&child, argv[0], &actions, &attributes, argv, environ) != 0)
    child = -1;
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  close(pipeFds[1]);
  clock_gettime(CLOCK_MONOTONIC, &start);
  while (child > 0 && used < kMaxOutput && ElapsedMs(&start) < kDeadlineMs) {
    struct pollfd ready = {pipeFds[0], POLLIN, 0};
    ssize_t got;
    if (poll(&ready, 1, (int)(kDeadlineMs - ElapsedMs(&start))) <= 0)
      continue; /* interrupted, or the deadline: the loop's test decides */
    got = read(pipeFds[0], text + used, kMaxOutput - used);
    if (got == 0) {
      complete = 1;
      break;
    }
    if (got > 0)
      used += (size_t)got;
    else if (errno != EINTR)
      break;
  }
  close(pipeFds[0]);
  /* The output is whole: the child should end at once; give it what is left of the time. */
  while (child > 0 && complete && (ended = waitpid(child, &waitStatus, WNOHANG)) == 0 &&
         ElapsedMs(&start) < kDeadlineMs) {
    struct timespec pause = {0, 1000000};
    nanosleep(&pause, NULL);
  }
  if (child > 0 && ended != child) {
    kill(-child, SIGKILL); /* too slow or too much: its output is not trusted */
    waitpid(child, &waitStatus, 0);
    child = -1;
  }
  if (child <= 0 || !WIFEXITED(waitStatus) || WEXITSTATUS(waitStatus) != 0) {
    free(text);
    return NULL;
  }
  text[used] = '\0';
  return text;
}

static zelStatusCode AddService(zelIOHandle* io, const TService* service) {
  zelStatusCode status = ZelPluginOpenInstance(io, "KAPLA_Service", "Name", service->fName);
  if (status != zelStatusOK)
    return status;
  ZelPluginAddText(io, "Description", service->fDescription);
  ZelPluginAddText(io, "UnitFileState", service->fUnitFileState);
  ZelPluginAddText(io, "LoadState", service->fLoadState);
  ZelPluginAddText(io, "ActiveState", service->fActiveState);
  ZelPluginAddText(io, "SubState", service->fSubState);
  if (service->fMainPID > 0)
    zelAddUint32Property(io, "MainPID", (uint32_t)service->fMainPID);
  return ZelPluginKeepPart(service->fName);
}

static zelStatusCode AddServices(zelIOHandle* io) {
  TServices services = {NULL, 0, 0};
  struct stat info;
  char rooted[PATH_MAX];
  int i;
  zelStatusCode status;
  if (stat(ZelPluginPath("/run/systemd/system", rooted, sizeof rooted), &info) != 0 ||
      !S_ISDIR(info.st_mode))
    return zelStatusOK; /* systemd does not run */
  status = ReadUnitFiles(&services);
  if (status == zelStatusOK && strcmp(ZelPluginRoot(), "/") == 0) {
    char* shown = RunSystemctl();
    if (shown)
      status = ReadShowOutput(&services, shown);
    free(shown);
  }
  for (i = 0; status == zelStatusOK && i < services.fCount; ++i)
    status = AddService(io, &services.fItems[i]);
  free(services.fItems);
  return status;
}

static const ZelPluginLink kLink = {"KAPLA_HostedService", "Antecedent", "Dependent",
                                    "KAPLA_Service",       "Name",       1};

ZEL_LINKED_PLUGIN("Services", kLink, AddServices)
