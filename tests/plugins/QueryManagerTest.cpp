// Collection runs over real plugins: the two passes, the classes asked for, failing plugins.
#include "helpers.h"

class QueryManagerTest : public PluginTest {
protected:
  void RunQuery(std::vector<std::string> classNames = {}) {
    TQueryManager::GetInstance()->RunQuery(fSchema, classNames);
  }

  std::vector<std::string> GetDataLines() const { return LinesWith("[Status] GetData"); }

  // A C++ plugin that reads the document of a "noquery" plugin.
  void RegisterWithDocument(CppPlugin* plugin) {
    std::filesystem::create_directory("noquery");
    std::filesystem::copy(ZEL_TEST_DATA_DIR "/noquery.properties.xml", "noquery");
    fManager->RegisterPlugin(plugin);
    fManager->InitializeProviders("./noquery/libnoquery.pi.so");
  }
};

static const char kSystemFirstPass[] =
    "ZEL_KAPLA_ComputerSystem: [Status] GetData 5: KAPLA_ComputerSystem KAPLA_Processor "
    "KAPLA_Sample KAPLA_NullMark KAPLA_FalseMark";

TEST_F(QueryManagerTest, OrdinaryClassesOfAllPluginsComeBeforeAssociationsWithTheirValues) {
  LoadPlugins({"fans", "computersystem", "typeone"});
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  RunQuery();
  // One call per plugin and pass, in directory order; the type-1 plugin is never asked.
  std::vector<std::string> calls = GetDataLines();
  ASSERT_EQ(calls.size(), 3u);
  EXPECT_THAT(std::vector<std::string>(calls.begin(), calls.begin() + 2),
              UnorderedElementsAre(kSystemFirstPass, "ZEL_KAPLA_Fans: [Status] GetData 1: KAPLA_Fan"));
  EXPECT_EQ(calls[2], "ZEL_KAPLA_Fans: [Status] GetData 1: KAPLA_SystemFan");
  EXPECT_LOGGED("ZEL_Core: [Debug] Asking plugin KAPLA_Fans for KAPLA_SystemFan");
  EXPECT_THAT(LinesWith("[Error]"), IsEmpty());

  // The association points at the computer system of the other plugin.
  EXPECT_LOGGED("ZEL_KAPLA_Fans: [Status] System ZELHOST01 of class KAPLA_ComputerSystem");
  std::vector<TCIMInstance*> links = Instances("KAPLA_SystemFan");
  ASSERT_EQ(links.size(), 2u);
  TCIMReference group = links[0]->GetProperty("GroupComponent").GetValue();
  EXPECT_EQ(group.GetPath(),
            "KAPLA_ComputerSystem.CreationClassName=\"KAPLA_ComputerSystem\",Name=\"ZELHOST01\"");
  EXPECT_EQ(group.GetCIMElement(), Instances("KAPLA_ComputerSystem")[0]);
  // DONTCOLLECT true and ABSTRACT are skipped; DONTCOLLECT NULL or false is collected. The
  // last instance, left open by the plugin, was committed when GetData returned.
  EXPECT_THAT(Instances("KAPLA_Disabled"), IsEmpty());
  EXPECT_THAT(Instances("KAPLA_Template"), IsEmpty());
  EXPECT_EQ(Instances("KAPLA_NullMark").size(), 1u);
  EXPECT_EQ(Instances("KAPLA_FalseMark").size(), 1u);
  EXPECT_THAT(Instances("KAPLA_TypeOne"), IsEmpty());

  // Values of every type reach the container.
  std::string values;
  for (TCIMProperty const* property : Instances("KAPLA_Sample").at(0)->EnumerateProperties())
    if (property->GetName() != "DateTimeOfCollection")
      values += property->GetName() + "=" + property->GetValue().ToString(10) + "\n";
  EXPECT_EQ(values, "Flag=true\nId=1\nLevels={ 10, 20, 30 }\nParsed=12345\n"
                    "S64=-9223372036854775808\nS8=-128\nStamp=20031107153000.000000-300\n"
                    "Text=h\xc3\xa9llo, world\nU64=18446744073709551615\nU8=255\n");
  EXPECT_EQ(Instances("KAPLA_Sample")[0]->GetProperty("Levels").GetValue().GetType(),
            TCIMValue::TCIMType::kUint16 | TCIMValue::TCIMType::kArray);
  EXPECT_FALSE(Instances("KAPLA_Sample")[0]->GetProperty("DateTimeOfCollection").GetValue().IsNull());
}

TEST_F(QueryManagerTest, ClassNamesRestrictTheRunAndFilledClassesAreNotAskedAgain) {
  LoadPlugins({"computersystem", "fans"});
  // Names compare exactly; a name that no plugin collects is ignored.
  RunQuery({"kapla_processor", "KAPLA_Nothing"});
  EXPECT_THAT(GetDataLines(), IsEmpty());
  RunQuery({"KAPLA_Nothing", "KAPLA_Processor", "KAPLA_Disabled"});
  EXPECT_THAT(GetDataLines(),
              ElementsAre("ZEL_KAPLA_ComputerSystem: [Status] GetData 1: KAPLA_Processor"));
  EXPECT_THAT(Instances("KAPLA_ComputerSystem"), IsEmpty());

  RunQuery();
  EXPECT_EQ(GetDataLines().size(), 4u);
  EXPECT_LOGGED("ZEL_KAPLA_ComputerSystem: [Status] GetData 4: KAPLA_ComputerSystem KAPLA_Sample "
                "KAPLA_NullMark KAPLA_FalseMark");
  RunQuery();
  EXPECT_EQ(GetDataLines().size(), 4u);
}

TEST_F(QueryManagerTest, FailingPluginsAreLoggedAndTheRunGoesOn) {
  LoadPlugins({"halfdata", "badinit", "computersystem"});
  RunQuery();

  // GetData failed after one instance: that one stays, the open one is dropped.
  EXPECT_LOGGED("ZEL_Core: [Error] Plugin KAPLA_HalfData threw exception "
                "zelStatusErrorCollectingClass");
  std::vector<TCIMInstance*> half = Instances("KAPLA_Half");
  ASSERT_EQ(half.size(), 1u);
  EXPECT_EQ(half[0]->GetProperty("Id").GetValue().ToString(10), "1");
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
  RegisterWithDocument(new CppPlugin("KAPLA_NoQuery", 0));
  RunQuery();
  EXPECT_LOGGED("ZEL_Core: [Error] Plugin KAPLA_NoQuery doesn't support the "
                "IPluginBasicQueryCallbacks.");
  EXPECT_LOGGED("ZEL_Core: [Error] Plugin KAPLA_NoQuery threw exception "
                "zelStatusInvalidPlugin");
}

// Documents cannot give two plugins one class: this handle claims the class of a real plugin.
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
  LoadPlugins({"computersystem"});
  TCIMClass* processor = fSchema->GetClass("KAPLA_Processor");
  int calls = 0;
  CppQueryPlugin* claimant =
      new CppQueryPlugin("KAPLA_Claimant", [&](TContainer* container, std::vector<TCIMClass*>&) {
        if (++calls == 2) {
          TCIMInstance* instance = container->AllocateInstance(processor);
          instance->SetPropertyValue("DeviceID", TCIMValue("CPU9"));
          instance->AddToContainer();
        }
      });
  // The claimant goes first in registration order.
  fManager->GetPluginsContainer().push_front(
      boost::shared_ptr<IPlugin>(new ClaimingPlugin(claimant, processor)));
  RunQuery({"KAPLA_Processor"}); // The claimant produces nothing: the plugin is asked.
  EXPECT_EQ(Instances("KAPLA_Processor").size(), 2u);
  processor->RemoveInstance(*Instances("KAPLA_Processor")[0]);
  processor->RemoveInstance(*Instances("KAPLA_Processor")[0]);
  RunQuery({"KAPLA_Processor"}); // Now it produces one: the plugin is not asked.
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(LinesWith("GetData 1: KAPLA_Processor").size(), 1u);
  ASSERT_EQ(Instances("KAPLA_Processor").size(), 1u);
  EXPECT_EQ(static_cast<std::string>(Instances("KAPLA_Processor")[0]->GetProperty("DeviceID").GetValue()),
            "CPU9");
}

TEST_F(QueryManagerTest, OnlyStandardExceptionsAreContained) {
  LoadSharedSchema();
  bool standard = true;
  RegisterWithDocument(new CppQueryPlugin("KAPLA_Thrower", [&](TContainer*, std::vector<TCIMClass*>&) {
    if (standard)
      throw std::runtime_error("disk on fire");
    throw 42;
  }));

  RunQuery();
  EXPECT_LOGGED("ZEL_Core: [Error] Plugin KAPLA_Thrower threw exception disk on fire");
  standard = false;
  EXPECT_THROW(RunQuery(), int);
}
