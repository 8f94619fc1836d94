// The plugin manager over real plugin libraries: loading, documents and contained failures.
#include "helpers.h"

#include "TRootObject.h"

#include <sstream>

#include <dlfcn.h>

typedef PluginTest PluginManagerTest;

static std::vector<std::string> ClassNames(IPlugin* plugin) {
  std::vector<std::string> names;
  for (TCIMClass* cls : plugin->GetClassesCollected())
    names.push_back(cls->GetName());
  return names;
}

TEST_F(PluginManagerTest, FindsLoadsOnceAndDescribesPlugins) {
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  LoadPlugins({"computersystem", "fans", "typeone"});

  IPlugin* system = Plugin("KAPLA_ComputerSystem");
  EXPECT_TRUE(system->IsInitialized());
  EXPECT_EQ(system->GetPath(), PluginPath("computersystem"));
  EXPECT_EQ(system->GetSpecificationPath(),
            fPluginDir + "/computersystem/computersystem.properties.xml");
  EXPECT_THAT(ClassNames(system),
              ElementsAre("KAPLA_ComputerSystem", "KAPLA_Processor", "KAPLA_Sample",
                          "KAPLA_Disabled", "KAPLA_NullMark", "KAPLA_FalseMark", "KAPLA_Template"));
  for (TCIMClass* cls : system->GetClassesCollected()) {
    EXPECT_EQ(StringQualifier(cls, "PLUGINNAME"), "KAPLA_ComputerSystem") << cls->GetName();
    EXPECT_EQ(StringQualifier(cls, "PLUGINVERSION"), "1.2.0") << cls->GetName();
  }
  // A type-1 plugin's document is read and stamped too.
  EXPECT_THAT(ClassNames(Plugin("KAPLA_TypeOne")), ElementsAre("KAPLA_TypeOne"));
  EXPECT_EQ(StringQualifier(fSchema->GetClass("KAPLA_TypeOne"), "PLUGINVERSION"), "3.1");
  EXPECT_NE(Plugin("KAPLA_Fans"), nullptr);
  // A shared class belongs to no plugin.
  EXPECT_EQ(StringQualifier(fSchema->GetClass("KAPLA_System"), "PLUGINNAME"), "(absent)");

  // Each library is loaded once, however often it is asked for, and logged by its path.
  fManager->LoadPlugin(PluginPath("computersystem"));
  fManager->FindAndLoadPlugins();
  EXPECT_EQ(fManager->GetPluginsContainer().size(), 3u);
  EXPECT_THAT(LinesWith("[Debug] " + fPluginDir),
              UnorderedElementsAre("ZEL_Core: [Debug] " + PluginPath("computersystem"),
                                   "ZEL_Core: [Debug] " + PluginPath("fans"),
                                   "ZEL_Core: [Debug] " + PluginPath("typeone")));
  // The plugin saw no path before Init and its own after.
  std::ostringstream handle;
  handle << system;
  EXPECT_LOGGED("ZEL_KAPLA_ComputerSystem: [Status] Init: path NULL at registration, " +
                fPluginDir + "/computersystem/libcomputersystem.pi.so now; handle " + handle.str());
  EXPECT_THAT(LinesWith("[Error]"), IsEmpty());
}

TEST_F(PluginManagerTest, LibraryThatFailsToLoadIsLoggedAndSkipped) {
  LoadPlugins({"unresolved", "computersystem"});
  ASSERT_EQ(fManager->GetPluginsContainer().size(), 1u);
  EXPECT_NE(Plugin("KAPLA_ComputerSystem"), nullptr);
  EXPECT_LOGGED("ZEL_Core: [Error] DLL " + fPluginDir +
                "/unresolved/libunresolved.pi.so failed to initialize properly");
  EXPECT_EQ(fSchema->FindClass("KAPLA_Unresolved"), nullptr);
}

TEST_F(PluginManagerTest, LibraryRegisteringTwoPlugins) {
  LoadPlugins({"twins"});
  ASSERT_EQ(fManager->GetPluginsContainer().size(), 2u);
  IPlugin* first = fManager->GetPluginsContainer().front().get();
  IPlugin* second = fManager->GetPluginsContainer().back().get();
  EXPECT_EQ(first->GetCallbacks()->GetVersion(), "1.0");
  EXPECT_EQ(second->GetCallbacks()->GetVersion(), "2.0");
  EXPECT_EQ(second->GetPath(), PluginPath("twins"));
  // Both read the one document; its class was new only for the first.
  EXPECT_THAT(ClassNames(first), ElementsAre("KAPLA_Twin"));
  EXPECT_ZEL_THROW(second->GetClassesCollected(), zelStatusFail);
  EXPECT_EQ(StringQualifier(fSchema->GetClass("KAPLA_Twin"), "PLUGINVERSION"), "1.0");
  // Same name: the first registered wins.
  EXPECT_EQ(fManager->SearchForPluginByName("KAPLA_Twin"), first);
  EXPECT_EQ(fManager->SearchForPluginByName("kapla_twin"), nullptr);
}

TEST_F(PluginManagerTest, LibraryRegisteringNothingStaysLoaded) {
  LoadPlugins({"silent"});
  EXPECT_THAT(fManager->GetPluginsContainer(), IsEmpty());
  void* handle = dlopen(PluginPath("silent").c_str(), RTLD_NOW | RTLD_NOLOAD);
  EXPECT_NE(handle, nullptr) << "the library was unloaded";
  if (handle)
    dlclose(handle); // Drops only the reference just taken.
}

TEST_F(PluginManagerTest, SchemaWithoutPluginDeclarations) {
  // No shared schema: typeone's document declares KEY itself, but nothing declares PLUGINNAME.
  StagePlugins({"typeone"});
  EXPECT_NO_THROW(fManager->FindAndLoadPlugins());
  EXPECT_LOGGED("ZEL_Core: [Error] Couldn't find PLUGINNAME/PLUGINVERSION qualifier decl");
  // The plugin stays, with its classes read but not stamped.
  IPlugin* plugin = Plugin("KAPLA_TypeOne");
  ASSERT_NE(plugin, nullptr);
  EXPECT_THAT(ClassNames(plugin), ElementsAre("KAPLA_TypeOne"));
  EXPECT_EQ(fSchema->GetClass("KAPLA_TypeOne")->FindQualifier("PLUGINNAME"), nullptr);
}

TEST_F(PluginManagerTest, DocumentFailureEndsTheTakeOver) {
  LoadSharedSchema();
  CppPlugin* first = new CppPlugin("KAPLA_First", 0);
  CppPlugin* second = new CppPlugin("KAPLA_Second", 0);
  fManager->RegisterPlugin(first);
  fManager->RegisterPlugin(second);
  // The document of ./missing/libmissing.pi.so does not exist.
  EXPECT_ZEL_THROW(fManager->InitializeProviders("./missing/libmissing.pi.so"),
                   zelStatusFileSystemError);
  ASSERT_EQ(fManager->GetPluginsContainer().size(), 1u);
  EXPECT_EQ(fManager->GetPluginsContainer().front()->GetCallbacks(), first);
  // The next load clears the registration left over.
  StagePlugins({"silent"});
  fManager->LoadPlugin(PluginPath("silent"));
  fManager->InitializeProviders("./missing/libmissing.pi.so");
  EXPECT_EQ(fManager->GetPluginsContainer().size(), 1u);
  second->PrepareForUnload();
}

TEST_F(PluginManagerTest, InitializeReplacesTheManagerAndAnUnlistableDirectoryFails) {
  // A second Initialize replaces the pointer and leaves the first manager alive.
  ASSERT_EQ(TPluginManager::Initialize("./no-such-directory"), zelStatusOK);
  TPluginManager* second = TPluginManager::GetInstance();
  EXPECT_EQ(TRootObject::GetPluginManager(), second);
  EXPECT_ZEL_THROW(second->FindAndLoadPlugins(), zelStatusFileSystemError);
  delete second;
  TPluginManager::fgInstance = fManager;
}
