// Plugin discovery in a real directory tree, loading real shared objects, and the
// specification path of a plugin library.
#include "helpers.h"

#include <gmock/gmock.h>

#include <dlfcn.h>
#include <sys/stat.h>

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

// Set by the flag module's load-time code.
extern "C" __attribute__((visibility("default"))) int zelOsFlagModuleLoaded;
int zelOsFlagModuleLoaded = 0;

class PluginFilesTest : public ZelTest {};

TEST_F(PluginFilesTest, FindPluginsLooksOneLevelDownRelativeToTheCurrentDirectory) {
  // plugins/a holds libx.pi.so, its backup and a text file; plugins/b holds liby.pi.so;
  // libtop.pi.so sits directly in plugins/.
  std::string plugins = TempPath("plugins");
  for (std::string dir : {"", "/a", "/b"})
    ASSERT_EQ(::mkdir((plugins + dir).c_str(), 0755), 0);
  for (char const* file :
       {"a/libx.pi.so", "a/libx.pi.so.bak", "a/notes.txt", "b/liby.pi.so", "libtop.pi.so"})
    WriteFile(std::string("plugins/") + file, "");
  {
    ScopedChdir inside(plugins);
    size_t before = OpenFdCount();
    EXPECT_THAT(TOSSpecific::FindPlugins(plugins),
                UnorderedElementsAre(plugins + "/a/libx.pi.so", plugins + "/a/libx.pi.so.bak",
                                     plugins + "/b/liby.pi.so"));
    EXPECT_EQ(OpenFdCount(), before);
  }
  EXPECT_ZEL_THROW(TOSSpecific::FindPlugins(TempPath("missing")), zelStatusFileSystemError);
  // Elsewhere only names that also exist there as directories count: a "b" beside plugins/
  // lets plugins/b through, plugins/a is skipped.
  ASSERT_EQ(::mkdir(TempPath("b").c_str(), 0755), 0);
  ScopedChdir parent(fTempDir);
  EXPECT_THAT(TOSSpecific::FindPlugins(plugins), UnorderedElementsAre(plugins + "/b/liby.pi.so"));
  // A name that is a directory here but a file in plugins/ cannot be opened as one.
  WriteFile("plugins/c", "");
  ASSERT_EQ(::mkdir(TempPath("c").c_str(), 0755), 0);
  EXPECT_ZEL_THROW(TOSSpecific::FindPlugins(plugins), zelStatusFileSystemError);
}

TEST_F(PluginFilesTest, LoadPluginLibraryRunsItsLoadTimeCodeWithGlobalSymbols) {
  ASSERT_EQ(zelOsFlagModuleLoaded, 0);
  EXPECT_NE(TOSSpecific::LoadPluginLibrary(ZEL_OS_FLAG_MODULE), nullptr);
  EXPECT_EQ(zelOsFlagModuleLoaded, 1);
  int* marker = static_cast<int*>(::dlsym(RTLD_DEFAULT, "zelOsFlagModuleMarker"));
  ASSERT_NE(marker, nullptr) << "the library's symbols are not global";
  EXPECT_EQ(*marker, 42);
  EXPECT_THAT(LoggedLines(), IsEmpty());
}

TEST_F(PluginFilesTest, LoadPluginLibraryFailuresLogTheLoaderReason) {
  std::string missing = TempPath("libnone.pi.so");
  EXPECT_ZEL_THROW(TOSSpecific::LoadPluginLibrary(missing), zelStatusFileSystemError);
  EXPECT_LOGGED("ZEL_Core: [Error] ERROR: Failed to load plugin.  Reason: " + missing +
                ": cannot open shared object file: No such file or directory");
  // Every symbol is bound at load time: an unresolved function fails the load.
  std::string unresolved = ZEL_OS_UNRESOLVED_MODULE;
  EXPECT_ZEL_THROW(TOSSpecific::LoadPluginLibrary(unresolved), zelStatusFileSystemError);
  EXPECT_LOGGED("ZEL_Core: [Error] ERROR: Failed to load plugin.  Reason: " + unresolved +
                ": undefined symbol: zelOsTestMissingFunction");
}

TEST_F(PluginFilesTest, BuildSpecificationPath) {
  EXPECT_EQ(TOSSpecific::BuildSpecificationPath("/opt/p/libx.pi.so"), "/opt/p/x.properties.xml");
  // The first "lib" anywhere in the path goes, even in a directory name.
  EXPECT_EQ(TOSSpecific::BuildSpecificationPath("/usr/lib/p/libx.pi.so"),
            "/usr//p/libx.properties.xml");
  // Cut at the first ".pi.so"; a "lib" after it removes nothing.
  EXPECT_EQ(TOSSpecific::BuildSpecificationPath("/opt/p/x.pi.so.lib"), "/opt/p/x.properties.xml");
  EXPECT_ZEL_THROW(TOSSpecific::BuildSpecificationPath("/opt/p/x.pi.so"), zelStatusFail);
  EXPECT_ZEL_THROW(TOSSpecific::BuildSpecificationPath("/usr/lib/p/libx.so"), zelStatusFail);
}
