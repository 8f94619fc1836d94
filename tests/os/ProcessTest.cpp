// Child processes with captured output, and reading whole files and descriptors.
#include "helpers.h"

#include "ILogger.h"
#include "TRootObject.h"
#include "os/ZelUniqueFd.h"

#include <csignal>

#include <sys/resource.h>

class ProcessTest : public ZelTest {};

TEST_F(ProcessTest, GetFileContentsAndCaptureFileReadToTheEnd) {
  std::string contents(10000, 'x');
  contents += "end";
  std::string path = WriteFile("big", contents);
  ZelUniqueFd file(::open(path.c_str(), O_RDONLY));
  EXPECT_TRUE(TOSSpecific::GetFileContents(file.Get()) == contents);
  EXPECT_EQ(::fcntl(file.Get(), F_GETFD), 0) << "the descriptor was closed";
  size_t before = OpenFdCount();
  EXPECT_TRUE(TOSSpecific::CaptureFile(path) == contents);
  EXPECT_EQ(OpenFdCount(), before) << "the file stayed open";

  std::string missing = TempPath("missing");
  EXPECT_ZEL_THROW(TOSSpecific::CaptureFile(missing), zelStatusFileNotFound);
  // A directory opens but cannot be read.
  EXPECT_ZEL_THROW(TOSSpecific::CaptureFile(fTempDir), zelStatusFileSystemError);
  EXPECT_EQ(OpenFdCount(), before);
  EXPECT_EQ(LoggedLines(), (std::vector<std::string>{
                               "ZEL_Core: [Error] ERROR: CaptureFile failed to open: " + missing,
                               "ZEL_Core: [Error] ERROR: GetFileContents failed to read file"}));
}

TEST_F(ProcessTest, SpawnProcessCapturesBothStreamsAndReturnsTheWaitStatus) {
  std::string output;
  EXPECT_EQ(TOSSpecific::SpawnProcess(
                "sh", {"-c", "echo to stdout; echo to stderr >&2; echo again; exit 3"}, output),
            3 << 8);
  EXPECT_EQ(output, "to stdout\nto stderr\nagain\n");
  // Arguments arrive one by one, blanks included; standard input is closed.
  TOSSpecific::SpawnProcess(
      "sh",
      {"-c", "printf '[%s]' \"$@\"; test -e /proc/self/fd/0 && echo open || echo closed",
       "zero", "one two", ""},
      output);
  EXPECT_EQ(output, "[one two][]closed\n");
  EXPECT_EQ(TOSSpecific::SpawnProcess("true"), 0);
  EXPECT_EQ(TOSSpecific::SpawnProcess("sh", {"-c", "exit 5"}), 5 << 8);
  // The command is logged at debug only. A command that cannot be started ends with exit code 1, and that is no error.
  TRootObject::GetCoreLogger()->SetLogThreshold(zelLogDebug);
  output = "stale";
  EXPECT_EQ(TOSSpecific::SpawnProcess("zel-no-such-command", {"x"}, output), 256);
  EXPECT_EQ(output, "");
  EXPECT_EQ(LoggedLines(), std::vector<std::string>{
                               "ZEL_Core: [Debug] SpawnProcess: process zel-no-such-command"});
}

TEST_F(ProcessTest, SpawnProcessOfAChildKilledBySignalFails) {
  std::string output;
  EXPECT_ZEL_THROW(TOSSpecific::SpawnProcess("sh", {"-c", "echo about to die; kill -9 $$"}, output),
                   zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] ERROR: SpawnProcess - child terminated abnormally");
  EXPECT_EQ(output, "about to die\n");
}

TEST_F(ProcessTest, SpawnProcessFailsWhenThePipeCannotBeMade) {
  // Log one error line first: UBSan checks each dynamic type once, through a pipe of its
  // own, which the tight limit below would refuse it.
  EXPECT_ZEL_THROW(TOSSpecific::CaptureFile(TempPath("missing")), zelStatusFileNotFound);
  struct rlimit saved;
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &saved), 0);
  // Every descriptor below the lowest free one is taken: a limit there leaves none.
  int lowestFree = ::dup(0);
  ASSERT_GE(lowestFree, 0);
  ::close(lowestFree);
  struct rlimit tight = saved;
  tight.rlim_cur = lowestFree;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &tight), 0);
  EXPECT_ZEL_THROW(TOSSpecific::SpawnProcess("true"), zelStatusFail);
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &saved), 0);
  EXPECT_LOGGED("ZEL_Core: [Error] ERROR: SpawnProcess - pipe call failed");
}

TEST_F(ProcessTest, SpawnProcessFailsWhenTheChildCannotBeWaitedFor) {
  // With SIGCHLD ignored the kernel reaps children itself and waitpid finds none.
  struct sigaction ignore = {}, saved;
  ignore.sa_handler = SIG_IGN;
  ASSERT_EQ(::sigaction(SIGCHLD, &ignore, &saved), 0);
  std::string output;
  EXPECT_ZEL_THROW(TOSSpecific::SpawnProcess("echo", {"hi"}, output), zelStatusFail);
  ::sigaction(SIGCHLD, &saved, 0);
  EXPECT_EQ(output, "hi\n");
  EXPECT_LOGGED("ZEL_Core: [Error] ERROR: SpawnProcess - waitpid call failed");
}
