// Shared test frame: a fixture with a fresh temporary directory and log file per test,
// the log read back from the real file, and status-code assertions.
#ifndef ZELTEST_H
#define ZELTEST_H

#include "TZELException.h"
#include "zelcore.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

class ZelTest : public ::testing::Test {
public:
  /// The whole of a file; empty when it cannot be read.
  static std::string ReadFile(std::string const& path);

protected:
  void SetUp() override;
  void TearDown() override;

  /// The lines of this test's log file after the opening banner, without line ends.
  std::vector<std::string> LoggedLines() const;
  /// A path inside this test's temporary directory.
  std::string TempPath(std::string const& name) const;
  /// Writes a file in the temporary directory and returns its path.
  std::string WriteFile(std::string const& name, std::string const& contents) const;

  std::string fTempDir;
  std::string fLogPath;
};

/// Passes when some line of the test's log file is exactly the given text.
#define EXPECT_LOGGED(text)                                                                 \
  EXPECT_PRED_FORMAT2(::ZelLoggedFormat, LoggedLines(), std::string(text))

/// Compares status codes and prints their names on failure.
#define EXPECT_ZEL_STATUS(expr, code)                                                       \
  EXPECT_PRED_FORMAT2(::ZelStatusFormat, static_cast<zelStatusCode>(expr), code)

/// Expects stmt to throw TZELException carrying code.
#define EXPECT_ZEL_THROW(stmt, code)                                                        \
  do {                                                                                      \
    bool zelThrew_ = false;                                                                 \
    try {                                                                                   \
      stmt;                                                                                 \
    } catch (TZELException const& zelE_) {                                                  \
      zelThrew_ = true;                                                                     \
      EXPECT_ZEL_STATUS(zelE_.GetCode(), code) << "thrown by: " #stmt;                      \
    }                                                                                       \
    EXPECT_TRUE(zelThrew_) << #stmt " threw no TZELException";                              \
  } while (0)

::testing::AssertionResult ZelLoggedFormat(char const*, char const*,
                                           std::vector<std::string> const& lines,
                                           std::string const& text);
::testing::AssertionResult ZelStatusFormat(char const* actualExpr, char const* expectedExpr,
                                           zelStatusCode actual, zelStatusCode expected);

#endif
