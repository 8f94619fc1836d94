// CIM-XML parser test helpers: run the parser over a text or a data file into a container.
#ifndef XML_CIMXML_HELPERS_H
#define XML_CIMXML_HELPERS_H

#include "TCIMXMLParser.h"
#include "TCIMClass.h"
#include "TContainer.h"

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

/// The text of tests/xml/data/<name>.
inline std::string DataText(std::string const& name) {
  std::ifstream in((std::string(ZEL_TEST_DATA_DIR) + "/" + name).c_str(), std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

/// Parses a writable copy of xml into container; returns the classes collected.
inline std::vector<TCIMClass*> ParseInto(TContainer& container, std::string const& xml,
                                         bool ux402 = false) {
  std::vector<char> buffer(xml.begin(), xml.end());
  buffer.push_back('\0');
  TCIMXMLParser parser(&container);
  if (ux402)
    parser.SetUX402Mode();
  parser.Parse(buffer.data());
  return parser.GetClassesCollected();
}

/// The names of classes, in order.
inline std::vector<std::string> ClassNames(std::vector<TCIMClass*> const& classes) {
  std::vector<std::string> names;
  for (TCIMClass* cls : classes)
    names.push_back(cls->GetName());
  return names;
}

#endif
