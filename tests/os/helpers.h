// Helpers of the OS services tests: scoped process state (directory, environment, standard
// input), descriptor counting, and tests that run only in a child copy of this binary.
#ifndef OS_HELPERS_H
#define OS_HELPERS_H

#include "TOSSpecific.h"
#include "ZelTest.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

/// Changes the current directory for the scope.
class ScopedChdir {
public:
  explicit ScopedChdir(std::string const& path) : fSaved(::open(".", O_RDONLY | O_DIRECTORY)) {
    EXPECT_EQ(::chdir(path.c_str()), 0) << path;
  }
  ~ScopedChdir() {
    EXPECT_EQ(::fchdir(fSaved), 0);
    ::close(fSaved);
  }

private:
  int fSaved;
};

/// Sets an environment variable for the scope (children started meanwhile inherit it).
class ScopedEnv {
public:
  ScopedEnv(char const* name, std::string const& value) : fName(name) {
    char const* old = std::getenv(name);
    fHadValue = old != nullptr;
    if (old)
      fOld = old;
    ::setenv(name, value.c_str(), 1);
  }
  ~ScopedEnv() {
    if (fHadValue)
      ::setenv(fName, fOld.c_str(), 1);
    else
      ::unsetenv(fName);
  }

private:
  char const* fName;
  bool fHadValue;
  std::string fOld;
};

/// Puts fd (or nothing, for -1) on descriptor 0 for the scope, then restores the original
/// standard input and clears stdin's end-of-file and error state.
class ScopedStdin {
public:
  explicit ScopedStdin(int fd) : fSaved(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10)) {
    std::clearerr(stdin);
    if (fd < 0)
      ::close(STDIN_FILENO);
    else
      EXPECT_EQ(::dup2(fd, STDIN_FILENO), STDIN_FILENO);
  }
  ~ScopedStdin() {
    if (fSaved >= 0) {
      ::dup2(fSaved, STDIN_FILENO);
      ::close(fSaved);
    } else {
      ::close(STDIN_FILENO);
    }
    std::clearerr(stdin);
  }

private:
  int fSaved;
};

/// The number of descriptors this process holds open.
inline size_t OpenFdCount() { return TOSSpecific::ListDir("/proc/self/fd").size(); }

/// Runs this binary again through SpawnProcess with only the child-mode test OsChild.name;
/// returns the wait status and the child's output.
inline int RunChildTest(std::string const& name, std::string& output) {
  ScopedEnv childMode("ZEL_OS_CHILD", "1");
  return TOSSpecific::SpawnProcess("/proc/self/exe", {"--gtest_filter=OsChild." + name}, output);
}

template <class Fixture>
bool RegisterChildTest(char const* name, char const* file, int line) {
  if (!std::getenv("ZEL_OS_CHILD"))
    return false;
  ::testing::RegisterTest("OsChild", name, nullptr, nullptr, file, line,
                          []() -> ZelTest* { return new Fixture; });
  return true;
}

/// A ZelTest that exists only in a child started by RunChildTest, so a normal run never
/// sees it.
#define ZEL_OS_CHILD_TEST(name)                                                             \
  class OsChild_##name : public ZelTest {                                                   \
  public:                                                                                   \
    void TestBody() override;                                                               \
  };                                                                                        \
  [[maybe_unused]] static bool const kOsChildRegistered_##name =                            \
      RegisterChildTest<OsChild_##name>(#name, __FILE__, __LINE__);                         \
  void OsChild_##name::TestBody()

#endif
