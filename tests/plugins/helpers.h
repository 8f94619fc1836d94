// Plugin tests: fresh managers, and real plugins copied into each test's own directory.
#ifndef PLUGINS_HELPERS_H
#define PLUGINS_HELPERS_H

#include "ZelTest.h"

#include "TCIMClass.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMQualifier.h"
#include "TCPluginCallbacks.h"
#include "TLogger.h"
#include "TPluginManager.h"
#include "TQueryManager.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>

#include <unistd.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class PluginTest : public ZelTest {
protected:
  void SetUp() override {
    ZelTest::SetUp();
    fOldDir = std::filesystem::current_path();
    // The loader knows a library by the path it was given: every test needs its own
    // spelling, so that its copies are loaded afresh. Counted, not random, so no "lib" can
    // turn up in a directory name.
    static int sTests = 0;
    std::string name = "plugins" + std::to_string(++sTests);
    fPluginDir = "../" + name;
    std::filesystem::create_directory(TempPath(name));
    ASSERT_EQ(chdir(TempPath(name).c_str()), 0); // Where FindPlugins must run.
    ASSERT_EQ(TPluginManager::Initialize(fPluginDir), zelStatusOK);
    ASSERT_EQ(TQueryManager::Initialize(), zelStatusOK);
    fManager = TPluginManager::GetInstance();
    fSchema = fManager->GetSchema();
  }

  // Ends the plugins as a host does (DeInit, then PrepareForUnload, retried once).
  void TearDown() override {
    for (boost::shared_ptr<IPlugin> const& plugin : fManager->GetPluginsContainer()) {
      IPluginCallbacks* callbacks = plugin->GetCallbacks();
      try {
        callbacks->DeInit();
      } catch (TZELException&) {
      }
      try {
        callbacks->PrepareForUnload();
      } catch (TZELException&) {
        callbacks->PrepareForUnload();
      }
    }
    delete TQueryManager::GetInstance();
    TQueryManager::fgInstance = 0;
    delete TPluginManager::GetInstance();
    TPluginManager::fgInstance = 0;
    EXPECT_EQ(chdir(fOldDir.c_str()), 0);
    ZelTest::TearDown();
  }

  void LoadSharedSchema() { fSchema->PopulateContainerFromFile(ZEL_TEST_DATA_DIR "/shared-schema.xml"); }

  void StagePlugins(std::vector<std::string> const& names) {
    for (std::string const& name : names)
      std::filesystem::copy(std::string(ZEL_TEST_PLUGIN_DIR) + "/" + name, name,
                            std::filesystem::copy_options::recursive);
  }

  std::string PluginPath(std::string const& name) const {
    return fPluginDir + "/" + name + "/lib" + name + ".pi.so";
  }

  void LoadPlugins(std::vector<std::string> const& names) {
    LoadSharedSchema();
    StagePlugins(names);
    fManager->FindAndLoadPlugins();
  }

  IPlugin* Plugin(std::string const& name) {
    IPlugin* plugin = fManager->SearchForPluginByName(name);
    EXPECT_NE(plugin, nullptr) << name << " is not registered";
    return plugin;
  }

  std::vector<TCIMInstance*> Instances(std::string const& className) {
    return fSchema->GetClass(className)->EnumerateInstances(false);
  }

  static std::string StringQualifier(TCIMClass* cls, std::string const& name) {
    TCIMQualifier* qualifier = cls->FindQualifier(name);
    return qualifier ? static_cast<std::string>(qualifier->GetValue()) : "(absent)";
  }

  std::vector<std::string> LinesWith(std::string const& text) const {
    std::vector<std::string> found;
    for (std::string const& line : LoggedLines())
      if (line.find(text) != std::string::npos)
        found.push_back(line);
    return found;
  }

  std::string fOldDir;
  std::string fPluginDir; ///< The manager's directory, relative to the current one.
  TPluginManager* fManager = nullptr;
  TContainer* fSchema = nullptr;
};

/// A C++ plugin that a host registers; PrepareForUnload deletes it, as the C binding does.
class CppPlugin : public IPluginCallbacks {
public:
  CppPlugin(std::string name, int type) : fName(name), fType(type) {}
  int GetType() override { return fType; }
  std::string GetName() override { return fName; }
  std::string GetVersion() override { return "7.0"; }
  std::string GetInterfaceVersion() override { return "1.0"; }
  void PrepareForUnload() override { delete this; }
  void Init() override {}
  void DeInit() override {}
  int GetURLType() override { return 0; }

private:
  std::string fName;
  int fType;
};

/// A C++ plugin of type 0 that collects through a function given by the test.
class CppQueryPlugin : public CppPlugin, public IPluginBasicQueryCallbacks {
public:
  typedef std::function<void(TContainer*, std::vector<TCIMClass*>&)> TGetData;
  CppQueryPlugin(std::string name, TGetData getData) : CppPlugin(name, 0), fGetData(getData) {}
  void GetData(TContainer* container, std::vector<TCIMClass*>& classes) override {
    fGetData(container, classes);
  }

private:
  TGetData fGetData;
};

#endif
