// Uploads through the library's FTP transfer; the reason of a failure comes from the line
// the library logged.
#include "Upload.h"

#include "Errors.h"
#include "Inventory.h"

#include "ILogger.h"
#include "TCIMDateTime.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMSchemaHelper.h"
#include "TCIMXMLWriter.h"
#include "TContainer.h"
#include "TLogger.h"
#include "TOSSpecific.h"
#include "TZELException.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include <unistd.h>
#include <zlib.h>

namespace zelcollect {

static const char kServer[] = "zelupload";

const std::string& CheckUploadName(const std::string& name) {
  if (name.empty() || name.find('/') != std::string::npos || name[0] == '.')
    throw TUsageError("the upload name '" + name +
                      "' cannot name a file (it is empty, holds a '/' or starts with '.')");
  return name;
}

// The collection time of the computer system, or now.
static TCIMDateTime CollectionTime(TContainer& inventory) {
  try {
    TCIMInstance* system = SingleInstance(inventory, TCIMSchemaHelper::kSystemCreationClassName);
    TCIMProperty* stamp = system ? system->FindProperty("DateTimeOfCollection") : nullptr;
    if (stamp && !stamp->GetValue().IsNull())
      return stamp->GetValue();
  } catch (TZELException&) {
  }
  return TOSSpecific::GetLocalTime();
}

std::string DefaultUploadName(TContainer& inventory) {
  std::string host;
  try {
    host = TCIMSchemaHelper::GetSystemName(&inventory);
  } catch (TZELException&) {
  }
  if (host.empty())
    host = "unknown";
  for (char& c : host)
    if (!isalnum(static_cast<unsigned char>(c)) && c != '.' && c != '_' && c != '-')
      c = '-';
  TCIMDateTime time = CollectionTime(inventory);
  char stamp[32];
  snprintf(stamp, sizeof stamp, "-%04u%02u%02uT%02u%02u%02u", time.GetYear(), time.GetMonth(),
           time.GetDay(), time.GetHour(), time.GetMinute(), time.GetSecond());
  return host + stamp;
}

// A gzip copy of some bytes in a temporary file, removed when the copy goes.
namespace {
class TTemporaryGzip {
public:
  explicit TTemporaryGzip(const std::string& bytes) {
    const char* directory = getenv("TMPDIR");
    fPath = std::string(directory && *directory ? directory : "/tmp") +
            "/zelcollect-upload.XXXXXX";
    int fd = mkstemp(&fPath[0]);
    if (fd < 0)
      throw TSetUpError("cannot upload: cannot create a temporary file in " +
                        fPath.substr(0, fPath.rfind('/')) + ": " + strerror(errno));
    gzFile out = gzdopen(fd, "wb");
    bool written = out && gzwrite(out, bytes.data(), static_cast<unsigned>(bytes.size())) ==
                              static_cast<int>(bytes.size());
    if (!out)
      close(fd);
    if (gzclose(out) != Z_OK || !written) {
      unlink(fPath.c_str());
      throw TSetUpError("cannot upload: cannot write the temporary file " + fPath);
    }
  }
  ~TTemporaryGzip() { unlink(fPath.c_str()); }
  const std::string& GetPath() const { return fPath; }

private:
  std::string fPath;
};
} // namespace

static bool IsGzip(const std::string& path) {
  unsigned char magic[2] = {0, 0};
  std::ifstream in(path.c_str(), std::ios::binary);
  in.read(reinterpret_cast<char*>(magic), 2);
  return magic[0] == 0x1f && magic[1] == 0x8b;
}

// The text the library logged for the failed transfer, without its source prefix.
static std::string LoggedReason(size_t mark) {
  static const std::string kPrefix = "TOSSpecific|FTPFile: ";
  std::string reason;
  size_t index = 0;
  for (const ILogger::TLogEntry& entry : TLogger::GetInstance()->GetLog())
    if (index++ >= mark && !entry.fPlugin && entry.fText.compare(0, kPrefix.size(), kPrefix) == 0)
      reason = entry.fText.substr(kPrefix.size());
  return reason;
}

// Sends a gzip file; what = the file named in messages.
static void Send(const std::string& gzipPath, const std::string& what, const std::string& name) {
  size_t mark = TLogger::GetInstance()->GetLog().size();
  try {
    TOSSpecific::FTPFile(gzipPath, name);
  } catch (TZELException& e) {
    std::string detail = LoggedReason(mark);
    std::string reason;
    switch (e.GetCode()) {
    case zelStatusConnectionFailed:
      reason = std::string("the server ") + kServer + " cannot be reached";
      break;
    case zelStatusFileSystemError:
      reason = "the file cannot be read";
      break;
    default:
      reason = detail.find("curl library") != std::string::npos
                   ? "the transfer library libcurl cannot be loaded"
                   : std::string("the server ") + kServer + " refused the transfer";
    }
    throw TSetUpError("cannot upload " + what + ": " + reason + " (" +
                      (detail.empty() ? e.what() : detail) + ")");
  }
}

void UploadResultFile(const std::string& path, const std::string& name) {
  if (IsGzip(path))
    return Send(path, path, name);
  std::ifstream in(path.c_str(), std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  if (!in)
    throw TSetUpError("cannot upload " + path + ": " + strerror(errno));
  TTemporaryGzip copy(bytes.str());
  Send(copy.GetPath(), path, name);
}

void UploadInventory(TContainer& inventory, const std::string& name) {
  TTemporaryGzip copy(TCIMXMLWriter::Write(inventory, TCIMXMLWriter::eClassesWithInstances));
  Send(copy.GetPath(), "the inventory", name);
}

} // namespace zelcollect
