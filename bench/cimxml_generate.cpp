// cimxml_generate BYTES FILE: writes a deterministic CIM-XML document of at least BYTES bytes.
// cimxml_generate schema CLASSES FILE: writes the schema-like document of that many classes.
#include "CimXmlGenerator.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

int main(int argc, char** argv) {
  bool schema = argc == 4 && std::string(argv[1]) == "schema";
  if (argc != 3 && !schema) {
    std::fprintf(stderr, "usage: %s BYTES FILE | schema CLASSES FILE\n", argv[0]);
    return 2;
  }
  unsigned long long count = std::strtoull(argv[argc - 2], nullptr, /*radix=*/10);
  std::string xml = schema ? ZelGenerateCimXmlSchema(static_cast<unsigned>(count))
                           : ZelGenerateCimXml(count);
  std::ofstream out(argv[argc - 1], std::ios::binary);
  out.write(xml.data(), static_cast<std::streamsize>(xml.size()));
  return out ? 0 : 1;
}
