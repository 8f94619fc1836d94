// Fuzz target: the XML tokenizer over arbitrary bytes, once with a FatalError that returns
// (parsing goes on) and once with one that throws, as the CIM-XML parser's does. Beyond the
// sanitizers it checks that text is NUL-terminated in place and that the buffer comes back
// intact but for lower-cased attribute names.
#include "TXmlParser.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {
struct TStop {};

class TQuietParser : public TXmlParser {
public:
  explicit TQuietParser(bool throwOnError) : fThrowOnError(throwOnError) {}
  void StartElement(const char*, std::map<std::string, std::string>&) override {}
  void EndElement(const char*) override {}
  void processingInstruction(const char*, const char*) override {}
  void characters(const char* text, unsigned int length) override {
    if (length == 0 || text[length] != '\0')
      std::abort();
  }
  void notationDecl(const char*, const char*, const char*) override {}
  void FatalError(const char*) override {
    if (fThrowOnError)
      throw TStop();
  }

private:
  bool fThrowOnError;
};
}  // namespace

static void ParseCopy(const uint8_t* data, size_t size, bool throwOnError) {
  std::vector<char> buffer(data, data + size);
  buffer.push_back('\0');
  TQuietParser parser(throwOnError);
  try {
    parser.Parse(buffer.data());
  } catch (TStop const&) {
  }
  for (size_t i = 0; i < size; ++i) {
    char byte = static_cast<char>(data[i]);
    if (buffer[i] != byte && !(byte >= 'A' && byte <= 'Z' && buffer[i] == byte + ('a' - 'A')))
      std::abort();
  }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ParseCopy(data, size, /*throwOnError=*/false);
  ParseCopy(data, size, /*throwOnError=*/true);
  return 0;
}
