// Files and directories on the real file system, with their exact status codes.
#include "helpers.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class FilesTest : public ZelTest {};

static mode_t ModeOf(std::string const& path) {
  struct stat status = {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

TEST_F(FilesTest, ExistenceSizeAndListing) {
  std::string file = WriteFile("five", "12345");
  EXPECT_TRUE(TOSSpecific::FileExists(file));
  EXPECT_FALSE(TOSSpecific::DirExists(file));
  EXPECT_TRUE(TOSSpecific::DirExists(fTempDir));
  EXPECT_FALSE(TOSSpecific::FileExists(fTempDir));
  EXPECT_FALSE(TOSSpecific::FileExists(TempPath("missing")));
  EXPECT_TRUE(TOSSpecific::FileExists("/dev/null")); // Whatever is not a directory.
  EXPECT_EQ(TOSSpecific::GetFileSize(file), 5);
  EXPECT_ZEL_THROW(TOSSpecific::GetFileSize(fTempDir), zelStatusFileNotFound);
  EXPECT_ZEL_THROW(TOSSpecific::GetFileSize(TempPath("missing")), zelStatusFileNotFound);

  ASSERT_EQ(::mkdir(TempPath("sub").c_str(), 0755), 0);
  EXPECT_THAT(TOSSpecific::ListDir(fTempDir), UnorderedElementsAre("five", "sub", "test.log"));
  EXPECT_THAT(TOSSpecific::ListDir(TempPath("sub")), IsEmpty());
  EXPECT_ZEL_THROW(TOSSpecific::ListDir(TempPath("missing")), zelStatusFileSystemError);
  EXPECT_ZEL_THROW(TOSSpecific::ListDir(file), zelStatusFileSystemError);
  EXPECT_THAT(LoggedLines(), IsEmpty());
}

TEST_F(FilesTest, CreateDir) {
  mode_t mask = ::umask(022);
  std::string dir = TempPath("made");
  EXPECT_EQ(TOSSpecific::CreateDir(dir), 0);
  EXPECT_EQ(ModeOf(dir), 0755u);
  ::umask(mask);
  EXPECT_ZEL_THROW(TOSSpecific::CreateDir(dir), zelStatusDirectoryAlreadyExists);
  // Parents are not created.
  EXPECT_ZEL_THROW(TOSSpecific::CreateDir(TempPath("no/such")), zelStatusFileSystemError);
  EXPECT_FALSE(TOSSpecific::DirExists(TempPath("no")));

  // Root passes permission checks: the child gives up its rights.
  ASSERT_EQ(::chmod(dir.c_str(), 0555), 0);
  ASSERT_EQ(::chmod(fTempDir.c_str(), 0755), 0);
  int code = AsNobody([&] {
    try {
      return TOSSpecific::CreateDir(dir + "/sub");
    } catch (TZELException const& e) {
      return static_cast<int>(e.GetCode());
    }
  });
  EXPECT_ZEL_STATUS(code, zelStatusAccessDenied);
}

TEST_F(FilesTest, FileCopyMakesANewFileOfTheSameContentsAndPermissions) {
  // Several 32 KiB chunks and a partial one, with every byte value.
  std::string contents;
  for (int i = 0; i < 100000; ++i)
    contents += static_cast<char>(i * 7);
  std::string source = WriteFile("source", contents);
  ASSERT_EQ(::chmod(source.c_str(), 0751), 0);
  mode_t mask = ::umask(022);
  TOSSpecific::FileCopy(source, TempPath("copy"));
  ::umask(mask);
  EXPECT_TRUE(TOSSpecific::CaptureFile(TempPath("copy")) == contents);
  EXPECT_EQ(ModeOf(TempPath("copy")), 0751u);

  std::string existing = WriteFile("existing", "old");
  EXPECT_ZEL_THROW(TOSSpecific::FileCopy(source, existing), zelStatusFileSystemError);
  EXPECT_EQ(TOSSpecific::CaptureFile(existing), "old");
  EXPECT_ZEL_THROW(TOSSpecific::FileCopy(TempPath("missing"), TempPath("never")),
                   zelStatusFileSystemError);
  EXPECT_FALSE(TOSSpecific::FileExists(TempPath("never")));
  // A directory opens but cannot be read: the copy fails after the destination was made.
  size_t before = OpenFdCount();
  EXPECT_ZEL_THROW(TOSSpecific::FileCopy(fTempDir, TempPath("from-dir")),
                   zelStatusFileSystemError);
  EXPECT_EQ(OpenFdCount(), before);
  EXPECT_THAT(LoggedLines(), IsEmpty());
}
