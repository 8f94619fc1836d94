// zelcollect run as a child process over this machine, the README's plugin and a failing one;
// its output, exit status and result file, read back and compared with the machine.
#include "ZelCollectRun.h"

#include <gmock/gmock.h>

#include "TCIMSchemaHelper.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>

namespace {

std::string HostName() {
  char host[256] = "";
  gethostname(host, sizeof host - 1);
  return host;
}

// A value of os-release, as the shell reads it.
std::string OsRelease(const std::string& name) {
  std::string value = Shell(". /etc/os-release && echo \"$" + name + "\"").second;
  return value.substr(0, value.size() - 1);
}

// Whether word occurs in text on its own (not inside a longer name or number).
bool HasWord(const std::string& text, const std::string& word) {
  auto inName = [](char c) { return isalnum(static_cast<unsigned char>(c)) || c == '_'; };
  for (size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
    if ((at == 0 || !inName(text[at - 1])) &&
        (at + word.size() == text.size() || !inName(text[at + word.size()])))
      return true;
  return false;
}

// What identifies this machine: host name, MAC and IP addresses but loopback's, DMI serial
// and UUID.
std::vector<std::string> MachineSecrets() {
  std::vector<std::string> secrets;
  for (const std::string& line :
       Lines(Shell("hostname; cat /sys/class/net/*/address /sys/class/dmi/id/product_serial "
                   "/sys/class/dmi/id/product_uuid 2>/dev/null; "
                   "ip -o addr show | awk '$2 != \"lo\" {sub(\"/.*\", \"\", $4); print $4}'")
                 .second))
    if (!line.empty() && line != "00:00:00:00:00:00")
      secrets.push_back(line);
  return secrets;
}

// A whole file, gunzipped when it is gzip.
std::string ReadMaybeGzip(const std::string& path) {
  return Shell("gzip -dcf '" + path + "'").second;
}

// Chromium's headless options: no network, no profile but a new empty one.
std::string Chromium(const std::string& profile) {
  return "timeout 120 chromium --headless --no-sandbox --disable-gpu --disable-quic "
         "--no-first-run --disable-background-networking --disable-component-update "
         "--disable-sync --user-data-dir='" + profile + "' ";
}

} // namespace

TEST_F(ZelCollectTest, WithoutArgumentsItInventoriesThisMachineAsASummaryThenClasses) {
  TRun run = Run({});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  EXPECT_EQ(run.fErr, ""); // No terminal, no progress.
  // The summary first, then the classes in the machine's order, software last.
  EXPECT_EQ(run.fOut.rfind("Summary\n  Name                    " + HostName() + "\n", 0), 0u)
      << run.fOut;
  size_t last = 0;
  for (const char* heading :
       {"  Data source version     1.0.0", "KAPLA_ComputerSystem  (1 instance, plugin System 1.0.0)",
        "KAPLA_SystemBIOSElement  (1 instance, plugin System 1.0.0)",
        "KAPLA_OperatingSystem  (1 instance, plugin OperatingSystem 1.0.0)", "KAPLA_Processor  (",
        "KAPLA_Memory  (", "KAPLA_FileSystem  (", "KAPLA_NetworkAdapter  (",
        "KAPLA_SoftwarePackage  (", "KAPLA_VOKProduct  (1 instance, plugin System 1.0.0)",
        "KAPLA_HostedFileSystem  (", "KAPLA_SystemProcessor  ("}) {
    size_t at = ("\n" + run.fOut).find("\n" + std::string(heading));
    ASSERT_NE(at, std::string::npos) << heading;
    EXPECT_GT(at, last) << heading;
    last = at;
  }
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

  // Each part with its association to the system; what the plugins read is theirs to test.
  for (const char* part : {"Processor", "NetworkAdapter"}) {
    size_t parts = Instances(loaded, "KAPLA_" + std::string(part)).size();
    EXPECT_GT(parts, 0u) << part;
    EXPECT_EQ(Instances(loaded, "KAPLA_System" + std::string(part)).size(), parts) << part;
  }
  EXPECT_GT(Instances(loaded, "KAPLA_SoftwarePackage").size(), 0u);
  ASSERT_NE(Find(loaded, "KAPLA_FileSystem", "Name", "/"), nullptr);

  // A NULL of the result is the summary's "-".
  if (Text(Instances(loaded, "KAPLA_ComputerSystem").at(0), "SerialNumber") == "NULL") {
    EXPECT_TRUE(HasLine(run.fOut, "  Serial number           -"));
  }

  // The summary counts the instances that the classes below it show.
  std::smatch match;
  ASSERT_TRUE(std::regex_search(run.fOut, match,
                                std::regex("\nKAPLA_Processor  \\(([0-9]+) instances?,")));
  std::string processors = match[1];
  EXPECT_TRUE(std::regex_search(run.fOut, match,
                                std::regex("\n  Processors +" + processors +
                                           " x [^\n]+, [0-9]+ MegaHertz\n")))
      << run.fOut.substr(0, 1500);
  EXPECT_TRUE(std::regex_search(
      run.fOut, std::regex("\n  Collected +[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8} [+-][0-9]{2}:[0-9]{2}\n")));
  EXPECT_TRUE(std::regex_search(run.fOut, std::regex("\n    CurrentClockSpeed +[0-9]+ MegaHertz\n")));
  EXPECT_TRUE(std::regex_search(run.fOut, std::regex("\n    TotalSwapSpaceSize +[0-9.]+ [KMGT]?B\n")));
  // One text for NULL, no bookkeeping per instance, no full paths as headings.
  for (const char* absent : {"(not readable)", " none\n", "DateTimeOfCollection",
                             "CreationClassName", "KAPLA_Processor.CreationClassName="})
    EXPECT_EQ(run.fOut.find(absent), std::string::npos) << absent;
  EXPECT_TRUE(HasLine(run.fOut, "  /")) << "the root file system headed by its mount point";

  ASSERT_TRUE(std::regex_search(run.fOut, match,
                                std::regex("\nKAPLA_SoftwarePackage  \\(([0-9]+) instances?,")));
  size_t packages = std::stoul(match[1]);
  if (packages <= 50)
    GTEST_SKIP() << "only " << packages << " packages: no class large enough to fold";
  EXPECT_TRUE(HasLine(run.fOut, "KAPLA_SoftwarePackage  (" + std::to_string(packages) +
                                    " instances, plugin Software 1.0.0; the first 5 shown, --full "
                                    "or -c KAPLA_SoftwarePackage shows all)"));
  EXPECT_TRUE(HasLine(run.fOut, "  ... " + std::to_string(packages - 5) + " more"));
  EXPECT_EQ(CountLines(run.fOut, "    InstalledSize "), 0u);
  for (const std::vector<std::string>& whole :
       {std::vector<std::string>{"-n", "--full"},
        std::vector<std::string>{"-n", "-c", "KAPLA_SoftwarePackage"}}) {
    TRun full = Run(whole);
    ASSERT_EQ(full.fExit, 0) << full.fErr;
    EXPECT_TRUE(HasLine(full.fOut, "KAPLA_SoftwarePackage  (" + std::to_string(packages) +
                                       " instances, plugin Software 1.0.0)"));
    size_t from = full.fOut.find("KAPLA_SoftwarePackage  (");
    std::string section = full.fOut.substr(from, full.fOut.find("\n\n", from) - from);
    EXPECT_EQ(CountLines(section, "    Name "), packages);
  }
}

TEST_F(ZelCollectTest, TheXMLFormatPrintsTheResultFileAndVerifyReadsItBack) {
  TRun run = Run({"-f", "xml", "-o", "result.xml", "--verify"});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  EXPECT_EQ(run.fOut, ReadFile(TempPath("result.xml")));
  EXPECT_EQ(run.fOut.rfind("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n", 0), 0u);
  ASSERT_EQ(Lines(run.fErr).size(), 1u) << run.fErr;
  EXPECT_EQ(CountLines(run.fErr, "zelcollect: verified " + TempPath("result.xml") + ": " +
                                     std::to_string(run.fOut.size()) + " bytes; collection "),
            1u) << run.fErr;
  // A real collection's values, not only the writer's test documents, stay valid against the
  // CIM-XML DTD's declarations.
  if (Shell("command -v xmllint").first != 0)
    GTEST_SKIP() << "xmllint is not installed (package libxml2-utils)";
  EXPECT_EQ(Shell("xmllint --noout --dtdvalid " ZEL_SOURCE_DIR "/tests/xml/data/cim-2.4-subset.dtd '" +
                  TempPath("result.xml") + "' 2>&1"),
            std::make_pair(0, std::string()));
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
  for (const std::string document :
       {"bad-superclass.xml", "bad-qualifier.xml", "bad-end-tag.xml", "not-gzip.xml.gz"})
    WriteFile(document, ReadFile(ZEL_TEST_DATA_DIR "/" + document));
  struct {
    std::vector<std::string> fArguments;
    std::string fMessage;
  } const rows[] = {
      {{"--bogus"}, "zelcollect: unknown option '--bogus'\nTry 'zelcollect --help'.\n"},
      {{"-f"}, "zelcollect: option '-f' needs a value\nTry 'zelcollect --help'.\n"},
      {{"-f", "yaml"},
       "zelcollect: unknown format 'yaml' (text, xml, json or html)\nTry 'zelcollect --help'.\n"},
      {{"-o", "result.txt"},
       "zelcollect: the name of result file 'result.txt' says no format (.xml, .json or .html, "
       "optionally .gz)\nTry 'zelcollect --help'.\n"},
      {{"-o", "result.json", "--verify"},
       "zelcollect: --verify needs a CIM-XML result file (.xml or .xml.gz)\n"
       "Try 'zelcollect --help'.\n"},
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
      // Class names: the close matches of a misspelt one.
      {{"-c", "NoSuchClass"}, "zelcollect: unknown class 'NoSuchClass' (zelcollect --list "
                              "shows the classes)\nTry 'zelcollect --help'.\n"},
      {{"-c", "KAPLA_Procesor"}, "zelcollect: unknown class 'KAPLA_Procesor' (close matches: "
                                 "KAPLA_Processor)\nTry 'zelcollect --help'.\n"},
      {{"-c", "kapla_memroy"}, "zelcollect: unknown class 'kapla_memroy' (close matches: "
                               "KAPLA_Memory)\nTry 'zelcollect --help'.\n"},
      {{"-x", "no such"}, "zelcollect: unknown class 'no such' (zelcollect --list shows the "
                          "classes)\nTry 'zelcollect --help'.\n"},
      {{"-c", "KAPLA_Processor", "-x", "KAPLA_LogicalDevice"},
       "zelcollect: no class is left to collect\nTry 'zelcollect --help'.\n"},
      // Schema documents: named with the line and the reason.
      {{"-n", "-s", "bad-superclass.xml"}, "zelcollect: schema document bad-superclass.xml, "
                                           "line 2: superclass NoSuch_Class is not defined\n"},
      {{"-n", "-s", "bad-qualifier.xml"}, "zelcollect: schema document bad-qualifier.xml, line 4: "
                                          "qualifier Colour is not declared\n"},
      {{"-n", "-s", "bad-end-tag.xml"}, "zelcollect: schema document bad-end-tag.xml, line 3: "
                                        "Start and end element names don't match\n"},
      {{"-n", "-s", "not-gzip.xml.gz"}, "zelcollect: schema document not-gzip.xml.gz: not in gzip "
                                        "format, though its name holds .gz\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fArguments.back());
    TRun run = Run(row.fArguments);
    EXPECT_EQ(run.fExit, 2);
    EXPECT_EQ(run.fErr, row.fMessage);
    EXPECT_EQ(run.fOut, "");
    EXPECT_NE(access(TempPath("inventory.xml.gz").c_str(), F_OK), 0); // nothing collected
  }
  TRun help = Run({"--help"});
  EXPECT_EQ(help.fExit, 0);
  for (const char* option :
       {"  -p, --plugin-dir DIR", "  -s, --schema FILE", "  -c, --class NAME", "  -o, --output FILE",
        "  -n, --no-output", "      --verify", "  -l, --log-file FILE", "  -L, --log-level LEVEL",
        "  -f, --format FORMAT", "      --full", "      --redact", "      --redact-key FILE",
        "the result file's format follows its name, not -f", "  -h, --help", "      --no-bundled",
        "  -x, --exclude NAME", "      --list", "      --timeout SECONDS",
        "      --allow-unsafe-plugins", "      --follow-symlinks", "      --upload[=NAME]",
        "Exit status: 0 success, 1 "})
    EXPECT_NE(help.fOut.find(option), std::string::npos) << option;
  EXPECT_EQ(Run({"-V"}).fOut, "zelcollect 1.0.0\n");
}

TEST_F(ZelCollectTest, TheReadmeExamplePluginCollectsWithTheSharedSchema) {
  TRun run = Run({"-p", ZEL_EXAMPLE_PLUGIN_DIR, "--no-bundled", "-n"});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  EXPECT_TRUE(HasLine(run.fOut, "HELLO_Greeting  (1 instance, plugin Hello 1.0.0)")) << run.fOut;
  EXPECT_TRUE(HasLine(run.fOut, "  world"));
  EXPECT_TRUE(HasLine(run.fOut, "    Size  1.5 KiloBytes"));
  // Nothing collected the system: its identity is unknown, which is no failure.
  EXPECT_TRUE(HasLine(run.fOut, "  Name                    -"));
  EXPECT_TRUE(HasLine(run.fOut, "  Machine type and model  -"));
}

TEST_F(ZelCollectTest, TheLogLevelAskedGoesToTheLogFileOrElseToStandardError) {
  TRun toFile = Run({"-n", "-l", "collect.log", "-L", "debug", "-c", "KAPLA_OperatingSystem"});
  TRun toError = Run({"-n", "-L", "debug", "-c", "KAPLA_OperatingSystem"});
  ASSERT_EQ(toFile.fExit, 0) << toFile.fErr;
  EXPECT_EQ(toError.fExit, 0);
  EXPECT_TRUE(HasLine(toError.fOut, "KAPLA_OperatingSystem  (1 instance, plugin OperatingSystem 1.0.0)"));
  for (const std::string& log : {ReadFile(TempPath("collect.log")), toError.fErr}) {
    EXPECT_EQ(Lines(log).at(0), "-- VOK Log Opened ----------------------------");
    EXPECT_TRUE(HasLine(log, "ZEL_Core: [Debug] Asking plugin OperatingSystem for "
                             "KAPLA_OperatingSystem"))
        << log;
    EXPECT_FALSE(HasLine(log, "ZEL_Core: [Debug] Asking plugin Processor for KAPLA_Processor"));
  }
}

TEST_F(ZelCollectTest, JSONIsTypedWithUnitsAndValidAgainstTheShippedSchema) {
  TRun run = Run({"-f", "json", "-o", "result.json", "-c", "KAPLA_ComputerSystem", "-c",
                  "KAPLA_OperatingSystem", "-c", "KAPLA_Processor", "-c", "KAPLA_SystemProcessor",
                  "-c", "KAPLA_FileSystem", "-c", "KAPLA_NetworkAdapter"});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  EXPECT_EQ(ReadFile(TempPath("result.json")), run.fOut); // -o names JSON: the file is JSON
  nlohmann::json report = nlohmann::json::parse(run.fOut);
  EXPECT_EQ(report["format"], "zelcollect inventory");
  EXPECT_EQ(report["identity"]["name"], HostName());
  EXPECT_EQ(report["identity"]["operatingSystemType"], "Linux");
  if (ReadFile("/sys/class/dmi/id/product_serial").empty()) {
    EXPECT_TRUE(report["identity"]["serialNumber"].is_null());
  }
  std::map<std::string, nlohmann::json> classes;
  for (const nlohmann::json& cls : report["classes"])
    classes[cls["name"]] = cls;
  EXPECT_EQ(report["classes"][0]["name"], "KAPLA_ComputerSystem");
  nlohmann::json os = classes["KAPLA_OperatingSystem"]["instances"][0]["properties"];
  EXPECT_EQ(os["OSType"], (nlohmann::json{{"type", "uint16"}, {"value", 36}, {"unit", nullptr},
                                         {"display", "Linux"}, {"mapped", "Linux"}}));
  EXPECT_EQ(os["TotalVisibleMemorySize"]["unit"], "Bytes");
  EXPECT_TRUE(os["TotalVisibleMemorySize"]["value"].is_number_unsigned());
  std::regex iso("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{6}[+-][0-9]{2}:[0-9]{2}");
  EXPECT_TRUE(std::regex_match(os["DateTimeOfCollection"]["value"].get<std::string>(), iso));
  nlohmann::json link = classes["KAPLA_SystemProcessor"]["instances"][0];
  EXPECT_EQ(link["properties"]["GroupComponent"]["value"]["class"], "KAPLA_ComputerSystem");
  EXPECT_EQ(link["properties"]["GroupComponent"]["value"]["keys"]["Name"], HostName());
  EXPECT_EQ(link["keys"]["GroupComponent"]["keys"]["Name"], HostName());

  // The shipped schema accepts the document and refuses a number written as text.
  std::string check = "/usr/bin/python3 " ZEL_APPS_TEST_DIR "/check_json.py " ZEL_SOURCE_DIR
                      "/docs/zelcollect-inventory.schema.json ";
  std::pair<int, std::string> valid = Shell(check + TempPath("result.json"));
  if (valid.first == 77 || access("/usr/bin/python3", X_OK) != 0)
    GTEST_SKIP() << "no JSON Schema validator: install python3-jsonschema";
  EXPECT_EQ(valid, std::make_pair(0, std::string()));
  os["TotalVisibleMemorySize"]["value"] = "23 GB";
  report["classes"][1]["instances"][0]["properties"] = os;
  std::ofstream(TempPath("bad.json")) << report.dump();
  std::pair<int, std::string> invalid = Shell(check + TempPath("bad.json"));
  EXPECT_EQ(invalid.first, 1);
  EXPECT_NE(invalid.second.find("'23 GB' is not of type 'integer', 'null'"), std::string::npos)
      << invalid.second;
}

TEST_F(ZelCollectTest, ObjectPathsEscapeTheQuotesOfTheirKeys) {
  std::string root = TempPath("root");
  ASSERT_EQ(system(("mkdir -p '" + root + "/proc' '" + root + "/q\"x'").c_str()), 0);
  std::ofstream(root + "/proc/mounts") << "/dev/vdz /q\"x ext4 rw 0 0\n";
  TRunSetup setup;
  setup.fRoot = root;
  TRun run = Run({"-n", "-f", "json", "-c", "KAPLA_FileSystem"}, setup);
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  nlohmann::json report = nlohmann::json::parse(run.fOut);
  std::vector<std::string> paths;
  for (const nlohmann::json& instance : report["classes"][0]["instances"])
    paths.push_back(instance["path"]);
  EXPECT_THAT(paths, ::testing::Contains(
                         "KAPLA_FileSystem.CreationClassName=\"KAPLA_FileSystem\",Name=\"/q\\\"x\""));
}

TEST_F(ZelCollectTest, TheHTMLReportIsOnePageThatABrowserShowsAndFilters) {
  TRun run = Run({"-n", "-f", "html"});
  ASSERT_EQ(run.fExit, 0) << run.fErr;
  std::string page = run.fOut;
  for (const char* external : {"href=\"http", "<link", " src=", "@import", "url("})
    EXPECT_EQ(page.find(external), std::string::npos) << external;
  for (const char* part : {"<h2>Summary</h2>", "<nav id=\"contents\">",
                           "<section class=\"class\" id=\"class-KAPLA_OperatingSystem\">",
                           "<th>TotalVisibleMemorySize<br><span class=\"unit\">Bytes</span></th>",
                           "<td title=\"36\">Linux</td>"})
    EXPECT_NE(page.find(part), std::string::npos) << part;
  std::ofstream(TempPath("report.html")) << page;

  if (Shell("command -v chromium").first != 0)
    GTEST_SKIP() << "chromium is not installed: the page was not opened in a browser";
  size_t packages = CountLines(ReadFile("/var/lib/dpkg/status"), "Status: install ok installed");
  std::string url = "file://" + TempPath("report.html");
  std::pair<int, std::string> dom =
      Shell(Chromium(TempPath("profile-dom")) + "--dump-dom '" + url + "#filter=adduser' 2>/dev/null");
  ASSERT_EQ(dom.first, 0);
  EXPECT_NE(dom.second.find("<body data-ready=\"yes\">"), std::string::npos)
      << "the script ran" << dom.second.substr(0, 400);
  EXPECT_NE(dom.second.find("id=\"class-KAPLA_ComputerSystem\""), std::string::npos);
  if (packages > 50) { // folded, opened and filtered down to one row by the address
    EXPECT_EQ(CountLines(dom.second, "<tr hidden=\"\">"), packages - 1);
    EXPECT_NE(dom.second.find("<details open=\"\">"), std::string::npos);
  }

  std::string shot = TempPath("shot.png");
  std::pair<int, std::string> screenshot =
      Shell(Chromium(TempPath("profile-shot")) + "--window-size=1000,800 --screenshot='" + shot +
            "' '" + url + "' 2>/dev/null");
  ASSERT_EQ(screenshot.first, 0);
  struct stat info;
  ASSERT_EQ(stat(shot.c_str(), &info), 0);
  EXPECT_GT(info.st_size, 10000);
  std::pair<int, std::string> pixels =
      Shell("/usr/bin/python3 " ZEL_APPS_TEST_DIR "/check_png.py '" + shot + "'");
  ASSERT_EQ(pixels.first, 0) << pixels.second;
  unsigned width = 0, height = 0, colours = 0;
  double share = 0;
  std::istringstream(pixels.second) >> width >> height >> share >> colours;
  EXPECT_EQ(width, 1000u);
  EXPECT_EQ(height, 800u);
  EXPECT_GT(share, 0.03) << "text and tables cover the page";
  EXPECT_GT(colours, 8u) << "anti-aliased text, heading colours";
}

TEST_F(ZelCollectTest, RedactionLeavesNoSecretInAnyOutputAndHashesAlike) {
  // Each format on standard output and in a result file, whose format follows its name.
  const char* const xml = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM ";
  const char* const kRuns[][3] = {{"text", "r.json.gz", "{\n \"classes\": ["},
                                  {"json", "r.html", "<!DOCTYPE html>\n"},
                                  {"html", "r.xml.gz", xml},
                                  {"xml", "r.xml", xml}};
  std::vector<std::string> outputs;
  for (const auto& run : kRuns) {
    SCOPED_TRACE(run[1]);
    TRun redacted = Run({"--redact-key", "site.key", "-f", run[0], "-o", run[1]});
    ASSERT_EQ(redacted.fExit, 0) << redacted.fErr;
    outputs.push_back(redacted.fOut);
    outputs.push_back(ReadMaybeGzip(TempPath(run[1])));
    EXPECT_EQ(outputs.back().rfind(run[2], 0), 0u) << outputs.back().substr(0, 80);
    EXPECT_NE(outputs.back().find("KAPLA_OperatingSystem"), std::string::npos);
  }
  EXPECT_EQ(outputs[0].rfind("Summary (redacted)\n", 0), 0u);
  struct stat key;
  ASSERT_EQ(stat(TempPath("site.key").c_str(), &key), 0);
  EXPECT_EQ(key.st_mode & 0777, 0600u);
  for (const std::string& secret : MachineSecrets())
    for (size_t i = 0; i < outputs.size(); ++i)
      EXPECT_FALSE(HasWord(outputs[i], secret)) << secret << " in output " << i;

  // Under one key the same value hashes alike, keys and references included; the result
  // file reads back with its references resolved.
  nlohmann::json first = nlohmann::json::parse(outputs[2]); // -f json
  std::string name = first["identity"]["name"];
  EXPECT_TRUE(std::regex_match(name, std::regex("redacted:[0-9a-f]{16}"))) << name;
  EXPECT_TRUE(first["redacted"].get<bool>());
  EXPECT_EQ(nlohmann::json::parse(outputs[1])["identity"]["name"], name); // -f text -o r.json.gz
  TContainer loaded;
  loaded.PopulateContainerFromFile(TempPath("r.xml.gz"));
  EXPECT_EQ(TCIMSchemaHelper::GetSystemName(&loaded), name);
  TCIMInstance* link = loaded.GetClass("KAPLA_SystemProcessor")->EnumerateInstances(false).at(0);
  TCIMReference group = link->GetProperty("GroupComponent").GetValue();
  EXPECT_EQ(group.GetCIMElement(),
            loaded.GetClass("KAPLA_ComputerSystem")->EnumerateInstances(false).at(0));
  // Another key, another hash.
  TRun other = Run({"--redact-key", "other.key", "-n", "-f", "json", "-c", "KAPLA_ComputerSystem"});
  ASSERT_EQ(other.fExit, 0) << other.fErr;
  std::string otherName = nlohmann::json::parse(other.fOut)["identity"]["name"];
  EXPECT_NE(otherName, name);
  EXPECT_EQ(otherName.size(), name.size());
}
