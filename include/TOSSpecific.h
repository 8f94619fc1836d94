// TOSSpecific: every call the core makes to the operating system, as static operations.
#ifndef TOSSPECIFIC_H
#define TOSSPECIFIC_H

#include "TCIMDateTime.h"
#include "zelcore.h"

#include <string>
#include <vector>

/// Failures throw TZELException after one core log line where one is documented.
class ZEL_API TOSSpecific {
public:
  static const std::string kPluginExtension;        ///< ".pi.so"
  static const std::string kSpecificationExtension; ///< ".properties.xml"
  static const std::string kFileSeparator;          ///< "/"

  /// Plugin libraries one level below directory. Subdirectories are tested by their bare
  /// names, relative to the current directory (call it from the plugin directory).
  static std::vector<std::string> FindPlugins(std::string directory);
  /// dlopen with RTLD_NOW | RTLD_GLOBAL; never closed. zelStatusFileSystemError on failure.
  static void* LoadPluginLibrary(std::string path);
  /// ".../libx.pi.so" -> ".../x.properties.xml"; zelStatusFail without ".pi.so" or "lib".
  static std::string BuildSpecificationPath(std::string path);
  /// zelStatusFileNotFound for a missing file or a directory.
  static long GetFileSize(std::string path);
  /// Returns 0; zelStatusDirectoryAlreadyExists, zelStatusAccessDenied or
  /// zelStatusFileSystemError. Parents are not created.
  static int CreateDir(std::string path);
  static bool DirExists(std::string path);
  /// True for anything whose status can be read and that is not a directory.
  static bool FileExists(std::string path);
  /// Entry names without "." and "..", in listing order.
  static std::vector<std::string> ListDir(std::string directory);
  /// The destination must not exist; zelStatusFileSystemError on any failure.
  static void FileCopy(std::string source, std::string destination);
  /// Does nothing on this platform.
  static void OutputLogString(std::string line);
  static TCIMDateTime GetLocalTime();
  static std::string GetMachineName();
  /// Throws zelStatusFail on Linux, where the size query is rejected; callers rely on it.
  static std::string GetCurrentDir();
  /// The host name, as GetMachineName().
  static std::string GetOperatingSystemName();
  /// Sleeps the given number of milliseconds.
  static void USleep(unsigned int milliseconds);
  /// Polls standard input (a terminal) without waiting.
  static bool IsKeyWaiting();
  /// Reads one character from standard input unbuffered; -1 at end of file.
  static int GetKeyboardChar();
  /// Reads fd to its end; the descriptor stays open.
  static std::string GetFileContents(int fd);
  /// Runs command found along PATH; returns the raw wait status (exit code in bits 8-15).
  static int SpawnProcess(std::string command);
  static int SpawnProcess(std::string command, std::vector<std::string> arguments);
  /// output receives standard output and standard error, interleaved.
  static int SpawnProcess(std::string command, std::vector<std::string> arguments,
                          std::string& output);
  /// zelStatusFileNotFound when the file cannot be opened.
  static std::string CaptureFile(std::string path);
  static bool IsAdmin();
  /// Uploads localPath as remoteName + ".xml.gz" over FTP; libcurl is opened at run time.
  static bool FTPFile(std::string localPath, std::string remoteName);

private:
  TOSSpecific();
};

#endif
