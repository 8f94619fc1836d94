// Which plugin libraries there are, and whether only a trusted user could have placed them:
// plugins run with the collector's rights, which are usually root's.
#ifndef ZELCOLLECT_PLUGINSAFETY_H
#define ZELCOLLECT_PLUGINSAFETY_H

#include <string>
#include <vector>

namespace zelcollect {

/// One plugin library as the core finds it: a *.pi.so file one level below a plugin
/// directory.
struct TPluginLibrary {
  std::string fDirectory; ///< the plugin directory, as given
  std::string fLoadPath;  ///< "./SUB/FILE", loaded from inside fDirectory
  std::string fPath;      ///< fDirectory/SUB/FILE, for messages
  std::string fDocument;  ///< its specification document, for messages
};

/// The libraries of a plugin directory, in name order. Throws TSetUpError when the
/// directory cannot be read.
std::vector<TPluginLibrary> FindPluginLibraries(const std::string& directory);

/// Why a file or directory could have been written by an untrusted user: owned by someone
/// other than root and the effective user, writable by group or others (sticky bit or
/// not), or reached through a symbolic link owned by someone else. Empty when it is safe.
/// A missing file is safe: loading it fails on its own.
std::string UnsafeReason(const std::string& path);

/// The first reason found on the plugin directory, the library's directory, the library
/// and its specification document; empty when all four are safe.
std::string UnsafeReason(const TPluginLibrary& library);

} // namespace zelcollect

#endif
