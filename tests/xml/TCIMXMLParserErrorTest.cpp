// Malformed and deeply nested CIM-XML documents: one row per failure, with the status and the
// exact log lines.
#include "cimxml_helpers.h"

#include "ILogger.h"
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
TErrorRow Bad(char const* name, std::string const& document, int line, std::string const& message) {
  return {name, document, zelStatusInvalidSpecificationDocument,
          {Parser(line, message), Threw("zelStatusInvalidSpecificationDocument", line)}};
}
std::string Repeat(std::string const& piece, size_t count) {
  std::string out;
  for (size_t i = 0; i < count; ++i)
    out += piece;
  return out;
}
std::string const kDecl = kGroup + "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"string\"";
std::string const kNamedDisk = kNamed + "<VALUE.NAMEDOBJECT>\n<INSTANCENAME CLASSNAME=\"ZT_Disk\">";

std::vector<TErrorRow> const kRows = {
    {"syntax error from the tokenizer", "", zelStatusInvalidSpecificationDocument,
     {Parser(1, "Unexpected character before prolog")}},
    Bad("cim version", "<CIM CIMVERSION=\"2.3\" DTDVERSION=\"2.0\">", 1, "Unknown CIM version"),
    Bad("dtd version", "<CIM CIMVERSION=\"2.8\"\n DTDVERSION=\"2.2\">", 2, "Unknown DTD version"),
    Bad("root other than CIM", "<DECLARATION/>", 1, "Unexpected element declaration"),
    Bad("qualifier declaration after an object",
        kGroup + kVolume + "\n<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"string\">", 5,
        "Unexpected element qualifier.declaration"),
    Bad("scope missing", kDecl + ">\n<VALUE>x</VALUE>", 5, "Expected SCOPE element"),
    Bad("array size without isarray", kDecl + " ARRAYSIZE=\"2\"><SCOPE/>\n</QUALIFIER.DECLARATION>", 5,
        "Incompatible attributes"),
    Bad("second value of a declaration", kDecl + "><SCOPE/><VALUE>a</VALUE><VALUE>", 4,
        "Unexpected element value"),
    {"unknown type", kGroup + "<QUALIFIER.DECLARATION NAME=\"Q\" TYPE=\"char\">",
     zelStatusTypeMismatch, {Threw("zelStatusTypeMismatch", 4)}},
    Bad("empty object element", kGroup + "<VALUE.OBJECT>\n</VALUE.OBJECT>", 5, "CIM element syntax error"),
    Bad("namespace path without namespace",
        kGroup + "<NAMESPACEPATH><HOST>h</HOST><LOCALNAMESPACEPATH>\n</LOCALNAMESPACEPATH>", 5,
        "Unexpected at least 1 NAMESPACE element"),
    {"instance of an unknown class", kGroup + "<VALUE.OBJECT><INSTANCE CLASSNAME=\"ZT_Nope\">",
     zelStatusNotFound,
     {"ZEL_Core: [Error] TCIMXMLParser: Couldn't find class ZT_Nope", Threw("zelStatusNotFound", 4)}},
    {"undeclared qualifier",
     kGroup + "<VALUE.OBJECT><CLASS NAME=\"ZT_Q\">\n<QUALIFIER NAME=\"Nope\" TYPE=\"string\"/>",
     zelStatusNotFound,
     {"ZEL_Core: [Error] TCIMXMLParser: Couldn't find qualifier Nope", Threw("zelStatusNotFound", 5)}},
    Bad("property of another type",
        kGroup + "<VALUE.OBJECT><INSTANCE CLASSNAME=\"ZT_Disk\">\n<PROPERTY NAME=\"Size\" TYPE=\"uint32\">",
        5, "Property type != property declaration type"),
    // The instance joins its class only when its object element ends.
    {"property the class does not have",
     kGroup + "<VALUE.OBJECT><INSTANCE CLASSNAME=\"ZT_Disk\">\n<PROPERTY NAME=\"Nope\" TYPE=\"string\"/>",
     zelStatusNotFound,
     {"ZEL_Core: [Error] TCIMXMLParser: Couldn't find property Nope", Threw("zelStatusNotFound", 5)}},
    {"superclass defined later",
     kGroup + "<VALUE.OBJECT><CLASS NAME=\"Late\" SUPERCLASS=\"Early\"/></VALUE.OBJECT>\n"
              "<VALUE.OBJECT><CLASS NAME=\"Early\"/></VALUE.OBJECT>",
     zelStatusNotFound, {Threw("zelStatusNotFound", 4)}},
    Bad("instance name of an unknown class",
        kNamed + "<VALUE.NAMEDOBJECT>\n<INSTANCENAME CLASSNAME=\"ZT_Nothing\">", 5,
        "Couldn't find class name ZT_Nothing"),
    Bad("key binding of an unknown property",
        kNamedDisk + "<KEYBINDING NAME=\"Bogus\"><KEYVALUE>1</KEYVALUE>\n</KEYBINDING>", 6,
        "Couldn't find property name Bogus in class ZT_Disk"),
    Bad("key binding of a property that is not a key",
        kNamedDisk + "<KEYBINDING NAME=\"Size\"><KEYVALUE>1</KEYVALUE></KEYBINDING>", 5,
        "Class ZT_Disk doesn't have any key properties"),
    Bad("key binding and key value together",
        kNamedDisk + "<KEYBINDING NAME=\"DeviceID\"><KEYVALUE>1</KEYVALUE></KEYBINDING><KEYVALUE>", 5,
        "Unexpected element keyvalue"),
    Bad("protocol version", "<CIM>\n<MESSAGE ID=\"1\" PROTOCOLVERSION=\"2.0\">", 2,
        "Unknown protocol version"),
    Bad("multireq with one request",
        kMessage + "<MULTIREQ>" + kCreate + "</IMETHODCALL></SIMPLEREQ>\n</MULTIREQ>", 4,
        "Invalid MULTIREQ"),
    Bad("method other than create", kMessage + "<SIMPLEREQ><IMETHODCALL NAME=\"GetClass\">", 3,
        "Unexpected IMethodCall method GetClass"),
    Bad("parameter other than the new object", kMessage + kCreate + "<IPARAMVALUE NAME=\"ClassName\">",
        3, "Unexpected IParamValue parameter name"),
    Bad("parameter before the namespace path",
        kMessage + "<SIMPLEREQ><IMETHODCALL NAME=\"CreateClass\"><IPARAMVALUE NAME=\"NewClass\">", 3,
        "Unexpected element iparamvalue"),
    // Where children are ignored, they are ignored all the way down; their end tags then pop
    // every state and the parser finds its stack empty.
    Bad("a million ignored levels", "<CIM><DECLARATION><DECLGROUP><QUALIFIER.DECLARATION NAME=\"Q\" "
        "TYPE=\"string\"><SCOPE>" + Repeat("<a>", 1000000) + Repeat("</a>", 1000000) +
        "</SCOPE></QUALIFIER.DECLARATION></DECLGROUP></DECLARATION></CIM>", 1, "Parser state corrupt"),
    // Each level a state for VALUE.REFERENCE, INSTANCENAME and KEYBINDING; the innermost
    // reference names no instance.
    {"references nested deep in key bindings",
     "<CIM><DECLARATION><DECLGROUP.WITHNAME><VALUE.NAMEDOBJECT><INSTANCENAME CLASSNAME=\"ZT_Disk\">"
     "<KEYBINDING NAME=\"DeviceID\">" + Repeat("<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"ZT_Disk\">"
     "<KEYBINDING NAME=\"DeviceID\">", 100000) + "<KEYVALUE>none</KEYVALUE>" +
     Repeat("</KEYBINDING></INSTANCENAME></VALUE.REFERENCE>", 100000) + "</KEYBINDING></INSTANCENAME>"
     "</VALUE.NAMEDOBJECT></DECLGROUP.WITHNAME></DECLARATION></CIM>",
     zelStatusNotFound, {Threw("zelStatusNotFound", 1)}},
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

} // namespace
