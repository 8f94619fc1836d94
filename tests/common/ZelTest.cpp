// The shared test frame and the main of every test binary.
#include "ZelTest.h"

#include "ILogger.h"
#include "TLogger.h"
#include "TRootObject.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <ftw.h>
#include <unistd.h>

namespace {

// Creates the core logger once for the whole binary, as a host does at start-up.
class ZelEnvironment : public ::testing::Environment {
public:
  void SetUp() override {
    if (!TLogger::GetInstance())
      TLogger::Initialize();
  }
};

int RemoveEntry(char const* path, struct stat const*, int, struct FTW*) {
  return ::remove(path);
}

std::string JoinLines(std::vector<std::string> const& lines) {
  std::string out;
  for (std::string const& line : lines)
    out += "    " + line + "\n";
  return out;
}

} // namespace

void ZelTest::SetUp() {
  char pattern[] = "/tmp/zeltest.XXXXXX";
  ASSERT_NE(mkdtemp(pattern), nullptr);
  fTempDir = pattern;
  fLogPath = fTempDir + "/test.log";
  ILogger* logger = TRootObject::GetCoreLogger();
  ASSERT_NE(logger, nullptr);
  logger->SetLogThreshold(zelLogStatus);
  logger->SetLogFilename(fLogPath);
  logger->ClearLog();
}

void ZelTest::TearDown() {
  if (!fTempDir.empty() && !HasFailure())
    nftw(fTempDir.c_str(), RemoveEntry, 16, FTW_DEPTH | FTW_PHYS);
}

std::vector<std::string> ZelTest::LoggedLines() const {
  std::vector<std::string> lines;
  std::ifstream in(fLogPath.c_str());
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  if (!lines.empty() && lines.front() == "-- VOK Log Opened ----------------------------")
    lines.erase(lines.begin());
  return lines;
}

std::string ZelTest::TempPath(std::string const& name) const { return fTempDir + "/" + name; }

std::string ZelTest::WriteFile(std::string const& name, std::string const& contents) const {
  std::string path = TempPath(name);
  std::ofstream out(path.c_str(), std::ios::binary);
  out << contents;
  return path;
}

std::string ZelTest::ReadFile(std::string const& path) {
  std::ifstream in(path.c_str(), std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

::testing::AssertionResult ZelLoggedFormat(char const*, char const*,
                                           std::vector<std::string> const& lines,
                                           std::string const& text) {
  for (std::string const& line : lines)
    if (line == text)
      return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "expected the log line\n    " << text
                                       << "\nthe log holds\n"
                                       << JoinLines(lines);
}

::testing::AssertionResult ZelStatusFormat(char const* actualExpr, char const* expectedExpr,
                                           zelStatusCode actual, zelStatusCode expected) {
  if (actual == expected)
    return ::testing::AssertionSuccess();
  auto name = [](zelStatusCode code) {
    return code >= 0 && code <= zelStatusEnd ? zelTranslateStatusCode(code) : "(out of range)";
  };
  return ::testing::AssertionFailure()
         << actualExpr << " is " << name(actual) << " (" << actual << "), expected "
         << expectedExpr << " = " << name(expected) << " (" << expected << ")";
}

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  ::testing::AddGlobalTestEnvironment(new ZelEnvironment);
  return RUN_ALL_TESTS();
}
