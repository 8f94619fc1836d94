// The supervising process: plugin checks, workers, their deadlines and their ends.
#include "Supervisor.h"

#include "CoreSession.h"
#include "Errors.h"
#include "LoadErrors.h"
#include "Options.h"
#include "PluginSafety.h"
#include "ResultFile.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <iostream>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zelcollect {

/// The plugin call a worker is in, as it last announced.
struct TSupervisor::TCall {
  char fKind = 0; ///< TReport::EKind of the call; 0 outside plugins
  std::string fName;
  std::string fPath;
};

struct TSupervisor::TWorkerEnd {
  int fStatus = 0;        ///< as waitpid gives it
  bool fTimedOut = false; ///< killed by us
  TCall fCall;            ///< where it was when it ended
  int fWritten = -1;      ///< the status of the results once written, else -1
};

TSupervisor::TSupervisor(const TOptions& options) : fOptions(options) {}

TSupervisor::~TSupervisor() {
  if (fLogFd > STDERR_FILENO)
    close(fLogFd);
}

void TSupervisor::Fail(const std::string& failure) {
  if (std::find(fFailures.begin(), fFailures.end(), failure) == fFailures.end())
    fFailures.push_back(failure);
}

// The libraries and documents to load: those only a trusted user could have placed, or all
// of them, with a warning each, when the user allows it.
TPlan TSupervisor::MakePlan() {
  TPlan plan;
  std::vector<std::string> directories;
  if (!fOptions.fNoBundled)
    directories.push_back(TBundle::Find().fPluginDir.string());
  directories.insert(directories.end(), fOptions.fPluginDirs.begin(), fOptions.fPluginDirs.end());
  auto admit = [&](const std::string& what, const std::string& reason) {
    if (reason.empty())
      return true;
    if (!fOptions.fAllowUnsafePlugins) {
      Fail(what + ": not loaded: " + reason);
      return false;
    }
    std::cerr << "zelcollect: warning: " << what << ": loaded although " << reason << "\n";
    return true;
  };
  for (size_t i = 0; i < directories.size(); ++i) {
    std::vector<TPluginLibrary> libraries = FindPluginLibraries(directories[i]);
    if (libraries.empty() && (i > 0 || fOptions.fNoBundled))
      throw TSetUpError("no plugins in " + directories[i]);
    for (const TPluginLibrary& library : libraries)
      if (admit("plugin " + library.fPath, UnsafeReason(library)))
        plan.fLibraries.push_back(library);
  }
  for (const std::string& document : fOptions.fSchemaFiles) {
    size_t slash = document.rfind('/');
    std::string directory = slash == std::string::npos ? "."
                            : slash == 0                ? "/"
                                                        : document.substr(0, slash);
    std::string reason = UnsafeReason(directory);
    if (admit("schema document " + document, reason.empty() ? UnsafeReason(document) : reason))
      plan.fSchemaFiles.push_back(document);
  }
  return plan;
}

static void ReadAvailable(int& fd, std::string& into) {
  char buffer[8192];
  for (;;) {
    ssize_t count = read(fd, buffer, sizeof buffer);
    if (count > 0) {
      into.append(buffer, static_cast<size_t>(count));
      continue;
    }
    if (count < 0 && errno == EINTR)
      continue;
    if (count == 0 || errno != EAGAIN) { // the other end is closed
      close(fd);
      fd = -1;
    }
    return;
  }
}

// Appends what a worker logged to the log's destination, and empties the buffer for the next.
static void CopyLog(int from, int to) {
  char buffer[65536];
  off_t offset = 0;
  for (ssize_t count; (count = pread(from, buffer, sizeof buffer, offset)) > 0; offset += count)
    (void)!write(to, buffer, static_cast<size_t>(count));
  (void)!ftruncate(from, 0);
}

TSupervisor::TWorkerEnd TSupervisor::Watch(int pid, int control) {
  TWorkerEnd end;
  // The worker's end wakes poll through its pidfd; without one (old kernels) the end of
  // its report stands for it.
  int process = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
  std::string lines;
  TClock::time_point deadline;
  auto handle = [&](const std::string& line) {
    size_t tab = line.find('\t');
    std::string first = tab == std::string::npos ? "" : line.substr(tab + 1);
    size_t second = first.find('\t');
    switch (line.empty() ? 0 : line[0]) {
    case TReport::kLoading:
    case TReport::kCollecting:
    case TReport::kEnding:
      end.fCall.fKind = line[0];
      end.fCall.fName = second == std::string::npos ? "" : first.substr(0, second);
      end.fCall.fPath = second == std::string::npos ? first : first.substr(second + 1);
      deadline = TClock::now() + std::chrono::seconds(fOptions.fTimeout);
      break;
    case TReport::kLeft:
      end.fCall = TCall();
      break;
    case TReport::kFailure:
      Fail(first);
      break;
    case TReport::kWritten:
      end.fWritten = std::atoi(first.c_str());
      break;
    }
  };
  auto take = [&] {
    ReadAvailable(control, lines);
    for (size_t eol; (eol = lines.find('\n')) != std::string::npos; lines.erase(0, eol + 1))
      handle(lines.substr(0, eol));
  };
  for (;;) {
    pollfd fds[2];
    nfds_t count = 0;
    for (int fd : {control, process})
      if (fd >= 0)
        fds[count++] = {fd, POLLIN, 0};
    if (control < 0 && process < 0)
      break;
    int timeout = -1;
    if (end.fCall.fKind && !end.fTimedOut)
      timeout = static_cast<int>(std::max<long>(
          0, std::chrono::duration_cast<std::chrono::milliseconds>(deadline - TClock::now())
                     .count() + 1));
    int ready = poll(fds, count, timeout);
    if (ready < 0 && errno == EINTR)
      continue;
    if (ready == 0) {
      kill(pid, SIGKILL);
      end.fTimedOut = true;
      continue;
    }
    bool ended = false;
    for (nfds_t i = 0; i < count; ++i) {
      if (!fds[i].revents)
        continue;
      if (fds[i].fd == control)
        take();
      else
        ended = true;
    }
    if (ended)
      break;
  }
  while (waitpid(pid, &end.fStatus, 0) < 0 && errno == EINTR) {
  }
  if (process >= 0)
    close(process);
  // What the worker said before it ended is still in the pipe.
  if (control >= 0) {
    take();
    if (control >= 0)
      close(control);
  }
  return end;
}

int TSupervisor::Run(const TResultWriter& write) {
  TPlan plan = MakePlan();
  if (!fOptions.fLogFile.empty())
    fLogFd = OpenLogFile(fOptions.fLogFile, TFileSafety::From(fOptions));
  else if (fOptions.fLogLevelGiven)
    fLogFd = STDERR_FILENO;

  // Each worker logs into one file in memory (the core's log file must be seekable), copied
  // to the log's destination when the worker has ended, so no restart loses a line.
  int logged = -1;
  if (fLogFd >= 0 && (logged = memfd_create("zelcollect-log", MFD_CLOEXEC)) < 0)
    throw TSetUpError(std::string("cannot make the log buffer: ") + std::strerror(errno));
  int status = kExitOK;
  for (;;) {
    int control[2];
    if (pipe2(control, O_CLOEXEC) != 0)
      throw TSetUpError(std::string("cannot make a pipe: ") + std::strerror(errno));
    std::cout.flush();
    std::cerr.flush();
    pid_t pid = fork();
    if (pid < 0)
      throw TSetUpError(std::string("cannot start the collection: ") + std::strerror(errno));
    if (pid == 0) {
      close(control[0]);
      TReport report(control[1]);
      std::string destination = logged >= 0 ? "/proc/self/fd/" + std::to_string(logged) : "";
      int worker = ReportErrors([&] { return RunWorker(fOptions, plan, report, destination, write); });
      std::cout.flush();
      std::exit(worker);
    }
    close(control[1]);
    fcntl(control[0], F_SETFL, O_NONBLOCK);
    TWorkerEnd end = Watch(pid, control[0]);
    if (logged >= 0)
      CopyLog(logged, fLogFd);

    if (WIFEXITED(end.fStatus) && !end.fTimedOut) {
      status = WEXITSTATUS(end.fStatus);
      break;
    }
    std::string reason =
        end.fTimedOut ? "timed out after " + std::to_string(fOptions.fTimeout) + " s"
        : WIFSIGNALED(end.fStatus) ? SignalText(WTERMSIG(end.fStatus))
                                   : "ended";
    const TCall& call = end.fCall;
    bool fresh = false; // a new plugin to leave out: another worker can do better
    if (call.fKind == TReport::kLoading) {
      Fail("plugin " + call.fPath + ": " + reason + " while loading");
      fresh = plan.fSkippedLibraries.insert(call.fPath).second;
    } else if (call.fKind == TReport::kCollecting || call.fKind == TReport::kEnding) {
      Fail("plugin " + call.fName + " (" + call.fPath + "): " + reason +
           (call.fKind == TReport::kCollecting ? " in GetData" : " while ending"));
      fresh = plan.fSkippedPlugins.insert(PluginKey(call.fName, call.fPath)).second;
    } else {
      std::cerr << "zelcollect: the collection was " << reason << " outside any plugin\n";
      status = kExitTrouble;
      break;
    }
    if (end.fWritten >= 0 || !fresh) {
      status = end.fWritten >= 0 ? end.fWritten : kExitTrouble;
      break;
    }
  }
  if (logged >= 0)
    close(logged);
  for (const std::string& failure : fFailures)
    std::cerr << "zelcollect: " << failure << "\n";
  std::cerr.flush();
  return status == kExitOK && !fFailures.empty() ? kExitFailed : status;
}

} // namespace zelcollect
