// TXmlParser: a small non-validating XML tokenizer that reads one writable, NUL-terminated
// buffer in place and hands each construct to a subclass through the callbacks below.
#ifndef TXMLPARSER_H
#define TXMLPARSER_H

#include "zelcore.h"

#include <map>
#include <string>

class ZEL_API TXmlParser {
public:
  virtual ~TXmlParser();

  /// name is NUL-terminated in place and valid during the call only; attribute names are
  /// lower case, values raw. The map may be changed: it is discarded after the call.
  virtual void StartElement(const char* name, std::map<std::string, std::string>& attributes) = 0;
  virtual void EndElement(const char* name) = 0;
  /// Called with "TBD" for both: target and data are not extracted.
  virtual void processingInstruction(const char* target, const char* data) = 0;
  /// text is NUL-terminated in place during the call; a reference arrives as one byte.
  virtual void characters(const char* text, unsigned int length) = 0;
  virtual void notationDecl(const char* name, const char* publicId, const char* systemId) = 0;
  /// One of the fixed syntax messages. If it returns, parsing goes on with the next
  /// top-level production.
  virtual void FatalError(const char* message) = 0;

  /// Reads the prolog, the root element and what follows it. Bytes are overwritten and put
  /// back while the callbacks run (attribute names stay lower-cased), so the buffer must be
  /// writable and stay alive for the call.
  void Parse(char* buffer);
  /// 1 plus the newline bytes between the buffer start and the current position.
  unsigned int GetCurLine() const;

protected:
  /// The current byte, then advances; at the terminating NUL returns 0 and stays.
  char GetChar();
  char PeekChar() const;
  /// Steps back one byte, unconditionally.
  void UngetChar();

private:
  bool ParseProlog();
  bool ParseXMLDecl();
  bool ParseDocTypeDecl();
  bool ParseMisc();
  bool ParseElement();
  bool ValidateName();
  bool ParseProcessingInstruction();
  bool ParseNotationDecl();
  bool SkipComment();
  bool SkipWhitespace();
  bool ParseCharData();

  char* fCurPos = nullptr;
  char* fBufferStart = nullptr;
};

#endif
