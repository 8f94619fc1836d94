// cimxml_generate BYTES FILE: writes a deterministic CIM-XML document of at least BYTES bytes.
#include "CimXmlGenerator.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: %s BYTES FILE\n", argv[0]);
    return 2;
  }
  std::string xml = ZelGenerateCimXml(std::strtoull(argv[1], nullptr, /*radix=*/10));
  std::ofstream out(argv[2], std::ios::binary);
  out.write(xml.data(), static_cast<std::streamsize>(xml.size()));
  return out ? 0 : 1;
}
