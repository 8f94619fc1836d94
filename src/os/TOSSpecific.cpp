// TOSSpecific: plugin discovery, library loading, files and directories, time and identity.
#include "TOSSpecific.h"

#include "log/ZelLog.h"
#include "os/ZelRetryOnSignal.h"
#include "os/ZelUniqueFd.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

const std::string TOSSpecific::kPluginExtension = ".pi.so";
const std::string TOSSpecific::kSpecificationExtension = ".properties.xml";
const std::string TOSSpecific::kFileSeparator = "/";

namespace {

struct ZelDirCloser {
  void operator()(DIR* dir) const { ::closedir(dir); }
};

} // namespace

// Entry names of a directory in listing order, without "." and "..".
static std::vector<std::string> ReadEntryNames(std::string const& directory) {
  std::unique_ptr<DIR, ZelDirCloser> dir(::opendir(directory.c_str()));
  if (!dir)
    throw TZELException(zelStatusFileSystemError);
  std::vector<std::string> names;
  while (struct dirent* entry = ::readdir(dir.get())) {
    if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
      names.push_back(entry->d_name);
  }
  return names;
}

std::vector<std::string> TOSSpecific::FindPlugins(std::string directory) {
  std::vector<std::string> plugins;
  for (std::string const& name : ReadEntryNames(directory)) {
    struct stat status;
    // The bare name on purpose: the search is meant to run from inside the plugin directory.
    if (::stat(name.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
      continue;
    std::string subdirectory = directory + kFileSeparator + name;
    for (std::string const& file : ReadEntryNames(subdirectory)) {
      // A substring test on purpose: libx.pi.so.bak is listed too.
      if (file.find(kPluginExtension) != std::string::npos)
        plugins.push_back(subdirectory + kFileSeparator + file);
    }
  }
  return plugins;
}

void* TOSSpecific::LoadPluginLibrary(std::string path) {
  void* handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
  if (!handle)
    ZelFail(zelStatusFileSystemError,
            std::string("ERROR: Failed to load plugin.  Reason: ") + ::dlerror());
  return handle;
}

std::string TOSSpecific::BuildSpecificationPath(std::string path) {
  std::string::size_type extension = path.find(kPluginExtension);
  if (extension == std::string::npos)
    throw TZELException(zelStatusFail);
  // Searched in the whole path on purpose: /usr/lib/p/libx.pi.so gives /usr//p/libx...
  std::string::size_type lib = path.find("lib");
  if (lib == std::string::npos)
    throw TZELException(zelStatusFail);
  std::string base = path.substr(0, extension);
  if (lib < base.size()) // a "lib" only after the extension removes nothing
    base.erase(lib, 3);
  return base + kSpecificationExtension;
}

long TOSSpecific::GetFileSize(std::string path) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0 || S_ISDIR(status.st_mode))
    throw TZELException(zelStatusFileNotFound);
  return static_cast<long>(status.st_size);
}

int TOSSpecific::CreateDir(std::string path) {
  if (::mkdir(path.c_str(), 0777) == 0)
    return 0;
  switch (errno) {
  case EEXIST:
    throw TZELException(zelStatusDirectoryAlreadyExists);
  case EACCES:
  case EROFS:
    throw TZELException(zelStatusAccessDenied);
  default:
    throw TZELException(zelStatusFileSystemError);
  }
}

bool TOSSpecific::DirExists(std::string path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool TOSSpecific::FileExists(std::string path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

std::vector<std::string> TOSSpecific::ListDir(std::string directory) {
  return ReadEntryNames(directory);
}

void TOSSpecific::FileCopy(std::string source, std::string destination) {
  struct stat status;
  if (::stat(source.c_str(), &status) != 0)
    throw TZELException(zelStatusFileSystemError);
  ZelUniqueFd in(::open(source.c_str(), O_RDONLY));
  if (!in.IsOpen())
    throw TZELException(zelStatusFileSystemError);
  // O_EXCL: an existing destination is never overwritten.
  ZelUniqueFd out(::open(destination.c_str(), O_WRONLY | O_CREAT | O_EXCL,
                         status.st_mode & 07777));
  if (!out.IsOpen())
    throw TZELException(zelStatusFileSystemError);

  char buffer[32768];
  for (;;) {
    ssize_t got = ZelRetryOnSignal([&] { return ::read(in.Get(), buffer, sizeof buffer); });
    if (got < 0)
      throw TZELException(zelStatusFileSystemError);
    if (got == 0)
      return;
    for (ssize_t done = 0; done < got;) {
      ssize_t put =
          ZelRetryOnSignal([&] { return ::write(out.Get(), buffer + done, got - done); });
      if (put < 0)
        throw TZELException(zelStatusFileSystemError);
      done += put;
    }
  }
}

void TOSSpecific::OutputLogString(std::string) {}

TCIMDateTime TOSSpecific::GetLocalTime() {
  // Millisecond resolution, as ftime gave; glibc's ftime is deprecated and no longer fills
  // its zone fields, so the offset (minutes east of UTC, daylight saving included) comes
  // from the broken-down time.
  struct timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  struct tm local;
  localtime_r(&now.tv_sec, &local);
  int offset = static_cast<int>(local.tm_gmtoff / 60);
  unsigned int milliseconds = static_cast<unsigned int>(now.tv_nsec / 1000000);
  return TCIMDateTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                      local.tm_min, local.tm_sec, milliseconds * 1000u, offset);
}

std::string TOSSpecific::GetMachineName() {
  char name[64];
  if (::gethostname(name, sizeof name) != 0)
    throw TZELException(zelStatusFail);
  return std::string(name, ::strnlen(name, sizeof name));
}

std::string TOSSpecific::GetCurrentDir() {
  // 4096 is PATH_MAX, not a pathconf name: Linux rejects the query, and callers expect the
  // resulting zelStatusFail.
  long size = ::pathconf(".", /*name=*/4096);
  if (size <= 0)
    throw TZELException(zelStatusFail);
  std::unique_ptr<char[]> buffer(new char[size]);
  if (!::getcwd(buffer.get(), size))
    throw TZELException(zelStatusFail);
  return buffer.get();
}

std::string TOSSpecific::GetOperatingSystemName() {
  // The host name on purpose: callers use it as the same value as GetMachineName().
  return GetMachineName();
}

void TOSSpecific::USleep(unsigned int milliseconds) {
  // Milliseconds despite the name.
  ::usleep(static_cast<useconds_t>(milliseconds) * 1000u);
}

bool TOSSpecific::IsAdmin() { return ::getuid() == 0; }
