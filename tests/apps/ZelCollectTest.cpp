// zelcollect run as a child process over this machine, the README's plugin and a failing one;
// its output, exit status and result file, read back and compared with the machine.
#include "ZelCollectRun.h"

#include "TCIMSchemaHelper.h"

#include <nlohmann/json.hpp>

#include <dirent.h>
#include <sys/statvfs.h>

#include <algorithm>

namespace {

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
  TRunSetup terminal;
  terminal.fTerminal = true;
  TRun run = Run({"-n", "-f", "json"}, terminal);
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
  } const rows[] = {
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
       "zelcollect: schema document /nonexistent.xml: No such file or directory\n"},
      {{"-l", "/nonexistent/log"},
       "zelcollect: cannot open log file /nonexistent/log: No such file or directory\n"},
      {{"-o", ""},
       "zelcollect: the result file name is empty (-n writes none)\nTry 'zelcollect --help'.\n"},
      {{"--timeout", "0"},
       "zelcollect: --timeout takes whole seconds from 1 to 86400, not '0'\n"
       "Try 'zelcollect --help'.\n"},
      {{"--no-bundled"},
       "zelcollect: --no-bundled needs a plugin directory (-p)\nTry 'zelcollect --help'.\n"},
      {{"-o", "missing/result.xml"},
       "zelcollect: cannot write " + TempPath("missing/result.xml") +
           ": No such file or directory\n"},
      {{"-o", "/"}, "zelcollect: cannot write /: Is a directory\n"},
  };
  for (const auto& row : rows) {
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
        "  -f, --format FORMAT", "  -h, --help", "      --no-bundled", "  -x, --exclude NAME",
        "      --list", "      --timeout SECONDS", "      --allow-unsafe-plugins",
        "      --follow-symlinks", "Exit status: 0 success, 1 "})
    EXPECT_NE(help.fOut.find(option), std::string::npos) << option;
  EXPECT_EQ(Run({"-V"}).fOut, "zelcollect 1.0.0\n");
}

TEST_F(ZelCollectTest, TheReadmeExamplePluginCollectsWithTheSharedSchema) {
  TRun run = Run({"-p", ZEL_EXAMPLE_PLUGIN_DIR, "--no-bundled", "-n"});
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
  TRun run = Run({"-p", plugins, "--no-bundled", "-o", "result.xml"});
  EXPECT_EQ(run.fExit, 1);
  EXPECT_EQ(run.fErr, "zelcollect: plugin Broken (" + plugins +
                          "/broken/libbroken.pi.so): GetData returned zelStatusFail\n");
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
