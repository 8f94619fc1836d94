// Collection runs over real plugins: the two passes, the classes each plugin is asked for,
// the values that reach the container, and failing plugins that do not stop the run.
#include "helpers.h"

#include "TCIMDateTime.h"
#include "TCIMReference.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class QueryManagerTest : public PluginTest {
protected:
  void RunQuery(std::vector<std::string> classNames = std::vector<std::string>()) {
    TQueryManager::GetInstance()->RunQuery(fSchema, classNames);
  }

  std::vector<std::string> GetDataLines() const { return LinesWith("[Status] GetData"); }

  TCIMValue Value(std::string const& className, std::string const& property) {
    std::vector<TCIMInstance*> instances = Instances(className);
    EXPECT_EQ(instances.size(), 1u) << className;
    return instances.empty() ? TCIMValue() : instances[0]->GetProperty(property).GetValue();
  }
};

static const char kSystemFirstPass[] =
    "ZEL_KAPLA_ComputerSystem: [Status] GetData 5: KAPLA_ComputerSystem KAPLA_Processor "
    "KAPLA_Sample KAPLA_NullMark KAPLA_FalseMark";

TEST_F(QueryManagerTest, OrdinaryClassesOfAllPluginsComeBeforeAssociations) {
  LoadPlugins({"fans", "computersystem", "typeone"});
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  RunQuery();

  long system = LinePosition(kSystemFirstPass);
  long fans = LinePosition("ZEL_KAPLA_Fans: [Status] GetData 1: KAPLA_Fan");
  long associations = LinePosition("ZEL_KAPLA_Fans: [Status] GetData 1: KAPLA_SystemFan");
  ASSERT_GE(system, 0);
  ASSERT_GE(fans, 0);
  EXPECT_GT(associations, system);
  EXPECT_GT(associations, fans);
  // One call per plugin and pass; the type-1 plugin is never asked.
  EXPECT_EQ(GetDataLines().size(), 3u);
  EXPECT_LOGGED("ZEL_Core: [Debug] Asking plugin KAPLA_Fans for KAPLA_SystemFan");
  EXPECT_LOGGED("ZEL_Core: [Debug] Asking plugin KAPLA_ComputerSystem for KAPLA_FalseMark");
  EXPECT_THAT(LinesWith("for KAPLA_Disabled"), IsEmpty());
  EXPECT_THAT(LinesWith("[Error]"), IsEmpty());

  // The association points at the computer system of the other plugin.
  EXPECT_LOGGED("ZEL_KAPLA_Fans: [Status] System ZELHOST01 of class KAPLA_ComputerSystem");
  std::vector<TCIMInstance*> links = Instances("KAPLA_SystemFan");
  ASSERT_EQ(links.size(), 2u);
  TCIMReference group = links[0]->GetProperty("GroupComponent").GetValue();
  EXPECT_EQ(group.GetPath(),
            "KAPLA_ComputerSystem.CreationClassName=\"KAPLA_ComputerSystem\",Name=\"ZELHOST01\"");
  EXPECT_EQ(group.GetCIMElement(), Instances("KAPLA_ComputerSystem")[0]);
  TCIMReference part = links[1]->GetProperty("PartComponent").GetValue();
  EXPECT_EQ(part.GetPath(), "KAPLA_Fan.DeviceID=\"FAN1\"");

  EXPECT_EQ(Instances("KAPLA_Fan").size(), 2u);
  EXPECT_EQ(Instances("KAPLA_Processor").size(), 2u);
  // DONTCOLLECT true and ABSTRACT are skipped; DONTCOLLECT NULL or false is collected.
  EXPECT_THAT(Instances("KAPLA_Disabled"), IsEmpty());
  EXPECT_THAT(Instances("KAPLA_Template"), IsEmpty());
  EXPECT_EQ(Instances("KAPLA_NullMark").size(), 1u);
  EXPECT_EQ(Instances("KAPLA_FalseMark").size(), 1u);
  EXPECT_THAT(Instances("KAPLA_TypeOne"), IsEmpty());
}

TEST_F(QueryManagerTest, TypedValuesReachTheContainer) {
  LoadPlugins({"computersystem"});
  RunQuery();

  EXPECT_EQ(static_cast<bool>(Value("KAPLA_Sample", "Flag")), true);
  EXPECT_EQ(static_cast<unsigned char>(Value("KAPLA_Sample", "U8")), 255);
  EXPECT_EQ(static_cast<signed char>(Value("KAPLA_Sample", "S8")), -128);
  EXPECT_EQ(static_cast<unsigned short>(Value("KAPLA_Sample", "U16")), 65535);
  EXPECT_EQ(static_cast<short>(Value("KAPLA_Sample", "S16")), -32768);
  EXPECT_EQ(static_cast<unsigned int>(Value("KAPLA_Sample", "U32")), 4294967295u);
  EXPECT_EQ(static_cast<int>(Value("KAPLA_Sample", "S32")), -2147483647 - 1);
  EXPECT_EQ(static_cast<unsigned long>(Value("KAPLA_Sample", "U64")), 18446744073709551615ul);
  EXPECT_EQ(static_cast<long>(Value("KAPLA_Sample", "S64")), -9223372036854775807l - 1);
  EXPECT_EQ(static_cast<std::string>(Value("KAPLA_Sample", "Text")), "h\xc3\xa9llo, world");
  EXPECT_EQ(static_cast<unsigned int>(Value("KAPLA_Sample", "Parsed")), 12345u);
  EXPECT_EQ(Value("KAPLA_Sample", "Stamp").ToString(10), "20031107153000.000000-300");
  EXPECT_EQ(Value("KAPLA_Sample", "Levels").ToString(10), "{ 10, 20, 30 }");
  EXPECT_EQ(Value("KAPLA_Sample", "Levels").GetType(),
            TCIMValue::TCIMType::kUint16 | TCIMValue::TCIMType::kArray);
  EXPECT_FALSE(Value("KAPLA_Sample", "DateTimeOfCollection").IsNull());

  EXPECT_EQ(static_cast<std::string>(Value("KAPLA_ComputerSystem", "SerialNumber")),
            "KQ1234X  ");
  EXPECT_EQ(static_cast<unsigned int>(Instances("KAPLA_Processor")[1]
                                          ->GetProperty("MaxClockSpeed")
                                          .GetValue()),
            2400u);
}

TEST_F(QueryManagerTest, FilledClassesAreNotAskedAgain) {
  LoadPlugins({"computersystem", "fans"});
  RunQuery();
  ASSERT_EQ(GetDataLines().size(), 3u);

  RunQuery();
  RunQuery({"KAPLA_Processor"});
  EXPECT_EQ(GetDataLines().size(), 3u);
  EXPECT_EQ(Instances("KAPLA_Processor").size(), 2u);
}

TEST_F(QueryManagerTest, ClassNamesRestrictTheRun) {
  LoadPlugins({"computersystem", "fans"});
  // Names compare exactly; a name that no plugin collects is ignored.
  RunQuery({"kapla_processor", "KAPLA_Nothing"});
  EXPECT_THAT(GetDataLines(), IsEmpty());

  RunQuery({"KAPLA_Nothing", "KAPLA_Processor", "KAPLA_Disabled"});
  EXPECT_THAT(GetDataLines(),
              ElementsAre("ZEL_KAPLA_ComputerSystem: [Status] GetData 1: KAPLA_Processor"));
  EXPECT_THAT(Instances("KAPLA_ComputerSystem"), IsEmpty());
  EXPECT_THAT(Instances("KAPLA_Fan"), IsEmpty());
}

TEST_F(QueryManagerTest, FailingPluginsAreLoggedAndTheRunGoesOn) {
  LoadPlugins({"halfdata", "badinit", "computersystem"});
  RunQuery();

  // GetData failed after one instance: that one stays, the open one is dropped.
  EXPECT_LOGGED("ZEL_Core: [Error] Plugin KAPLA_HalfData threw exception "
                "zelStatusErrorCollectingClass");
  std::vector<TCIMInstance*> half = Instances("KAPLA_Half");
  ASSERT_EQ(half.size(), 1u);
  EXPECT_EQ(static_cast<unsigned int>(half[0]->GetProperty("Id").GetValue()), 1u);
  // Without classes (its Init failed) the plugin fails in both passes.
  EXPECT_EQ(LinesWith("ZEL_Core: [Error] Plugin KAPLA_BadInit threw exception zelStatusFail")
                .size(),
            2u);
  EXPECT_THAT(LinesWith("ZEL_KAPLA_BadInit: [Status] GetData"), IsEmpty());
  // The others were collected whatever the order of the plugins.
  EXPECT_LOGGED(kSystemFirstPass);
  EXPECT_EQ(Instances("KAPLA_Processor").size(), 2u);

  // A class that has instances is done, even after a failure.
  RunQuery();
  EXPECT_EQ(LinesWith("GetData 1: KAPLA_Half").size(), 1u);
}

TEST_F(QueryManagerTest, PluginWithoutQueryInterface) {
  LoadSharedSchema();
  std::filesystem::create_directory("noquery");
  std::filesystem::copy(ZEL_TEST_DATA_DIR "/noquery.properties.xml", "noquery");
  fManager->RegisterPlugin(new CppPlugin("KAPLA_NoQuery", 0));
  fManager->InitializeProviders("./noquery/libnoquery.pi.so");
  ASSERT_NE(fSchema->FindClass("KAPLA_NoQuery"), nullptr);
  StagePlugins({"computersystem"});
  fManager->FindAndLoadPlugins();

  RunQuery();
  EXPECT_LOGGED("ZEL_Core: [Error] Plugin KAPLA_NoQuery doesn't support the "
                "IPluginBasicQueryCallbacks.");
  EXPECT_LOGGED("ZEL_Core: [Error] Plugin KAPLA_NoQuery threw exception "
                "zelStatusInvalidPlugin");
  EXPECT_LOGGED(kSystemFirstPass);
}

// Two plugins that collect the same class: the second is asked only while the class is
// still empty. Documents cannot give two plugins one class, so the first plugin is a handle
// of the test's own that claims the class of a real plugin.
class ClaimingPlugin : public IPlugin {
public:
  ClaimingPlugin(IPluginCallbacks* callbacks, TCIMClass* cls)
      : fCallbacks(callbacks), fClasses(1, cls) {}
  IPluginCallbacks* GetCallbacks() const override { return fCallbacks; }
  void Initialize() override {}
  bool IsInitialized() const override { return true; }
  std::string GetPath() const override { return ""; }
  std::string GetSpecificationPath() const override { return ""; }
  std::vector<TCIMClass*> GetClassesCollected() const override { return fClasses; }

private:
  IPluginCallbacks* fCallbacks;
  std::vector<TCIMClass*> fClasses;
};

TEST_F(QueryManagerTest, SecondCollectorOfAClassIsAskedOnlyWhileItIsEmpty) {
  LoadSharedSchema();
  StagePlugins({"computersystem"});
  int calls = 0;
  bool produce = false;
  CppQueryPlugin* claimant = new CppQueryPlugin(
      "KAPLA_Claimant", [&](TContainer* container, std::vector<TCIMClass*>& classes) {
        ++calls;
        if (!produce)
          return;
        TCIMInstance* instance = container->AllocateInstance(classes.at(0));
        instance->SetPropertyValue("DeviceID", TCIMValue("CPU9"));
        instance->AddToContainer();
      });
  fManager->FindAndLoadPlugins();
  TCIMClass* processor = fSchema->GetClass("KAPLA_Processor");
  // The claimant goes first in registration order.
  fManager->GetPluginsContainer().push_front(
      boost::shared_ptr<IPlugin>(new ClaimingPlugin(claimant, processor)));

  RunQuery({"KAPLA_Processor"});
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(LinesWith("GetData 1: KAPLA_Processor").size(), 1u);
  EXPECT_EQ(Instances("KAPLA_Processor").size(), 2u);

  processor->RemoveInstance(*Instances("KAPLA_Processor")[0]);
  processor->RemoveInstance(*Instances("KAPLA_Processor")[0]);
  produce = true;
  RunQuery({"KAPLA_Processor"});
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(LinesWith("GetData 1: KAPLA_Processor").size(), 1u);
  std::vector<TCIMInstance*> processors = Instances("KAPLA_Processor");
  ASSERT_EQ(processors.size(), 1u);
  EXPECT_EQ(static_cast<std::string>(processors[0]->GetProperty("DeviceID").GetValue()), "CPU9");
}

TEST_F(QueryManagerTest, OnlyStandardExceptionsAreContained) {
  LoadSharedSchema();
  std::filesystem::create_directory("noquery");
  std::filesystem::copy(ZEL_TEST_DATA_DIR "/noquery.properties.xml", "noquery");
  bool standard = true;
  fManager->RegisterPlugin(new CppQueryPlugin(
      "KAPLA_Thrower", [&](TContainer*, std::vector<TCIMClass*>&) {
        if (standard)
          throw std::runtime_error("disk on fire");
        throw 42;
      }));
  fManager->InitializeProviders("./noquery/libnoquery.pi.so");

  RunQuery();
  EXPECT_LOGGED("ZEL_Core: [Error] Plugin KAPLA_Thrower threw exception disk on fire");
  standard = false;
  EXPECT_THROW(RunQuery(), int);
}
