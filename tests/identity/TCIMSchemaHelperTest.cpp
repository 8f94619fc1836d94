// The examined system's identity read from collected data held in memory.
#include "helpers.h"

#include "TLogger.h"

#include <gmock/gmock.h>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

typedef IdentityTest SchemaHelperTest;

static TCIMValue Text(char const* text) { return TCIMValue(text); }

TEST_F(SchemaHelperTest, CreationClassNamesAreFixed) {
  EXPECT_EQ(TCIMSchemaHelper::GetSystemCreationClassName(nullptr), "KAPLA_ComputerSystem");
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemCreationClassName(nullptr),
            "KAPLA_OperatingSystem");
  EXPECT_EQ(TCIMSchemaHelper::kSystemCreationClassName, "KAPLA_ComputerSystem");
  EXPECT_EQ(TCIMSchemaHelper::kOperatingSystemCreationClassName, "KAPLA_OperatingSystem");
}

TEST_F(SchemaHelperTest, SystemNeedsExactlyOneInstance) {
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetSystemName(&fContainer), zelStatusNotFound);
  TCIMClass* system = AddComputerSystem(Text("Server -[5512]-"), Text("KQ1234X"));
  EXPECT_EQ(TCIMSchemaHelper::GetSystemName(&fContainer), "zelhost");
  EXPECT_EQ(TCIMSchemaHelper::GetSystemProductName(&fContainer), "Server -[5512]-");

  // Instances of a subclass count as the system's.
  TCIMClass* blade = AddClass("KAPLA_Blade", {{"Slot", TCIMValue::TCIMType::kUint8}}, system);
  AddInstance(blade, {{"Name", Text("blade")}, {"Slot", TCIMValue(static_cast<unsigned char>(1))}});
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetSystemName(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetSystemProductName(&fContainer), zelStatusNotFound);
  EXPECT_THAT(LoggedLines(), IsEmpty()); // The plain getters do not log.
}

TEST_F(SchemaHelperTest, OperatingSystem) {
  TCIMClass* os = AddClass("KAPLA_OperatingSystem", {{"Name", TCIMValue::TCIMType::kString},
                                                     {"Version", TCIMValue::TCIMType::kString},
                                                     {"OSType", TCIMValue::TCIMType::kUint16}});
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetOperatingSystemName(&fContainer), zelStatusNotFound);
  AddInstance(os, {{"Name", Text("Linux")},
                   {"Version", Text("6.1.0")},
                   {"OSType", TCIMValue(static_cast<unsigned short>(36))}});
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemName(&fContainer), "Linux");
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemVersion(&fContainer), "6.1.0");
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemType(&fContainer), 36);
}

TEST_F(SchemaHelperTest, MachineTypeAndModelRules) {
  EXPECT_TRUE(TCIMSchemaHelper::IsValidMachineType("55a2"));
  EXPECT_TRUE(TCIMSchemaHelper::IsValidMachineType("55a2xyz"));
  EXPECT_FALSE(TCIMSchemaHelper::IsValidMachineType("55-2"));
  EXPECT_FALSE(TCIMSchemaHelper::IsValidMachineType("552"));
  EXPECT_TRUE(TCIMSchemaHelper::IsValidMTM("5512ABC"));
  EXPECT_TRUE(TCIMSchemaHelper::IsValidMTM("5512 A "));
  EXPECT_FALSE(TCIMSchemaHelper::IsValidMTM("5512AB-"));
  EXPECT_FALSE(TCIMSchemaHelper::IsValidMTM("551 ABC"));
  EXPECT_FALSE(TCIMSchemaHelper::IsValidMTM("5512"));
}

// One product name per test: the MTM, or the empty text when it must be refused.
struct ProductNameCase {
  char const* fProductName;
  char const* fMTM;
};

static const ProductNameCase kProductNames[] = {
    {"Server 90 -[5512   ]-", "5512xxx"}, // Full form, then the blank model.
    {"Server -[5512]-", "5512xxx"},        // Short form.
    {"Server 90 -[6631ABC]- rev 2", "6631ABC"},
    {"5512ABC   ", "5512ABC"}, // Bare, trailing blanks cut.
    {"5512   ", ""}, // Cut to four characters: no model at all.
    {"Corvane 3100", "4410xxx"},
    {"Corvane 3100    ", "4410xxx"}, // Blanks cut first, so the plain entry matches.
    {"Corvane 3100 M20", "4412xxx"},
    {"Corvane 4000 M10  ", "4430xxx"},
    // The product whose name lacks the closing dash; its model is taken as it is.
    {"Corvane 4400 M20-[7781AB1]", "7781AB1"},
    {"Corvane 4400 M20-[7781   ]", "7781   "},
    {"Corvane 4400 M20-[77-1AB1]", ""},
    {"Server 90", ""},
    {"Server -[55-2]-", ""},
    {"Server -[5512AB]-", ""},
    {"Server -[5512]", ""},
    {"5512AB", ""},
    {"    ", ""},
};

class ProductNameTest : public IdentityTest,
                        public ::testing::WithParamInterface<ProductNameCase> {};

TEST_P(ProductNameTest, GivesTheMTM) {
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  AddComputerSystem(Text(GetParam().fProductName), Text("KQ1234X"));
  std::string expected = GetParam().fMTM;
  if (expected.empty()) {
    EXPECT_ZEL_THROW(TCIMSchemaHelper::GetMTM(&fContainer), zelStatusInvalidFormat);
    EXPECT_THAT(LoggedLines(), IsEmpty());
    return;
  }
  EXPECT_EQ(TCIMSchemaHelper::GetMTM(&fContainer), expected);
  EXPECT_THAT(LoggedLines(),
              ElementsAre("ZEL_Core: [Debug] TCIMSchemaHelper- Detected MTM " + expected));
  EXPECT_EQ(TCIMSchemaHelper::GetMachineType(&fContainer), expected.substr(0, 4));
  EXPECT_EQ(TCIMSchemaHelper::GetModelNumber(&fContainer), expected.substr(4, 3));
}

static void PrintTo(ProductNameCase const& c, std::ostream* out) {
  *out << '"' << c.fProductName << "\" -> \"" << c.fMTM << '"';
}

INSTANTIATE_TEST_SUITE_P(SchemaHelper, ProductNameTest, ::testing::ValuesIn(kProductNames),
                         [](::testing::TestParamInfo<ProductNameCase> const& info) {
                           return "Name" + std::to_string(info.index);
                         });

TEST_F(SchemaHelperTest, BIOSMachineTypeModelComesFirst) {
  AddComputerSystem(Text("Server -[5512]-"), Text("KQ1234X"));
  TCIMClass* bios = AddClass("KAPLA_SystemBIOSElement",
                             {{"Name", TCIMValue::TCIMType::kString},
                              {"MachineTypeModel", TCIMValue::TCIMType::kString}});
  // Without a value the product name decides.
  TCIMInstance* element = AddInstance(bios, {{"Name", Text("BIOS")}});
  EXPECT_EQ(TCIMSchemaHelper::GetRawMTMString(&fContainer), "Server -[5512]-");
  element->SetPropertyValue("MachineTypeModel", Text("6631ABC"));
  EXPECT_EQ(TCIMSchemaHelper::GetRawMTMString(&fContainer), "6631ABC");
  EXPECT_EQ(TCIMSchemaHelper::GetMTM(&fContainer), "6631ABC");
}

TEST_F(SchemaHelperTest, MissingProductNameIsLoggedAtDebug) {
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawMTMString(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawSerialNumberString(&fContainer), zelStatusNotFound);

  TCIMClass* bare = AddClass("KAPLA_ComputerSystem", {{"Name", TCIMValue::TCIMType::kString}});
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawMTMString(&fContainer), zelStatusNotFound);
  AddInstance(bare, {{"Name", Text("one")}});
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawMTMString(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawSerialNumberString(&fContainer), zelStatusNotFound);
  EXPECT_THAT(LoggedLines(),
              ElementsAre("ZEL_Core: [Debug] TCIMSchemaHelper: no computer system",
                          "ZEL_Core: [Debug] TCIMSchemaHelper: no computer system",
                          "ZEL_Core: [Debug] TCIMSchemaHelper: computer system instances != 1",
                          "ZEL_Core: [Debug] TCIMSchemaHelper: didn't find ProductName property",
                          "ZEL_Core: [Debug] TCIMSchemaHelper: didn't find SerialNumber "
                          "property"));
}

TEST_F(SchemaHelperTest, ProductNameAndSerialMustBeStrings) {
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  AddComputerSystem(TCIMValue(TCIMValue::TCIMType::kString, 0),
                    TCIMValue(static_cast<unsigned int>(1234567)));
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetMTM(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetSerialNumber(&fContainer), zelStatusNotFound);
  EXPECT_THAT(LoggedLines(),
              ElementsAre("ZEL_Core: [Debug] TCIMSchemaHelper: ProductName is NULL",
                          "ZEL_Core: [Debug] TCIMSchemaHelper: SerialNumber wasn't a string"));
}

TEST_F(SchemaHelperTest, OtherProblemsStayOutOfTheLogAtStatus) {
  AddComputerSystem(TCIMValue(static_cast<unsigned int>(1)), Text("KQ1234X"));
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetMTM(&fContainer), zelStatusNotFound);
  EXPECT_THAT(LoggedLines(), IsEmpty());
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetMTM(&fContainer), zelStatusNotFound);
  EXPECT_THAT(LoggedLines(),
              ElementsAre("ZEL_Core: [Debug] TCIMSchemaHelper: ProductName wasn't a string"));
}

TEST_F(SchemaHelperTest, SerialNumber) {
  TCIMClass* system = AddComputerSystem(Text("Server -[5512]-"), Text("KQ1234X  "));
  EXPECT_EQ(TCIMSchemaHelper::GetRawSerialNumberString(&fContainer), "KQ1234X  ");
  EXPECT_EQ(TCIMSchemaHelper::GetSerialNumber(&fContainer), "KQ1234X");

  TCIMInstance* instance = system->EnumerateInstances(false)[0];
  for (char const* bad : {"KQ-1234", "KQ1234", "KQ12345X", " KQ1234", "        "}) {
    instance->SetPropertyValue("SerialNumber", Text(bad));
    EXPECT_ZEL_THROW(TCIMSchemaHelper::GetSerialNumber(&fContainer), zelStatusInvalidFormat);
  }
}

TEST_F(SchemaHelperTest, DataSourceVersionParts) {
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetDataSourceVersion(&fContainer), zelStatusNotFound);
  AddProduct("1.23.456");
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceVersion(&fContainer), "1.23.456");
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceMajorVersion(&fContainer), "1");
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceMinorVersion(&fContainer), "23");
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceBuildVersion(&fContainer), "456");
}

TEST_F(SchemaHelperTest, MinorVersionIsAsLongAsTheMajorPlusOne) {
  AddProduct("2.1.0");
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceMinorVersion(&fContainer), "1.");
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceBuildVersion(&fContainer), "0");
}

TEST_F(SchemaHelperTest, LongMajorVersion) {
  AddProduct("10.2");
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceMajorVersion(&fContainer), "10");
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceMinorVersion(&fContainer), "2");
  EXPECT_EQ(TCIMSchemaHelper::GetDataSourceBuildVersion(&fContainer), "2");
}

TEST_F(SchemaHelperTest, VersionWithoutDot) {
  AddProduct("7");
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetDataSourceMajorVersion(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetDataSourceMinorVersion(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetDataSourceBuildVersion(&fContainer), zelStatusNotFound);
}
