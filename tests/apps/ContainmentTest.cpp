// Plugins that crash, hang or do not load cost only their own data: each is named once on
// standard error with its library and its reason, the others are printed and written.
#include "ZelCollectRun.h"

#include <chrono>

TEST_F(ZelCollectTest, AFaultyPluginIsNamedOnceAndTheOthersArePrintedAndWritten) {
  struct {
    std::string fPlugin;
    const char* fPrefix; ///< of its classes
    std::vector<std::string> fOptions;
    std::string fError; ///< % stands for the plugin directory
    bool fKept;         ///< the part it committed before failing is kept
  } const rows[] = {
      {ZEL_FAULTY_PLUGIN_DIR "/segv", "SEGV_", {},
       "plugin Segv (%/segv/libsegv.pi.so): killed by signal 11 (Segmentation fault) in GetData",
       false},
      // Its first pass went well; what it collected there goes with it.
      {ZEL_FAULTY_PLUGIN_DIR "/segvtwo", "SEGVTWO_", {},
       "plugin SegvTwo (%/segvtwo/libsegvtwo.pi.so): killed by signal 11 (Segmentation fault) "
       "in GetData", false},
      {ZEL_FAULTY_PLUGIN_DIR "/aborter", "ABORTER_", {},
       "plugin Aborter (%/aborter/libaborter.pi.so): killed by signal 6 (Aborted) in GetData",
       false},
      {ZEL_FAULTY_PLUGIN_DIR "/sleeper", "SLEEPER_", {"--timeout", "2"},
       "plugin Sleeper (%/sleeper/libsleeper.pi.so): timed out after 2 s in GetData", false},
      {ZEL_FAULTY_PLUGIN_DIR "/hanginit", "HANGINIT_", {"--timeout", "2"},
       "plugin %/hanginit/libhanginit.pi.so: timed out after 2 s while loading", false},
      {ZEL_FAULTY_PLUGIN_DIR "/notelf", "NOTELF_", {},
       "plugin %/notelf/libnotelf.pi.so: cannot load: invalid ELF header", false},
      {ZEL_FAULTY_PLUGIN_DIR "/nodoc", "NODOC_", {},
       "plugin NoDoc: its specification document %/nodoc/nodoc.properties.xml is missing", false},
      // A plugin that returns a failure keeps what it committed, not the instance left open.
      {ZEL_BROKEN_PLUGIN_DIR "/broken", "BROKEN_", {},
       "plugin Broken (%/broken/libbroken.pi.so): GetData returned zelStatusFail", true},
  };
  for (const auto& row : rows) {
    std::string name = row.fPlugin.substr(row.fPlugin.rfind('/') + 1);
    SCOPED_TRACE(name);
    std::string plugins =
        PluginDirectory("plugins-" + name, {ZEL_EXAMPLE_PLUGIN_DIR "/hello", row.fPlugin});
    std::string result = TempPath(name + ".xml");
    std::vector<std::string> arguments{"-p", plugins, "--no-bundled", "-f", "xml", "-o", result};
    arguments.insert(arguments.end(), row.fOptions.begin(), row.fOptions.end());
    auto start = std::chrono::steady_clock::now();
    TRun run = Run(arguments);
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::string error = row.fError;
    error.replace(error.find('%'), 1, plugins);
    EXPECT_EQ(run.fExit, 1);
    EXPECT_EQ(run.fErr, "zelcollect: " + error + "\n");
    EXPECT_EQ(run.fOut, ReadFile(result)); // printed what it wrote
    ExpectComplete(result);
    TContainer loaded;
    loaded.PopulateContainerFromFile(result);
    EXPECT_EQ(Instances(loaded, "HELLO_Greeting").size(), 1u);
    if (row.fKept) {
      ASSERT_EQ(Instances(loaded, row.fPrefix + std::string("Part")).size(), 1u);
      EXPECT_NE(Find(loaded, row.fPrefix + std::string("Part"), "Name", "kept"), nullptr);
    } else {
      EXPECT_EQ(run.fOut.find(row.fPrefix), std::string::npos);
    }
    if (!row.fOptions.empty()) { // the deadline is the plugin's, not much more
      EXPECT_GE(seconds, 2.0);
      EXPECT_LT(seconds, 5.0);
    }
  }
}

TEST_F(ZelCollectTest, EveryFaultyPluginAtOnceLeavesTheBundledInventoryWhole) {
  std::vector<std::string> faulty;
  for (const char* plugin : {"segv", "segvtwo", "aborter", "notelf", "nodoc"})
    faulty.push_back(ZEL_FAULTY_PLUGIN_DIR "/" + std::string(plugin));
  std::string plugins = PluginDirectory("plugins", faulty);
  TRun run = Run({"-p", plugins, "-o", "all.xml"});
  EXPECT_EQ(run.fExit, 1);
  // In load order, then in the order the collection met them; each once.
  EXPECT_EQ(run.fErr,
            "zelcollect: plugin NoDoc: its specification document " + plugins +
                "/nodoc/nodoc.properties.xml is missing\n"
            "zelcollect: plugin " + plugins + "/notelf/libnotelf.pi.so: cannot load: invalid ELF header\n"
            "zelcollect: plugin Aborter (" + plugins +
                "/aborter/libaborter.pi.so): killed by signal 6 (Aborted) in GetData\n"
            "zelcollect: plugin Segv (" + plugins +
                "/segv/libsegv.pi.so): killed by signal 11 (Segmentation fault) in GetData\n"
            "zelcollect: plugin SegvTwo (" + plugins +
                "/segvtwo/libsegvtwo.pi.so): killed by signal 11 (Segmentation fault) in GetData\n");
  ExpectComplete(TempPath("all.xml"));
  TContainer loaded;
  loaded.PopulateContainerFromFile(TempPath("all.xml"));
  for (const char* cls : {"KAPLA_ComputerSystem", "KAPLA_OperatingSystem", "KAPLA_Processor",
                          "KAPLA_SystemProcessor", "KAPLA_SoftwarePackage"})
    EXPECT_GE(Instances(loaded, cls).size(), 1u) << cls;
  EXPECT_TRUE(HasLine(run.fOut, "KAPLA_OperatingSystem  (1 instance, plugin OperatingSystem 1.0.0)"));
}
