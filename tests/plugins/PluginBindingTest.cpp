// The C plugin binding: registration, the handle, path and log name given to plugins,
// statuses turned into exceptions and GetInfo asked afresh.
#include "helpers.h"

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
  IPluginCallbacks* callbacks = Plugin("KAPLA_TypeOne")->GetCallbacks();
  EXPECT_EQ(callbacks->GetType(), 1);
  EXPECT_EQ(callbacks->GetVersion(), "3.1");
  EXPECT_EQ(callbacks->GetInterfaceVersion(), "1.1");
  // Its URLType counts the calls to GetInfo.
  int before = callbacks->GetURLType();
  EXPECT_EQ(callbacks->GetURLType(), before + 1);
  callbacks->GetName();
  EXPECT_EQ(callbacks->GetURLType(), before + 3);
}

TEST_F(PluginBindingTest, HandlePathAndLogNameOfThePlugin) {
  LoadPlugins({"computersystem"});
  IPlugin* plugin = Plugin("KAPLA_ComputerSystem");
  TCPluginCallbacks* self = dynamic_cast<TCPluginCallbacks*>(plugin->GetCallbacks());
  IPlugin* handle = nullptr;
  EXPECT_ZEL_STATUS(zelGetHandle(self, &handle), zelStatusOK);
  EXPECT_EQ(handle, plugin);
  char* path = nullptr;
  EXPECT_ZEL_STATUS(zelGetPluginPath(self, &path), zelStatusOK);
  EXPECT_EQ(path, self->GetPluginPath()); // The core's own copy.
  EXPECT_EQ(std::string(path), PluginPath("computersystem"));
  EXPECT_ZEL_STATUS(zelGetPluginPath(self, nullptr), zelStatusFail);
  zelWriteLog(self, zelLogWarning, "fan speed low");
  EXPECT_LOGGED("ZEL_KAPLA_ComputerSystem: [Error] zelGetPluginPath: NULL path parameter");
  EXPECT_LOGGED("ZEL_KAPLA_ComputerSystem: [Warning] fan speed low");
}

TEST_F(PluginBindingTest, PluginWhoseInitFailsStaysWithoutClassesItsStatusesBecomeExceptions) {
  LoadPlugins({"badinit"});
  IPlugin* plugin = Plugin("KAPLA_BadInit");
  ASSERT_NE(plugin, nullptr);
  EXPECT_FALSE(plugin->IsInitialized());
  EXPECT_ZEL_THROW(plugin->GetClassesCollected(), zelStatusFail);
  EXPECT_EQ(fSchema->FindClass("KAPLA_BadInit"), nullptr); // Its document was not read.
  EXPECT_LOGGED("ZEL_KAPLA_BadInit: [Status] Init fails");
  EXPECT_THAT(LinesWith("[Error]"), IsEmpty());

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
