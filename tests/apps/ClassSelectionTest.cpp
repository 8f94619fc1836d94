// Classes by name for -c and -x, and the --list of plugins and classes.
#include "ZelCollectRun.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

TEST_F(ZelCollectTest, ClassesAreNamedInAnyCaseWithTheirSubclassesAndAssociationEnds) {
  struct {
    std::vector<std::string> fArguments;
    std::vector<std::string> fCollected;
    std::vector<std::string> fLeftOut;
  } const rows[] = {
      {{"-c", "kapla_processor"}, {"KAPLA_Processor"}, {"KAPLA_SystemProcessor", "KAPLA_OperatingSystem"}},
      {{"-c", "KAPLA_SystemProcessor"},
       {"KAPLA_SystemProcessor", "KAPLA_Processor", "KAPLA_ComputerSystem"},
       {"KAPLA_Memory", "KAPLA_SystemMemory"}},
      {{"-c", "Kapla_LogicalDevice"},
       {"KAPLA_Memory", "KAPLA_NetworkAdapter", "KAPLA_Processor"},
       {"KAPLA_SystemProcessor", "KAPLA_OperatingSystem"}},
      {{"-c", "KAPLA_LogicalDevice", "-x", "kapla_memory", "-x", "KAPLA_NetworkAdapter"},
       {"KAPLA_Processor"}, {"KAPLA_Memory", "KAPLA_NetworkAdapter"}},
      {{"-x", "KAPLA_SoftwareElement"},
       {"KAPLA_OperatingSystem", "KAPLA_SystemProcessor"},
       {"KAPLA_SoftwarePackage", "KAPLA_SystemBIOSElement"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fArguments[1]);
    std::vector<std::string> arguments{"-n"};
    arguments.insert(arguments.end(), row.fArguments.begin(), row.fArguments.end());
    TRun run = Run(arguments);
    EXPECT_EQ(run.fExit, 0);
    EXPECT_EQ(run.fErr, "");
    for (const std::string& cls : row.fCollected)
      EXPECT_EQ(CountLines(run.fOut, cls + "  ("), 1u) << cls;
    for (const std::string& cls : row.fLeftOut)
      EXPECT_EQ(CountLines(run.fOut, cls + "  ("), 0u) << cls;
  }
}

// A copy of the bundled plugins, listed: it is safe, so every plugin loads.
TEST_F(ZelCollectTest, ListShowsEveryPluginAndEveryCollectableClass) {
  std::string copy = TempPath("bundled");
  std::filesystem::copy(ZEL_BUNDLED_PLUGIN_DIR, copy, std::filesystem::copy_options::recursive);
  TRun run = Run({"--list", "--no-bundled", "-p", copy});
  EXPECT_EQ(run.fExit, 0);
  EXPECT_EQ(run.fErr, "");
  std::vector<std::string> lines = Lines(run.fOut);
  size_t plugins = 0;
  for (const auto& entry : std::filesystem::directory_iterator(copy))
    plugins += std::filesystem::exists(entry.path() / ("lib" + entry.path().filename().string() +
                                                        ".pi.so"));
  ASSERT_GT(lines.size(), 2 * plugins + 2) << run.fOut;
  EXPECT_EQ(lines[0], "Plugins");
  EXPECT_EQ(lines[2 * plugins + 1], "") << run.fOut;
  EXPECT_EQ(lines[2 * plugins + 2], "Classes");
  auto has = [&](const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  };
  EXPECT_TRUE(has("  OperatingSystem  1.0.0    " + copy + "/os/libos.pi.so"));
  EXPECT_TRUE(has("                            KAPLA_Processor, KAPLA_SystemProcessor"));
  EXPECT_TRUE(has("  KAPLA_ComputerSystem                     System"));
  EXPECT_TRUE(has("  KAPLA_SystemProcessor                    Processor"));
  for (const char* library : {"filesystem/libfilesystem.pi.so", "memory/libmemory.pi.so",
                              "network/libnetwork.pi.so", "processor/libprocessor.pi.so",
                              "software/libsoftware.pi.so", "system/libsystem.pi.so"})
    EXPECT_NE(run.fOut.find(" " + copy + "/" + library + "\n"), std::string::npos) << library;
  EXPECT_FALSE(std::ifstream(TempPath("inventory.xml.gz").c_str()).good()); // nothing collected
}
