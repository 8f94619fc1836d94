// TOSSpecific: FTP upload of a result file through libcurl, opened at run time so that the
// core loads and works where libcurl is missing.
#include "TOSSpecific.h"

#include "log/ZelLog.h"
#include "os/ZelUniqueFd.h"

#include <cstdio>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>

// The upload server's host name: a short name that each site points at its own collection
// server, through DNS or /etc/hosts.
static const char kUploadHost[] = "zelupload";
static const char kUploadDirectory[] = "pellar/totarvo/quorline/zel_upload/";

// libcurl's values, so that its headers are not needed.
static const long kCurlGlobalAll = 3;
static const int kCurlOptErrorBuffer = 10010;
static const int kCurlOptUpload = 46;
static const int kCurlOptUrl = 10002;
static const int kCurlOptReadData = 10009;
static const int kCurlCouldntResolveHost = 6;
static const int kCurlCouldntConnect = 7;
static const size_t kCurlErrorSize = 256;

namespace {

// Everything one upload holds, released in reverse order of acquisition on every path:
// easy handle, global state, stream, library.
struct ZelCurlUpload {
  ZelCurlUpload() = default;
  ZelCurlUpload(ZelCurlUpload const&) = delete;
  ZelCurlUpload& operator=(ZelCurlUpload const&) = delete;
  ~ZelCurlUpload() {
    if (fEasy)
      fEasyCleanup(fEasy);
    if (fGlobalInitialized)
      fGlobalCleanup();
    if (fStream)
      std::fclose(fStream);
    if (fLibrary)
      ::dlclose(fLibrary);
  }

  void* fLibrary = 0;
  int (*fGlobalInit)(long) = 0;
  void* (*fEasyInit)() = 0;
  int (*fEasySetopt)(void*, int, ...) = 0;
  int (*fEasyPerform)(void*) = 0;
  void (*fEasyCleanup)(void*) = 0;
  void (*fGlobalCleanup)() = 0;
  std::FILE* fStream = 0;
  bool fGlobalInitialized = false;
  void* fEasy = 0;
  char fError[kCurlErrorSize] = {};
};

} // namespace

// Looks one entry point up; the loader's error state decides, as a symbol may be null.
template <class Function>
static void LookUp(void* library, char const* name, Function*& function) {
  ::dlerror();
  function = reinterpret_cast<Function*>(::dlsym(library, name));
  if (char const* error = ::dlerror())
    ZelFail(zelStatusLibCurlFailure,
            std::string("TOSSpecific|FTPFile: Error loading curl library: ") + error);
}

static void CheckOption(int result, char const* message) {
  if (result != 0)
    ZelFail(zelStatusLibCurlFailure, message);
}

bool TOSSpecific::FTPFile(std::string localPath, std::string remoteName) {
  std::string target =
      std::string("ftp://") + kUploadHost + "/" + kUploadDirectory + remoteName + ".xml.gz";

  ZelCurlUpload upload;
  upload.fLibrary = ::dlopen("libcurl.so", RTLD_LAZY);
  if (!upload.fLibrary)
    ZelFail(zelStatusLibCurlFailure,
            std::string("TOSSpecific|FTPFile: Error opening curl library: ") + ::dlerror());
  LookUp(upload.fLibrary, "curl_global_init", upload.fGlobalInit);
  LookUp(upload.fLibrary, "curl_easy_init", upload.fEasyInit);
  LookUp(upload.fLibrary, "curl_easy_setopt", upload.fEasySetopt);
  LookUp(upload.fLibrary, "curl_easy_perform", upload.fEasyPerform);
  LookUp(upload.fLibrary, "curl_easy_cleanup", upload.fEasyCleanup);
  LookUp(upload.fLibrary, "curl_global_cleanup", upload.fGlobalCleanup);

  // The size is read but not passed on: the server takes the stream to its end.
  ZelUniqueFd file(::open(localPath.c_str(), O_RDONLY));
  struct stat status;
  if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0)
    ZelFail(zelStatusFileSystemError, "TOSSpecific|FTPFile: Error getting file size");
  upload.fStream = ::fdopen(file.Get(), "rb");
  if (!upload.fStream)
    ZelFail(zelStatusFileSystemError, "TOSSpecific|FTPFile: Error creating file stream");
  file.Release();

  upload.fGlobalInit(kCurlGlobalAll);
  upload.fGlobalInitialized = true;
  upload.fEasy = upload.fEasyInit();
  if (!upload.fEasy)
    ZelFail(zelStatusLibCurlFailure, "TOSSpecific|FTPFile: Error initalizing curl");

  CheckOption(upload.fEasySetopt(upload.fEasy, kCurlOptErrorBuffer, upload.fError),
              "TOSSpecific|FTPFile: Error configuring curl error buffer");
  CheckOption(upload.fEasySetopt(upload.fEasy, kCurlOptUpload, 1L),
              "TOSSpecific|FTPFile: Error setting curl upload");
  CheckOption(upload.fEasySetopt(upload.fEasy, kCurlOptUrl, target.c_str()),
              "TOSSpecific|FTPFile: Error setting curl target");
  CheckOption(upload.fEasySetopt(upload.fEasy, kCurlOptReadData, upload.fStream),
              "TOSSpecific|FTPFile: Error setting curl upload file");

  int result = upload.fEasyPerform(upload.fEasy);
  if (result == kCurlCouldntResolveHost || result == kCurlCouldntConnect)
    ZelFail(zelStatusConnectionFailed, "TOSSpecific|FTPFile: Error connecting to Tarvo Service");
  if (result != 0)
    ZelFail(zelStatusLibCurlFailure,
            std::string("TOSSpecific|FTPFile: Error performing upload command: ") + upload.fError);
  return true;
}
