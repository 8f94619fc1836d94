// Files and directories on the real file system, with their exact status codes.
#include "helpers.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include <sys/stat.h>
#include <sys/wait.h>

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class FilesTest : public ZelTest {
protected:
  static std::string ReadAll(std::string const& path) {
    std::ifstream in(path.c_str(), std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
  }
  static mode_t ModeOf(std::string const& path) {
    struct stat status;
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
  }
};

// Sets the file-creation mask for the scope, so created modes are predictable.
class ScopedUmask {
public:
  explicit ScopedUmask(mode_t mask) : fSaved(::umask(mask)) {}
  ~ScopedUmask() { ::umask(fSaved); }

private:
  mode_t fSaved;
};

TEST_F(FilesTest, ExistenceAndSize) {
  std::string file = WriteFile("five", "12345");
  EXPECT_TRUE(TOSSpecific::FileExists(file));
  EXPECT_FALSE(TOSSpecific::DirExists(file));
  EXPECT_TRUE(TOSSpecific::DirExists(fTempDir));
  EXPECT_FALSE(TOSSpecific::FileExists(fTempDir));
  EXPECT_FALSE(TOSSpecific::FileExists(TempPath("missing")));
  EXPECT_FALSE(TOSSpecific::DirExists(TempPath("missing")));
  // Anything that is not a directory counts as a file.
  EXPECT_TRUE(TOSSpecific::FileExists("/dev/null"));

  EXPECT_EQ(TOSSpecific::GetFileSize(file), 5);
  EXPECT_EQ(TOSSpecific::GetFileSize(WriteFile("empty", "")), 0);
  EXPECT_ZEL_THROW(TOSSpecific::GetFileSize(fTempDir), zelStatusFileNotFound);
  EXPECT_ZEL_THROW(TOSSpecific::GetFileSize(TempPath("missing")), zelStatusFileNotFound);
  EXPECT_THAT(LoggedLines(), IsEmpty());
}

TEST_F(FilesTest, CreateDir) {
  ScopedUmask mask(022);
  std::string dir = TempPath("made");
  EXPECT_EQ(TOSSpecific::CreateDir(dir), 0);
  EXPECT_TRUE(TOSSpecific::DirExists(dir));
  EXPECT_EQ(ModeOf(dir), 0755u);
  EXPECT_ZEL_THROW(TOSSpecific::CreateDir(dir), zelStatusDirectoryAlreadyExists);
  EXPECT_ZEL_THROW(TOSSpecific::CreateDir(WriteFile("plain", "")),
                   zelStatusDirectoryAlreadyExists);
  // Parents are not created.
  EXPECT_ZEL_THROW(TOSSpecific::CreateDir(TempPath("no/such")), zelStatusFileSystemError);
  EXPECT_FALSE(TOSSpecific::DirExists(TempPath("no")));
  EXPECT_THAT(LoggedLines(), IsEmpty());
}

TEST_F(FilesTest, CreateDirWithoutWritePermissionIsAccessDenied) {
  std::string locked = TempPath("locked");
  ASSERT_EQ(::mkdir(locked.c_str(), 0555), 0);
  ASSERT_EQ(::chmod(fTempDir.c_str(), 0755), 0);
  std::string target = locked + "/sub";
  if (::getuid() != 0) {
    EXPECT_ZEL_THROW(TOSSpecific::CreateDir(target), zelStatusAccessDenied);
    return;
  }
  // Root passes permission checks: try as nobody in a child, which reports the code.
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    int code = 100;
    if (::setgid(65534) == 0 && ::setuid(65534) == 0) {
      try {
        TOSSpecific::CreateDir(target);
        code = 0;
      } catch (TZELException const& e) {
        code = e.GetCode();
      }
    }
    ::_exit(code);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_ZEL_STATUS(WEXITSTATUS(status), zelStatusAccessDenied);
  EXPECT_FALSE(TOSSpecific::DirExists(target));
}

TEST_F(FilesTest, ListDir) {
  WriteFile("one", "");
  WriteFile("two", "");
  ASSERT_EQ(::mkdir(TempPath("sub").c_str(), 0755), 0);
  EXPECT_THAT(TOSSpecific::ListDir(fTempDir), UnorderedElementsAre("one", "two", "sub",
                                                                   "test.log"));
  EXPECT_THAT(TOSSpecific::ListDir(TempPath("sub")), IsEmpty());
  EXPECT_ZEL_THROW(TOSSpecific::ListDir(TempPath("missing")), zelStatusFileSystemError);
  EXPECT_ZEL_THROW(TOSSpecific::ListDir(TempPath("one")), zelStatusFileSystemError);
}

TEST_F(FilesTest, FileCopyCopiesContentsAndPermissions) {
  ScopedUmask mask(022);
  // Several 32 KiB chunks and a partial one, with every byte value.
  std::string contents;
  for (int i = 0; i < 100000; ++i)
    contents += static_cast<char>(i * 7);
  std::string source = WriteFile("source", contents);
  ASSERT_EQ(::chmod(source.c_str(), 0640), 0);
  std::string destination = TempPath("copy");
  TOSSpecific::FileCopy(source, destination);
  EXPECT_TRUE(ReadAll(destination) == contents);
  EXPECT_EQ(ModeOf(destination), 0640u);

  ASSERT_EQ(::chmod(source.c_str(), 0751), 0);
  TOSSpecific::FileCopy(source, TempPath("copy2"));
  EXPECT_EQ(ModeOf(TempPath("copy2")), 0751u);
}

TEST_F(FilesTest, FileCopyFailures) {
  std::string source = WriteFile("source", "new contents");
  std::string existing = WriteFile("existing", "old");
  EXPECT_ZEL_THROW(TOSSpecific::FileCopy(source, existing), zelStatusFileSystemError);
  EXPECT_EQ(ReadAll(existing), "old");

  EXPECT_ZEL_THROW(TOSSpecific::FileCopy(TempPath("missing"), TempPath("never")),
                   zelStatusFileSystemError);
  EXPECT_FALSE(TOSSpecific::FileExists(TempPath("never")));
  EXPECT_ZEL_THROW(TOSSpecific::FileCopy(source, TempPath("no/dir")), zelStatusFileSystemError);

  // A directory opens but cannot be read: the copy fails after the destination was made.
  size_t before = OpenFdCount();
  EXPECT_ZEL_THROW(TOSSpecific::FileCopy(fTempDir, TempPath("from-dir")),
                   zelStatusFileSystemError);
  EXPECT_EQ(OpenFdCount(), before);
  EXPECT_THAT(LoggedLines(), IsEmpty());
}
