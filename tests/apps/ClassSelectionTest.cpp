// Classes by name for -c and -x, the --list of plugins and classes, and messages that say
// what is wrong with a document and where.
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

TEST_F(ZelCollectTest, AClassNameThatIsNoneIsAUsageErrorWithTheCloseMatches) {
  struct {
    std::vector<std::string> fArguments;
    std::string fMessage;
  } const rows[] = {
      {{"-c", "NoSuchClass"}, "unknown class 'NoSuchClass' (zelcollect --list shows the classes)"},
      {{"-c", "KAPLA_Procesor"}, "unknown class 'KAPLA_Procesor' (close matches: KAPLA_Processor)"},
      {{"-c", "kapla_memroy"}, "unknown class 'kapla_memroy' (close matches: KAPLA_Memory)"},
      {{"-x", "no such"}, "unknown class 'no such' (zelcollect --list shows the classes)"},
      {{"-c", "KAPLA_Processor", "-x", "KAPLA_LogicalDevice"}, "no class is left to collect"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fArguments[1]);
    std::vector<std::string> arguments = row.fArguments;
    arguments.push_back("-o");
    arguments.push_back("never.xml");
    TRun run = Run(arguments);
    EXPECT_EQ(run.fExit, 2);
    EXPECT_EQ(run.fErr, "zelcollect: " + row.fMessage + "\nTry 'zelcollect --help'.\n");
    EXPECT_EQ(run.fOut, "");
    EXPECT_FALSE(std::ifstream(TempPath("never.xml").c_str()).good());
  }
}

TEST_F(ZelCollectTest, ListShowsEveryPluginAndEveryCollectableClass) {
  TRun run = Run({"--list"});
  EXPECT_EQ(run.fExit, 0);
  EXPECT_EQ(run.fErr, "");
  std::vector<std::string> lines = Lines(run.fOut);
  size_t plugins = 0; // the bundled plugin directories
  for (const auto& entry : std::filesystem::directory_iterator(ZEL_BUNDLED_PLUGIN_DIR))
    plugins += std::filesystem::exists(entry.path() / ("lib" + entry.path().filename().string() +
                                                        ".pi.so"));
  ASSERT_GT(lines.size(), 2 * plugins + 2) << run.fOut;
  EXPECT_EQ(lines[0], "Plugins");
  EXPECT_EQ(lines[2 * plugins + 1], "") << run.fOut;
  EXPECT_EQ(lines[2 * plugins + 2], "Classes");
  auto has = [&](const std::string& line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  };
  EXPECT_TRUE(has("  OperatingSystem  1.0.0    " ZEL_BUNDLED_PLUGIN_DIR "/os/libos.pi.so"));
  EXPECT_TRUE(has("                            KAPLA_Processor, KAPLA_SystemProcessor"));
  EXPECT_TRUE(has("  KAPLA_ComputerSystem                     System"));
  EXPECT_TRUE(has("  KAPLA_SystemProcessor                    Processor"));
  EXPECT_FALSE(std::ifstream(TempPath("inventory.xml.gz").c_str()).good()); // nothing collected
}

TEST_F(ZelCollectTest, ADocumentThatFailsIsNamedWithTheLineAndTheReason) {
  WriteFile("badsuper.xml", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                            "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><DECLARATION><DECLGROUP>"
                            "<VALUE.OBJECT><CLASS NAME=\"X_Y\" SUPERCLASS=\"NoSuch_Class\">\n"
                            "</CLASS></VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>\n");
  WriteFile("badqualifier.xml", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><DECLARATION><DECLGROUP>\n"
                                "<VALUE.OBJECT><CLASS NAME=\"X_Y\">\n"
                                "<QUALIFIER NAME=\"Colour\" TYPE=\"string\"><VALUE>red</VALUE></QUALIFIER>\n"
                                "</CLASS></VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>\n");
  WriteFile("badsyntax.xml", "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                             "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><DECLARATION>\n"
                             "<DECLGROUP><VALUE.OBJECT><CLASS NAME=\"X_Y\"></CLAS>\n"
                             "</VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>\n");
  WriteFile("notgzip.xml.gz", "plain text");
  struct {
    const char* fDocument;
    std::string fMessage;
  } const rows[] = {
      {"badsuper.xml", "schema document badsuper.xml, line 2: superclass NoSuch_Class is not defined"},
      {"badqualifier.xml", "schema document badqualifier.xml, line 4: qualifier Colour is not declared"},
      {"badsyntax.xml", "schema document badsyntax.xml, line 3: Start and end element names don't match"},
      {"notgzip.xml.gz", "schema document notgzip.xml.gz: not in gzip format, though its name holds .gz"},
      {"missing.xml", "schema document missing.xml: No such file or directory"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fDocument);
    TRun run = Run({"-n", "-s", row.fDocument});
    EXPECT_EQ(run.fExit, 2);
    EXPECT_EQ(run.fErr, "zelcollect: " + row.fMessage + "\n");
    EXPECT_EQ(run.fOut, "");
  }
}

TEST_F(ZelCollectTest, ALogLevelWithoutALogFileLogsToStandardError) {
  TRun run = Run({"-n", "-L", "debug", "-c", "KAPLA_OperatingSystem"});
  EXPECT_EQ(run.fExit, 0);
  EXPECT_EQ(Lines(run.fErr).at(0), "-- VOK Log Opened ----------------------------");
  EXPECT_TRUE(HasLine(run.fErr, "ZEL_Core: [Debug] Asking plugin OperatingSystem for "
                                "KAPLA_OperatingSystem"))
      << run.fErr;
  EXPECT_TRUE(HasLine(run.fOut, "KAPLA_OperatingSystem  (1 instance, plugin OperatingSystem 1.0.0)"));
  EXPECT_EQ(Run({"-n", "-c", "KAPLA_OperatingSystem"}).fErr, ""); // no -L, no log
}
