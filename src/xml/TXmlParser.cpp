// TXmlParser: the in-place XML tokenizer under the CIM-XML parser.
//
// Accepted XML, the subset that CIM-XML documents use (S is space, tab, CR or LF):
//   document  ::= '<' ( '?' ... '?>' Misc* ( '<!DOCTYPE' [^>]* '>' S* Misc* )? )? element Misc*
//   Misc      ::= S+ | '<!--' ... '-->' | '<?' ... '?>'    (anything else after the root is ignored)
//   element   ::= '<' Name ( S+ Attribute )* S* ( '/>' | '>' content '</' Name S* '>' )
//   Attribute ::= Name S* '=' S* ( '"' [^<&"]* '"' | "'" [^<&']* "'" )
//   content   ::= ( text | Reference | element | '<!--' ... '-->' | '<?' ... '?>' )*
//   Reference ::= '&' ( 'amp' | 'lt' | 'gt' | 'quot' | 'apos' ) ';'   (any case)
//               | '&#' [0-9]+ ';' | '&#x' [0-9a-fA-F]+ ';'          (low byte of the value)
//   Name      ::= [A-Za-z_:] [A-Za-z0-9._:-]*
// No byte-order mark or leading whitespace, no CDATA, no DTD subset, no charset decoding;
// attribute names are lower-cased, and an end tag only has to begin with the start tag's name.
#include "TXmlParser.h"

#include "cim/ZelText.h"
#include "xml/ZelReleasedPrefix.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <utility>
#include <vector>

// The fatal errors' texts, by where the tokenizer meets them.
// Before the root element:
static const char kBeforeProlog[] = "Unexpected character before prolog";
static const char kInDoctype[] = "Unexpected character in doctypedecl";
static const char kBeforeElement[] = "Unexpected character before element";
// In a tag's name and attributes:
static const char kInvalidName[] = "Invalid element/attribute name";
static const char kBetweenNameAndValue[] = "Unexpected character between attribute name and value";
static const char kAfterEquals[] = "Unexpected character after equals of attribute name";
static const char kInAttributeValue[] = "Unexpected character in attribute value";
static const char kAttributeTwice[] = "Attribute appears twice";
// At a tag's end:
static const char kBeforeEndOfElement[] = "Unexpected character before end of element";
static const char kNamesDontMatch[] = "Start and end element names don't match";
// In an element's content:
static const char kWhereElementExpected[] = "Unexpected character where element expected";
static const char kUnknownEntity[] = "Unknown entity reference";
static const char kInvalidHex[] = "Invalid hex character";

typedef std::map<std::string, std::string> TAttributeMap;
// Map nodes taken back after each start tag, so that steady-state parsing allocates nothing.
typedef std::vector<TAttributeMap::node_type> TNodePool;

enum {
  kSpace = 1,      // ends a whitespace run
  kName = 2,       // may continue a name
  kNameStart = 4,  // may begin a name
  kTextEnd = 8,    // ends character data: NUL, '<', '&'
  kValueEnd = 16,  // may end an attribute value: NUL, '<', '&' and both quotation marks
};
static const unsigned char W = kSpace, N = kName, L = kName | kNameStart, E = kTextEnd | kValueEnd,
                           Q = kValueEnd;

static const unsigned char kCharType[256] = {
  E, 0, 0, 0, 0, 0, 0, 0, 0, W, W, 0, 0, W, 0, 0,  // 0x00: NUL ends everything; \t \n \r
  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  // 0x10: controls
  W, 0, Q, 0, 0, 0, E, Q, 0, 0, 0, 0, 0, N, N, 0,  // 0x20: space " & ' - .
  N, N, N, N, N, N, N, N, N, N, L, 0, E, 0, 0, 0,  // 0x30: digits : <
  0, L, L, L, L, L, L, L, L, L, L, L, L, L, L, L,  // 0x40: A-O
  L, L, L, L, L, L, L, L, L, L, L, 0, 0, 0, 0, L,  // 0x50: P-Z _
  0, L, L, L, L, L, L, L, L, L, L, L, L, L, L, L,  // 0x60: a-o
  L, L, L, L, L, L, L, L, L, L, L, 0, 0, 0, 0, 0,  // 0x70: p-z
  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  // 0x80-0xff: bytes of other
  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  // charsets pass through as text
  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,  // and end names
  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
};

static inline bool Is(char c, unsigned char type) {
  return kCharType[static_cast<unsigned char>(c)] & type;
}

// The first byte at or after p that has (or, with want false, lacks) one of the bits. Every
// scan stops at the NUL, which has the end bits and no others.
template <bool want>
static inline char* Scan(char* p, unsigned char type) {
  for (;;) {
    if (Is(p[0], type) == want) return p;
    if (Is(p[1], type) == want) return p + 1;
    if (Is(p[2], type) == want) return p + 2;
    if (Is(p[3], type) == want) return p + 3;
    p += 4;
  }
}

static inline char* ScanTo(char* p, unsigned char type) { return Scan<true>(p, type); }
static inline char* SkipWhile(char* p, unsigned char type) { return Scan<false>(p, type); }

// The end of the character data at p. The short runs (white space between tags) by the
// table; past 16 bytes (descriptions), by the C library's vector scan.
static inline char* ScanText(char* p) {
  for (char* end = p + 16; p != end; p += 4) {
    if (Is(p[0], kTextEnd)) return p;
    if (Is(p[1], kTextEnd)) return p + 1;
    if (Is(p[2], kTextEnd)) return p + 2;
    if (Is(p[3], kTextEnd)) return p + 3;
  }
  return p + std::strcspn(p, "<&");
}

// The end of the name at p, or null when p does not begin a name.
static inline char* ScanName(char* p) {
  return Is(*p, kNameStart) ? SkipWhile(p + 1, kName) : nullptr;
}

// Moves pos just past the first terminator at or after from; false (pos kept) if none.
static bool SkipPast(char*& pos, const char* from, const char* terminator) {
  char* found = std::strstr(const_cast<char*>(from), terminator);
  if (!found)
    return false;
  pos = found + std::strlen(terminator);
  return true;
}

namespace {
// Writes a NUL over one byte and puts the byte back on every way out of the scope.
class TTerminator {
public:
  explicit TTerminator(char* at) : fAt(at), fSaved(*at) { *at = '\0'; }
  ~TTerminator() { *fAt = fSaved; }
  TTerminator(TTerminator const&) = delete;
  TTerminator& operator=(TTerminator const&) = delete;

private:
  char* fAt;
  char fSaved;
};

// An element whose content is being read. Its name is terminated only during callbacks.
struct TOpenElement {
  const char* fName;
  size_t fLength;
};
}  // namespace

static bool InsertAttribute(TAttributeMap& attributes, TNodePool& spare, const char* name,
                            size_t nameLength, const char* value, size_t valueLength) {
  // The end hint saves the search when names come in ascending order, as they mostly do.
  size_t before = attributes.size();
  if (spare.empty()) {
    attributes.emplace_hint(attributes.end(), std::piecewise_construct,
                            std::forward_as_tuple(name, nameLength),
                            std::forward_as_tuple(value, valueLength));
    return attributes.size() != before;
  }
  TAttributeMap::node_type node = std::move(spare.back());
  spare.pop_back();
  node.key().assign(name, nameLength);
  node.mapped().assign(value, valueLength);
  attributes.insert(attributes.end(), std::move(node));
  if (!node.empty())  // Not inserted: the name was there already.
    spare.push_back(std::move(node));
  return attributes.size() != before;
}

// The slot of a start tag's attribute map, from the name's length and its first and last
// letters. Chosen so that the frequent CIM-XML elements with different attributes seldom
// share a slot; sharing only costs the rebuild of the map.
constexpr size_t kAttributeSlots = 16;

static inline size_t AttributeSlot(const char* name, const char* nameEnd) {
  size_t first = static_cast<unsigned char>(name[0] | 0x20),
         last = static_cast<unsigned char>(nameEnd[-1] | 0x20);
  return (static_cast<size_t>(nameEnd - name) + 4 * last + first) % kAttributeSlots;
}

// Moves the nodes from `from` to the end of the map to the spare list.
static void RecycleAttributes(TAttributeMap& attributes, TAttributeMap::iterator from,
                              TNodePool& spare) {
  while (from != attributes.end())
    spare.push_back(attributes.extract(from++));
}

// A start tag reuses the map its slot kept from the last tag: as long as the names come in
// the order of its keys (as the tags of one kind do), only the values are assigned, and
// the tree is not touched. The first name out of that order sends the rest of the old
// nodes to the spare list and is inserted.
namespace {
class TAttributeFiller {
public:
  TAttributeFiller(TAttributeMap& attributes, TNodePool& spare)
      : fAttributes(attributes), fSpare(spare), fNext(attributes.begin()), fInPlace(true) {}

  // False when the name is there already.
  bool Add(const char* name, size_t nameLength, const char* value, size_t valueLength) {
    if (fInPlace) {
      if (fNext != fAttributes.end() && fNext->first.size() == nameLength &&
          std::memcmp(fNext->first.data(), name, nameLength) == 0) {
        (fNext++)->second.assign(value, valueLength);
        return true;
      }
      RecycleAttributes(fAttributes, fNext, fSpare);
      fInPlace = false;
    }
    return InsertAttribute(fAttributes, fSpare, name, nameLength, value, valueLength);
  }

  // Drops what the tag did not name.
  void Finish() {
    if (fInPlace)
      RecycleAttributes(fAttributes, fNext, fSpare);
  }

private:
  TAttributeMap& fAttributes;
  TNodePool& fSpare;
  TAttributeMap::iterator fNext;
  bool fInPlace;
};
}  // namespace

// Reads the attributes of a start tag from just after its name; stops before "/", ">" or
// anything not preceded by whitespace. Returns the message of the first error, or null;
// pos is left at the end or at the offending byte. count is the number of attributes read.
static const char* ReadAttributes(char*& pos, TAttributeFiller& attributes, size_t& count) {
  char* p = pos;
  for (;;) {
    char* name = SkipWhile(p, kSpace);
    if (name == p || *name == '/' || *name == '>') {
      pos = name;
      return nullptr;
    }
    char* nameEnd = ScanName(name);
    if (!nameEnd) {
      pos = name;
      return kInvalidName;
    }
    p = SkipWhile(nameEnd, kSpace);
    if (*p != '=') {
      pos = p;
      return kBetweenNameAndValue;
    }
    p = SkipWhile(p + 1, kSpace);
    char quote = *p;
    if (quote != '"' && quote != '\'') {
      pos = p;
      return kAfterEquals;
    }
    char* value = ++p;
    for (;;) {
      p = ScanTo(p, kValueEnd);
      if (*p == quote || *p != (quote == '"' ? '\'' : '"'))
        break;
      ++p;
    }
    if (*p != quote) {
      pos = p;
      return kInAttributeValue;
    }
    ZelAsciiLowerInPlace(name, nameEnd);
    bool added = attributes.Add(name, nameEnd - name, value, p - value);
    ++p;
    if (!added) {
      pos = p;
      return kAttributeTwice;
    }
    ++count;
  }
}

static int DigitValue(char c, unsigned base) {
  if (c >= '0' && c <= '9')
    return c - '0';
  if (base == 16 && (c | 0x20) >= 'a' && (c | 0x20) <= 'f')
    return (c | 0x20) - 'a' + 10;
  return -1;
}

static bool MatchesNoCase(const char* p, const char* lower) {
  for (; *lower; ++p, ++lower)
    if (ZelAsciiLower(*p) != *lower)
      return false;
  return true;
}

// Reads the reference at pos ('&') into one byte. Returns the message of an error, or null;
// pos is left after the ';' or at the offending byte.
static const char* ReadReference(char*& pos, char& byte) {
  static const struct {
    const char* fName;
    char fByte;
  } kEntities[] = {{"amp;", '&'}, {"lt;", '<'}, {"gt;", '>'}, {"quot;", '"'}, {"apos;", '\''}};
  char* p = pos + 1;
  if (*p != '#') {
    pos = p;
    for (auto const& entity : kEntities)
      if (MatchesNoCase(p, entity.fName)) {
        pos = p + std::strlen(entity.fName);
        byte = entity.fByte;
        return nullptr;
      }
    return kUnknownEntity;
  }
  unsigned base = 10;
  if ((*++p | 0x20) == 'x') {
    base = 16;
    ++p;
  }
  uint16_t value = 0;  // Wraps like the 16-bit accumulator it always was.
  bool anyDigit = false;
  for (int digit; (digit = DigitValue(*p, base)) >= 0; ++p, anyDigit = true)
    value = static_cast<uint16_t>(value * base + digit);
  pos = p;
  if (*p != ';')
    return kUnknownEntity;
  if (!anyDigit)
    return kInvalidHex;  // Also for "&#;": the message is shared with the hex form.
  pos = p + 1;
  byte = static_cast<char>(value & 0xff);  // Low byte on purpose: &#321; reads as 'A'.
  return nullptr;
}

TXmlParser::~TXmlParser() {}

void TXmlParser::Parse(char* buffer) {
  fCurPos = fBufferStart = buffer;
  // Results are not checked: after a FatalError that returns, the next production runs.
  ParseProlog();
  ParseElement();
  while (ParseMisc()) {
  }
  // Whatever follows that is not misc is ignored on purpose.
}

thread_local const TZelReleasedPrefix* gZelReleasedPrefix = nullptr;

unsigned int TXmlParser::GetCurLine() const {
  const char* from = fBufferStart;
  unsigned int line = 1;
  const TZelReleasedPrefix* released = gZelReleasedPrefix;
  if (released && released->fStart == fBufferStart && fCurPos >= released->fEnd) {
    from = released->fEnd;  // the bytes before may be gone
    line += released->fNewlines;
  }
  return line + static_cast<unsigned int>(std::count(from, static_cast<const char*>(fCurPos), '\n'));
}

char TXmlParser::GetChar() {
  char c = *fCurPos;
  if (c)
    ++fCurPos;
  return c;
}

char TXmlParser::PeekChar() const { return *fCurPos; }

void TXmlParser::UngetChar() { --fCurPos; }

bool TXmlParser::ParseProlog() {
  if (*fCurPos != '<') {
    FatalError(kBeforeProlog);
    return false;
  }
  if (fCurPos[1] != '?')
    return true;  // No declaration: the root follows at once, so no comment may precede it.
  if (!ParseXMLDecl())
    return false;
  while (ParseMisc()) {
  }
  if (fCurPos[0] == '<' && fCurPos[1] == '!') {
    if (!ParseDocTypeDecl())
      return false;
    while (ParseMisc()) {
    }
  }
  return true;
}

bool TXmlParser::ParseXMLDecl() {
  return SkipPast(fCurPos, fCurPos + 2, "?>");  // Version and encoding are not read.
}

bool TXmlParser::ParseDocTypeDecl() {
  if (std::strncmp(fCurPos, "<!DOCTYPE", 9) != 0) {
    FatalError(kInDoctype);
    return false;
  }
  // Up to the first '>': an internal subset is not supported.
  if (!SkipPast(fCurPos, fCurPos + 9, ">"))
    return false;
  SkipWhitespace();
  return true;
}

bool TXmlParser::ParseMisc() {
  if (*fCurPos != '<')
    return SkipWhitespace();
  if (fCurPos[1] == '!' && fCurPos[2] == '-')
    return SkipComment();
  if (fCurPos[1] == '?')
    return ParseProcessingInstruction();
  return false;
}

// Iterative, with the open elements on the heap: nesting depth is bounded by memory only.
bool TXmlParser::ParseElement() {
  std::vector<TOpenElement> open;
  open.reserve(64);
  // One map per slot of element names, so that a tag finds the names of the last tag of
  // its kind in place; tags without attributes get the empty one and leave those alone.
  TAttributeMap kept[kAttributeSlots];
  TAttributeMap none;
  TNodePool spare;
  for (;;) {
    if (*fCurPos != '<') {
      FatalError(kBeforeElement);
      return false;
    }
    char* name = ++fCurPos;
    if (!ValidateName())
      return false;
    char* nameEnd = fCurPos;
    TAttributeMap& slot = kept[AttributeSlot(name, nameEnd)];
    TAttributeFiller filler(slot, spare);
    size_t count = 0;
    if (const char* message = ReadAttributes(fCurPos, filler, count)) {
      FatalError(message);
      return false;
    }
    if (count)
      filler.Finish();
    TAttributeMap& attributes = count ? slot : none;
    bool empty = *fCurPos == '/';
    if (empty)
      ++fCurPos;
    if (*fCurPos != '>') {
      FatalError(kBeforeEndOfElement);
      return false;
    }
    ++fCurPos;
    {
      TTerminator terminator(nameEnd);
      StartElement(name, attributes);
      if (empty)
        EndElement(name);
    }
    if (!none.empty())  // changed by the callback
      RecycleAttributes(none, none.begin(), spare);
    if (!empty)
      open.push_back(TOpenElement{name, static_cast<size_t>(nameEnd - name)});
    else if (open.empty())
      return true;

    // Content of the innermost open element, up to a child's start tag or its end tag.
    for (;;) {
      if (!ParseCharData())
        return false;
      if (*fCurPos != '<') {
        FatalError(kWhereElementExpected);
        return false;
      }
      char next = fCurPos[1];
      if (next == '?') {
        if (!ParseProcessingInstruction())
          return false;
        continue;
      }
      if (next == '!') {
        if (!SkipComment())  // No CDATA: anything after "<!" must be a comment.
          return false;
        continue;
      }
      if (next != '/')
        break;

      fCurPos += 2;
      char* endName = fCurPos;
      TOpenElement const& element = open.back();
      // Prefix match on purpose: <abc> closes with </abcd>. The start name is a valid name,
      // so only what follows it needs scanning; a mismatch (the NUL at the end included)
      // is judged by the full rules for its message.
      size_t same = 0;
      while (same < element.fLength && endName[same] == element.fName[same])
        ++same;
      if (same == element.fLength) {
        fCurPos = SkipWhile(endName + same, kName);
      } else {
        if (ValidateName())
          FatalError(kNamesDontMatch);
        return false;
      }
      SkipWhitespace();
      if (*fCurPos != '>') {
        FatalError(kBeforeEndOfElement);
        return false;
      }
      ++fCurPos;
      {
        TTerminator terminator(endName + element.fLength);
        EndElement(endName);
      }
      open.pop_back();
      if (open.empty())
        return true;
    }
  }
}

bool TXmlParser::ValidateName() {
  char* end = ScanName(fCurPos);
  if (!end) {
    FatalError(kInvalidName);
    return false;
  }
  fCurPos = end;
  return true;
}

bool TXmlParser::ParseProcessingInstruction() {
  if (!SkipPast(fCurPos, fCurPos + 2, "?>"))
    return false;
  processingInstruction("TBD", "TBD");  // Target and data are not extracted.
  return true;
}

// Nothing calls this: notations never occur in CIM-XML.
bool TXmlParser::ParseNotationDecl() {
  if (!SkipPast(fCurPos, fCurPos, ">"))
    return false;
  notationDecl("TBD", "TBD", "TBD");
  return true;
}

bool TXmlParser::SkipComment() {
  return std::strncmp(fCurPos, "<!--", 4) == 0 && SkipPast(fCurPos, fCurPos + 4, "-->");
}

bool TXmlParser::SkipWhitespace() {
  char* start = fCurPos;
  fCurPos = SkipWhile(start, kSpace);
  return fCurPos != start;
}

// Delivers text runs and references up to the next tag; false after an error was reported.
bool TXmlParser::ParseCharData() {
  for (;;) {
    char* text = fCurPos;
    fCurPos = ScanText(text);
    if (fCurPos != text) {
      TTerminator terminator(fCurPos);
      characters(text, static_cast<unsigned int>(fCurPos - text));
    }
    if (*fCurPos != '&')
      return true;
    char byte[2] = {0, 0};
    if (const char* message = ReadReference(fCurPos, byte[0])) {
      FatalError(message);
      return false;
    }
    characters(byte, 1);
  }
}
