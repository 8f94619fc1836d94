// TOSSpecific: running a child process with its output captured, and reading whole files.
#include "TOSSpecific.h"

#include "log/ZelLog.h"
#include "os/ZelRetryOnSignal.h"
#include "os/ZelUniqueFd.h"

#include <fcntl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

static pid_t WaitChild(pid_t child, int* status) {
  return ZelRetryOnSignal([&] { return ::waitpid(child, status, 0); });
}

std::string TOSSpecific::GetFileContents(int fd) {
  std::string contents;
  char buffer[4096];
  for (;;) {
    ssize_t got = ZelRetryOnSignal([&] { return ::read(fd, buffer, sizeof buffer); });
    if (got < 0)
      ZelFail(zelStatusFileSystemError, "ERROR: GetFileContents failed to read file");
    if (got == 0)
      return contents;
    contents.append(buffer, got);
  }
}

int TOSSpecific::SpawnProcess(std::string command) {
  std::string output;
  return SpawnProcess(command, std::vector<std::string>(), output);
}

int TOSSpecific::SpawnProcess(std::string command, std::vector<std::string> arguments) {
  std::string output;
  return SpawnProcess(command, arguments, output);
}

int TOSSpecific::SpawnProcess(std::string command, std::vector<std::string> arguments,
                              std::string& output) {
  ZelLogLazy(zelLogDebug, [&] { return "SpawnProcess: process " + command; });

  // Built before the fork: the child only calls async-signal-safe functions.
  std::vector<char*> argv;
  argv.push_back(&command[0]);
  for (std::string& argument : arguments)
    argv.push_back(&argument[0]);
  argv.push_back(0);

  int ends[2];
  // Close-on-exec keeps the pipe's own descriptors out of the command (and out of children
  // spawned meanwhile); the duplicates on 1 and 2 stay open.
  if (::pipe2(ends, O_CLOEXEC) != 0)
    ZelFail(zelStatusFail, "ERROR: SpawnProcess - pipe call failed");
  ZelUniqueFd readEnd(ends[0]);
  ZelUniqueFd writeEnd(ends[1]);

  pid_t child = ::fork();
  if (child < 0)
    ZelFail(zelStatusFail, "ERROR: SpawnProcess - fork call failed");
  if (child == 0) {
    if (::dup2(writeEnd.Get(), STDOUT_FILENO) < 0 || ::dup2(writeEnd.Get(), STDERR_FILENO) < 0 ||
        ::close(STDIN_FILENO) != 0 || ::close(readEnd.Get()) != 0)
      ::_exit(1);
    ::execvp(argv[0], argv.data());
    ::_exit(1);
  }

  int status = 0;
  try {
    if (writeEnd.Close() != 0)
      ZelFail(zelStatusFail, "ERROR: SpawnProcess - close pipe call failed");
    output = GetFileContents(readEnd.Get());
    if (readEnd.Close() != 0)
      ZelFail(zelStatusFail, "ERROR: SpawnProcess - close pipe call failed");
  } catch (...) {
    // Reap the child even when its output is lost, so no zombie is left behind.
    readEnd.Close();
    WaitChild(child, &status);
    throw;
  }
  if (WaitChild(child, &status) < 0)
    ZelFail(zelStatusFail, "ERROR: SpawnProcess - waitpid call failed");
  if (WIFSIGNALED(status))
    ZelFail(zelStatusFail, "ERROR: SpawnProcess - child terminated abnormally");
  return status;
}

std::string TOSSpecific::CaptureFile(std::string path) {
  ZelUniqueFd file(::open(path.c_str(), O_RDONLY));
  if (!file.IsOpen())
    ZelFail(zelStatusFileNotFound, "ERROR: CaptureFile failed to open: " + path);
  return GetFileContents(file.Get());
}
