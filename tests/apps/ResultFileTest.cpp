// The result file is never lost: written whole or not at all, checked before collecting,
// created readable by its owner only, never through a link someone planted; a standard
// output that fails is reported without costing the result.
#include "ZelCollectRun.h"

#include <sched.h>
#include <sys/mount.h>

namespace {

const uid_t kNobody = 65534;

// The names in a directory that start with a dot: temporary files left behind.
std::vector<std::string> HiddenEntries(const std::string& directory) {
  return Lines(Shell("ls -A '" + directory + "' | grep '^[.]'").second);
}

struct stat StatOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
  return status;
}

} // namespace

TEST_F(ZelCollectTest, AFailingStandardOutputIsReportedAndCostsNoResult) {
  struct {
    TRunSetup::EOutput fOutput;
    bool fResult;
    std::string fMessage;
  } const rows[] = {
      {TRunSetup::kClosedPipe, true, "zelcollect: cannot write standard output: Broken pipe\n"},
      {TRunSetup::kDevFull, true,
       "zelcollect: cannot write standard output: No space left on device\n"},
      {TRunSetup::kDevFull, false,
       "zelcollect: cannot write standard output: No space left on device\n"},
  };
  int number = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fMessage + (row.fResult ? " with a result file" : " with -n"));
    std::string result = TempPath("result" + std::to_string(++number) + ".xml");
    TRunSetup setup;
    setup.fOutput = row.fOutput;
    TRun run = Run(row.fResult ? std::vector<std::string>{"-o", result}
                               : std::vector<std::string>{"-n"},
                   setup);
    EXPECT_EQ(run.fExit, 2);
    EXPECT_EQ(run.fErr, row.fMessage);
    if (row.fResult)
      ExpectComplete(result);
  }
}

TEST_F(ZelCollectTest, AFullFileSystemLeavesThePreviousResultAsItWas) {
  // A 64 KiB file system of this test's own, in a mount namespace of this test process.
  if (unshare(CLONE_NEWNS) != 0)
    GTEST_SKIP() << "cannot create a mount namespace: " << strerror(errno);
  ASSERT_EQ(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr), 0) << strerror(errno);
  std::string full = TempPath("full");
  ASSERT_EQ(mkdir(full.c_str(), 0755), 0);
  if (mount("tmpfs", full.c_str(), "tmpfs", 0, "size=64k") != 0)
    GTEST_SKIP() << "cannot mount a tmpfs: " << strerror(errno);
  std::string result = full + "/inv.xml";

  TRun first = Run({"-c", "KAPLA_OperatingSystem", "-o", result});
  ASSERT_EQ(first.fExit, 0) << first.fErr;
  std::string previous = ReadFile(result);
  TRun run = Run({"-o", result}); // the whole machine, uncompressed: far more than 64 KiB
  EXPECT_EQ(run.fExit, 2);
  EXPECT_EQ(run.fErr, "zelcollect: cannot write " + result + ": No space left on device\n");
  EXPECT_TRUE(HasLine(run.fOut, "KAPLA_OperatingSystem  (1 instance, plugin OperatingSystem 1.0.0)"));
  EXPECT_EQ(run.fOut.find("Result file"), std::string::npos);
  EXPECT_EQ(ReadFile(result), previous);
  ExpectComplete(result);
  EXPECT_EQ(HiddenEntries(full), std::vector<std::string>());
  EXPECT_EQ(umount2(full.c_str(), MNT_DETACH), 0);
}

TEST_F(ZelCollectTest, AnUnwritableOutputStopsTheRunBeforeAnythingIsCollected) {
  // Root writes into any directory whatever its mode: the user who cannot is nobody.
  ASSERT_EQ(chmod(fTempDir.c_str(), 0711), 0);
  std::string readOnly = TempPath("ro");
  ASSERT_EQ(mkdir(readOnly.c_str(), 0555), 0);
  ASSERT_EQ(chown(readOnly.c_str(), kNobody, kNobody), 0);
  TRunSetup nobody;
  nobody.fUser = kNobody;
  TRun run = Run({"-o", "ro/inv.xml"}, nobody);
  EXPECT_EQ(run.fExit, 2);
  EXPECT_EQ(run.fErr, "zelcollect: cannot write " + readOnly + "/inv.xml: Permission denied\n");
  EXPECT_EQ(run.fOut, "");
  EXPECT_EQ(HiddenEntries(readOnly), std::vector<std::string>());
}

TEST_F(ZelCollectTest, NewFilesAreTheOwnersOnlyAndAnExistingResultKeepsModeAndOwner) {
  TRunSetup open;
  open.fUmask = 0; // the modes are the collector's, not the umask's
  TRun fresh = Run({"-c", "KAPLA_OperatingSystem", "-o", "new.xml", "-l", "new.log"}, open);
  ASSERT_EQ(fresh.fExit, 0) << fresh.fErr;
  EXPECT_EQ(StatOf(TempPath("new.xml")).st_mode & 07777, 0600u);
  EXPECT_EQ(StatOf(TempPath("new.log")).st_mode & 07777, 0600u);

  std::string existing = WriteFile("old.xml", "an earlier result");
  ASSERT_EQ(chmod(existing.c_str(), 0644), 0);
  ASSERT_EQ(chown(existing.c_str(), kNobody, kNobody), 0);
  TRun again = Run({"-c", "KAPLA_OperatingSystem", "-o", "old.xml"}, open);
  ASSERT_EQ(again.fExit, 0) << again.fErr;
  struct stat status = StatOf(existing);
  EXPECT_EQ(status.st_mode & 07777, 0644u);
  EXPECT_EQ(status.st_uid, kNobody);
  EXPECT_EQ(status.st_gid, kNobody);
  ExpectComplete(existing);
  EXPECT_EQ(HiddenEntries(fTempDir), std::vector<std::string>());
}

TEST_F(ZelCollectTest, ALinkPlantedAtTheResultsNameIsRefusedUnlessFollowed) {
  std::string victim = WriteFile("victim", "precious");
  for (const char* name : {"planted.xml", "planted.log"}) {
    ASSERT_EQ(symlink(victim.c_str(), TempPath(name).c_str()), 0);
    ASSERT_EQ(lchown(TempPath(name).c_str(), kNobody, kNobody), 0);
  }
  TRun result = Run({"-c", "KAPLA_OperatingSystem", "-o", "planted.xml"});
  EXPECT_EQ(result.fExit, 2);
  EXPECT_EQ(result.fErr, "zelcollect: cannot write " + TempPath("planted.xml") +
                             ": it is a symbolic link (--follow-symlinks writes through it)\n");
  EXPECT_EQ(result.fOut, "");
  TRun log = Run({"-n", "-c", "KAPLA_OperatingSystem", "-l", "planted.log"});
  EXPECT_EQ(log.fExit, 2);
  EXPECT_EQ(log.fErr, "zelcollect: cannot open log file planted.log: it is a symbolic link "
                      "(--follow-symlinks writes through it)\n");
  EXPECT_EQ(ReadFile(victim), "precious");

  TRun followed = Run({"-c", "KAPLA_OperatingSystem", "-o", "planted.xml", "--follow-symlinks"});
  EXPECT_EQ(followed.fExit, 0) << followed.fErr;
  EXPECT_TRUE(S_ISLNK(StatOf(TempPath("planted.xml")).st_mode));
  ExpectComplete(victim);
}
