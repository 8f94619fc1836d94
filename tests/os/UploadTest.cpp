// FTP upload through the real libcurl, opened at run time. The upload server's name never
// resolves, so every upload here ends before any data leaves the machine.
#include "helpers.h"

#include <gmock/gmock.h>

#include <sys/wait.h>

using ::testing::HasSubstr;

class UploadTest : public ZelTest {};

// Runs with libcurl hidden by the audit module.
ZEL_OS_CHILD_TEST(UploadWithoutCurl) {
  std::string file = WriteFile("result.xml.gz", "data");
  EXPECT_ZEL_THROW(TOSSpecific::FTPFile(file, "result"), zelStatusLibCurlFailure);
  EXPECT_LOGGED("ZEL_Core: [Error] TOSSpecific|FTPFile: Error opening curl library: "
                "libcurl.so: cannot open shared object file: No such file or directory");
  // The rest of the core goes on working.
  EXPECT_EQ(TOSSpecific::CaptureFile(file), "data");
}

TEST_F(UploadTest, MissingLocalFileFailsBeforeAnyTransfer) {
  EXPECT_ZEL_THROW(TOSSpecific::FTPFile(TempPath("missing.xml.gz"), "result"),
                   zelStatusFileSystemError);
  EXPECT_LOGGED("ZEL_Core: [Error] TOSSpecific|FTPFile: Error getting file size");
  EXPECT_NOT_LOGGED("ZEL_Core: [Error] TOSSpecific|FTPFile: Error connecting to Tarvo Service");
}

TEST_F(UploadTest, UnreachableServerIsAConnectionFailure) {
  std::string file = WriteFile("result.xml.gz", "data");
  size_t before = OpenFdCount();
  EXPECT_ZEL_THROW(TOSSpecific::FTPFile(file, "result"), zelStatusConnectionFailed);
  EXPECT_EQ(LoggedLines(), std::vector<std::string>{
                               "ZEL_Core: [Error] TOSSpecific|FTPFile: Error connecting to "
                               "Tarvo Service"});
  EXPECT_EQ(OpenFdCount(), before) << "the file or the library's descriptors stayed open";
}

TEST_F(UploadTest, WithoutLibcurlTheUploadFailsAlone) {
  ScopedEnv hideCurl("LD_AUDIT", ZEL_OS_HIDE_CURL);
  std::string output;
  int status = RunChildTest("UploadWithoutCurl", output);
  EXPECT_EQ(status, 0) << output;
  EXPECT_THAT(output, HasSubstr("[       OK ] OsChild.UploadWithoutCurl"));
}
