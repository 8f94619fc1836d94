// Writing and reading result files, and creating files no other user can redirect.
#include "ResultFile.h"

#include "Errors.h"
#include "Options.h"

#include "TCIMXMLWriter.h"
#include "TContainer.h"
#include "TZELException.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace fs = std::filesystem;

namespace zelcollect {

TFileSafety TFileSafety::From(const TOptions& options) {
  TFileSafety safety;
  safety.fFollowSymlinks = options.fFollowSymlinks;
  return safety;
}

static std::string Reason(int error) { return std::strerror(error); }

static const char kLinkRefused[] =
    "it is a symbolic link (--follow-symlinks writes through it)";

// The file that writing to path replaces: path itself, or where its link leads when links
// are followed. Throws the reason when path is a link that must not be followed.
static std::string Target(const std::string& path, const TFileSafety& safety,
                          const std::string& what) {
  struct stat link;
  if (lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode))
    return path;
  if (!safety.fFollowSymlinks)
    throw TSetUpError(what + path + ": " + kLinkRefused);
  std::error_code error;
  fs::path target = fs::weakly_canonical(path, error);
  if (error)
    throw TSetUpError(what + path + ": " + error.message());
  return target.string();
}

static std::string Directory(const std::string& path) {
  fs::path parent = fs::path(path).parent_path();
  return parent.empty() ? "." : parent.string();
}

// A new file beside path, O_CREAT|O_EXCL|O_NOFOLLOW, mode 0600 whatever the umask.
static int CreateTemporary(const std::string& path, std::string& name) {
  static const char kLetters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  std::string prefix = Directory(path) + "/." + fs::path(path).filename().string() + ".";
  for (int attempt = 0; attempt < 100; ++attempt) {
    unsigned char random[8];
    if (getrandom(random, sizeof random, 0) != sizeof random)
      return -1;
    name = prefix;
    for (unsigned char byte : random)
      name += kLetters[byte % (sizeof kLetters - 1)];
    int fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd >= 0 || errno != EEXIST)
      return fd;
  }
  return -1;
}

static bool WriteAll(int fd, const char* data, size_t size) {
  while (size > 0) {
    ssize_t written = write(fd, data, size);
    if (written < 0 && errno == EINTR)
      continue;
    if (written <= 0)
      return false;
    data += written;
    size -= static_cast<size_t>(written);
  }
  return true;
}

static std::string Gzip(const std::string& contents) {
  z_stream stream{};
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8,
                   Z_DEFAULT_STRATEGY) != Z_OK)
    throw std::bad_alloc();
  std::string packed(deflateBound(&stream, contents.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(contents.data()));
  stream.avail_in = static_cast<uInt>(contents.size());
  stream.next_out = reinterpret_cast<Bytef*>(&packed[0]);
  stream.avail_out = static_cast<uInt>(packed.size());
  int status = deflate(&stream, Z_FINISH);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  if (status != Z_STREAM_END)
    throw std::bad_alloc();
  return packed;
}

void CheckWritable(const std::string& path, const TFileSafety& safety) {
  std::string target = Target(path, safety, "cannot write ");
  struct stat status;
  if (stat(target.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
    throw TSetUpError("cannot write " + path + ": " + Reason(EISDIR));
  std::string probe;
  int fd = CreateTemporary(target, probe);
  if (fd < 0)
    throw TSetUpError("cannot write " + path + ": " + Reason(errno));
  close(fd);
  unlink(probe.c_str());
}

void WriteFileSafely(const std::string& path, const std::string& contents, bool gzip,
                     const TFileSafety& safety) {
  std::string target = Target(path, safety, "cannot write ");
  std::string temporary;
  int fd = CreateTemporary(target, temporary);
  if (fd < 0)
    throw TSetUpError("cannot write " + path + ": " + Reason(errno));
  struct stat existing;
  bool replaces = stat(target.c_str(), &existing) == 0;
  // An existing file keeps its mode and owner; a new one gets the safety's mode.
  int error = fchmod(fd, replaces ? existing.st_mode & 07777 : safety.fNewMode) == 0 ? 0 : errno;
  if (!error && replaces && (existing.st_uid != geteuid() || existing.st_gid != getegid()))
    (void)!fchown(fd, existing.st_uid, existing.st_gid); // only root can; others own the copy
  if (!error) {
    const std::string& bytes = gzip ? Gzip(contents) : contents;
    if (!WriteAll(fd, bytes.data(), bytes.size()) || fdatasync(fd) != 0)
      error = errno;
  }
  if (close(fd) != 0 && !error)
    error = errno;
  if (!error && rename(temporary.c_str(), target.c_str()) != 0)
    error = errno;
  if (error) {
    unlink(temporary.c_str());
    throw TSetUpError("cannot write " + path + ": " + Reason(error));
  }
}

int OpenLogFile(const std::string& path, const TFileSafety& safety) {
  std::string target = Target(path, safety, "cannot open log file ");
  int flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | (safety.fFollowSymlinks ? 0 : O_NOFOLLOW);
  int fd = open(target.c_str(), flags, safety.fNewMode);
  if (fd < 0)
    throw TSetUpError("cannot open log file " + path + ": " + Reason(errno));
  return fd;
}

void WriteResultFile(const std::string& path, TContainer& container,
                     const TFileSafety& safety) {
  WriteFileSafely(path, TCIMXMLWriter::Write(container, TCIMXMLWriter::eClassesWithInstances),
                  path.find(".gz") != std::string::npos, safety);
}

int WriteStandardOutput(const std::string& text) {
  if (WriteAll(STDOUT_FILENO, text.data(), text.size()))
    return kExitOK;
  std::cerr << "zelcollect: cannot write standard output: " << Reason(errno) << std::endl;
  return kExitTrouble;
}


void ReadResultFile(const std::string& path, TContainer& container) {
  try {
    container.PopulateContainerFromFile(path);
  } catch (TZELException& e) {
    throw TSetUpError("cannot read " + path + ": " + e.what());
  }
}

long FileSize(const std::string& path) {
  std::error_code error;
  std::uintmax_t size = fs::file_size(path, error);
  return error ? -1 : static_cast<long>(size);
}

} // namespace zelcollect
