// ZelUniqueFd: owns one POSIX file descriptor and closes it on every exit path.
#ifndef ZELUNIQUEFD_H
#define ZELUNIQUEFD_H

#include <unistd.h>

class ZelUniqueFd {
public:
  explicit ZelUniqueFd(int fd = -1) : fFd(fd) {}
  ~ZelUniqueFd() { Close(); }
  ZelUniqueFd(ZelUniqueFd const&) = delete;
  ZelUniqueFd& operator=(ZelUniqueFd const&) = delete;

  int Get() const { return fFd; }
  bool IsOpen() const { return fFd >= 0; }
  /// Gives up ownership, e.g. to a stdio stream.
  int Release() {
    int fd = fFd;
    fFd = -1;
    return fd;
  }
  /// Closes now; the result of close(), or 0 when nothing was open.
  int Close() {
    return fFd < 0 ? 0 : ::close(Release());
  }

private:
  int fFd;
};

#endif
