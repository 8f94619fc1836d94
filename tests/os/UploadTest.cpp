// FTP upload through the real libcurl, opened at run time. The upload server's name never
// resolves, so every upload here ends before any data leaves the machine.
#include "helpers.h"

#include <gmock/gmock.h>

#include <climits>

using ::testing::HasSubstr;

class UploadTest : public ZelTest {};

// Registered only in the child that WithoutLibcurlTheUploadFailsAlone starts with libcurl
// hidden by the audit module, so a normal run never sees it.
class UploadWithoutCurl : public ZelTest {
  void TestBody() override {
    std::string file = WriteFile("result.xml.gz", "data");
    EXPECT_ZEL_THROW(TOSSpecific::FTPFile(file, "result"), zelStatusLibCurlFailure);
    EXPECT_LOGGED("ZEL_Core: [Error] TOSSpecific|FTPFile: Error opening curl library: "
                  "libcurl.so: cannot open shared object file: No such file or directory");
    EXPECT_EQ(TOSSpecific::CaptureFile(file), "data"); // The rest of the core goes on working.
  }
};
[[maybe_unused]] static bool const kChildRegistered =
    std::getenv("ZEL_OS_CHILD") &&
    ::testing::RegisterTest("OsChild", "UploadWithoutCurl", nullptr, nullptr, __FILE__, __LINE__,
                            []() -> ZelTest* { return new UploadWithoutCurl; });

TEST_F(UploadTest, AMissingFileFailsBeforeAnyTransferAnUnreachableServerOnConnecting) {
  EXPECT_ZEL_THROW(TOSSpecific::FTPFile(TempPath("missing.xml.gz"), "result"),
                   zelStatusFileSystemError);
  std::string file = WriteFile("result.xml.gz", "data");
  size_t before = OpenFdCount();
  EXPECT_ZEL_THROW(TOSSpecific::FTPFile(file, "result"), zelStatusConnectionFailed);
  EXPECT_EQ(OpenFdCount(), before) << "the file or the library's descriptors stayed open";
  EXPECT_EQ(LoggedLines(), (std::vector<std::string>{
                               "ZEL_Core: [Error] TOSSpecific|FTPFile: Error getting file size",
                               "ZEL_Core: [Error] TOSSpecific|FTPFile: Error connecting to "
                               "Tarvo Service"}));
}

TEST_F(UploadTest, WithoutLibcurlTheUploadFailsAlone) {
  char self[PATH_MAX] = {};
  ASSERT_GT(::readlink("/proc/self/exe", self, sizeof self - 1), 0);
  std::string output;
  int status = TOSSpecific::SpawnProcess(
      "env",
      {"ZEL_OS_CHILD=1", std::string("LD_AUDIT=") + ZEL_OS_HIDE_CURL, self,
       "--gtest_filter=OsChild.UploadWithoutCurl"},
      output);
  EXPECT_EQ(status, 0) << output;
  EXPECT_THAT(output, HasSubstr("[       OK ] OsChild.UploadWithoutCurl"));
}
