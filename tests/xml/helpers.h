// Tokenizer test helpers: a subclass that writes every event into one string.
#ifndef XML_HELPERS_H
#define XML_HELPERS_H

#include "TXmlParser.h"

#include <cstring>
#include <string>
#include <vector>

struct TStopParsing {};

/// Events read "<name a=1 b=2>|text|</name>|?TBD TBD|!message@line|". Text that is not
/// NUL-terminated in place is marked "(unterminated)".
class TRecordingParser : public TXmlParser {
public:
  explicit TRecordingParser(bool stopAtError = true) : fStopAtError(stopAtError) {}

  void StartElement(const char* name, std::map<std::string, std::string>& attributes) override {
    fEvents += "<";
    fEvents += name;
    for (auto const& attribute : attributes)
      fEvents += " " + attribute.first + "=" + attribute.second;
    fEvents += ">|";
  }
  void EndElement(const char* name) override { fEvents += "</" + std::string(name) + ">|"; }
  void processingInstruction(const char* target, const char* data) override {
    fEvents += "?" + std::string(target) + " " + data + "|";
  }
  void characters(const char* text, unsigned int length) override {
    fEvents += std::string(text, length);
    if (text[length] != '\0')
      fEvents += "(unterminated)";
    fEvents += "|";
  }
  void notationDecl(const char*, const char*, const char*) override { fEvents += "notation|"; }
  void FatalError(const char* message) override {
    std::string error = std::string(message) + "@" + std::to_string(GetCurLine());
    fErrors.push_back(error);
    fEvents += "!" + error + "|";
    if (fStopAtError)
      throw TStopParsing();
  }

  /// Parses a writable copy of xml; the copy stays in fBuffer for inspection.
  std::string Run(std::string const& xml) {
    fBuffer.assign(xml.begin(), xml.end());
    fBuffer.push_back('\0');
    try {
      Parse(fBuffer.data());
    } catch (TStopParsing const&) {
    }
    return fEvents;
  }
  std::string BufferText() const { return std::string(fBuffer.data(), fBuffer.size() - 1); }

  bool fStopAtError;
  std::string fEvents;
  std::vector<std::string> fErrors;
  std::vector<char> fBuffer;
};

inline std::string Events(std::string const& xml) { return TRecordingParser().Run(xml); }

#endif
