// The C collection functions as a plugin calls them in GetData, on a real loaded plugin.
#include "helpers.h"

#include "TCIMDateTime.h"
#include "plugins/zeliIOHandle.h"

#include <memory>

#define ASSERT_ZEL_STATUS(expr, code) ASSERT_PRED_FORMAT2(::ZelStatusFormat, expr, code)

class CollectionTest : public PluginTest {
protected:
  void SetUp() override {
    PluginTest::SetUp();
    LoadPlugins({"computersystem"});
    fIO.reset(new zelIOHandle(fSchema, Plugin("KAPLA_ComputerSystem")));
    TLogger::GetInstance()->SetLogFilename(fLogPath); // Starts the log afresh.
  }

  void TearDown() override {
    delete fIO->fCurrentInstance; // An instance left open belongs to nobody.
    PluginTest::TearDown();
  }

  void OpenProcessor(char const* id) {
    ASSERT_ZEL_STATUS(zelAddClass(io(), "KAPLA_Processor"), zelStatusOK);
    ASSERT_ZEL_STATUS(zelAddStringProperty(io(), "DeviceID", id), zelStatusOK);
  }

  zelIOHandle* io() { return fIO.get(); }

  std::unique_ptr<zelIOHandle> fIO;
};

TEST_F(CollectionTest, NullArgumentsAndNoOpenInstance) {
  TCIMValue value(true);
  TCIMDateTime dateTime;
  TCIMReference reference(fSchema);
  // The NULL handle is logged for the core; a missing argument beside a handle, for the
  // handle's plugin, except where the typed functions check on their own.
  EXPECT_ZEL_STATUS(zelAddClass(nullptr, "KAPLA_Processor"), zelStatusFail);
  EXPECT_ZEL_STATUS(zelAddClass(io(), nullptr), zelStatusFail);
  EXPECT_ZEL_STATUS(zelAddProperty(nullptr, "Name", "x"), zelStatusFail);
  EXPECT_ZEL_STATUS(zelAddProperty(io(), "Name", nullptr), zelStatusFail);
  EXPECT_ZEL_STATUS(zelAddCIMValueProperty(io(), nullptr, &value), zelStatusFail);
  EXPECT_ZEL_STATUS(zelAddUint8Property(nullptr, "U8", 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelAddStringProperty(io(), "Text", nullptr), zelStatusFail);
  EXPECT_ZEL_STATUS(zelAddArrayProperty(io(), "Levels", nullptr), zelStatusFail);
  EXPECT_ZEL_STATUS(zelAddReferenceProperty(io(), nullptr, &reference), zelStatusFail);
  EXPECT_ZEL_STATUS(zelAddDateTimeProperty(io(), nullptr, &dateTime), zelStatusFail);
  EXPECT_ZEL_STATUS(zelGetSystemName(nullptr), zelStatusFail);
  EXPECT_ZEL_STATUS(zelGetSystemCreationClassName(nullptr), zelStatusFail);
  // The typed functions report through zelAddProperty's text.
  EXPECT_ZEL_STATUS(zelAddProperty(io(), "MaxClockSpeed", "1"), zelStatusInvalidClass);
  EXPECT_ZEL_STATUS(zelAddUint32Property(io(), "MaxClockSpeed", 1), zelStatusInvalidClass);
  EXPECT_THAT(
      LoggedLines(),
      ElementsAre(
          "ZEL_Core: [Error] zelAddClass: NULL zelIOHandle parameter",
          "ZEL_KAPLA_ComputerSystem: [Error] zelAddClass: NULL name parameter",
          "ZEL_Core: [Error] zelAddProperty: NULL zelIOHandle parameter",
          "ZEL_KAPLA_ComputerSystem: [Error] zelAddProperty: NULL name and/or value parameter",
          "ZEL_KAPLA_ComputerSystem: [Error] zelAddCIMValueProperty: NULL name parameter",
          "ZEL_Core: [Error] zelAddCIMValueProperty: NULL zelIOHandle parameter",
          "ZEL_Core: [Error] zelAddStringProperty: NULL value and/or name parameter",
          "ZEL_Core: [Error] zelAddArrayProperty: NULL name and/or pArray parameter",
          "ZEL_Core: [Error] zelAddReferenceProperty: NULL name and/or pRef parameter",
          "ZEL_Core: [Error] zelAddDateTimeProperty: NULL name and/or pDateTime parameter",
          "ZEL_Core: [Error] zelGetSystemName: NULL name parameter",
          "ZEL_Core: [Error] zelGetSystemCreationClassName: NULL name parameter",
          "ZEL_Core: [Error] zelAddProperty: no current instance",
          "ZEL_Core: [Error] zelAddProperty: no current instance"));
}

TEST_F(CollectionTest, OpeningAnInstanceCommitsTheOpenOne) {
  OpenProcessor("CPU0");
  TCIMInstance* first = io()->fCurrentInstance;
  EXPECT_THAT(Instances("KAPLA_Processor"), IsEmpty());
  OpenProcessor("CPU1");
  EXPECT_THAT(Instances("KAPLA_Processor"), ElementsAre(first));

  // An unknown class: the open instance was committed all the same, none is opened.
  EXPECT_ZEL_STATUS(zelAddClass(io(), "KAPLA_Nothing"), zelStatusNotFound);
  EXPECT_EQ(Instances("KAPLA_Processor").size(), 2u);
  EXPECT_EQ(io()->fCurrentInstance, nullptr);
  EXPECT_ZEL_STATUS(zelAddClass(io(), "not-a-name"), zelStatusInvalidCIMName);
  EXPECT_THAT(LoggedLines(),
              ElementsAre("ZEL_Core: [Error] zelAddClass: GetClass(KAPLA_Nothing) threw "
                          "exception zelStatusNotFound",
                          "ZEL_Core: [Error] CIM name 'not-a-name' is invalid",
                          "ZEL_Core: [Error] zelAddClass: GetClass(not-a-name) threw exception "
                          "zelStatusInvalidCIMName"));
}

TEST_F(CollectionTest, InstanceThatCannotBeCommittedIsLost) {
  ASSERT_ZEL_STATUS(zelAddClass(io(), "KAPLA_Processor"), zelStatusOK);
  ASSERT_ZEL_STATUS(zelAddUint32Property(io(), "MaxClockSpeed", 3000), zelStatusOK);
  EXPECT_ZEL_STATUS(zelAddClass(io(), "KAPLA_Processor"), zelStatusInvalidInstance);
  EXPECT_THAT(LoggedLines(),
              ElementsAre("ZEL_Core: [Error] Instance KAPLA_Processor: key property DeviceID is "
                          "NULL",
                          "ZEL_Core: [Error] zelAddClass: CIM class KAPLA_Processor threw "
                          "exception zelStatusInvalidInstance"));
  EXPECT_THAT(Instances("KAPLA_Processor"), IsEmpty());
  // No instance was opened in its place.
  EXPECT_ZEL_STATUS(zelAddStringProperty(io(), "DeviceID", "CPU0"), zelStatusInvalidClass);
}

TEST_F(CollectionTest, FailedPropertiesLeaveTheInstanceOpen) {
  OpenProcessor("CPU0");
  EXPECT_ZEL_STATUS(zelAddProperty(io(), "Voltage", "1"), zelStatusNotFound);
  EXPECT_ZEL_STATUS(zelAddUint8Property(io(), "MaxClockSpeed", 1), zelStatusTypeMismatch);
  EXPECT_ZEL_STATUS(zelAddBooleanProperty(io(), "Voltage", 1), zelStatusNotFound);
  EXPECT_THAT(
      LoggedLines(),
      ElementsAre("ZEL_Core: [Error] zelAddProperty: CIM class KAPLA_Processor threw exception "
                  "zelStatusNotFound name='Voltage'",
                  "ZEL_Core: [Error] SetValue: decl is type uint32 but value is type uint8",
                  "ZEL_Core: [Error] AddProperty: CIM class KAPLA_Processor threw exception "
                  "zelStatusTypeMismatch",
                  "ZEL_Core: [Error] AddProperty: CIM class KAPLA_Processor threw exception "
                  "zelStatusNotFound"));

  EXPECT_ZEL_STATUS(zelAddProperty(io(), "MaxClockSpeed", "3200"), zelStatusOK);
  EXPECT_ZEL_STATUS(zelAddClass(io(), "KAPLA_Processor"), zelStatusOK);
  std::vector<TCIMInstance*> done = Instances("KAPLA_Processor");
  ASSERT_EQ(done.size(), 1u);
  EXPECT_EQ(static_cast<unsigned int>(done[0]->GetProperty("MaxClockSpeed").GetValue()), 3200u);
}

TEST_F(CollectionTest, VerboseTrace) {
  TLogger::GetInstance()->SetLogThreshold(zelLogVerbose);
  ASSERT_ZEL_STATUS(zelAddClass(io(), "KAPLA_Sample"), zelStatusOK);
  ASSERT_ZEL_STATUS(zelAddProperty(io(), "Parsed", "77"), zelStatusOK);
  ASSERT_ZEL_STATUS(zelAddBooleanProperty(io(), "Flag", 2), zelStatusOK);
  ASSERT_ZEL_STATUS(zelAddStringProperty(io(), "Text", "two words"), zelStatusOK);
  EXPECT_THAT(LoggedLines(),
              ElementsAre("ZEL_KAPLA_ComputerSystem: [Verbose] zelAddClass(KAPLA_Sample)",
                          "ZEL_KAPLA_ComputerSystem: [Verbose] zelAddProperty(Parsed, value=77)",
                          "ZEL_KAPLA_ComputerSystem: [Verbose] zelAdd<>Property(Flag, value=true)",
                          "ZEL_KAPLA_ComputerSystem: [Verbose] zelAdd<>Property(Text, value=two "
                          "words)"));
}

TEST_F(CollectionTest, ArrayTakesTheDeclaredElementType) {
  ASSERT_ZEL_STATUS(zelAddClass(io(), "KAPLA_Sample"), zelStatusOK);
  zelCIMValueArray* levels = nullptr;
  ASSERT_ZEL_STATUS(zelNewCIMValueArray(&levels), zelStatusOK);
  zelArrayAddUint16(levels, 5);
  EXPECT_ZEL_STATUS(zelAddArrayProperty(io(), "Levels", levels), zelStatusOK);
  zelArrayAddString(levels, "loud");
  EXPECT_ZEL_STATUS(zelAddArrayProperty(io(), "Levels", levels), zelStatusInvalidProperty);
  zelDeleteCIMValueArray(levels);

  EXPECT_EQ(io()->fCurrentInstance->GetProperty("Levels").GetValue().ToString(10), "{ 5 }");
  EXPECT_THAT(LoggedLines(), ElementsAre("ZEL_Core: [Error] ERROR: Attempting to create array of "
                                         "type uint16, but element is of type string."));
}

TEST_F(CollectionTest, ReferencesMustNameAnInstance) {
  StagePlugins({"fans"});
  fManager->LoadPlugin(PluginPath("fans"));
  ASSERT_ZEL_STATUS(zelAddClass(io(), "KAPLA_Fan"), zelStatusOK);
  ASSERT_ZEL_STATUS(zelAddStringProperty(io(), "DeviceID", "FAN7"), zelStatusOK);
  ASSERT_ZEL_STATUS(zelAddClass(io(), "KAPLA_SystemFan"), zelStatusOK);
  TCIMReference* fan = nullptr;
  ASSERT_ZEL_STATUS(zelNewCIMReference(&fan, io()), zelStatusOK);
  zelSetReferenceClassName(fan, "KAPLA_Fan");
  zelReferenceAddString(fan, "DeviceID", "FAN8"); // Only FAN7 exists.
  EXPECT_ZEL_STATUS(zelAddReferenceProperty(io(), "PartComponent", fan), zelStatusNotFound);
  zelDeleteCIMReference(fan);
  EXPECT_TRUE(io()->fCurrentInstance->GetProperty("PartComponent").GetValue().IsNull());
}

TEST_F(CollectionTest, SystemIdentityIsComputedOnceAndKept) {
  char *name = nullptr, *creationClass = nullptr, *again = nullptr, *classAgain = nullptr;
  EXPECT_ZEL_STATUS(zelGetSystemCreationClassName(&creationClass), zelStatusOK);
  EXPECT_STREQ(creationClass, "KAPLA_ComputerSystem");
  TQueryManager::GetInstance()->RunQuery(fSchema, {"KAPLA_ComputerSystem"});
  ASSERT_ZEL_STATUS(zelGetSystemName(&name), zelStatusOK);
  EXPECT_STREQ(name, "ZELHOST01");
  EXPECT_ZEL_STATUS(zelGetSystemName(&again), zelStatusOK);
  EXPECT_ZEL_STATUS(zelGetSystemCreationClassName(&classAgain), zelStatusOK);
  EXPECT_EQ(again, name);
  EXPECT_EQ(classAgain, creationClass);
}
