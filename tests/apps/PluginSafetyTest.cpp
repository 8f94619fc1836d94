// Plugins run as root: only libraries, documents and directories that only root (or the
// user running the collector) could have written are loaded; the check can be lifted.
#include "ZelCollectRun.h"

#include <filesystem>
#include <functional>

namespace fs = std::filesystem;

namespace {

const uid_t kNobody = 65534;

// A real copy of the README's plugin: directory 0755, library 0755, document 0644.
struct TPluginCopy {
  std::string fDirectory, fSubdirectory, fLibrary, fDocument;

  explicit TPluginCopy(const std::string& directory)
      : fDirectory(directory), fSubdirectory(directory + "/hello"),
        fLibrary(fSubdirectory + "/libhello.pi.so"),
        fDocument(fSubdirectory + "/hello.properties.xml") {
    fs::create_directories(fSubdirectory);
    fs::copy_file(ZEL_EXAMPLE_PLUGIN_DIR "/hello/libhello.pi.so", fLibrary);
    fs::copy_file(ZEL_EXAMPLE_PLUGIN_DIR "/hello/hello.properties.xml", fDocument);
    for (const auto& entry : {std::make_pair(fDirectory, 0755), std::make_pair(fSubdirectory, 0755),
                              std::make_pair(fLibrary, 0755), std::make_pair(fDocument, 0644)})
      EXPECT_EQ(chmod(entry.first.c_str(), static_cast<mode_t>(entry.second)), 0);
  }
};

} // namespace

TEST_F(ZelCollectTest, PluginsOthersCouldHaveWrittenAreNotLoadedUnlessAllowed) {
  struct {
    const char* fCase;
    std::function<void(const TPluginCopy&)> fMake;
    std::function<std::string(const TPluginCopy&)> fReason;
  } const rows[] = {
      {"world-writable plugin directory", [](const TPluginCopy& p) { chmod(p.fDirectory.c_str(), 0777); },
       [](const TPluginCopy& p) { return "directory " + p.fDirectory + " is writable by others"; }},
      {"sticky world-writable directory", [](const TPluginCopy& p) { chmod(p.fDirectory.c_str(), 01777); },
       [](const TPluginCopy& p) { return "directory " + p.fDirectory + " is writable by others"; }},
      {"group-writable library directory", [](const TPluginCopy& p) { chmod(p.fSubdirectory.c_str(), 0775); },
       [](const TPluginCopy& p) { return "directory " + p.fSubdirectory + " is writable by group"; }},
      {"group-writable plugin file", [](const TPluginCopy& p) { chmod(p.fLibrary.c_str(), 0775); },
       [](const TPluginCopy& p) { return "file " + p.fLibrary + " is writable by group"; }},
      {"plugin owned by another user",
       [](const TPluginCopy& p) { EXPECT_EQ(chown(p.fLibrary.c_str(), kNobody, 0), 0); },
       [](const TPluginCopy& p) { return "file " + p.fLibrary + " is owned by user nobody"; }},
      {"world-writable specification document", [](const TPluginCopy& p) { chmod(p.fDocument.c_str(), 0666); },
       [](const TPluginCopy& p) { return "file " + p.fDocument + " is writable by others"; }},
      {"another user's link to a plugin in /tmp",
       [](const TPluginCopy& p) {
         std::string elsewhere = p.fDirectory + "-elsewhere.pi.so";
         fs::rename(p.fLibrary, elsewhere);
         EXPECT_EQ(symlink(elsewhere.c_str(), p.fLibrary.c_str()), 0);
         EXPECT_EQ(lchown(p.fLibrary.c_str(), kNobody, kNobody), 0);
       },
       [](const TPluginCopy& p) { return "symbolic link " + p.fLibrary + " is owned by user nobody"; }},
  };
  int number = 0;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.fCase);
    TPluginCopy plugin(TempPath("pw" + std::to_string(++number)));
    row.fMake(plugin);
    std::string reason = row.fReason(plugin);
    TRun refused = Run({"-n", "-p", plugin.fDirectory, "-c", "KAPLA_OperatingSystem"});
    EXPECT_EQ(refused.fExit, 1);
    EXPECT_EQ(refused.fErr, "zelcollect: plugin " + plugin.fLibrary + ": not loaded: " + reason + "\n");
    EXPECT_TRUE(HasLine(refused.fOut, "KAPLA_OperatingSystem  (1 instance, plugin OperatingSystem 1.0.0)"));

    TRun allowed = Run({"-n", "-p", plugin.fDirectory, "-c", "hello_greeting",
                        "--allow-unsafe-plugins"});
    EXPECT_EQ(allowed.fExit, 0);
    EXPECT_EQ(allowed.fErr, "zelcollect: warning: plugin " + plugin.fLibrary +
                                ": loaded although " + reason + "\n");
    EXPECT_TRUE(HasLine(allowed.fOut, "HELLO_Greeting  (1 instance, plugin Hello 1.0.0)"));
  }
}

TEST_F(ZelCollectTest, AUsersOwnPluginsAreLoadedForHimButNotForRoot) {
  ASSERT_EQ(chmod(fTempDir.c_str(), 0711), 0);
  TPluginCopy plugin(TempPath("mine"));
  for (const std::string& path :
       {plugin.fDirectory, plugin.fSubdirectory, plugin.fLibrary, plugin.fDocument})
    ASSERT_EQ(chown(path.c_str(), kNobody, kNobody), 0);
  TRunSetup nobody;
  nobody.fUser = kNobody;
  TRun own = Run({"-n", "-p", plugin.fDirectory, "-c", "HELLO_Greeting"}, nobody);
  EXPECT_EQ(own.fExit, 0) << own.fErr;
  EXPECT_EQ(own.fErr, "");
  EXPECT_TRUE(HasLine(own.fOut, "HELLO_Greeting  (1 instance, plugin Hello 1.0.0)"));

  TRun root = Run({"-n", "-p", plugin.fDirectory, "-c", "KAPLA_OperatingSystem"});
  EXPECT_EQ(root.fExit, 1);
  EXPECT_EQ(root.fErr, "zelcollect: plugin " + plugin.fLibrary + ": not loaded: directory " +
                           plugin.fDirectory + " is owned by user nobody\n");
}

TEST_F(ZelCollectTest, ASafeCopyOfTheBundledPluginsLoadsWhole) {
  std::string copy = TempPath("bundled");
  fs::copy(ZEL_BUNDLED_PLUGIN_DIR, copy, fs::copy_options::recursive);
  TRun run = Run({"--list", "--no-bundled", "-p", copy});
  EXPECT_EQ(run.fExit, 0);
  EXPECT_EQ(run.fErr, "");
  for (const char* library : {"filesystem/libfilesystem.pi.so", "memory/libmemory.pi.so",
                              "network/libnetwork.pi.so", "os/libos.pi.so",
                              "processor/libprocessor.pi.so", "software/libsoftware.pi.so",
                              "system/libsystem.pi.so"})
    EXPECT_NE(run.fOut.find(" " + copy + "/" + library + "\n"), std::string::npos) << library;
}

TEST_F(ZelCollectTest, ASchemaDocumentOthersCouldHaveWrittenIsNotLoaded) {
  std::string document = WriteFile("extra.xml", ReadFile(ZEL_EXAMPLE_PLUGIN_DIR "/hello/hello.properties.xml"));
  ASSERT_EQ(chmod(document.c_str(), 0666), 0);
  TRun refused = Run({"-n", "-s", "extra.xml", "-c", "KAPLA_OperatingSystem"});
  EXPECT_EQ(refused.fExit, 1);
  EXPECT_EQ(refused.fErr, "zelcollect: schema document extra.xml: not loaded: file extra.xml is "
                          "writable by others\n");
  TRun allowed = Run({"-n", "-s", "extra.xml", "-c", "KAPLA_OperatingSystem",
                      "--allow-unsafe-plugins"});
  EXPECT_EQ(allowed.fExit, 0);
  EXPECT_EQ(allowed.fErr, "zelcollect: warning: schema document extra.xml: loaded although file "
                          "extra.xml is writable by others\n");
}
