// Fuzz target: a whole CIM-XML document read into a fresh container that already holds the
// usual qualifier declarations. Any TZELException is an accepted outcome; the sanitizers
// judge the rest (leaks of half-built objects included).
#include "TCIMXMLParser.h"
#include "TContainer.h"
#include "TZELException.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {
const char kDeclarations[] =
    "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><DECLARATION><DECLGROUP>"
    "<QUALIFIER.DECLARATION NAME=\"KEY\" TYPE=\"boolean\" TOSUBCLASS=\"true\"><SCOPE PROPERTY=\"true\"/>"
    "<VALUE>false</VALUE></QUALIFIER.DECLARATION>"
    "<QUALIFIER.DECLARATION NAME=\"ABSTRACT\" TYPE=\"boolean\"><SCOPE CLASS=\"true\"/>"
    "</QUALIFIER.DECLARATION>"
    "<QUALIFIER.DECLARATION NAME=\"ASSOCIATION\" TYPE=\"boolean\" TOSUBCLASS=\"true\">"
    "<SCOPE ASSOCIATION=\"true\"/></QUALIFIER.DECLARATION>"
    "<QUALIFIER.DECLARATION NAME=\"Description\" TYPE=\"string\" OVERRIDABLE=\"true\">"
    "<SCOPE CLASS=\"true\" PROPERTY=\"true\"/></QUALIFIER.DECLARATION>"
    "<QUALIFIER.DECLARATION NAME=\"MaxLen\" TYPE=\"uint32\"><SCOPE PROPERTY=\"true\"/>"
    "</QUALIFIER.DECLARATION>"
    "<QUALIFIER.DECLARATION NAME=\"OVERRIDE\" TYPE=\"string\"><SCOPE PROPERTY=\"true\"/>"
    "</QUALIFIER.DECLARATION>"
    "</DECLGROUP></DECLARATION></CIM>";

void Read(TContainer& container, std::vector<char> buffer) {
  buffer.push_back('\0');
  TCIMXMLParser parser(&container);
  parser.Parse(buffer.data());
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  TContainer container;
  Read(container, std::vector<char>(kDeclarations, kDeclarations + sizeof kDeclarations - 1));
  try {
    Read(container, std::vector<char>(data, data + size));
  } catch (TZELException const&) {
  }
  return 0;
}
