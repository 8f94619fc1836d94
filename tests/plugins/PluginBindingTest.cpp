// The C plugin binding: registration, the handle and path given to plugins, statuses turned
// into exceptions, GetInfo asked afresh, commits at the end of GetData, and the plugin side
// of zelWriteLog.
#include "helpers.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;

typedef PluginTest PluginBindingTest;

TEST_F(PluginBindingTest, RegistrationArgumentsAreAsserted) {
  zelPluginCallbacks callbacks = {};
  TCPluginCallbacks* handle = nullptr;
  EXPECT_DEATH(zelRegisterPlugin(nullptr, &handle),
               "cwrappers.*zelStatusCode zelRegisterPlugin\\(zelPluginCallbacks\\*, "
               "TCPluginCallbacks\\*\\*\\): Assertion `callbacks != __null' failed");
  EXPECT_DEATH(zelRegisterPlugin(&callbacks, nullptr),
               "Assertion `pluginHandle != __null' failed");
}

TEST_F(PluginBindingTest, IdentityIsAskedAfreshEachTime) {
  LoadPlugins({"typeone"});
  IPlugin* plugin = Plugin("KAPLA_TypeOne");
  ASSERT_NE(plugin, nullptr);
  IPluginCallbacks* callbacks = plugin->GetCallbacks();
  EXPECT_EQ(callbacks->GetType(), 1);
  EXPECT_EQ(callbacks->GetVersion(), "3.1");
  EXPECT_EQ(callbacks->GetInterfaceVersion(), "1.1");
  // Its URLType counts the calls to GetInfo.
  int before = callbacks->GetURLType();
  EXPECT_EQ(callbacks->GetURLType(), before + 1);
  callbacks->GetName();
  EXPECT_EQ(callbacks->GetURLType(), before + 3);
}

TEST_F(PluginBindingTest, HandleAndPathForThePlugin) {
  LoadPlugins({"computersystem"});
  IPlugin* plugin = Plugin("KAPLA_ComputerSystem");
  ASSERT_NE(plugin, nullptr);
  TCPluginCallbacks* self = Callbacks(plugin);
  ASSERT_NE(self, nullptr);

  IPlugin* handle = nullptr;
  EXPECT_ZEL_STATUS(zelGetHandle(self, &handle), zelStatusOK);
  EXPECT_EQ(handle, plugin);
  EXPECT_EQ(self->GetPluginHandle(), plugin);

  char* path = nullptr;
  EXPECT_ZEL_STATUS(zelGetPluginPath(self, &path), zelStatusOK);
  ASSERT_NE(path, nullptr);
  EXPECT_EQ(std::string(path), fPluginDir + "/computersystem/libcomputersystem.pi.so");
  EXPECT_EQ(path, self->GetPluginPath()); // The core's own copy.
  EXPECT_ZEL_STATUS(zelGetPluginPath(self, nullptr), zelStatusFail);
  EXPECT_LOGGED("ZEL_KAPLA_ComputerSystem: [Error] zelGetPluginPath: NULL path parameter");
}

TEST_F(PluginBindingTest, StatusesBecomeExceptions) {
  LoadPlugins({"badinit"});
  IPlugin* plugin = Plugin("KAPLA_BadInit");
  ASSERT_NE(plugin, nullptr);
  IPluginCallbacks* callbacks = plugin->GetCallbacks();
  EXPECT_ZEL_THROW(callbacks->Init(), zelStatusNotImplemented);
  EXPECT_ZEL_THROW(plugin->Initialize(), zelStatusNotImplemented);
  EXPECT_FALSE(plugin->IsInitialized());
  EXPECT_NO_THROW(callbacks->DeInit());

  // A failed PrepareForUnload keeps the object, which can be asked again.
  EXPECT_ZEL_THROW(callbacks->PrepareForUnload(), zelStatusInvalidOpSequence);
  EXPECT_EQ(callbacks->GetName(), "KAPLA_BadInit");
  EXPECT_NO_THROW(callbacks->PrepareForUnload());
  fManager->GetPluginsContainer().clear(); // Its callbacks are gone.
}

TEST_F(PluginBindingTest, GetDataPassesTheClassNames) {
  LoadPlugins({"computersystem", "twins"});
  IPlugin* plugin = Plugin("KAPLA_ComputerSystem");
  ASSERT_NE(plugin, nullptr);
  IPluginBasicQueryCallbacks* query = Callbacks(plugin);

  std::vector<TCIMClass*> none;
  query->GetData(fSchema, none);
  std::vector<TCIMClass*> two = {fSchema->GetClass("KAPLA_Processor"),
                                 fSchema->GetClass("KAPLA_Twin")};
  query->GetData(fSchema, two);
  EXPECT_THAT(LinesWith("GetData"),
              ElementsAre("ZEL_KAPLA_ComputerSystem: [Status] GetData 0:",
                          "ZEL_KAPLA_ComputerSystem: [Status] GetData 2: KAPLA_Processor "
                          "KAPLA_Twin"));
  // The last instance, left open by the plugin, was committed when GetData returned.
  EXPECT_EQ(Instances("KAPLA_Processor").size(), 2u);
  EXPECT_EQ(Instances("KAPLA_Twin").size(), 1u);
}

TEST_F(PluginBindingTest, LastInstanceThatCannotBeCommitted) {
  LoadPlugins({"computersystem"});
  IPluginBasicQueryCallbacks* query = Callbacks(Plugin("KAPLA_ComputerSystem"));
  ASSERT_NE(query, nullptr);
  // A host container whose computer-system class has a key that the plugin never sets.
  TContainer strict;
  strict.PopulateContainerFromFile(ZEL_TEST_DATA_DIR "/strict-computersystem.xml");
  std::vector<TCIMClass*> classes = {strict.GetClass("KAPLA_ComputerSystem")};

  EXPECT_ZEL_THROW(query->GetData(&strict, classes), zelStatusInvalidInstance);
  EXPECT_LOGGED("ZEL_Core: [Error] Instance KAPLA_ComputerSystem: key property Slot is NULL");
  EXPECT_LOGGED("ZEL_Core: [Error] zelAddClass: CIM class KAPLA_ComputerSystem threw "
                "exception zelStatusInvalidInstance");
  EXPECT_TRUE(classes[0]->EnumerateInstances(false).empty());
}

TEST_F(PluginBindingTest, PluginLogLinesCarryThePluginName) {
  LoadPlugins({"computersystem"});
  TCPluginCallbacks* self = Callbacks(Plugin("KAPLA_ComputerSystem"));
  ASSERT_NE(self, nullptr);
  zelWriteLog(self, zelLogWarning, "fan speed low");
  zelWriteLog(nullptr, zelLogWarning, "from the core");
  zelWriteLog(self, zelLogDebug, "dropped below the threshold");
  zelWriteLog(self, zelLogStatus, nullptr);
  EXPECT_THAT(LinesWith("[Warning]"), ElementsAre("ZEL_KAPLA_ComputerSystem: [Warning] fan speed low",
                                                  "ZEL_Core: [Warning] from the core"));
  EXPECT_NOT_LOGGED("ZEL_KAPLA_ComputerSystem: [Debug] dropped below the threshold");
  EXPECT_LOGGED("ZEL_Core: [Status] zelWriteLog: NULL text parameter");
}
