// Plugins run as root: only libraries, documents and directories that only root (or the
// user running the collector) could have written are loaded; the check can be lifted.
#include "ZelCollectRun.h"

#include <filesystem>

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
  // What is changed, how (a mode; 0: another owner; S_IFLNK: another user's link to the
  // library moved away), and the reason given, % standing for the path.
  struct {
    std::string TPluginCopy::*fPath;
    mode_t fMode;
    const char* fReason;
  } const rows[] = {
      {&TPluginCopy::fDirectory, 0777, "directory % is writable by others"},
      {&TPluginCopy::fDirectory, 01777, "directory % is writable by others"},
      {&TPluginCopy::fSubdirectory, 0775, "directory % is writable by group"},
      {&TPluginCopy::fLibrary, 0775, "file % is writable by group"},
      {&TPluginCopy::fLibrary, 0, "file % is owned by user nobody"},
      {&TPluginCopy::fDocument, 0666, "file % is writable by others"},
      {&TPluginCopy::fLibrary, S_IFLNK, "symbolic link % is owned by user nobody"},
  };
  int number = 0;
  for (const auto& row : rows) {
    TPluginCopy plugin(TempPath("pw" + std::to_string(++number)));
    std::string path = plugin.*row.fPath, reason = row.fReason;
    reason.replace(reason.find('%'), 1, path);
    SCOPED_TRACE(reason);
    if (row.fMode == S_IFLNK) {
      std::string elsewhere = plugin.fDirectory + "-elsewhere.pi.so";
      fs::rename(path, elsewhere);
      EXPECT_EQ(symlink(elsewhere.c_str(), path.c_str()), 0);
      EXPECT_EQ(lchown(path.c_str(), kNobody, kNobody), 0);
    } else if (row.fMode == 0) {
      EXPECT_EQ(chown(path.c_str(), kNobody, 0), 0);
    } else {
      EXPECT_EQ(chmod(path.c_str(), row.fMode), 0);
    }
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
