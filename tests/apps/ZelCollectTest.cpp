// zelcollect run as a child process over this machine, the README's plugin and a failing one;
// its output, exit status and result file, read back and compared with the machine.
#include "ZelTest.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMSchemaHelper.h"
#include "TContainer.h"

#include <nlohmann/json.hpp>

#include <dirent.h>
#include <fcntl.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace {

struct TRun {
  int fExit;
  std::string fOut;
  std::string fErr;
};

std::string ReadAll(const std::string& path) {
  std::ifstream in(path.c_str(), std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    lines.push_back(line);
  return lines;
}

// How many lines of text start with prefix.
size_t CountLines(const std::string& text, const std::string& prefix) {
  size_t count = 0;
  for (const std::string& line : Lines(text))
    count += line.compare(0, prefix.size(), prefix) == 0;
  return count;
}

bool HasLine(const std::string& text, const std::string& line) {
  return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

std::string HostName() {
  char host[256] = "";
  gethostname(host, sizeof host - 1);
  return host;
}

// The value of a "name=value" line of os-release, without its quotes.
std::string OsRelease(const std::string& name) {
  for (std::string line : Lines(ReadAll("/etc/os-release")))
    if (line.compare(0, name.size() + 1, name + "=") == 0) {
      line.erase(0, name.size() + 1);
      return line.size() >= 2 && line[0] == '"' ? line.substr(1, line.size() - 2) : line;
    }
  return "";
}

} // namespace

class ZelCollectTest : public ZelTest {
protected:
  // Runs zelcollect in the test's directory; standard error goes to a terminal on request.
  TRun Run(const std::vector<std::string>& arguments, bool terminal = false) {
    std::string out = TempPath("stdout"), err = TempPath("stderr");
    int master = -1, slave = -1;
    if (terminal) {
      EXPECT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
    }
    pid_t child = fork();
    if (child == 0) {
      std::vector<char*> argv{const_cast<char*>(ZEL_COLLECT)};
      for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
      argv.push_back(nullptr);
      int outFd = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
      int errFd = terminal ? slave : open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
      int nullFd = open("/dev/null", O_RDONLY);
      if (chdir(fTempDir.c_str()) != 0 || outFd < 0 || errFd < 0 || nullFd < 0)
        _exit(127);
      dup2(nullFd, 0);
      dup2(outFd, 1);
      dup2(errFd, 2);
      execv(ZEL_COLLECT, argv.data());
      _exit(127);
    }
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
    run.fOut = ReadAll(out);
    if (!terminal)
      run.fErr = ReadAll(err);
    return run;
  }

  // The one instance of a class whose property has that value.
  static TCIMInstance* Find(TContainer& container, const char* cls, const char* property,
                            const std::string& value) {
    for (TCIMInstance* instance : container.GetClass(cls)->EnumerateInstances(false)) {
      TCIMValue held = instance->GetProperty(property).GetValue();
      if (!held.IsNull() && static_cast<std::string>(held) == value)
        return instance;
    }
    ADD_FAILURE() << "no " << cls << " with " << property << " " << value;
    return nullptr;
  }

  static size_t Count(TContainer& container, const char* cls) {
    return container.GetClass(cls)->EnumerateInstances(false).size();
  }

};

TEST_F(ZelCollectTest, WithoutArgumentsItInventoriesThisMachineAndWritesTheResult) {
  TRun run = Run({});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  EXPECT_EQ(run.fErr, ""); // No terminal, no progress.
  for (const char* heading :
       {"KAPLA_ComputerSystem  (1 instance, plugin System 1.0.0)",
        "KAPLA_OperatingSystem  (1 instance, plugin OperatingSystem 1.0.0)",
        "KAPLA_SystemBIOSElement  (1 instance, plugin System 1.0.0)",
        "KAPLA_VOKProduct  (1 instance, plugin System 1.0.0)", "System identity",
        "  Data source version     1.0.0", "  Type                    Linux"})
    EXPECT_TRUE(HasLine(run.fOut, heading)) << heading;
  EXPECT_TRUE(HasLine(run.fOut, "  Name                    " + HostName()));
  std::string result = TempPath("inventory.xml.gz");
  std::ifstream file(result.c_str(), std::ios::binary | std::ios::ate);
  EXPECT_TRUE(HasLine(run.fOut, "Result file  " + result + " (" +
                                    std::to_string(static_cast<long>(file.tellg())) + " bytes)"));

  // The result reads back on its own and tells what the machine says.
  TContainer loaded;
  loaded.PopulateContainerFromFile(result);
  EXPECT_EQ(TCIMSchemaHelper::GetSystemName(&loaded), HostName());
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceVersion(&loaded), "1.0.0");
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemName(&loaded), OsRelease("PRETTY_NAME"));
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemVersion(&loaded), OsRelease("VERSION_ID"));
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemType(&loaded), 36);

  size_t processors = CountLines(ReadAll("/proc/cpuinfo"), "processor\t:");
  EXPECT_EQ(Count(loaded, "KAPLA_Processor"), processors);
  EXPECT_EQ(Count(loaded, "KAPLA_SystemProcessor"), processors);
  EXPECT_EQ(Count(loaded, "KAPLA_SoftwarePackage"),
            CountLines(ReadAll("/var/lib/dpkg/status"), "Status: install ok installed"));
  size_t adapters = 0;
  if (DIR* net = opendir("/sys/class/net")) {
    while (dirent* entry = readdir(net))
      adapters += entry->d_name[0] != '.';
    closedir(net);
  }
  EXPECT_EQ(Count(loaded, "KAPLA_NetworkAdapter"), adapters);
  EXPECT_EQ(Count(loaded, "KAPLA_SystemNetworkAdapter"), adapters);

  struct statvfs root;
  ASSERT_EQ(statvfs("/", &root), 0);
  TCIMInstance* slash = Find(loaded, "KAPLA_FileSystem", "Name", "/");
  ASSERT_NE(slash, nullptr);
  EXPECT_EQ(static_cast<unsigned long>(slash->GetProperty("FileSystemSize").GetValue()),
            static_cast<unsigned long>(root.f_blocks) * root.f_frsize);

  // DMI where it can be read, NULL where it cannot (containers, no root).
  std::string serial = ReadAll("/sys/class/dmi/id/product_serial");
  TCIMInstance* system = loaded.GetClass("KAPLA_ComputerSystem")->EnumerateInstances(false).at(0);
  TCIMValue held = system->GetProperty("SerialNumber").GetValue();
  if (serial.empty()) {
    EXPECT_TRUE(held.IsNull());
    EXPECT_TRUE(HasLine(run.fOut, "  Serial number           (not readable)"));
  } else {
    EXPECT_EQ(static_cast<std::string>(held) + "\n", serial);
  }

  // Every association points at the computer system and at a part that was collected.
  for (TCIMInstance* link : loaded.GetClass("KAPLA_SystemProcessor")->EnumerateInstances(false)) {
    TCIMReference group = link->GetProperty("GroupComponent").GetValue();
    TCIMReference part = link->GetProperty("PartComponent").GetValue();
    EXPECT_EQ(group.GetCIMElement(), system);
    EXPECT_EQ(part.GetClassName(), "KAPLA_Processor");
    EXPECT_NE(part.GetCIMElement(), nullptr);
  }
}

TEST_F(ZelCollectTest, TheXMLFormatPrintsTheResultFileAndVerifyReadsItBack) {
  TRun run = Run({"-f", "xml", "-o", "result.xml", "--verify"});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  EXPECT_EQ(run.fOut, ReadAll(TempPath("result.xml")));
  EXPECT_EQ(run.fOut.rfind("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n", 0), 0u);
  ASSERT_EQ(Lines(run.fErr).size(), 1u) << run.fErr;
  EXPECT_EQ(CountLines(run.fErr, "zelcollect: verified " + TempPath("result.xml") + ": " +
                                     std::to_string(run.fOut.size()) + " bytes; collection "),
            1u) << run.fErr;
}

TEST_F(ZelCollectTest, TheJSONFormatKeepsTypesAndDisplayTexts) {
  TRun run = Run({"-n", "-f", "json", "-c", "KAPLA_OperatingSystem", "-c",
                  "KAPLA_ComputerSystem", "-c", "KAPLA_Processor"});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  nlohmann::json report = nlohmann::json::parse(run.fOut);
  ASSERT_EQ(report["classes"].size(), 3u);
  EXPECT_EQ(report["classes"][0]["name"], "KAPLA_ComputerSystem");
  EXPECT_EQ(report["classes"][0]["plugin"], "System");
  nlohmann::json os = report["classes"][1];
  nlohmann::json processors = report["classes"][2];
  if (processors["name"] == "KAPLA_OperatingSystem") // classes come in the plugins' order
    std::swap(os, processors);
  EXPECT_EQ(os["name"], "KAPLA_OperatingSystem");
  nlohmann::json instance = os["instances"].at(0);
  EXPECT_EQ(instance["properties"]["OSType"], 36);
  EXPECT_EQ(instance["display"]["OSType"], "Linux");
  EXPECT_EQ(instance["properties"]["Name"], OsRelease("PRETTY_NAME"));
  EXPECT_TRUE(instance["properties"]["TotalVisibleMemorySize"].is_number_unsigned());
  // A unit the display scales is shown once; any other one follows the bare number.
  std::string memory = instance["display"]["TotalVisibleMemorySize"];
  EXPECT_EQ(memory.find("Bytes"), memory.size() - 5) << memory;
  EXPECT_EQ(processors["name"], "KAPLA_Processor");
  nlohmann::json cpu = processors["instances"].at(0);
  ASSERT_TRUE(cpu["properties"]["CurrentClockSpeed"].is_number_unsigned()) << cpu;
  EXPECT_EQ(cpu["display"]["CurrentClockSpeed"],
            std::to_string(cpu["properties"]["CurrentClockSpeed"].get<unsigned>()) +
                " MegaHertz");
  EXPECT_EQ(report["identity"]["name"], HostName());
  EXPECT_EQ(report["identity"]["operatingSystemType"], "Linux");
  EXPECT_FALSE(std::ifstream(TempPath("inventory.xml.gz").c_str()).good()); // -n
}

TEST_F(ZelCollectTest, ProgressGoesToATerminalOnlyOneLinePerPlugin) {
  TRun run = Run({"-n", "-f", "json"}, /*terminal=*/true);
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  std::vector<std::string> firstPass;
  for (const std::string& line : Lines(run.fErr)) {
    if (line.find(" associations ") == std::string::npos)
      firstPass.push_back(line.substr(0, 28));
  }
  std::sort(firstPass.begin(), firstPass.end()); // Plugins run in directory listing order.
  EXPECT_EQ(firstPass, (std::vector<std::string>{
                           "zelcollect: Accounts        ", "zelcollect: FileSystem      ",
                           "zelcollect: Memory          ", "zelcollect: MemoryModules   ",
                           "zelcollect: Modules         ", "zelcollect: Network         ",
                           "zelcollect: OperatingSystem ", "zelcollect: PCI             ",
                           "zelcollect: Processor       ", "zelcollect: Sensors         ",
                           "zelcollect: Services        ", "zelcollect: Software        ",
                           "zelcollect: Storage         ", "zelcollect: System          ",
                           "zelcollect: USB             ", "zelcollect: Video           "}))
      << run.fErr;
  EXPECT_NE(run.fErr.find("zelcollect: Processor        associations "), std::string::npos)
      << run.fErr;
  EXPECT_NE(run.fErr.find(" ms\r\n"), std::string::npos);
}

TEST_F(ZelCollectTest, UsageAndSetUpErrorsExitWithTwoAndHelpListsEveryOption) {
  struct {
    std::vector<std::string> fArguments;
    std::string fMessage;
  } const kRows[] = {
      {{"--bogus"}, "zelcollect: unknown option '--bogus'\nTry 'zelcollect --help'.\n"},
      {{"-f"}, "zelcollect: option '-f' needs a value\nTry 'zelcollect --help'.\n"},
      {{"-f", "yaml"},
       "zelcollect: unknown format 'yaml' (text, xml or json)\nTry 'zelcollect --help'.\n"},
      {{"-L", "loud"},
       "zelcollect: unknown log level 'loud' (error, warning, status, debug or verbose)\n"
       "Try 'zelcollect --help'.\n"},
      {{"extra"}, "zelcollect: unexpected argument 'extra'\nTry 'zelcollect --help'.\n"},
      {{"-n", "--verify"},
       "zelcollect: --verify needs a result file\nTry 'zelcollect --help'.\n"},
      {{"-p", "/nonexistent/plugins"},
       "zelcollect: cannot use plugin directory /nonexistent/plugins: No such file or "
       "directory\n"},
      {{"-p", "/"}, "zelcollect: no plugins in /\n"},
      {{"-s", "/nonexistent.xml"},
       "zelcollect: cannot load schema document /nonexistent.xml: zelStatusFileSystemError\n"},
      {{"-l", "/nonexistent/log"},
       "zelcollect: cannot open log file /nonexistent/log: zelStatusFileSystemError\n"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fArguments[0]);
    TRun run = Run(row.fArguments);
    EXPECT_EQ(run.fExit, 2);
    EXPECT_EQ(run.fErr, row.fMessage);
    EXPECT_EQ(run.fOut, "");
  }
  TRun help = Run({"--help"});
  EXPECT_EQ(help.fExit, 0);
  for (const char* option :
       {"  -p, --plugin-dir DIR", "  -s, --schema FILE", "  -c, --class NAME", "  -o, --output FILE",
        "  -n, --no-output", "      --verify", "  -l, --log-file FILE", "  -L, --log-level LEVEL",
        "  -f, --format FORMAT", "  -h, --help"})
    EXPECT_NE(help.fOut.find(option), std::string::npos) << option;
  EXPECT_EQ(Run({"-V"}).fOut, "zelcollect 1.0.0\n");
  // The inventory is printed before the result file is found unwritable.
  TRun unwritable = Run({"-o", "missing/result.xml", "-c", "KAPLA_OperatingSystem"});
  EXPECT_EQ(unwritable.fExit, 2);
  EXPECT_EQ(unwritable.fErr, "zelcollect: cannot write " + TempPath("missing/result.xml") +
                                 ": zelStatusFileSystemError\n");
}

TEST_F(ZelCollectTest, TheReadmeExamplePluginCollectsWithTheSharedSchema) {
  TRun run = Run({"-p", ZEL_EXAMPLE_PLUGIN_DIR, "-n"});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  EXPECT_TRUE(HasLine(run.fOut, "HELLO_Greeting  (1 instance, plugin Hello 1.0.0)")) << run.fOut;
  EXPECT_TRUE(HasLine(run.fOut, "  HELLO_Greeting.Name=\"world\""));
  EXPECT_TRUE(HasLine(run.fOut, "    Size                  1.5 KiloBytes"));
  // Nothing collected the system: its identity is unknown, which is no failure.
  EXPECT_TRUE(HasLine(run.fOut, "  Name                    unknown"));
  EXPECT_TRUE(HasLine(run.fOut, "  Machine type and model  unknown"));
}

TEST_F(ZelCollectTest, AFailingPluginIsListedAndTheOthersAreKept) {
  std::string plugins = TempPath("plugins");
  ASSERT_EQ(mkdir(plugins.c_str(), 0755), 0);
  ASSERT_EQ(symlink(ZEL_EXAMPLE_PLUGIN_DIR "/hello", (plugins + "/hello").c_str()), 0);
  ASSERT_EQ(symlink(ZEL_BROKEN_PLUGIN_DIR "/broken", (plugins + "/broken").c_str()), 0);
  TRun run = Run({"-p", plugins, "-o", "result.xml"});
  EXPECT_EQ(run.fExit, 1);
  EXPECT_EQ(run.fErr,
            "zelcollect: 1 plugin failure:\n  Plugin Broken threw exception zelStatusFail\n");
  TContainer loaded;
  loaded.PopulateContainerFromFile(TempPath("result.xml"));
  EXPECT_EQ(Count(loaded, "HELLO_Greeting"), 1u);
  // What the plugin committed before failing stays; the instance it left open does not.
  ASSERT_EQ(Count(loaded, "BROKEN_Part"), 1u);
  EXPECT_NE(Find(loaded, "BROKEN_Part", "Name", "kept"), nullptr);
}

TEST_F(ZelCollectTest, TheLogFileHoldsTheCoreLinesOfTheLevelAsked) {
  TRun run = Run({"-n", "-l", "collect.log", "-L", "debug", "-c", "KAPLA_OperatingSystem"});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  std::string log = ReadAll(TempPath("collect.log"));
  EXPECT_EQ(Lines(log).at(0), "-- VOK Log Opened ----------------------------");
  EXPECT_TRUE(HasLine(log, "ZEL_Core: [Debug] Asking plugin OperatingSystem for "
                           "KAPLA_OperatingSystem"))
      << log;
  EXPECT_FALSE(HasLine(log, "ZEL_Core: [Debug] Asking plugin Processor for KAPLA_Processor"));
}
