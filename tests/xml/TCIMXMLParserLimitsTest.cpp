// The CIM-XML parser at the edges of size: deep nesting, long names and long texts.
#include "cimxml_helpers.h"

namespace {

class CIMXMLParserLimitsTest : public ZelTest {};

std::string Repeat(std::string const& piece, size_t count) {
  std::string out;
  for (size_t i = 0; i < count; ++i)
    out += piece;
  return out;
}

TEST_F(CIMXMLParserLimitsTest, AMillionLevelsDeepAreRejectedWithoutCrashing) {
  size_t const depth = 1000000;
  // Where children are ignored, they are ignored all the way down; their end tags then pop
  // every state and the parser finds its stack empty.
  TContainer second;
  EXPECT_ZEL_THROW(ParseInto(second, "<CIM><DECLARATION><DECLGROUP><QUALIFIER.DECLARATION "
                                     "NAME=\"Q\" TYPE=\"string\"><SCOPE>" +
                                         Repeat("<a>", depth) + Repeat("</a>", depth) +
                                         "</SCOPE></QUALIFIER.DECLARATION></DECLGROUP>"
                                         "</DECLARATION></CIM>"),
                   zelStatusInvalidSpecificationDocument);
  EXPECT_LOGGED("ZEL_Core: [Error] CIM-XML Parser line 1:Parser state corrupt");
}

TEST_F(CIMXMLParserLimitsTest, ReferencesNestedDeepInKeyBindingsUnwindCleanly) {
  TContainer container;
  ParseInto(container, DataText("qualifier-declarations.xml"));
  ParseInto(container, DataText("instances-properties.xml"));
  // Every level is a state for VALUE.REFERENCE, INSTANCENAME and KEYBINDING; the innermost
  // reference names no instance.
  size_t const depth = 100000;
  std::string level = "<VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"ZT_Disk\">"
                      "<KEYBINDING NAME=\"DeviceID\">";
  std::string doc = "<CIM><DECLARATION><DECLGROUP.WITHNAME><VALUE.NAMEDOBJECT>"
                    "<INSTANCENAME CLASSNAME=\"ZT_Disk\"><KEYBINDING NAME=\"DeviceID\">" +
                    Repeat(level, depth) + "<KEYVALUE>none</KEYVALUE>" +
                    Repeat("</KEYBINDING></INSTANCENAME></VALUE.REFERENCE>", depth) +
                    "</KEYBINDING></INSTANCENAME></VALUE.NAMEDOBJECT></DECLGROUP.WITHNAME>"
                    "</DECLARATION></CIM>";
  EXPECT_ZEL_THROW(ParseInto(container, doc), zelStatusNotFound);
  EXPECT_LOGGED("ZEL_Core: [Error] TCIMXMLParser: Threw exception zelStatusNotFound on line 1");
}

} // namespace
