// The CIM-XML writer: exact texts, and documents written and read again, plain and gzip.
#include "cimxml_helpers.h"

#include "SchemaHelpers.h"
#include "TCIMDateTime.h"
#include "TCIMXMLWriter.h"

#include <cstdlib>

#include <zlib.h>

class CIMXMLWriterTest : public ZelTest {
protected:
  void Load(TContainer& container, std::initializer_list<const char*> names) {
    for (const char* name : names)
      ParseInto(container, DataText(name));
  }

  // A class with a true KEY on its string property "Id".
  TCIMClass* IdClass(const std::string& name, TCIMClass* superclass = nullptr) {
    TCIMClass* cls = fContainer.AllocateClass(name, superclass);
    if (!superclass)
      Property(*cls, "Id", TCIMValue(TCIMType::kString, 0), /*key=*/true);
    return cls;
  }

  TCIMInstance* NewInstance(const std::string& cls, const std::string& id) {
    TCIMInstance* instance = fContainer.AllocateInstance(fContainer.GetClass(cls));
    instance->SetPropertyValue("Id", TCIMValue(id));
    return instance;
  }

  TContainer fContainer;
};

TEST_F(CIMXMLWriterTest, ClassesComeAfterTheirSuperclassAndTheClassesTheyReferTo) {
  Load(fContainer, {"qualifier-declarations.xml"});
  // Registered in an order the reader could not follow: the association first.
  TCIMClass* disk = IdClass("ZT_Disk");
  TCIMClass* link = fContainer.AllocateClass("ZT_Link", nullptr);
  Qualify(*link, fContainer, "ASSOCIATION", TCIMValue(true));
  Property(*link, "Disk", Pointing(*disk), /*key=*/true);
  link->AddToContainer();
  disk->AddToContainer();
  IdClass("ZT_Ssd", disk)->AddToContainer();

  TCIMInstance* first = NewInstance("ZT_Disk", "d<1>&");
  first->AddToContainer();
  TCIMInstance* linked = fContainer.AllocateInstance(link);
  linked->SetPropertyValue("Disk", TCIMValue(first->BuildPath()));
  linked->AddToContainer();
  NewInstance("ZT_Ssd", "s1")->AddToContainer();

  std::string written = TCIMXMLWriter::Write(fContainer);
  EXPECT_EQ(written, DataText("written-in-order.xml"));
  TContainer again;
  ParseInto(again, written);
  EXPECT_EQ(Describe(again), Describe(fContainer));
}

TEST_F(CIMXMLWriterTest, ValuesOfEveryTypeKeepTheirTextNullsAndArrays) {
  Load(fContainer, {"qualifier-declarations.xml"});
  TCIMClass* cls = IdClass("ZT_Sample");
  struct {
    const char* fName;
    TCIMValue fValue;
  } const kSamples[] = {
      {"U64", TCIMValue(18446744073709551615ul)},
      {"R32", TCIMValue(0.1f)},
      {"R64", TCIMValue(1.0 / 3)},
      {"When", TCIMValue(TCIMDateTime(std::string("20031107153000.000000-300")))},
      {"Text", TCIMValue("a\r\nb\tc\x01 h\xc3\xa9")},
      {"Levels", TCIMValue(TCIMType::kUint16, 4,
                           {TCIMValue(static_cast<unsigned short>(10)),
                            TCIMValue(static_cast<unsigned short>(20))})},
      {"Empty", TCIMValue(TCIMType::kString, 0, {})},
  };
  for (const auto& sample : kSamples) {
    TCIMValue null = sample.fValue;
    null.SetNullValue(sample.fValue.GetType(), sample.fValue.GetMaxArraySize());
    Property(*cls, sample.fName, null);
  }
  Property(*cls, "Unset", TCIMValue(TCIMType::kSint32, 0));
  Property(*cls, "Default", TCIMValue(7u));
  cls->AddToContainer();
  TCIMInstance* instance = NewInstance("ZT_Sample", "one");
  for (const auto& sample : kSamples)
    instance->SetPropertyValue(sample.fName, sample.fValue);
  instance->AddToContainer();

  std::string written = TCIMXMLWriter::Write(fContainer);
  for (const char* line : {
           "<PROPERTY NAME=\"U64\" TYPE=\"uint64\"><VALUE>18446744073709551615</VALUE></PROPERTY>",
           "<PROPERTY NAME=\"R32\" TYPE=\"real32\"><VALUE>0.100000001</VALUE></PROPERTY>",
           "<PROPERTY NAME=\"R64\" TYPE=\"real64\"><VALUE>0.33333333333333331</VALUE></PROPERTY>",
           "<PROPERTY NAME=\"When\" TYPE=\"datetime\"><VALUE>20031107153000.000000-300</VALUE>"
           "</PROPERTY>",
           "<PROPERTY NAME=\"Text\" TYPE=\"string\"><VALUE>a&#13;\nb\tc&#1; h\xc3\xa9</VALUE>"
           "</PROPERTY>",
           "<PROPERTY.ARRAY NAME=\"Levels\" TYPE=\"uint16\" ARRAYSIZE=\"4\"><VALUE.ARRAY>"
           "<VALUE>10</VALUE><VALUE>20</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>",
           "<PROPERTY.ARRAY NAME=\"Empty\" TYPE=\"string\"><VALUE.ARRAY></VALUE.ARRAY>"
           "</PROPERTY.ARRAY>",
           "<PROPERTY NAME=\"Unset\" TYPE=\"sint32\"></PROPERTY>",
           "<PROPERTY NAME=\"Default\" TYPE=\"uint32\"><VALUE>7</VALUE></PROPERTY>",
           // The declaration's default, in the class.
           "<PROPERTY NAME=\"Default\" TYPE=\"uint32\">\n<VALUE>7</VALUE></PROPERTY>",
       })
    EXPECT_NE(written.find(std::string(line) + "\n"), std::string::npos) << line;

  TContainer again;
  ParseInto(again, written);
  EXPECT_EQ(Describe(again), Describe(fContainer));
  TCIMInstance* read = again.GetClass("ZT_Sample")->EnumerateInstances(false).at(0);
  EXPECT_EQ(static_cast<float>(read->GetProperty("R32").GetValue()), 0.1f);
  EXPECT_EQ(static_cast<double>(read->GetProperty("R64").GetValue()), 1.0 / 3);
}

TEST_F(CIMXMLWriterTest, OnlyTheClassesWithInstancesAndWhatTheyNeed) {
  Load(fContainer, {"qualifier-declarations.xml", "class-hierarchy-override.xml",
                    "instances-properties.xml"});
  TCIMClass* server = fContainer.GetClass("ZT_Server"); // defined, but without instances
  TContainer disks;
  ParseInto(disks, TCIMXMLWriter::Write(fContainer, TCIMXMLWriter::eClassesWithInstances));
  EXPECT_EQ(ClassNames(disks.GetRootClass()->EnumerateSubClasses(true)),
            (std::vector<std::string>{"ZT_Disk", "ZT_Volume", "ZT_DiskVolume"}));

  // An association alone brings the classes it refers to, with their instances.
  TContainer links;
  ParseInto(links, TCIMXMLWriter::Write(fContainer, std::vector<TCIMClass*>{
                                                        fContainer.GetClass("ZT_DiskVolume")}));
  EXPECT_EQ(ClassNames(links.GetRootClass()->EnumerateSubClasses(true)),
            (std::vector<std::string>{"ZT_Disk", "ZT_Volume", "ZT_DiskVolume"}));
  EXPECT_EQ(Describe(links), Describe(disks));

  // A subclass brings its superclasses.
  TContainer servers;
  ParseInto(servers, TCIMXMLWriter::Write(fContainer, std::vector<TCIMClass*>{server}));
  EXPECT_EQ(ClassNames(servers.GetRootClass()->EnumerateSubClasses(true)),
            (std::vector<std::string>{"ZT_ManagedElement", "ZT_System", "ZT_Server"}));
}

// Documents read, written to a file and read again give the same container; the written
// documents are valid CIM-XML, checked by xmllint against the DTD's declarations
// (tests/xml/data/cim-2.4-subset.dtd), key values with their types included.
TEST_F(CIMXMLWriterTest, FilesArePlainOrGzipByNameValidAndReplaced) {
  Load(fContainer, {"qualifier-declarations.xml", "class-hierarchy-override.xml",
                    "instances-properties.xml", "key-bindings.xml", "object-paths.xml"});
  std::string text = TCIMXMLWriter::Write(fContainer);
  TCIMXMLWriter::WriteFile(TempPath("result.xml"), fContainer);
  EXPECT_EQ(ReadFile(TempPath("result.xml")), text);
  TCIMXMLWriter::WriteFile(TempPath("result.xml.gz"), fContainer);
  gzFile gz = gzopen(TempPath("result.xml.gz").c_str(), "rb");
  std::string inflated(text.size() + 1, '\0');
  inflated.resize(gzread(gz, &inflated[0], static_cast<unsigned int>(inflated.size())));
  gzclose(gz);
  EXPECT_EQ(inflated, text);
  TContainer loaded;
  loaded.PopulateContainerFromFile(TempPath("result.xml.gz"));
  EXPECT_EQ(Describe(loaded), Describe(fContainer));
  // Only inherited qualifiers are left out, so the override and the flavors survive.
  EXPECT_NE(Describe(loaded).find(" property Generation of ZT_System 4:2 max 0\n"
                                  "  [OVERRIDE=13:Generation flavor 0]\n"),
            std::string::npos);
  EXPECT_EQ(TCIMXMLWriter::Write(loaded), text);
  for (const char* keyValue : {"<KEYVALUE VALUETYPE=\"string\" TYPE=\"string\">",
                               "<KEYVALUE VALUETYPE=\"numeric\" TYPE=\"uint16\">80<"})
    EXPECT_NE(text.find(keyValue), std::string::npos) << keyValue;

  // Replaced, not appended to.
  TContainer empty;
  TCIMXMLWriter::WriteFile(TempPath("result.xml"), empty);
  EXPECT_EQ(
      ReadFile(TempPath("result.xml")),
      "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
      "<DECLARATION>\n<DECLGROUP>\n</DECLGROUP>\n</DECLARATION>\n</CIM>\n");

  if (std::system("command -v xmllint >/dev/null 2>&1") != 0)
    GTEST_SKIP() << "xmllint is not installed (package libxml2-utils)";
  std::string errors = TempPath("xmllint.err");
  auto xmllint = [&](std::string const& document) {
    return std::system(("xmllint --noout --dtdvalid '" ZEL_TEST_DATA_DIR "/cim-2.4-subset.dtd' '" +
                        document + "' 2>'" + errors + "'").c_str());
  };
  for (const std::string& document :
       {TempPath("result.xml.gz"), std::string(ZEL_TEST_DATA_DIR "/written-in-order.xml")}) {
    EXPECT_EQ(xmllint(document), 0) << document;
    EXPECT_EQ(ReadFile(errors), "") << document;
  }
  // A key value without its type is what the DTD refuses.
  std::string const typed = " VALUETYPE=\"string\" TYPE=\"string\"";
  WriteFile("untyped.xml", text.erase(text.find(typed), typed.size()));
  EXPECT_NE(xmllint(TempPath("untyped.xml")), 0);
  EXPECT_NE(ReadFile(errors).find("Element KEYVALUE does not carry attribute TYPE"),
            std::string::npos);
}

TEST_F(CIMXMLWriterTest, AnUnwritablePathIsLoggedAndThrown) {
  for (std::string path : {TempPath("missing/result.xml"), TempPath("missing/result.xml.gz")}) {
    EXPECT_ZEL_THROW(TCIMXMLWriter::WriteFile(path, fContainer), zelStatusFileSystemError);
    EXPECT_LOGGED("ZEL_Core: [Error] TCIMXMLWriter: couldn't open '" + path + "'");
  }
  EXPECT_ZEL_THROW(TCIMXMLWriter::WriteFile("/dev/full", fContainer), zelStatusFileSystemError);
  EXPECT_LOGGED("ZEL_Core: [Error] TCIMXMLWriter: couldn't write '/dev/full'");
}
