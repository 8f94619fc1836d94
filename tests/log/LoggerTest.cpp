// The core logger: threshold, file output with banners, in-memory copy, hex dumps and
// zelWriteLog, read back from the real log file.
#include "ZelTest.h"

#include "IPlugin.h"
#include "IPluginCallbacks.h"
#include "TLogger.h"
#include "TRootObject.h"

#include <ctime>
#include <fstream>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace {

class LoggerTest : public ZelTest {
protected:
  ILogger& Log() { return *TRootObject::GetCoreLogger(); }

  // Runs body in a forked child and returns its exit code; the child never returns.
  template <class Body>
  int InChild(Body body) {
    pid_t pid = fork();
    if (pid == 0) {
      body();
      _exit(0);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
};

// A plugin as the logger sees it: a handle whose callbacks give its name.
class NamedCallbacks : public IPluginCallbacks {
public:
  int GetType() override { return 0; }
  std::string GetName() override { return "cpu"; }
  std::string GetVersion() override { return "1.0"; }
  std::string GetInterfaceVersion() override { return "1"; }
  void PrepareForUnload() override {}
  void Init() override {}
  void DeInit() override {}
  int GetURLType() override { return 0; }
};

class NamedPlugin : public IPlugin {
public:
  IPluginCallbacks* GetCallbacks() const override { return &fCallbacks; }
  void Initialize() override {}
  bool IsInitialized() const override { return true; }
  std::string GetPath() const override { return ""; }
  std::string GetSpecificationPath() const override { return ""; }
  std::vector<TCIMClass*> GetClassesCollected() const override { return {}; }

private:
  mutable NamedCallbacks fCallbacks;
};

} // namespace

TEST_F(LoggerTest, ThresholdDecidesWhatIsWrittenAndKept) {
  EXPECT_EQ(Log().GetLogThreshold(), zelLogStatus);
  Log().OutputLogEntry(nullptr, zelLogError, std::string("e"));
  Log().OutputLogEntry(nullptr, zelLogWarning, std::string("w"));
  Log().OutputLogEntry(nullptr, zelLogStatus, std::string("s"));
  Log().OutputLogEntry(nullptr, zelLogDebug, std::string("d"));
  Log().OutputLogEntry(nullptr, zelLogVerbose, std::string("v"));
  EXPECT_EQ(LoggedLines(), (std::vector<std::string>{"ZEL_Core: [Error] e",
                                                     "ZEL_Core: [Warning] w",
                                                     "ZEL_Core: [Status] s"}));
  EXPECT_EQ(Log().GetLog().size(), 3u);

  Log().SetLogThreshold(zelLogVerbose);
  Log().ClearLog();
  Log().OutputLogEntry(nullptr, zelLogDebug, std::string("d2"));
  Log().OutputLogEntry(nullptr, zelLogVerbose, std::string("v2"));
  EXPECT_LOGGED("ZEL_Core: [Debug] d2");
  EXPECT_LOGGED("ZEL_Core: [Verbose] v2");
  // Verbose lines are written but never kept.
  ASSERT_EQ(Log().GetLog().size(), 1u);
  EXPECT_EQ(Log().GetLog().front().fText, "d2");
}

TEST_F(LoggerTest, MemoryOnlyEntriesAreKeptAtAnyThresholdAndNeverWritten) {
  Log().SetLogThreshold(zelLogError);
  time_t before = time(nullptr);
  Log().OutputLogEntry(nullptr, zelLogMemoryOnly, std::string("kept"));
  EXPECT_TRUE(LoggedLines().empty());
  ASSERT_EQ(Log().GetLog().size(), 1u);
  ILogger::TLogEntry const& entry = Log().GetLog().front();
  EXPECT_EQ(entry.fPlugin, nullptr);
  EXPECT_EQ(entry.fSeverity, zelLogMemoryOnly);
  EXPECT_EQ(entry.fText, "kept");
  EXPECT_FALSE(entry.fTime.IsNull());
  EXPECT_FALSE(entry.fTime.IsInterval());
  struct tm local;
  localtime_r(&before, &local);
  EXPECT_EQ(entry.fTime.GetYear(), local.tm_year + 1900);

  Log().ClearLog();
  EXPECT_TRUE(Log().GetLog().empty());
}

TEST_F(LoggerTest, SeverityWithoutTagThrowsAfterKeepingTheEntry) {
  EXPECT_ZEL_THROW(Log().OutputLogEntry(nullptr, static_cast<zelLogSeverity>(-1),
                                        std::string("odd")),
                   zelStatusFail);
  ASSERT_EQ(Log().GetLog().size(), 1u);
  EXPECT_EQ(Log().GetLog().front().fText, "odd");

  Log().SetLogThreshold(static_cast<zelLogSeverity>(7));
  EXPECT_ZEL_THROW(Log().OutputLogEntry(nullptr, static_cast<zelLogSeverity>(5),
                                        std::string("five")),
                   zelStatusFail);
  EXPECT_EQ(Log().GetLog().size(), 1u); // Above debug: not kept.
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(LoggerTest, PluginLinesCarryThePluginName) {
  NamedPlugin plugin;
  Log().OutputLogEntry(&plugin, zelLogWarning, std::string("fan slow"));
  EXPECT_LOGGED("ZEL_cpu: [Warning] fan slow");
  EXPECT_EQ(Log().GetLog().back().fPlugin, &plugin);
}

TEST_F(LoggerTest, HexDumpsBytesOnOneLine) {
  unsigned char const bytes[] = {0x0a, 0xff, 0x00, 0x7f};
  Log().OutputLogEntry(nullptr, zelLogStatus, bytes, 4);
  EXPECT_LOGGED("ZEL_Core: [Status] 0a ff 00 7f ");
  EXPECT_EQ(Log().GetLog().back().fText, "0a ff 00 7f ");

  Log().OutputLogEntry(nullptr, zelLogDebug, bytes, 2); // Above the threshold.
  Log().OutputLogEntry(nullptr, zelLogMemoryOnly, bytes, 2); // Never dumped.
  EXPECT_EQ(LoggedLines().size(), 1u);
  EXPECT_EQ(Log().GetLog().size(), 1u);
}

TEST_F(LoggerTest, HexDumpsStopAtTenKilobytes) {
  std::vector<unsigned char> block(10241, 0xab);
  Log().OutputLogEntry(nullptr, zelLogStatus, block.data(), 10240);
  ASSERT_EQ(LoggedLines().size(), 1u);
  EXPECT_EQ(LoggedLines()[0].size(), std::string("ZEL_Core: [Status] ").size() + 3 * 10240);

  // The size is tested before the threshold: even a dropped severity reports it.
  Log().OutputLogEntry(nullptr, zelLogVerbose, block.data(), 10241);
  EXPECT_LOGGED("ZEL_Core: [Error] Too much data to log--10k limit!");
  EXPECT_EQ(LoggedLines().size(), 2u);
}

TEST_F(LoggerTest, WriteLogFromCUsesTheCallersSeverity) {
  zelWriteLog(nullptr, zelLogDebug, "x");
  EXPECT_TRUE(LoggedLines().empty());
  Log().SetLogThreshold(zelLogDebug);
  zelWriteLog(nullptr, zelLogDebug, "x");
  EXPECT_EQ(LoggedLines(), std::vector<std::string>{"ZEL_Core: [Debug] x"});

  // A NULL text is reported at the caller's severity, not as an error.
  zelWriteLog(nullptr, zelLogWarning, nullptr);
  EXPECT_LOGGED("ZEL_Core: [Warning] zelWriteLog: NULL text parameter");
  Log().SetLogThreshold(zelLogStatus);
  zelWriteLog(nullptr, zelLogVerbose, nullptr);
  EXPECT_EQ(LoggedLines().size(), 2u);
}

TEST_F(LoggerTest, OpeningAFileEmptiesItAndWritesTheBanner) {
  std::string path = WriteFile("old.log", "stale line\n");
  Log().SetLogFilename(path);
  Log().OutputLogEntry(nullptr, zelLogError, std::string("fresh"));
  std::ifstream in(path.c_str());
  std::string all((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  EXPECT_EQ(all, "-- VOK Log Opened ----------------------------\n"
                 "ZEL_Core: [Error] fresh\n");
}

TEST_F(LoggerTest, UnopenableFileThrowsAndKeepsTheName) {
  EXPECT_ZEL_THROW(Log().SetLogFilename(TempPath("no/such/dir/x.log")),
                   zelStatusFileSystemError);
  // Lines now go nowhere (the stream failed) and nothing crashes.
  Log().OutputLogEntry(nullptr, zelLogError, std::string("lost"));
  EXPECT_EQ(Log().GetLog().back().fText, "lost");
}

TEST_F(LoggerTest, ClosingTheLoggerWritesTheClosingBanner) {
  std::string path = TempPath("child.log");
  int code = InChild([&] {
    TLogger::Initialize(); // A logger of the child's own, replacing the inherited one.
    TLogger::GetInstance()->SetLogFilename(path);
    zelWriteLog(nullptr, zelLogError, "bye");
    delete TLogger::GetInstance();
  });
  EXPECT_EQ(code, 0);
  std::ifstream in(path.c_str());
  std::string all((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  EXPECT_EQ(all, "-- VOK Log Opened ----------------------------\n"
                 "ZEL_Core: [Error] bye\n"
                 "-- VOK Log Closed ----------------------------\n");
}

TEST_F(LoggerTest, LinesBeforeInitializeAreDropped) {
  int code = InChild([] {
    TLogger::fgInstance = nullptr; // As in a process that has not initialised the logger.
    if (TRootObject::GetCoreLogger() != nullptr)
      _exit(2);
    zelWriteLog(nullptr, zelLogError, "nobody listens");
    if (zelArrayAddUint8(nullptr, 1) != zelStatusFail)
      _exit(3);
  });
  EXPECT_EQ(code, 0);
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(LoggerTest, PermissionDeniedIsReportedAsSuch) {
  // Read-only even for root; sysfs answers a write open with EACCES.
  char const* readOnly = "/sys/kernel/notes";
  if (access(readOnly, F_OK) != 0)
    GTEST_SKIP() << readOnly << " is not there";
  EXPECT_ZEL_THROW(Log().SetLogFilename(readOnly), zelStatusAccessDenied);
}
