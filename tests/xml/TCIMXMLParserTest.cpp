// The CIM-XML parser over hand-written documents: what each element builds in the container.
#include "cimxml_helpers.h"

typedef std::vector<std::string> TNames;

// Every test starts from the qualifier declarations that the documents use.
class CIMXMLParserTest : public ZelTest {
protected:
  CIMXMLParserTest() { ParseInto(fContainer, DataText("qualifier-declarations.xml")); }

  TCIMValue Value(char const* cls, std::string const& key, char const* property) {
    std::vector<TCIMInstance*> instances = fContainer.GetClass(cls)->EnumerateInstances(false);
    for (TCIMInstance* instance : instances)
      if (instance->BuildPath().GetPath() == key)
        return instance->GetProperty(property).GetValue();
    ADD_FAILURE() << "no instance " << key;
    return TCIMValue();
  }

  TContainer fContainer;
};

TEST_F(CIMXMLParserTest, QualifierDeclarationsKeepTypeDefaultScopeAndFlavor) {
  // Read a second time: declarations, repeated ones too, collect no class and change nothing.
  EXPECT_TRUE(ParseInto(fContainer, DataText("qualifier-declarations.xml")).empty());
  // MaxLen: PROPERTY="false" still scopes to properties; the repeated declaration was ignored.
  EXPECT_EQ(Describe(fContainer),
            "decl ABSTRACT 1:false scope 3 flavor 0 max 0\n"
            "decl ASSOCIATION 1:false scope 2 flavor 2 max 0\n"
            "decl Colors 29:{ red, green, blue } scope 1 flavor 0 array max 3\n"
            "decl Description NULL(13) scope 5 flavor 7 max 0\n"
            "decl KEY 1:false scope 12 flavor 2 max 0\n"
            "decl MaxLen 6:256 scope 4 flavor 3 max 0\n"
            "decl OVERRIDE NULL(13) scope 12 flavor 0 max 0\n"
            "decl ValueMap NULL(29) scope 4 flavor 3 array max 0\n");
}

TEST_F(CIMXMLParserTest, ClassHierarchyInheritsAndOverrides) {
  std::vector<TCIMClass*> classes = ParseInto(fContainer, DataText("class-hierarchy-override.xml"));
  EXPECT_EQ(ClassNames(classes), (TNames{"ZT_ManagedElement", "ZT_System", "ZT_Server"}));

  TCIMClass* element = fContainer.GetClass("zt_managedelement");
  TCIMClass* system = fContainer.GetClass("ZT_System");
  TCIMClass* server = fContainer.GetClass("ZT_Server");
  EXPECT_TRUE(element->IsAbstract());
  EXPECT_FALSE(system->IsAbstract());  // ABSTRACT is not inherited without TOSUBCLASS
  EXPECT_EQ(server->GetSuperClass(), system);

  // The override replaces the declaration in the subclass only; the grandchild inherits it.
  EXPECT_EQ(static_cast<unsigned short>(element->GetPropertyDecl("Generation").GetValue()), 1);
  EXPECT_EQ(static_cast<unsigned short>(system->GetPropertyDecl("Generation").GetValue()), 2);
  EXPECT_EQ(&server->GetPropertyDecl("generation"), &system->GetPropertyDecl("Generation"));

  // Property qualifiers stay with their declaration.
  EXPECT_EQ(static_cast<unsigned int>(
                server->GetPropertyDecl("Caption").GetQualifier("MaxLen").GetValue()),
            64u);

  // Class qualifiers: the propagated Description was overridden in ZT_System, whose own one
  // (no flavors written) does not reach ZT_Server.
  EXPECT_EQ(static_cast<std::string>(system->GetQualifier("Description").GetValue()), "A system");
  EXPECT_FALSE(system->GetQualifier("Description").GetPropagated());
  EXPECT_EQ(server->FindQualifier("Description"), nullptr);

  TCIMValue ports = server->GetPropertyDecl("Ports").GetValue();
  EXPECT_EQ(ports.GetMaxArraySize(), 4u);
  EXPECT_EQ(ports.ToString(10), "{ 22, 80 }");
  EXPECT_TRUE(server->GetPropertyDecl("Roles").GetValue().IsNull());
  EXPECT_EQ(server->GetPropertyDecl("Roles").GetType(), TCIMValue::TCIMType::kString);
}

TEST_F(CIMXMLParserTest, InstancesCarryScalarArrayDateTimeAndReferenceValues) {
  EXPECT_EQ(ClassNames(ParseInto(fContainer, DataText("instances-properties.xml"))),
            (TNames{"ZT_Disk", "ZT_Volume", "ZT_DiskVolume"}));

  std::string disk = "ZT_Disk.DeviceID=\"disk0\"";
  EXPECT_EQ(static_cast<unsigned long>(Value("ZT_Disk", disk, "Size")), 500107862016ul);
  EXPECT_EQ(Value("ZT_Disk", disk, "Blocks").ToString(10), "{ 1, 2, 3 }");
  EXPECT_EQ(Value("ZT_Disk", disk, "Installed").ToString(10), "20031107153000.000000-300");
  EXPECT_FALSE(static_cast<bool>(Value("ZT_Disk", disk, "Removable")));
  // No VALUE: NULL of the declared type, not the class's default.
  TCIMValue label = Value("ZT_Disk", disk, "Label");
  EXPECT_TRUE(label.IsNull());
  EXPECT_EQ(label.GetType(), TCIMValue::TCIMType::kString);

  // Character references are decoded in values and key values alike.
  EXPECT_EQ(static_cast<std::string>(Value("ZT_Volume", "ZT_Volume.Name=\"C:&A\"", "Name")),
            "C:&A");

  std::vector<TCIMInstance*> links =
      fContainer.GetClass("ZT_DiskVolume")->EnumerateInstances(false);
  ASSERT_EQ(links.size(), 1u);
  TCIMReference toDisk = links[0]->GetProperty("Disk").GetValue();
  TCIMReference toVolume = links[0]->GetProperty("Volume").GetValue();
  EXPECT_EQ(toDisk.GetPath(), disk);
  EXPECT_EQ(toVolume.GetPath(), "ZT_Volume.Name=\"C:&A\"");
  EXPECT_EQ(toDisk.GetCIMElement(), fContainer.GetClass("ZT_Disk")->EnumerateInstances(false)[0]);
}

TEST_F(CIMXMLParserTest, KeyValuesBindByNameOrToTheFirstKeyAndMayBeReferences) {
  ParseInto(fContainer, DataText("key-bindings.xml"));
  // The unnamed KEYVALUE went to Number, the class's only key, declared second.
  std::vector<TCIMInstance*> users = fContainer.GetClass("ZT_PortUser")->EnumerateInstances(false);
  ASSERT_EQ(users.size(), 1u);
  EXPECT_EQ(users[0]->BuildPath().GetPath(), "ZT_PortUser.Port=\"ZT_Port.Number=\"80\"\"");

  std::vector<TCIMInstance*> audits = fContainer.GetClass("ZT_Audit")->EnumerateInstances(false);
  ASSERT_EQ(audits.size(), 1u);
  TCIMReference subject = audits[0]->GetProperty("Subject").GetValue();
  EXPECT_EQ(subject.GetCIMElement(), users[0]);
}

TEST_F(CIMXMLParserTest, DeclarationGroupsWithPathsAndNames) {
  std::vector<TCIMClass*> classes = ParseInto(fContainer, DataText("object-paths.xml"));
  EXPECT_EQ(ClassNames(classes), (TNames{"ZT_Fan", "ZT_Sensor", "ZT_Probe"}));
  EXPECT_NE(fContainer.FindQualifierDecl("Version"), nullptr);
  EXPECT_EQ(static_cast<std::string>(
                fContainer.GetClass("ZT_Fan")->GetQualifier("Version").GetValue()),
            "1.0");
  EXPECT_EQ(fContainer.GetClass("ZT_Fan")->EnumerateInstances(false).size(), 2u);
  EXPECT_EQ(fContainer.GetClass("ZT_Probe")->EnumerateInstances(false).size(), 1u);
  // A reference declaration without a value keeps its class: NULL of type reference.
  TCIMValue kind = fContainer.GetClass("ZT_Sensor")->GetPropertyDecl("Kind").GetValue();
  EXPECT_TRUE(kind.IsNull());
  EXPECT_EQ(kind.GetReferencedClass(), fContainer.GetClass("ZT_Fan"));
}

TEST_F(CIMXMLParserTest, CreateRequestsRegisterWithoutCollecting) {
  EXPECT_TRUE(ParseInto(fContainer, DataText("request-create.xml")).empty());
  TCIMClass* battery = fContainer.GetClass("ZT_Battery");
  std::vector<TCIMInstance*> instances = battery->EnumerateInstances(false);
  ASSERT_EQ(instances.size(), 2u);
  // uint8 is read as a number, then cut to 8 bits: 300 is 44.
  EXPECT_EQ(static_cast<unsigned char>(Value("ZT_Battery", "ZT_Battery.Id=\"7\"", "Charge")), 44);
  EXPECT_TRUE(Value("ZT_Battery", "ZT_Battery.Id=\"8\"", "Charge").IsNull());

  // Creating a class the container already has is accepted without change.
  ParseInto(fContainer, DataText("request-create.xml"));
  EXPECT_EQ(fContainer.GetClass("ZT_Battery"), battery);
  EXPECT_EQ(battery->EnumerateInstances(false).size(), 4u);  // equal paths are kept side by side
}

TEST_F(CIMXMLParserTest, AClassDefinedTwiceKeepsTheFirstAndIsCollectedOnce) {
  EXPECT_EQ(ClassNames(ParseInto(fContainer, DataText("class-twice.xml"))), (TNames{"A"}));
  EXPECT_EQ(fContainer.GetClass("A")->FindPropertyDecl("x"), nullptr);
  EXPECT_TRUE(LoggedLines().empty());
}

// A qualifier given again on the same class or property declaration: an overridable one is
// replaced, a locked one stays when the new one is identical and refuses a different one.
TEST_F(CIMXMLParserTest, AQualifierGivenTwiceReplacesOrKeepsOrRefuses) {
  auto qualifier = [](char const* name, char const* type, char const* overridable,
                      char const* value) {
    return std::string("<QUALIFIER NAME=\"") + name + "\" TYPE=\"" + type +
           "\" OVERRIDABLE=\"" + overridable + "\"><VALUE>" + value + "</VALUE></QUALIFIER>";
  };
  auto document = [](std::string const& classQualifiers, std::string const& keyQualifiers) {
    return "<CIM><DECLARATION><DECLGROUP><VALUE.OBJECT><CLASS NAME=\"Q\">" + classQualifiers +
           "<PROPERTY NAME=\"Id\" TYPE=\"string\">" + keyQualifiers +
           "</PROPERTY></CLASS></VALUE.OBJECT></DECLGROUP></DECLARATION>\n</CIM>";
  };
  std::string key = qualifier("KEY", "boolean", "false", "true");
  // Spelt in any case, the name is the same qualifier's.
  ParseInto(fContainer, document(qualifier("Description", "string", "true", "one") +
                                     qualifier("DESCRIPTION", "string", "false", "two") +
                                     qualifier("description", "string", "false", "two"),
                                 key + key));
  TCIMClass* cls = fContainer.GetClass("Q");
  TCIMQualifier& description = cls->GetQualifier("description");
  EXPECT_EQ(static_cast<std::string>(description.GetValue()), "two");
  EXPECT_EQ(description.GetFlavor() & TCIMQualifierDecl::eOverridable, 0u);
  EXPECT_EQ(cls->EnumerateQualifiers().size(), 1u);
  TCIMPropertyDecl& id = cls->GetPropertyDecl("Id");
  EXPECT_EQ(id.EnumerateQualifiers().size(), 1u);
  EXPECT_TRUE(static_cast<bool>(id.GetQualifier("key").GetValue()));
  EXPECT_TRUE(LoggedLines().empty());

  // A different value over a locked one, on a property and on a class.
  TContainer other, third;
  ParseInto(other, DataText("qualifier-declarations.xml"));
  ParseInto(third, DataText("qualifier-declarations.xml"));
  EXPECT_ZEL_THROW(ParseInto(other, document("", key + qualifier("KEY", "boolean", "false",
                                                                 "false"))),
                   zelStatusNotOverridable);
  EXPECT_ZEL_THROW(ParseInto(third, document(qualifier("Description", "string", "false", "a") +
                                                 qualifier("Description", "string", "true", "b"),
                                             "")),
                   zelStatusNotOverridable);
  EXPECT_EQ(LoggedLines(),
            (TNames{"ZEL_Core: [Error] TCIMXMLParser: Threw exception zelStatusNotOverridable "
                    "on line 1",
                    "ZEL_Core: [Error] TCIMXMLParser: Threw exception zelStatusNotOverridable "
                    "on line 1"}));
}

// A document around one INSTANCE of ZT_Disk (instances-properties.xml loaded first).
static std::string DiskInstance(std::string const& properties, std::string const& id) {
  return "<CIM><DECLARATION><DECLGROUP><VALUE.OBJECT><INSTANCE CLASSNAME=\"ZT_Disk\">"
         "<PROPERTY NAME=\"DeviceID\" TYPE=\"string\"><VALUE>" + id + "</VALUE></PROPERTY>" +
         properties + "</INSTANCE></VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>";
}

// In UX402 mode values of another type are dropped; value text is kept whole, and a bad
// date-time is defaulted with a line.
TEST_F(CIMXMLParserTest, UX402ModeValueTextAndBadDateTimes) {
  ParseInto(fContainer, DataText("instances-properties.xml"));
  ParseInto(fContainer,
            DiskInstance("<PROPERTY NAME=\"Removable\" TYPE=\"string\"><VALUE>no</VALUE>"
                         "</PROPERTY><PROPERTY NAME=\"Label\" TYPE=\"string\">"
                         "<VALUE>data</VALUE></PROPERTY>",
                         "disk9"),
            /*ux402=*/true);
  std::string key = "ZT_Disk.DeviceID=\"disk9\"";
  EXPECT_TRUE(static_cast<bool>(Value("ZT_Disk", key, "Removable")));  // the class default
  EXPECT_EQ(static_cast<std::string>(Value("ZT_Disk", key, "Label")), "data");
  EXPECT_TRUE(LoggedLines().empty()); // Without the mode: "property of another type".

  ParseInto(fContainer, DiskInstance("<PROPERTY NAME=\"Label\" TYPE=\"string\"><VALUE>\n  two\n"
                                     "  lines&#0;&#256;&#x41;&amp; </VALUE></PROPERTY>\n"
                                     "<PROPERTY NAME=\"Installed\" TYPE=\"datetime\">"
                                     "<VALUE>yesterday</VALUE></PROPERTY>", "disk8"));
  key = "ZT_Disk.DeviceID=\"disk8\"";
  // A reference to byte 0 (&#256; keeps its low byte) adds nothing to the text.
  EXPECT_EQ(static_cast<std::string>(Value("ZT_Disk", key, "Label")), "\n  two\n  linesA& ");
  EXPECT_EQ(Value("ZT_Disk", key, "Installed").ToString(10), "19700101000000.000000+000");
  EXPECT_EQ(LoggedLines(), (TNames{"ZEL_Core: [Error] Invalid datetime found on line 4.  "
                                   "Defaulting the datetime to 01/01/1970 00:00:00."}));
}

// Arrays of any length keep their elements in document order, long strings included.
TEST_F(CIMXMLParserTest, ArraysKeepEveryElementInOrder) {
  std::string const kKeyProperty = "<PROPERTY NAME=\"Id\" TYPE=\"string\"><QUALIFIER "
                                   "NAME=\"KEY\" TYPE=\"boolean\"><VALUE>true</VALUE>"
                                   "</QUALIFIER></PROPERTY>";
  ParseInto(fContainer, DataText("instances-properties.xml"));
  for (int count : {0, 1, 8, 9, 17, 40}) {
    std::string values, strings, expected = "{ ", expectedStrings = "{ ";
    for (int i = 1; i <= count; ++i) {
      std::string word = "a value long enough for the heap " + std::to_string(i);
      values += "<VALUE>" + std::to_string(i) + "</VALUE>";
      strings += "<VALUE>" + word + "</VALUE>";
      expected += std::to_string(i) + (i < count ? ", " : "");
      expectedStrings += word + (i < count ? ", " : "");
    }
    std::string id = "disk-" + std::to_string(count), cls = "V" + std::to_string(count);
    ParseInto(fContainer, DiskInstance("<PROPERTY.ARRAY NAME=\"Blocks\" TYPE=\"uint32\">"
                                       "<VALUE.ARRAY>" + values + "</VALUE.ARRAY></PROPERTY.ARRAY>",
                                       id));
    ParseInto(fContainer, "<CIM><DECLARATION><DECLGROUP><VALUE.OBJECT><CLASS NAME=\"" + cls +
                              "\"><QUALIFIER NAME=\"ValueMap\" TYPE=\"string\"><VALUE.ARRAY>" +
                              strings + "</VALUE.ARRAY></QUALIFIER>" + kKeyProperty +
                              "</CLASS></VALUE.OBJECT>"
                              "</DECLGROUP></DECLARATION></CIM>");
    EXPECT_EQ(Value("ZT_Disk", "ZT_Disk.DeviceID=\"" + id + "\"", "Blocks").ToString(10),
              expected + " }") << count;
    EXPECT_EQ(fContainer.GetClass(cls)->GetQualifier("ValueMap").GetValue().ToString(10),
              expectedStrings + " }") << count;
  }
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(CIMXMLParserTest, AMethodPushesNothingSoItsEndTagClosesTheClass) {
  std::string head = "<CIM><DECLARATION><DECLGROUP><VALUE.OBJECT><CLASS NAME=\"M\">"
                     "<QUALIFIER NAME=\"ABSTRACT\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>"
                     "<METHOD NAME=\"Reset\"></METHOD></CLASS></VALUE.OBJECT>";
  // Last in the document it does no harm: the class is registered.
  EXPECT_EQ(ClassNames(ParseInto(fContainer, head + "</DECLGROUP></DECLARATION></CIM>")),
            (TNames{"M"}));
  // But the end tags are one off from then on: the next object lands in DECLARATION.
  TContainer other;
  ParseInto(other, DataText("qualifier-declarations.xml"));
  EXPECT_ZEL_THROW(ParseInto(other, head + "\n<VALUE.OBJECT/></DECLGROUP></DECLARATION></CIM>"),
                   zelStatusInvalidSpecificationDocument);
  EXPECT_LOGGED("ZEL_Core: [Error] CIM-XML Parser line 2:Unexpected element value.object");
}


// Element names of every length are compared in lower case, whatever case they are written
// in; the message names them lowered.
TEST_F(CIMXMLParserTest, ElementNamesOfAnyLengthAreLowered) {
  std::string written, lowered;
  for (int length = 1; length <= 26; ++length) {
    char letter = static_cast<char>('A' + length - 1);
    written += length % 2 ? letter : static_cast<char>(letter + ('a' - 'A'));
    lowered += static_cast<char>(letter + ('a' - 'A'));
    TContainer container;
    EXPECT_ZEL_THROW(ParseInto(container, "<CIM><" + written + "/></CIM>"),
                     zelStatusInvalidSpecificationDocument);
    EXPECT_LOGGED("ZEL_Core: [Error] CIM-XML Parser line 1:Unexpected element " + lowered);
  }
  std::string mixed = "<cIm><DeClArAtIoN><dEcLgRoUp><QuAlIfIeR.DeClArAtIoN NAME=\"Q\" "
                      "TYPE=\"string\"><ScOpE CLASS=\"true\"/></QuAlIfIeR.DeClArAtIoN>"
                      "</dEcLgRoUp></DeClArAtIoN></cIm>";
  EXPECT_TRUE(ParseInto(fContainer, mixed).empty());
  EXPECT_NE(fContainer.FindQualifierDecl("Q"), nullptr);
}

// The reader's own number and word conversion must give what the value's text constructor
// (stream extraction) gives, for every odd text.
TEST_F(CIMXMLParserTest, ParseValueReadsLikeTheValueTextConstructor) {
  typedef TCIMValue::TCIMType TCIMType;
  TCIMXMLParser parser(&fContainer);
  char const* texts[] = {" \t\n42", "42abc", "12.5", "-1", "", "x", "256", "-129", "65536",
                         "4294967296", "-2147483649", "18446744073709551615",
                         "-9223372036854775808", "TRUE", " true", "1e3", "0x10", "00042"};
  for (TCIMType::ECIMType type :
       {TCIMType::kBoolean, TCIMType::kUint8, TCIMType::kSint8, TCIMType::kUint16,
        TCIMType::kSint16, TCIMType::kUint32, TCIMType::kSint32, TCIMType::kUint64,
        TCIMType::kSint64, TCIMType::kReal32, TCIMType::kReal64, TCIMType::kString}) {
    for (char const* word : texts) {
      std::string text = word, again = word;
      TCIMValue expected(TCIMType(type), again, fContainer);
      EXPECT_TRUE(parser.ParseValue(TCIMType(type), text) == expected)
          << "type " << TCIMType(type) << " text '" << word << "'";
    }
  }
}

// The TYPE attribute reads type names in any case; anything else is a type mismatch.
TEST_F(CIMXMLParserTest, TypeAttributeReadsNamesInAnyCase) {
  typedef TCIMValue::TCIMType TCIMType;
  const struct {
    char const* text;
    TCIMType::ECIMType type;  // kNull: refused
  } rows[] = {{"boolean", TCIMType::kBoolean},   {"uint8", TCIMType::kUint8},
              {"SINT8", TCIMType::kSint8},       {"Uint16", TCIMType::kUint16},
              {"sInt16", TCIMType::kSint16},     {"uint32", TCIMType::kUint32},
              {"SINT32", TCIMType::kSint32},     {"uint64", TCIMType::kUint64},
              {"Sint64", TCIMType::kSint64},     {"real32", TCIMType::kReal32},
              {"REAL64", TCIMType::kReal64},     {"String", TCIMType::kString},
              {"DateTime", TCIMType::kDateTime}, {"char", TCIMType::kNull},
              {"reference", TCIMType::kNull},    {"", TCIMType::kNull},
              {"string ", TCIMType::kNull},      {"uint128", TCIMType::kNull},
              {"strin", TCIMType::kNull},        {"datetimes", TCIMType::kNull},
              {"uint8\xC9", TCIMType::kNull}};
  for (auto const& row : rows) {
    TCIMXMLParser::TAttributeMap attributes{{"type", row.text}};
    TCIMType type(TCIMType::kArray);
    if (row.type == TCIMType::kNull) {
      EXPECT_ZEL_THROW(TCIMXMLParser::HandleCIMType(attributes.begin(), type),
                       zelStatusTypeMismatch);
      continue;
    }
    EXPECT_TRUE(TCIMXMLParser::HandleCIMType(attributes.begin(), type)) << row.text;
    EXPECT_EQ(TCIMType::ECIMType(type), row.type) << row.text;
  }
}

// Every element whose state is pushed is read from a document that loads: a state that stopped
// pushing it would refuse that document. The states listed as not pushed appear in none.
TEST_F(CIMXMLParserTest, EveryStateOfTheListIsReachedFromADocument) {
  struct Row {
    std::string element;
    bool pushed;
  };
  const Row rows[] = {
#define CIMXML_STATE(element, State) {element, true},
#define CIMXML_STATE_NOT_PUSHED(element, State) {element, false},
#include "TCIMXMLParser.def"
#undef CIMXML_STATE
#undef CIMXML_STATE_NOT_PUSHED
  };
  std::string read;
  for (char const* name : {"qualifier-declarations.xml", "class-hierarchy-override.xml",
                           "instances-properties.xml", "key-bindings.xml", "object-paths.xml",
                           "request-create.xml"}) {
    SCOPED_TRACE(name);
    TContainer container;
    ParseInto(container, DataText("qualifier-declarations.xml"));
    std::string text = DataText(name);
    ParseInto(container, text);
    std::transform(text.begin(), text.end(), text.begin(), ::tolower);
    read += text;
  }
  EXPECT_TRUE(LoggedLines().empty());
  for (const Row& row : rows) {
    if (row.element.empty())
      continue;  // the document itself
    bool found = false;
    for (char after : {' ', '>', '/', '\n'})
      found = found || read.find("<" + row.element + after) != std::string::npos;
    EXPECT_EQ(found, row.pushed) << row.element;
  }
}
