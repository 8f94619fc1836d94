// The CIM-XML writer: the exact text of small documents, and documents read, written and
// read again into an equal container, plain and gzip.
#include "cimxml_helpers.h"

#include "ZelTest.h"

#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMInstance.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMQualifierDecl.h"
#include "TCIMReference.h"
#include "TCIMXMLWriter.h"

#include <algorithm>
#include <zlib.h>

static const char kHead[] = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                            "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
                            "<DECLARATION>\n<DECLGROUP>\n";
static const char kTail[] = "</DECLGROUP>\n</DECLARATION>\n</CIM>\n";
static const char kKeyDecl[] =
    "<QUALIFIER.DECLARATION NAME=\"KEY\" TYPE=\"boolean\" ISARRAY=\"false\" "
    "OVERRIDABLE=\"false\" TOSUBCLASS=\"true\" TRANSLATABLE=\"false\">\n"
    "<SCOPE PROPERTY=\"true\" REFERENCE=\"true\"/>\n"
    "<VALUE>false</VALUE>\n"
    "</QUALIFIER.DECLARATION>\n";
static const char kAssociationDecl[] =
    "<QUALIFIER.DECLARATION NAME=\"ASSOCIATION\" TYPE=\"boolean\" ISARRAY=\"false\" "
    "OVERRIDABLE=\"false\" TOSUBCLASS=\"true\" TRANSLATABLE=\"false\">\n"
    "<SCOPE ASSOCIATION=\"true\"/>\n"
    "<VALUE>false</VALUE>\n"
    "</QUALIFIER.DECLARATION>\n";

// One line per declaration, class, property declaration, qualifier and instance property,
// built from the object model alone, so that two containers compare as two strings.
static std::string ValueText(const TCIMValue& value) {
  if (value.IsNull())
    return "NULL(" + std::to_string(value.GetType()) + ")";
  return std::to_string(value.GetType()) + ":" + value.ToString(10);
}

static std::string QualifierLines(const std::vector<TCIMQualifier*>& qualifiers) {
  std::string text;
  for (TCIMQualifier* q : qualifiers)
    text += "  [" + q->GetName() + "=" + ValueText(q->GetValue()) + " flavor " +
            std::to_string(q->GetFlavor()) + (q->GetPropagated() ? " propagated" : "") + "]\n";
  return text;
}

static std::string Describe(const TContainer& container) {
  std::string text;
  for (TCIMQualifierDecl* decl : container.EnumerateQualifiers())
    text += "decl " + decl->GetName() + " " + ValueText(decl->GetValue()) + " scope " +
            std::to_string(decl->GetScope()) + " flavor " + std::to_string(decl->GetFlavor()) +
            (decl->IsArray() ? " array" : "") + "\n";
  // By name: the writer may register classes in another order than the original.
  std::vector<TCIMClass*> classes = container.GetRootClass()->EnumerateSubClasses(true);
  std::sort(classes.begin(), classes.end(),
            [](TCIMClass* a, TCIMClass* b) { return a->GetName() < b->GetName(); });
  for (TCIMClass* cls : classes) {
    text += "class " + cls->GetName() + " : " + cls->GetSuperClass()->GetName() + "\n";
    text += QualifierLines(cls->EnumerateQualifiers());
    for (TCIMPropertyDecl* decl : cls->EnumeratePropertyDecls()) {
      TCIMClass* referenced = decl->GetValue().GetReferencedClass();
      text += " property " + decl->GetName() + " of " + decl->GetClass().GetName() + " " +
              ValueText(decl->GetValue()) + (referenced ? " to " + referenced->GetName() : "") +
              " max " + std::to_string(decl->GetValue().GetMaxArraySize()) + "\n";
      text += QualifierLines(decl->EnumerateQualifiers());
    }
    for (TCIMInstance* instance : cls->EnumerateInstances(false)) {
      text += " instance " + instance->BuildPath().GetPath() + "\n";
      for (const TCIMProperty* property : instance->EnumerateProperties())
        text += "  " + property->GetName() + "=" + ValueText(property->GetValue()) + "\n";
    }
  }
  return text;
}

class CIMXMLWriterTest : public ZelTest {
protected:
  void Load(TContainer& container, std::initializer_list<const char*> names) {
    for (const char* name : names)
      ParseInto(container, DataText(name));
  }

  // A class with a true KEY on its string property "Id".
  TCIMClass* KeyedClass(const std::string& name, TCIMClass* superclass = nullptr) {
    TCIMClass* cls = fContainer.AllocateClass(name, superclass);
    if (!superclass) {
      TCIMPropertyDecl* id = new TCIMPropertyDecl("Id", *cls, TCIMValue(TCIMValue::TCIMType::kString, 0));
      id->AddQualifier(*new TCIMQualifier(*fContainer.GetQualifierDecl("KEY"), TCIMValue(true)));
      id->AddToContainer();
    }
    return cls;
  }

  TCIMInstance* NewInstance(const std::string& cls, const std::string& id) {
    TCIMInstance* instance = fContainer.AllocateInstance(fContainer.GetClass(cls));
    instance->SetPropertyValue("Id", TCIMValue(id));
    return instance;
  }

  void DeclareKey() { ParseInto(fContainer, std::string(kHead) + kKeyDecl + kTail); }

  TContainer fContainer;
};

TEST_F(CIMXMLWriterTest, AnEmptyContainerIsAnEmptyDeclarationGroup) {
  EXPECT_EQ(TCIMXMLWriter::Write(fContainer), std::string(kHead) + kTail);
  TContainer again;
  EXPECT_TRUE(ParseInto(again, TCIMXMLWriter::Write(fContainer)).empty());
}

TEST_F(CIMXMLWriterTest, ClassesComeAfterTheirSuperclassAndTheClassesTheyReferTo) {
  ParseInto(fContainer, std::string(kHead) + kKeyDecl + kAssociationDecl + kTail);
  // Registered in an order the reader could not follow: the association first.
  TCIMClass* disk = KeyedClass("ZT_Disk");
  TCIMClass* link = fContainer.AllocateClass("ZT_Link", nullptr);
  link->AddQualifier(
      *new TCIMQualifier(*fContainer.GetQualifierDecl("ASSOCIATION"), TCIMValue(true)));
  TCIMValue toDisk(TCIMValue::TCIMType::kReference, 0);
  toDisk.SetReferencedClass(*disk);
  TCIMPropertyDecl* ref = new TCIMPropertyDecl("Disk", *link, toDisk);
  ref->AddQualifier(*new TCIMQualifier(*fContainer.GetQualifierDecl("KEY"), TCIMValue(true)));
  ref->AddToContainer();
  link->AddToContainer();
  disk->AddToContainer();
  TCIMClass* ssd = KeyedClass("ZT_Ssd", disk);
  ssd->AddToContainer();

  TCIMInstance* first = NewInstance("ZT_Disk", "d<1>&");
  first->AddToContainer();
  TCIMReference path = first->BuildPath();
  TCIMInstance* linked = fContainer.AllocateInstance(link);
  linked->SetPropertyValue("Disk", TCIMValue(path));
  linked->AddToContainer();
  NewInstance("ZT_Ssd", "s1")->AddToContainer();

  const std::string classes =
      "<VALUE.OBJECT>\n<CLASS NAME=\"ZT_Disk\">\n"
      "<PROPERTY NAME=\"Id\" TYPE=\"string\">\n"
      "<QUALIFIER NAME=\"KEY\" TYPE=\"boolean\" OVERRIDABLE=\"false\" TOSUBCLASS=\"true\" "
      "TRANSLATABLE=\"false\"><VALUE>true</VALUE></QUALIFIER>\n"
      "</PROPERTY>\n</CLASS>\n</VALUE.OBJECT>\n"
      "<VALUE.OBJECT>\n<CLASS NAME=\"ZT_Link\">\n"
      "<QUALIFIER NAME=\"ASSOCIATION\" TYPE=\"boolean\" OVERRIDABLE=\"false\" "
      "TOSUBCLASS=\"true\" TRANSLATABLE=\"false\"><VALUE>true</VALUE></QUALIFIER>\n"
      "<PROPERTY.REFERENCE NAME=\"Disk\" REFERENCECLASS=\"ZT_Disk\">\n"
      "<QUALIFIER NAME=\"KEY\" TYPE=\"boolean\" OVERRIDABLE=\"false\" TOSUBCLASS=\"true\" "
      "TRANSLATABLE=\"false\"><VALUE>true</VALUE></QUALIFIER>\n"
      "</PROPERTY.REFERENCE>\n</CLASS>\n</VALUE.OBJECT>\n"
      "<VALUE.OBJECT>\n<CLASS NAME=\"ZT_Ssd\" SUPERCLASS=\"ZT_Disk\">\n"
      "</CLASS>\n</VALUE.OBJECT>\n";
  const std::string instances =
      "<VALUE.OBJECT>\n<INSTANCE CLASSNAME=\"ZT_Disk\">\n"
      "<PROPERTY NAME=\"Id\" TYPE=\"string\"><VALUE>d&lt;1&gt;&amp;</VALUE></PROPERTY>\n"
      "</INSTANCE>\n</VALUE.OBJECT>\n"
      "<VALUE.OBJECT>\n<INSTANCE CLASSNAME=\"ZT_Ssd\">\n"
      "<PROPERTY NAME=\"Id\" TYPE=\"string\"><VALUE>s1</VALUE></PROPERTY>\n"
      "</INSTANCE>\n</VALUE.OBJECT>\n"
      "<VALUE.OBJECT>\n<INSTANCE CLASSNAME=\"ZT_Link\">\n"
      "<PROPERTY.REFERENCE NAME=\"Disk\" REFERENCECLASS=\"ZT_Disk\"><VALUE.REFERENCE>"
      "<INSTANCENAME CLASSNAME=\"ZT_Disk\"><KEYBINDING NAME=\"Id\">"
      "<KEYVALUE>d&lt;1&gt;&amp;</KEYVALUE></KEYBINDING></INSTANCENAME></VALUE.REFERENCE>"
      "</PROPERTY.REFERENCE>\n</INSTANCE>\n</VALUE.OBJECT>\n";
  std::string written = TCIMXMLWriter::Write(fContainer);
  EXPECT_EQ(written, std::string(kHead) + kAssociationDecl + kKeyDecl + classes + instances + kTail);

  TContainer again;
  ParseInto(again, written);
  EXPECT_EQ(Describe(again), Describe(fContainer));
}

TEST_F(CIMXMLWriterTest, ValuesOfEveryTypeKeepTheirTextNullsAndArrays) {
  DeclareKey();
  TCIMClass* cls = KeyedClass("ZT_Sample");
  struct {
    const char* fName;
    TCIMValue fValue;
  } const kSamples[] = {
      {"B", TCIMValue(true)},
      {"S8", TCIMValue(static_cast<signed char>(-128))},
      {"U64", TCIMValue(18446744073709551615ul)},
      {"R32", TCIMValue(0.1f)},
      {"R64", TCIMValue(1.0 / 3)},
      {"When", TCIMValue(TCIMDateTime(std::string("20031107153000.000000-300")))},
      {"Text", TCIMValue("a\r\nb\tc\x01 h\xc3\xa9")},
      {"Levels", TCIMValue(TCIMValue::TCIMType::kUint16, 4,
                           {TCIMValue(static_cast<unsigned short>(10)),
                            TCIMValue(static_cast<unsigned short>(20))})},
      {"Empty", TCIMValue(TCIMValue::TCIMType::kString, 0, {})},
  };
  for (const auto& sample : kSamples) {
    TCIMValue null = sample.fValue;
    null.SetNullValue(sample.fValue.GetType(), sample.fValue.GetMaxArraySize());
    (new TCIMPropertyDecl(sample.fName, *cls, null))->AddToContainer();
  }
  (new TCIMPropertyDecl("Unset", *cls, TCIMValue(TCIMValue::TCIMType::kSint32, 0)))
      ->AddToContainer();
  (new TCIMPropertyDecl("Default", *cls, TCIMValue(7u)))->AddToContainer();
  cls->AddToContainer();
  TCIMInstance* instance = NewInstance("ZT_Sample", "one");
  for (const auto& sample : kSamples)
    instance->SetPropertyValue(sample.fName, sample.fValue);
  instance->AddToContainer();

  std::string written = TCIMXMLWriter::Write(fContainer);
  for (const char* line : {
           "<PROPERTY NAME=\"B\" TYPE=\"boolean\"><VALUE>true</VALUE></PROPERTY>",
           "<PROPERTY NAME=\"S8\" TYPE=\"sint8\"><VALUE>-128</VALUE></PROPERTY>",
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
  EXPECT_EQ(static_cast<std::string>(read->GetProperty("Text").GetValue()),
            "a\r\nb\tc\x01 h\xc3\xa9");
  EXPECT_TRUE(read->GetProperty("Unset").GetValue().IsNull());
}

TEST_F(CIMXMLWriterTest, DocumentsReadWrittenAndReadAgainGiveTheSameContainer) {
  Load(fContainer, {"qualifier-declarations.xml", "class-hierarchy-override.xml",
                    "instances-properties.xml", "key-bindings.xml", "object-paths.xml"});
  std::string written = TCIMXMLWriter::Write(fContainer);
  TContainer again;
  ParseInto(again, written);
  EXPECT_EQ(Describe(again), Describe(fContainer));
  // Only inherited qualifiers are left out, so the override and the flavors survive.
  EXPECT_NE(Describe(again).find(" property Generation of ZT_System 4:2 max 0\n"
                                 "  [OVERRIDE=13:Generation flavor 0]\n"),
            std::string::npos);
  // Writing what was read back changes nothing.
  EXPECT_EQ(TCIMXMLWriter::Write(again), written);
}

TEST_F(CIMXMLWriterTest, OnlyTheClassesWithInstancesAndWhatTheyNeed) {
  Load(fContainer, {"qualifier-declarations.xml", "class-hierarchy-override.xml",
                    "instances-properties.xml"});
  TCIMClass* server = fContainer.GetClass("ZT_Server"); // defined, but without instances
  EXPECT_EQ(ClassNames(TCIMXMLWriter::ClassesWithInstances(fContainer)),
            (std::vector<std::string>{"ZT_Disk", "ZT_Volume", "ZT_DiskVolume"}));

  TContainer disks;
  ParseInto(disks, TCIMXMLWriter::Write(fContainer, TCIMXMLWriter::eClassesWithInstances));
  EXPECT_EQ(ClassNames(disks.GetRootClass()->EnumerateSubClasses(true)),
            (std::vector<std::string>{"ZT_Disk", "ZT_Volume", "ZT_DiskVolume"}));
  EXPECT_EQ(disks.EnumerateQualifiers().size(), fContainer.EnumerateQualifiers().size());

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

TEST_F(CIMXMLWriterTest, FilesArePlainOrGzipByNameAndLoadBack) {
  Load(fContainer, {"qualifier-declarations.xml", "class-hierarchy-override.xml",
                    "instances-properties.xml", "key-bindings.xml"});
  std::string text = TCIMXMLWriter::Write(fContainer);
  for (const char* name : {"result.xml", "result.xml.gz"}) {
    std::string path = TempPath(name);
    TCIMXMLWriter::WriteFile(path, fContainer);
    TContainer loaded;
    loaded.PopulateContainerFromFile(path);
    EXPECT_EQ(Describe(loaded), Describe(fContainer)) << name;
  }
  // The gzip file holds exactly the document; the plain one is the document.
  gzFile gz = gzopen(TempPath("result.xml.gz").c_str(), "rb");
  ASSERT_NE(gz, nullptr);
  std::string inflated(text.size() + 1, '\0');
  int count = gzread(gz, &inflated[0], static_cast<unsigned int>(inflated.size()));
  gzclose(gz);
  EXPECT_EQ(inflated.substr(0, count), text);
  std::ifstream plain(TempPath("result.xml").c_str(), std::ios::binary);
  std::ostringstream plainText;
  plainText << plain.rdbuf();
  EXPECT_EQ(plainText.str(), text);

  // Replaced, not appended to.
  TContainer empty;
  TCIMXMLWriter::WriteFile(TempPath("result.xml"), empty);
  std::ifstream replaced(TempPath("result.xml").c_str(), std::ios::binary);
  std::ostringstream replacedText;
  replacedText << replaced.rdbuf();
  EXPECT_EQ(replacedText.str(), std::string(kHead) + kTail);
}

TEST_F(CIMXMLWriterTest, AnUnwritablePathIsLoggedAndThrown) {
  std::string plain = TempPath("missing/result.xml");
  EXPECT_ZEL_THROW(TCIMXMLWriter::WriteFile(plain, fContainer), zelStatusFileSystemError);
  EXPECT_LOGGED("ZEL_Core: [Error] TCIMXMLWriter: couldn't open '" + plain + "'");
  std::string gz = TempPath("missing/result.xml.gz");
  EXPECT_ZEL_THROW(TCIMXMLWriter::WriteFile(gz, fContainer), zelStatusFileSystemError);
  EXPECT_LOGGED("ZEL_Core: [Error] TCIMXMLWriter: couldn't open '" + gz + "'");
  EXPECT_ZEL_THROW(TCIMXMLWriter::WriteFile("/dev/full", fContainer), zelStatusFileSystemError);
  EXPECT_LOGGED("ZEL_Core: [Error] TCIMXMLWriter: couldn't write '/dev/full'");
}
