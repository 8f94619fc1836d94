// zelcollect run as a child process, as a user runs it: the fixture of the collector's and
// the bundled plugins' tests, with what a run can be given (a machine's root, a terminal, a
// broken standard output, another user, a umask) and the helpers that read its output.
// ZEL_COLLECT names the program.
#ifndef ZELCOLLECTRUN_H
#define ZELCOLLECTRUN_H

#include "ZelTest.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMValue.h"
#include "TCIMXMLWriter.h"
#include "TContainer.h"

#include <fcntl.h>
#include <stdio.h>
#include <pty.h>
#include <sys/stat.h>
#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>
#include <string>
#include <vector>

struct TRun {
  int fExit;
  std::string fOut;
  std::string fErr;
};

inline std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  return lines;
}

// How many lines of text start with prefix.
inline size_t CountLines(const std::string& text, const std::string& prefix) {
  size_t count = 0;
  for (const std::string& line : Lines(text))
    count += line.compare(0, prefix.size(), prefix) == 0;
  return count;
}

inline bool HasLine(const std::string& text, const std::string& line) {
  return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

// Runs a shell command; its exit status and standard output.
inline std::pair<int, std::string> Shell(const std::string& command) {
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  char buffer[4096];
  size_t count;
  while ((count = fread(buffer, 1, sizeof buffer, pipe)) > 0)
    output.append(buffer, count);
  int status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

// How a run is started.
struct TRunSetup {
  std::string fRoot;      ///< the machine the plugins read (ZEL_SYSROOT); "" this one
  bool fTerminal = false; ///< standard error on a terminal
  enum EOutput { kFile, kClosedPipe, kDevFull } fOutput = kFile; ///< standard output
  uid_t fUser = 0;        ///< not 0: run as this user (and its group)
  mode_t fUmask = 022;
};

class ZelCollectTest : public ZelTest {
protected:
  // Runs zelcollect in the test's directory.
  TRun Run(const std::vector<std::string>& arguments, TRunSetup setup = TRunSetup()) {
    bool terminal = setup.fTerminal;
    std::string out = TempPath("stdout"), err = TempPath("stderr");
    int master = -1, slave = -1;
    if (terminal) {
      EXPECT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
    }
    int pipeFds[2] = {-1, -1};
    if (setup.fOutput == TRunSetup::kClosedPipe) {
      EXPECT_EQ(pipe(pipeFds), 0);
      close(pipeFds[0]); // nobody reads: a reader that quit at once
    }
    pid_t child = fork();
    if (child == 0) {
      std::vector<char*> argv{const_cast<char*>(ZEL_COLLECT)};
      for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
      argv.push_back(nullptr);
      int outFd = setup.fOutput == TRunSetup::kClosedPipe ? pipeFds[1]
                  : setup.fOutput == TRunSetup::kDevFull ? open("/dev/full", O_WRONLY)
                                                         : open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
      int errFd = terminal ? slave : open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
      int nullFd = open("/dev/null", O_RDONLY);
      if (outFd < 0 || errFd < 0 || nullFd < 0)
        _exit(127);
      if (setup.fUser && (setgroups(0, nullptr) != 0 || setgid(setup.fUser) != 0 ||
                          setuid(setup.fUser) != 0))
        _exit(127);
      if (chdir(fTempDir.c_str()) != 0)
        _exit(127);
      if (setup.fRoot.empty())
        unsetenv("ZEL_SYSROOT");
      else
        setenv("ZEL_SYSROOT", setup.fRoot.c_str(), 1);
      umask(setup.fUmask);
      dup2(nullFd, 0);
      dup2(outFd, 1);
      dup2(errFd, 2);
      execv(ZEL_COLLECT, argv.data());
      _exit(127);
    }
    if (pipeFds[1] >= 0)
      close(pipeFds[1]);
    TRun run = {-1, "", ""};
    if (terminal) {
      close(slave);
      char buffer[4096];
      ssize_t count;
      while ((count = read(master, buffer, sizeof buffer)) > 0) // EIO once the child is gone
        run.fErr.append(buffer, count);
      close(master);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    run.fExit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.fOut = setup.fOutput == TRunSetup::kFile ? ReadFile(out) : "";
    if (!terminal)
      run.fErr = ReadFile(err);
    return run;
  }

  /// The instances of a class (none when the result does not hold the class).
  static std::vector<TCIMInstance*> Instances(TContainer& container, const std::string& cls) {
    TCIMClass* found = container.FindClass(cls);
    return found ? found->EnumerateInstances(false) : std::vector<TCIMInstance*>();
  }

  /// A property's raw value as text (decimal numbers, CIM date-times); "NULL" when it is
  /// NULL, "ABSENT" when the instance has no such property.
  static std::string Text(TCIMInstance* instance, const std::string& property) {
    TCIMProperty* held = instance->FindProperty(property);
    if (!held)
      return "ABSENT";
    TCIMValue value = held->GetValue();
    return value.IsNull() ? "NULL" : value.ToString(10);
  }

  /// The one instance of cls whose property has that text; fails the test otherwise.
  static TCIMInstance* Find(TContainer& container, const std::string& cls,
                            const std::string& property, const std::string& text) {
    for (TCIMInstance* instance : Instances(container, cls))
      if (Text(instance, property) == text)
        return instance;
    ADD_FAILURE() << "no " << cls << " with " << property << " " << text;
    return nullptr;
  }

  // A plugin directory in the test's directory holding links to the given plugins'
  // subdirectories.
  std::string PluginDirectory(const std::string& name, const std::vector<std::string>& plugins) {
    std::string directory = TempPath(name);
    EXPECT_EQ(mkdir(directory.c_str(), 0755), 0);
    for (const std::string& plugin : plugins) {
      std::string link = directory + plugin.substr(plugin.rfind('/'));
      EXPECT_EQ(symlink(plugin.c_str(), link.c_str()), 0) << link;
    }
    return directory;
  }

  // A plain result file is complete when the library reads it back and writes the same.
  static void ExpectComplete(const std::string& path) {
    TContainer loaded;
    ASSERT_NO_THROW(loaded.PopulateContainerFromFile(path)) << path;
    EXPECT_EQ(TCIMXMLWriter::Write(loaded, TCIMXMLWriter::eClassesWithInstances), ReadFile(path))
        << path;
  }
};

#endif
