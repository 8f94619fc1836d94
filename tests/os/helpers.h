// Helpers of the OS services tests: the current directory for a scope, descriptor counting,
// and children that run a body, with other rights if need be.
#ifndef OS_HELPERS_H
#define OS_HELPERS_H

#include "TOSSpecific.h"
#include "ZelTest.h"

#include <functional>
#include <string>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

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

inline size_t OpenFdCount() { return TOSSpecific::ListDir("/proc/self/fd").size(); }

/// Runs body in a forked child and returns its exit code (-1 when a signal ended it).
inline int InChild(std::function<int()> const& body) {
  pid_t child = ::fork();
  if (child == 0)
    ::_exit(body());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// As InChild, with the rights of user nobody when the tests run as root.
inline int AsNobody(std::function<int()> const& body) {
  return InChild([&] {
    if (::getuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0))
      return 100;
    return body();
  });
}

#endif
