// The core logger: threshold, file output with banners, in-memory copy, hex dumps and
// zelWriteLog, read back from the real log file.
#include "ZelTest.h"

#include "IPluginCallbacks.h"
#include "TLogger.h"
#include "TOSSpecific.h"
#include "TPluginManager.h"
#include "TRootObject.h"

#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace {

class LoggerTest : public ZelTest {
protected:
  ILogger& Log() { return *TRootObject::GetCoreLogger(); }
  size_t Kept() { return Log().GetLog().size(); }
};

// A plugin's callbacks as the logger sees them: only the name counts.
class NamedCallbacks : public IPluginCallbacks {
public:
  std::string GetName() override { return "cpu"; }
  int GetType() override { return 0; }
  std::string GetVersion() override { return ""; }
  std::string GetInterfaceVersion() override { return ""; }
  void PrepareForUnload() override {}
  void Init() override {}
  void DeInit() override {}
  int GetURLType() override { return 0; }
};

} // namespace

TEST_F(LoggerTest, ThresholdDecidesWhatIsWrittenAndKeptAndPluginsGiveTheirName) {
  for (int severity = zelLogError; severity <= zelLogVerbose; ++severity)
    Log().OutputLogEntry(nullptr, static_cast<zelLogSeverity>(severity), std::string("a"));
  Log().SetLogThreshold(zelLogVerbose);
  NamedCallbacks callbacks;
  TPluginManager::TPlugin plugin(&callbacks);
  Log().OutputLogEntry(&plugin, zelLogDebug, std::string("d"));
  Log().OutputLogEntry(nullptr, zelLogVerbose, std::string("v"));
  EXPECT_EQ(LoggedLines(), (std::vector<std::string>{
                               "ZEL_Core: [Error] a", "ZEL_Core: [Warning] a",
                               "ZEL_Core: [Status] a", "ZEL_cpu: [Debug] d",
                               "ZEL_Core: [Verbose] v"}));
  // Verbose lines are written but never kept.
  ASSERT_EQ(Kept(), 4u);
  EXPECT_EQ(Log().GetLog().back().fText, "d");
  EXPECT_EQ(Log().GetLog().back().fPlugin, &plugin);
  Log().ClearLog();
  EXPECT_EQ(Kept(), 0u);
}

TEST_F(LoggerTest, MemoryOnlyEntriesAreKeptAtAnyThresholdAndNeverWritten) {
  Log().SetLogThreshold(zelLogError);
  Log().OutputLogEntry(nullptr, zelLogMemoryOnly, std::string("kept"));
  unsigned char const bytes[] = {1, 2};
  Log().OutputLogEntry(nullptr, zelLogMemoryOnly, bytes, 2); // Never dumped.
  EXPECT_TRUE(LoggedLines().empty());
  ASSERT_EQ(Kept(), 1u);
  ILogger::TLogEntry const& entry = Log().GetLog().front();
  EXPECT_EQ(entry.fSeverity, zelLogMemoryOnly);
  EXPECT_EQ(entry.fText, "kept");
  TCIMDateTime age = TOSSpecific::GetLocalTime() - entry.fTime;
  EXPECT_TRUE(age < TCIMDateTime(0, 0, 0, 1, 0)) << age.ToString();
}

TEST_F(LoggerTest, SeverityWithoutTagThrowsAfterKeepingTheEntry) {
  EXPECT_ZEL_THROW(Log().OutputLogEntry(nullptr, static_cast<zelLogSeverity>(-1),
                                        std::string("odd")),
                   zelStatusFail);
  ASSERT_EQ(Kept(), 1u);
  EXPECT_EQ(Log().GetLog().front().fText, "odd");
  Log().SetLogThreshold(static_cast<zelLogSeverity>(7));
  EXPECT_ZEL_THROW(Log().OutputLogEntry(nullptr, static_cast<zelLogSeverity>(5),
                                        std::string("five")),
                   zelStatusFail);
  EXPECT_EQ(Kept(), 1u); // Above debug: not kept.
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(LoggerTest, HexDumpsBytesOnOneLineUpToTenKilobytes) {
  std::vector<unsigned char> block(10241, 0xab);
  block[0] = 0x0a;
  block[1] = 0xff;
  block[2] = 0x00;
  Log().OutputLogEntry(nullptr, zelLogStatus, block.data(), 3);
  Log().OutputLogEntry(nullptr, zelLogDebug, block.data(), 2); // Above the threshold.
  Log().OutputLogEntry(nullptr, zelLogStatus, block.data(), 10240);
  // The size is tested before the threshold: even a dropped severity reports it.
  Log().OutputLogEntry(nullptr, zelLogVerbose, block.data(), 10241);
  std::vector<std::string> lines = LoggedLines();
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], "ZEL_Core: [Status] 0a ff 00 ");
  EXPECT_EQ(lines[1].size(), std::string("ZEL_Core: [Status] ").size() + 3 * 10240);
  EXPECT_EQ(lines[1].substr(lines[1].size() - 6), "ab ab ");
  EXPECT_EQ(lines[2], "ZEL_Core: [Error] Too much data to log--10k limit!");
  EXPECT_EQ(Log().GetLog().front().fText, "0a ff 00 ");
}

TEST_F(LoggerTest, WriteLogFromCUsesTheCallersSeverity) {
  zelWriteLog(nullptr, zelLogDebug, "x");
  EXPECT_TRUE(LoggedLines().empty());
  Log().SetLogThreshold(zelLogDebug);
  zelWriteLog(nullptr, zelLogDebug, "x");
  // A NULL text is reported at the caller's severity, not as an error.
  zelWriteLog(nullptr, zelLogWarning, nullptr);
  zelWriteLog(nullptr, zelLogVerbose, nullptr);
  EXPECT_EQ(LoggedLines(), (std::vector<std::string>{
                               "ZEL_Core: [Debug] x",
                               "ZEL_Core: [Warning] zelWriteLog: NULL text parameter"}));
}

TEST_F(LoggerTest, AFileIsEmptiedOnOpeningAndClosedWithABanner) {
  std::string path = WriteFile("child.log", "stale line\n");
  pid_t child = fork();
  if (child == 0) {
    TLogger::Initialize(); // A logger of the child's own, replacing the inherited one.
    TLogger::GetInstance()->SetLogFilename(path);
    zelWriteLog(nullptr, zelLogError, "bye");
    delete TLogger::GetInstance();
    _exit(0);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(TOSSpecific::CaptureFile(path), "-- VOK Log Opened ----------------------------\n"
                                            "ZEL_Core: [Error] bye\n"
                                            "-- VOK Log Closed ----------------------------\n");
}

TEST_F(LoggerTest, UnopenableFilesThrowTheirReason) {
  EXPECT_ZEL_THROW(Log().SetLogFilename(TempPath("no/such/dir/x.log")),
                   zelStatusFileSystemError);
  // Lines now go nowhere (the stream failed) and nothing crashes.
  Log().OutputLogEntry(nullptr, zelLogError, std::string("lost"));
  EXPECT_EQ(Log().GetLog().back().fText, "lost");
  // Read-only even for root; sysfs answers a write open with EACCES.
  if (access("/sys/kernel/notes", F_OK) != 0)
    GTEST_SKIP() << "no /sys/kernel/notes here: no file refuses a write open by root";
  EXPECT_ZEL_THROW(Log().SetLogFilename("/sys/kernel/notes"), zelStatusAccessDenied);
}
