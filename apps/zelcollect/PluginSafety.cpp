// Plugin discovery and the ownership and mode checks made before anything is loaded.
#include "PluginSafety.h"

#include "Errors.h"

#include "TOSSpecific.h"
#include "TZELException.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <dirent.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zelcollect {

static std::string Join(const std::string& directory, const std::string& name) {
  return !directory.empty() && directory.back() == '/' ? directory + name
                                                       : directory + "/" + name;
}

// Entry names of a directory in name order; false when it cannot be read.
static bool ListNames(const std::string& directory, std::vector<std::string>& names) {
  DIR* dir = opendir(directory.c_str());
  if (!dir)
    return false;
  while (dirent* entry = readdir(dir))
    if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
      names.push_back(entry->d_name);
  closedir(dir);
  std::sort(names.begin(), names.end());
  return true;
}

static bool IsKind(const std::string& path, mode_t kind) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && (status.st_mode & S_IFMT) == kind;
}

std::vector<TPluginLibrary> FindPluginLibraries(const std::string& directory) {
  std::vector<std::string> subdirectories;
  if (!ListNames(directory, subdirectories))
    throw TSetUpError("cannot use plugin directory " + directory + ": " + std::strerror(errno));
  std::vector<TPluginLibrary> libraries;
  for (const std::string& subdirectory : subdirectories) {
    std::vector<std::string> files;
    if (!IsKind(Join(directory, subdirectory), S_IFDIR) ||
        !ListNames(Join(directory, subdirectory), files))
      continue;
    for (const std::string& file : files) {
      std::string inside = subdirectory + "/" + file;
      // The core's own test: the extension anywhere in the name.
      if (file.find(TOSSpecific::kPluginExtension) == std::string::npos ||
          !IsKind(Join(directory, inside), S_IFREG))
        continue;
      TPluginLibrary library;
      library.fDirectory = directory;
      library.fLoadPath = "./" + inside;
      library.fPath = Join(directory, inside);
      try {
        library.fDocument = Join(directory, TOSSpecific::BuildSpecificationPath(
                                                library.fLoadPath).substr(2));
      } catch (TZELException&) {
        library.fDocument.clear(); // no document can be derived; the core says so on loading
      }
      libraries.push_back(library);
    }
  }
  return libraries;
}

static bool Trusted(uid_t owner) { return owner == 0 || owner == geteuid(); }

static std::string Owner(uid_t owner) {
  if (passwd* user = getpwuid(owner))
    return std::string("user ") + user->pw_name;
  return "uid " + std::to_string(owner);
}

std::string UnsafeReason(const std::string& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0)
    return errno == ENOENT ? "" : path + ": " + std::strerror(errno);
  if (S_ISLNK(status.st_mode)) {
    if (!Trusted(status.st_uid))
      return "symbolic link " + path + " is owned by " + Owner(status.st_uid);
    if (stat(path.c_str(), &status) != 0)
      return errno == ENOENT ? "" : path + ": " + std::strerror(errno);
  }
  std::string what = (S_ISDIR(status.st_mode) ? "directory " : "file ") + path;
  if (!Trusted(status.st_uid))
    return what + " is owned by " + Owner(status.st_uid);
  if (status.st_mode & S_IWOTH)
    return what + " is writable by others";
  if (status.st_mode & S_IWGRP)
    return what + " is writable by group";
  return "";
}

std::string UnsafeReason(const TPluginLibrary& library) {
  std::string subdirectory = library.fPath.substr(0, library.fPath.rfind('/'));
  for (const std::string& path :
       {library.fDirectory, subdirectory, library.fPath, library.fDocument}) {
    std::string reason = path.empty() ? "" : UnsafeReason(path);
    if (!reason.empty())
      return reason;
  }
  return "";
}

} // namespace zelcollect
