// The examined system's identity read from collected data built in memory, the way a
// collection run leaves it.
#include "SchemaHelpers.h"
#include "TCIMSchemaHelper.h"
#include "TLogger.h"

namespace {

typedef std::vector<std::pair<std::string, TCIMValue> > TValues;

class SchemaHelperTest : public ZelTest {
protected:
 SchemaHelperTest() {
   Declare(fContainer, "KEY", TCIMValue(false), TCIMQualifierDecl::eToSubclass);
 }

  /// A class with properties of the values' names and types, the first one its key.
  TCIMClass* AddClass(std::string const& name, TValues const& values,
                      TCIMClass* superclass = nullptr) {
    TCIMClass* cls = fContainer.AllocateClass(name, superclass);
    for (auto const& value : values)
      Property(*cls, value.first, TCIMValue(value.second.GetType(), 0), &value == &values.front());
    cls->AddToContainer();
    return cls;
  }

  TCIMInstance* AddInstance(TCIMClass* cls, TValues const& values) {
    TCIMInstance* instance = fContainer.AllocateInstance(cls);
    for (auto const& value : values)
      instance->SetPropertyValue(value.first, value.second);
    instance->AddToContainer();
    return instance;
  }

  /// The computer system with one instance of that product name and serial number.
  TCIMInstance* AddComputerSystem(TCIMValue productName, TCIMValue serialNumber) {
    TValues values = {{"Name", TCIMValue("zelhost")},
                      {"ProductName", productName},
                      {"SerialNumber", serialNumber}};
    return AddInstance(AddClass("KAPLA_ComputerSystem", values), values);
  }

  TContainer fContainer;
};

} // namespace

TEST_F(SchemaHelperTest, SystemAndOperatingSystemNeedExactlyOneInstance) {
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetSystemName(&fContainer), zelStatusNotFound);
  TCIMInstance* system = AddComputerSystem(TCIMValue("Server -[5512]-"), TCIMValue("KQ1234X"));
  EXPECT_EQ(TCIMSchemaHelper::GetSystemName(&fContainer), "zelhost");

  // Instances of a subclass count as the system's.
  TCIMClass* blade = AddClass("KAPLA_Blade", {{"Slot", TCIMValue(1u)}}, &system->GetClass());
  AddInstance(blade, {{"Name", TCIMValue("blade")}, {"Slot", TCIMValue(1u)}});
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetSystemProductName(&fContainer), zelStatusNotFound);
  EXPECT_TRUE(LoggedLines().empty()); // The plain getters do not log.

  TValues os = {{"Name", TCIMValue("Linux")},
                {"Version", TCIMValue("6.1.0")},
                {"OSType", TCIMValue(static_cast<unsigned short>(36))}};
  AddInstance(AddClass("KAPLA_OperatingSystem", os), os);
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemName(&fContainer), "Linux");
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemVersion(&fContainer), "6.1.0");
  EXPECT_EQ(TCIMSchemaHelper::GetOperatingSystemType(&fContainer), 36);
}

// A product name and its MTM, or the empty text when it must be refused.
TEST_F(SchemaHelperTest, ProductNameGivesTheMTM) {
  std::pair<char const*, std::string> const rows[] = {
      {"Server 90 -[5512   ]-", "5512xxx"}, // Full form, then the blank model.
      {"Server -[5512]-", "5512xxx"},        // Short form.
      {"Server 90 -[6631ABC]- rev 2", "6631ABC"},
      {"5512ABC   ", "5512ABC"}, // Bare, trailing blanks cut.
      {"5512   ", ""},           // Cut to four characters: no model at all.
      {"Corvane 3100    ", "4410xxx"}, // Blanks cut first, so the plain entry matches.
      {"Corvane 4000 M10  ", "4430xxx"},
      // The product whose name lacks the closing dash; its model is taken as it is.
      {"Corvane 4400 M20-[7781   ]", "7781   "}, // And without the blank-model rule.
      {"Corvane 4400 M20-[77-1AB1]", ""},
      {"Server 90", ""},      {"Server -[55-2]-", ""},    {"Server -[551 ABC]-", ""},
      {"Server -[5512]", ""}, {"Server -[5512AB]-", ""}, {"    ", ""},
  };
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  TCIMInstance* system = AddComputerSystem(TCIMValue("x"), TCIMValue("KQ1234X"));
  TNames expected;
  for (auto const& row : rows) {
    SCOPED_TRACE(row.first);
    system->SetPropertyValue("ProductName", TCIMValue(row.first));
    if (row.second.empty()) {
      EXPECT_ZEL_THROW(TCIMSchemaHelper::GetMTM(&fContainer), zelStatusInvalidFormat);
      continue;
    }
    EXPECT_EQ(TCIMSchemaHelper::GetMTM(&fContainer), row.second);
    expected.insert(expected.end(), 3,
                    "ZEL_Core: [Debug] TCIMSchemaHelper- Detected MTM " + row.second);
    EXPECT_EQ(TCIMSchemaHelper::GetMachineType(&fContainer), row.second.substr(0, 4));
    EXPECT_EQ(TCIMSchemaHelper::GetModelNumber(&fContainer), row.second.substr(4, 3));
  }
  // Each of the three getters detects the MTM anew; refused names log nothing.
  EXPECT_EQ(LoggedLines(), expected);
}

TEST_F(SchemaHelperTest, BIOSMachineTypeModelComesFirst) {
  AddComputerSystem(TCIMValue("Server -[5512]-"), TCIMValue("KQ1234X"));
  // Without a value the product name decides.
  TValues bios = {{"Name", TCIMValue("BIOS")}, {"MachineTypeModel", TCIMValue("")}};
  TCIMInstance* element = AddInstance(AddClass("KAPLA_SystemBIOSElement", bios), {bios[0]});
  EXPECT_EQ(TCIMSchemaHelper::GetRawMTMString(&fContainer), "Server -[5512]-");
  element->SetPropertyValue("MachineTypeModel", TCIMValue("6631ABC"));
  EXPECT_EQ(TCIMSchemaHelper::GetRawMTMString(&fContainer), "6631ABC");
  EXPECT_EQ(TCIMSchemaHelper::GetMTM(&fContainer), "6631ABC");
}

TEST_F(SchemaHelperTest, MissingComputerSystemOrPropertyIsLoggedAtDebug) {
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawMTMString(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawSerialNumberString(&fContainer), zelStatusNotFound);
  TValues bare = {{"Name", TCIMValue("one")}};
  TCIMClass* cls = AddClass("KAPLA_ComputerSystem", bare);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawMTMString(&fContainer), zelStatusNotFound);
  AddInstance(cls, bare);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawMTMString(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawSerialNumberString(&fContainer), zelStatusNotFound);
  EXPECT_EQ(LoggedLines(),
            (TNames{"ZEL_Core: [Debug] TCIMSchemaHelper: no computer system",
                    "ZEL_Core: [Debug] TCIMSchemaHelper: no computer system",
                    "ZEL_Core: [Debug] TCIMSchemaHelper: computer system instances != 1",
                    "ZEL_Core: [Debug] TCIMSchemaHelper: didn't find ProductName property",
                    "ZEL_Core: [Debug] TCIMSchemaHelper: didn't find SerialNumber property"}));
}

TEST_F(SchemaHelperTest, ProductNameAndSerialMustBeStrings) {
  TLogger::GetInstance()->SetLogThreshold(zelLogDebug);
  TCIMValue const nullText(TCIMType::kString, 0);
  struct {
    TCIMValue productName, serialNumber;
    char const *productLine, *serialLine;
  } const rows[] = {
      {nullText, TCIMValue(1234567u), "ProductName is NULL", "SerialNumber wasn't a string"},
      {TCIMValue(1u), nullText, "ProductName wasn't a string", "SerialNumber is NULL"}};
  std::vector<std::string> expected;
  for (auto const& row : rows) {
    TCIMInstance* system = AddComputerSystem(row.productName, row.serialNumber);
    EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawMTMString(&fContainer), zelStatusNotFound);
    EXPECT_ZEL_THROW(TCIMSchemaHelper::GetMTM(&fContainer), zelStatusNotFound);
    EXPECT_ZEL_THROW(TCIMSchemaHelper::GetRawSerialNumberString(&fContainer), zelStatusNotFound);
    EXPECT_ZEL_THROW(TCIMSchemaHelper::GetSerialNumber(&fContainer), zelStatusNotFound);
    for (char const* line : {row.productLine, row.productLine, row.serialLine, row.serialLine})
      expected.push_back(std::string("ZEL_Core: [Debug] TCIMSchemaHelper: ") + line);
    fContainer.RemoveClass(system->GetClass()); // The next row declares the class afresh.
  }
  EXPECT_EQ(LoggedLines(), expected);
}

TEST_F(SchemaHelperTest, SerialNumberIsSevenAlphanumericsBeforeTrailingBlanks) {
  TCIMInstance* system = AddComputerSystem(TCIMValue("Server -[5512]-"), TCIMValue("KQ1234X  "));
  EXPECT_EQ(TCIMSchemaHelper::GetRawSerialNumberString(&fContainer), "KQ1234X  ");
  EXPECT_EQ(TCIMSchemaHelper::GetSerialNumber(&fContainer), "KQ1234X");
  for (char const* bad : {"KQ-1234", "KQ1234", "KQ12345X", " KQ1234", "        "}) {
    system->SetPropertyValue("SerialNumber", TCIMValue(bad));
    EXPECT_ZEL_THROW(TCIMSchemaHelper::GetSerialNumber(&fContainer), zelStatusInvalidFormat);
  }
}

TEST_F(SchemaHelperTest, DataSourceVersionParts) {
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetDataSourceVersion(&fContainer), zelStatusNotFound);
  TValues product = {{"IdentifyingNumber", TCIMValue("VOK")}, {"Version", TCIMValue("")}};
  TCIMInstance* vok = AddInstance(AddClass("KAPLA_VOKProduct", product), product);
  // The minor part is as long as the major one plus one, on purpose: "2.1.0" gives "1.".
  char const* const rows[][4] = {
      {"1.23.456", "1", "23", "456"}, {"2.1.0", "2", "1.", "0"}, {"10.2", "10", "2", "2"}};
  for (auto const& row : rows) {
    vok->SetPropertyValue("Version", TCIMValue(row[0]));
    EXPECT_EQ(TCIMSchemaHelper::GetDataSourceVersion(&fContainer), row[0]);
    EXPECT_EQ(TCIMSchemaHelper::GetDataSourceMajorVersion(&fContainer), row[1]);
    EXPECT_EQ(TCIMSchemaHelper::GetDataSourceMinorVersion(&fContainer), row[2]);
    EXPECT_EQ(TCIMSchemaHelper::GetDataSourceBuildVersion(&fContainer), row[3]);
  }
  vok->SetPropertyValue("Version", TCIMValue("7"));
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetDataSourceMajorVersion(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetDataSourceMinorVersion(&fContainer), zelStatusNotFound);
  EXPECT_ZEL_THROW(TCIMSchemaHelper::GetDataSourceBuildVersion(&fContainer), zelStatusNotFound);
}
