// The frame of the bundled plugins' tests.
#include "BundledTest.h"

#include "TCIMValue.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

std::string BundledTest::Fixture(const std::string& name) {
  return std::string(ZEL_FIXTURES_DIR) + "/" + name;
}

std::unique_ptr<TContainer> BundledTest::Collect(const std::string& root,
                                                 const std::vector<std::string>& classes) {
  std::string result = TempPath("result.xml");
  std::string err = TempPath("stderr");
  std::vector<std::string> arguments{ZEL_COLLECT, "-f", "xml", "-o", result};
  for (const std::string& cls : classes) {
    arguments.push_back("-c");
    arguments.push_back(cls);
  }
  pid_t child = fork();
  if (child == 0) {
    std::vector<char*> argv;
    for (std::string& argument : arguments)
      argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    if (root.empty())
      unsetenv("ZEL_SYSROOT");
    else
      setenv("ZEL_SYSROOT", root.c_str(), 1);
    int out = open("/dev/null", O_WRONLY);
    int errFd = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (out < 0 || errFd < 0 || chdir(fTempDir.c_str()) != 0)
      _exit(127);
    dup2(out, 1);
    dup2(errFd, 2);
    execv(ZEL_COLLECT, argv.data());
    _exit(127);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  std::ifstream in(err.c_str());
  std::ostringstream text;
  text << in.rdbuf();
  fErr = text.str();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "zelcollect: " << fErr;
  std::unique_ptr<TContainer> container(new TContainer);
  container->PopulateContainerFromFile(result);
  return container;
}

std::vector<TCIMInstance*> BundledTest::Instances(TContainer& container, const std::string& cls) {
  TCIMClass* found = container.FindClass(cls);
  return found ? found->EnumerateInstances(false) : std::vector<TCIMInstance*>();
}

TCIMInstance* BundledTest::Find(TContainer& container, const std::string& cls,
                                const std::string& property, const std::string& text) {
  for (TCIMInstance* instance : Instances(container, cls))
    if (Text(instance, property) == text)
      return instance;
  ADD_FAILURE() << "no " << cls << " with " << property << " " << text;
  return nullptr;
}

std::string BundledTest::Text(TCIMInstance* instance, const std::string& property) {
  TCIMProperty* held = instance->FindProperty(property);
  if (!held)
    return "ABSENT";
  TCIMValue value = held->GetValue();
  return value.IsNull() ? "NULL" : value.ToString(10);
}
