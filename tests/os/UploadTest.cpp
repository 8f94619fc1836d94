// FTP upload through the real libcurl, opened at run time. Transfers go only to a real FTP
// server inside a private network namespace where "zelupload" names loopback
// (tests/ftp/ftp_site.sh); nothing here reaches another host.
#include "helpers.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

using ::testing::HasSubstr;
using ::testing::StartsWith;

class UploadTest : public ZelTest {
protected:
  // Runs one OsChild test of this binary through env, with the environment given.
  std::string const fSelf = std::filesystem::read_symlink("/proc/self/exe");
};

// The children: registered only when a parent test starts this binary with ZEL_OS_CHILD, so a
// normal run never sees them.
class UploadWithoutCurl : public ZelTest {
  void TestBody() override {
    std::string file = WriteFile("result.xml.gz", "data");
    EXPECT_ZEL_THROW(TOSSpecific::FTPFile(file, "result"), zelStatusLibCurlFailure);
    EXPECT_LOGGED("ZEL_Core: [Error] TOSSpecific|FTPFile: Error opening curl library: "
                  "libcurl.so: cannot open shared object file: No such file or directory");
    EXPECT_EQ(TOSSpecific::CaptureFile(file), "data"); // The rest of the core goes on working.
  }
};

// One upload to the namespace's server; ZEL_UPLOAD_CASE says what the server does.
class UploadToSite : public ZelTest {
  void TestBody() override {
    std::string upload = std::getenv("ZEL_UPLOAD_CASE");
    std::string file = WriteFile("result.xml.gz", std::string("\x1f\x8b\0\xff result", 10));
    size_t before = OpenFdCount();
    if (upload == "stored") {
      EXPECT_TRUE(TOSSpecific::FTPFile(file, "host-20261123T101500"));
      EXPECT_TRUE(LoggedLines().empty());
    } else if (upload == "no server") {
      EXPECT_ZEL_THROW(TOSSpecific::FTPFile(file, "result"), zelStatusConnectionFailed);
      EXPECT_EQ(LoggedLines(), (std::vector<std::string>{
                                   "ZEL_Core: [Error] TOSSpecific|FTPFile: Error connecting to "
                                   "Tarvo Service"}));
    } else { // the login or the directory refused
      EXPECT_ZEL_THROW(TOSSpecific::FTPFile(file, "result"), zelStatusLibCurlFailure);
      ASSERT_EQ(LoggedLines().size(), 1u);
      EXPECT_THAT(LoggedLines()[0], StartsWith("ZEL_Core: [Error] TOSSpecific|FTPFile: Error "
                                               "performing upload command: "));
      EXPECT_THAT(LoggedLines()[0], HasSubstr(std::getenv("ZEL_UPLOAD_REASON")));
    }
    EXPECT_EQ(OpenFdCount(), before) << "the file or the library's descriptors stayed open";
  }
};

[[maybe_unused]] static bool const kChildRegistered =
    std::getenv("ZEL_OS_CHILD") &&
    ::testing::RegisterTest("OsChild", "UploadWithoutCurl", nullptr, nullptr, __FILE__, __LINE__,
                            []() -> ZelTest* { return new UploadWithoutCurl; }) &&
    ::testing::RegisterTest("OsChild", "UploadToSite", nullptr, nullptr, __FILE__, __LINE__,
                            []() -> ZelTest* { return new UploadToSite; });

TEST_F(UploadTest, AMissingFileFailsBeforeAnyTransfer) {
  EXPECT_ZEL_THROW(TOSSpecific::FTPFile(TempPath("missing.xml.gz"), "result"),
                   zelStatusFileSystemError);
  EXPECT_EQ(LoggedLines(), (std::vector<std::string>{
                               "ZEL_Core: [Error] TOSSpecific|FTPFile: Error getting file size"}));
}

TEST_F(UploadTest, ToARealServerOnlyAStoredFileSucceeds) {
  const std::string kDirectory = "/pellar/totarvo/quorline/zel_upload/";
  const struct {
    const char* fCase;
    const char* fServer; // ftpserver.py's mode
    bool fDirectory;     // the upload directory exists on the server
    const char* fReason; // in the curl error text
  } kRows[] = {
      {"stored", "open", true, ""},
      {"login refused", "no-login", true, "Access denied: 530"},
      {"directory refused", "open", false, "Server denied you to change to the given directory"},
      {"write refused", "read-only", true, "550"},
      {"no server", "none", true, ""},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fCase);
    std::string root = TempPath(std::string("site-") + row.fServer + (row.fDirectory ? "" : "-bare"));
    if (row.fDirectory) {
      ASSERT_TRUE(std::filesystem::create_directories(root + kDirectory));
    }
    std::string output;
    int status = TOSSpecific::SpawnProcess(
        "env", {"ZEL_OS_CHILD=1", std::string("ZEL_UPLOAD_CASE=") + row.fCase,
                std::string("ZEL_UPLOAD_REASON=") + row.fReason, "bash", ZEL_FTP_SITE, row.fServer,
                root, fSelf, "--gtest_filter=OsChild.UploadToSite"},
        output);
    if (status == 77 << 8) // A wait status: ftp_site.sh exits 77.
      GTEST_SKIP() << "no private network and mount namespace can be made here (unshare "
                      "--net --mount): the uploads to a real server were not tested";
    EXPECT_EQ(status, 0) << output;
    EXPECT_THAT(output, HasSubstr("[       OK ] OsChild.UploadToSite")) << output;
    if (std::string(row.fCase) == "stored") {
      EXPECT_EQ(TOSSpecific::CaptureFile(root + kDirectory + "host-20261123T101500.xml.gz"),
                std::string("\x1f\x8b\0\xff result", 10));
    }
  }
}

TEST_F(UploadTest, WithoutLibcurlTheUploadFailsAlone) {
  std::string output;
  int status = TOSSpecific::SpawnProcess(
      "env", {"ZEL_OS_CHILD=1", std::string("LD_AUDIT=") + ZEL_OS_HIDE_CURL, fSelf,
              "--gtest_filter=OsChild.UploadWithoutCurl"}, output);
  EXPECT_EQ(status, 0) << output;
  EXPECT_THAT(output, HasSubstr("[       OK ] OsChild.UploadWithoutCurl"));
}
