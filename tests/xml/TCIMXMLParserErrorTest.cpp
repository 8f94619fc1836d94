// Malformed CIM-XML documents: one row per failure, with the status and the exact log lines.
#include "cimxml_helpers.h"

#include "ZelTest.h"

#include "ILogger.h"
#include "TCIMClass.h"
#include "TRootObject.h"

namespace {

typedef std::vector<std::string> TLines;

struct TErrorRow {
  char const* name;
  std::string document;
  zelStatusCode status;
  TLines lines;
};

// Each body starts on line 4 (line 3 for the message head).
std::string const kGroup = "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n<DECLARATION>\n<DECLGROUP>\n";
std::string const kNamed = "<CIM>\n<DECLARATION>\n<DECLGROUP.WITHNAME>\n";
std::string const kMessage = "<CIM>\n<MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">\n";
std::string const kCreate = "<SIMPLEREQ><IMETHODCALL NAME=\"CreateInstance\"><LOCALNAMESPACEPATH>"
                            "<NAMESPACE NAME=\"root\"/></LOCALNAMESPACEPATH>";
std::string const kVolume = "<VALUE.OBJECT><INSTANCE CLASSNAME=\"ZT_Volume\"><PROPERTY NAME=\"Name\" "
                            "TYPE=\"string\"><VALUE>v</VALUE></PROPERTY></INSTANCE></VALUE.OBJECT>";

std::string Parser(int line, std::string const& message) {
  return "ZEL_Core: [Error] CIM-XML Parser line " + std::to_string(line) + ":" + message;
}
std::string Threw(char const* status, int line) {
  return "ZEL_Core: [Error] TCIMXMLParser: Threw exception " + std::string(status) + " on line " +
         std::to_string(line);
}
// A content error reported by a state: the parser's line, then the frame's.
TLines Content(int line, std::string const& message) {
  return {Parser(line, message), Threw("zelStatusInvalidSpecificationDocument", line)};
}
std::string Named(std::string const& instanceName) {
  return kNamed + "<VALUE.NAMEDOBJECT>\n" + instanceName;
}

std::vector<TErrorRow> const kRows = {
    {"syntax error from the tokenizer", "", zelStatusInvalidSpecificationDocument,
     {Parser(1, "Unexpected character before prolog")}},
    {"cim version", "<CIM CIMVERSION=\"2.3\" DTDVERSION=\"2.0\">", zelStatusInvalidSpecificationDocument,
     Content(1, "Unknown CIM version")},
    {"dtd version", "<CIM CIMVERSION=\"2.8\"\n DTDVERSION=\"2.2\">", zelStatusInvalidSpecificationDocument,
     Content(2, "Unknown DTD version")},
    {"root other than CIM", "<DECLARATION/>", zelStatusInvalidSpecificationDocument,
     Content(1, "Unexpected element declaration")},
    {"qualifier declaration after an object",
     kGroup + kVolume + "\n<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"string\">",
     zelStatusInvalidSpecificationDocument, Content(5, "Unexpected element qualifier.declaration")},
    {"scope missing", kGroup + "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"string\">\n<VALUE>x</VALUE>",
     zelStatusInvalidSpecificationDocument, Content(5, "Expected SCOPE element")},
    {"array size without isarray",
     kGroup + "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"string\" ARRAYSIZE=\"2\"><SCOPE/>\n"
              "</QUALIFIER.DECLARATION>",
     zelStatusInvalidSpecificationDocument, Content(5, "Incompatible attributes")},
    {"second value of a declaration",
     kGroup + "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"string\"><SCOPE/><VALUE>a</VALUE><VALUE>",
     zelStatusInvalidSpecificationDocument, Content(4, "Unexpected element value")},
    {"unknown type", kGroup + "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"char\">",
     zelStatusTypeMismatch, {Threw("zelStatusTypeMismatch", 4)}},
    {"empty object element", kGroup + "<VALUE.OBJECT>\n</VALUE.OBJECT>",
     zelStatusInvalidSpecificationDocument, Content(5, "CIM element syntax error")},
    {"namespace path without namespace",
     kGroup + "<NAMESPACEPATH><HOST>h</HOST><LOCALNAMESPACEPATH>\n</LOCALNAMESPACEPATH>",
     zelStatusInvalidSpecificationDocument, Content(5, "Unexpected at least 1 NAMESPACE element")},
    {"instance of an unknown class", kGroup + "<VALUE.OBJECT><INSTANCE CLASSNAME=\"ZT_Nope\">",
     zelStatusNotFound,
     {"ZEL_Core: [Error] TCIMXMLParser: Couldn't find class ZT_Nope", Threw("zelStatusNotFound", 4)}},
    {"undeclared qualifier",
     kGroup + "<VALUE.OBJECT><CLASS NAME=\"ZT_Q\">\n<QUALIFIER NAME=\"Nope\" TYPE=\"string\"/>",
     zelStatusNotFound,
     {"ZEL_Core: [Error] TCIMXMLParser: Couldn't find qualifier Nope", Threw("zelStatusNotFound", 5)}},
    {"property of another type",
     kGroup + "<VALUE.OBJECT><INSTANCE CLASSNAME=\"ZT_Disk\">\n"
              "<PROPERTY NAME=\"Size\" TYPE=\"uint32\">",
     zelStatusInvalidSpecificationDocument, Content(5, "Property type != property declaration type")},
    {"instance name of an unknown class", Named("<INSTANCENAME CLASSNAME=\"ZT_Nothing\">"),
     zelStatusInvalidSpecificationDocument, Content(5, "Couldn't find class name ZT_Nothing")},
    {"key binding of an unknown property",
     Named("<INSTANCENAME CLASSNAME=\"ZT_Disk\"><KEYBINDING NAME=\"Bogus\"><KEYVALUE>1</KEYVALUE>\n"
           "</KEYBINDING>"),
     zelStatusInvalidSpecificationDocument, Content(6, "Couldn't find property name Bogus in class ZT_Disk")},
    {"key binding of a property that is not a key",
     Named("<INSTANCENAME CLASSNAME=\"ZT_Disk\"><KEYBINDING NAME=\"Size\"><KEYVALUE>1</KEYVALUE>"
           "</KEYBINDING>"),
     zelStatusInvalidSpecificationDocument, Content(5, "Class ZT_Disk doesn't have any key properties")},
    {"key binding and key value together",
     Named("<INSTANCENAME CLASSNAME=\"ZT_Disk\"><KEYBINDING NAME=\"DeviceID\"><KEYVALUE>1</KEYVALUE>"
           "</KEYBINDING><KEYVALUE>"),
     zelStatusInvalidSpecificationDocument, Content(5, "Unexpected element keyvalue")},
    {"protocol version", "<CIM>\n<MESSAGE ID=\"1\" PROTOCOLVERSION=\"2.0\">",
     zelStatusInvalidSpecificationDocument, Content(2, "Unknown protocol version")},
    {"multireq with one request", kMessage + "<MULTIREQ>" + kCreate + "</IMETHODCALL></SIMPLEREQ>\n</MULTIREQ>",
     zelStatusInvalidSpecificationDocument, Content(4, "Invalid MULTIREQ")},
    {"method other than create", kMessage + "<SIMPLEREQ><IMETHODCALL NAME=\"GetClass\">",
     zelStatusInvalidSpecificationDocument, Content(3, "Unexpected IMethodCall method GetClass")},
    {"parameter other than the new object", kMessage + kCreate + "<IPARAMVALUE NAME=\"ClassName\">",
     zelStatusInvalidSpecificationDocument, Content(3, "Unexpected IParamValue parameter name")},
    {"parameter before the namespace path",
     kMessage + "<SIMPLEREQ><IMETHODCALL NAME=\"CreateClass\"><IPARAMVALUE NAME=\"NewClass\">",
     zelStatusInvalidSpecificationDocument, Content(3, "Unexpected element iparamvalue")},
};

class CIMXMLParserErrorTest : public ZelTest {};

TEST_F(CIMXMLParserErrorTest, EachMalformedDocumentLogsItsLineAndStops) {
  int rowNumber = 0;
  for (TErrorRow const& row : kRows) {
    SCOPED_TRACE(row.name);
    // A log file per row.
    fLogPath = TempPath("row" + std::to_string(++rowNumber) + ".log");
    TRootObject::GetCoreLogger()->SetLogFilename(fLogPath);
    TContainer container;
    ParseInto(container, DataText("qualifier-declarations.xml"));
    ParseInto(container, DataText("instances-properties.xml"));
    TCIMClass* disk = container.GetClass("ZT_Disk");
    ASSERT_TRUE(LoggedLines().empty());
    EXPECT_ZEL_THROW(ParseInto(container, row.document), row.status);
    EXPECT_EQ(LoggedLines(), row.lines);
    EXPECT_EQ(disk->EnumerateInstances(false).size(), 1u);  // nothing half-built was added
  }
}

TEST_F(CIMXMLParserErrorTest, AMultiReqOfThreeRequestsIsAccepted) {
  TContainer container;
  ParseInto(container, DataText("qualifier-declarations.xml"));
  ParseInto(container, DataText("instances-properties.xml"));
  std::string request = kCreate + "</IMETHODCALL></SIMPLEREQ>";
  ParseInto(container, kMessage + "<MULTIREQ>" + request + request + request +
                           "</MULTIREQ></MESSAGE></CIM>");
  EXPECT_TRUE(LoggedLines().empty());
}

} // namespace
