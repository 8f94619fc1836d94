// TCIMXMLParser: the frame (dispatch to the state stack, errors), the shared attribute
// handlers and value conversion, and the document and declaration states.
#include "TCIMXMLParser.h"

#include "xml/TCIMXMLParserStates.h"

#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMPropertyDecl.h"
#include "cim/TCIMPropertyDeclImpl.h"
#include "cim/ZelText.h"
#include "TCIMQualifier.h"
#include "TCIMQualifierDecl.h"
#include "TContainer.h"
#include "TZELException.h"
#include "log/ZelLog.h"
#include "xml/ZelQualifierAttributes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>


// Element and attribute names are compared as views: the length first, no strlen.
using namespace std::string_view_literals;

static const char kUnexpectedElement[] = "Unexpected element ";
static const char kUnknownCIMVersion[] = "Unknown CIM version";
static const char kUnknownDTDVersion[] = "Unknown DTD version";
static const char kExpectedScope[] = "Expected SCOPE element";
static const char kIncompatibleAttributes[] = "Incompatible attributes";

// Names are ASCII: eight bytes lowered at once, a byte being upper case when its low seven
// bits lie in 'A'..'Z'.
static inline uint64_t LowerWord(uint64_t word) {
  constexpr uint64_t kOnes = 0x0101010101010101ull, kHigh = 0x8080808080808080ull;
  uint64_t seven = word & ~kHigh;
  uint64_t atLeastA = seven + (0x80 - 'A') * kOnes, aboveZ = seven + (0x7f - 'Z') * kOnes;
  return word | (((atLeastA ^ aboveZ) & ~word & kHigh) >> 2);
}

// size bytes (at most 8) as a little-endian word, the rest zero: in fixed-size pieces, which
// compile to plain loads where a copy of a variable size would be a call.
static inline uint64_t LoadWord(const char* text, size_t size) {
  uint64_t word = 0;
  if (size == 8) {
    std::memcpy(&word, text, 8);
    return word;
  }
  size_t at = 0;
  if (size & 4) {
    uint32_t piece;
    std::memcpy(&piece, text, 4);
    word = piece;
    at = 4;
  }
  if (size & 2) {
    uint16_t piece;
    std::memcpy(&piece, text + at, 2);
    word |= uint64_t(piece) << (8 * at);
    at += 2;
  }
  if (size & 1)
    word |= uint64_t(static_cast<unsigned char>(text[at])) << (8 * at);
  return word;
}

// The inverse: the low size bytes of word to text.
static inline void StoreWord(char* text, size_t size, uint64_t word) {
  if (size == 8) {
    std::memcpy(text, &word, 8);
    return;
  }
  size_t at = 0;
  if (size & 4) {
    uint32_t piece = static_cast<uint32_t>(word);
    std::memcpy(text, &piece, 4);
    at = 4;
  }
  if (size & 2) {
    uint16_t piece = static_cast<uint16_t>(word >> (8 * at));
    std::memcpy(text + at, &piece, 2);
    at += 2;
  }
  if (size & 1)
    text[at] = static_cast<char>(word >> (8 * at));
}

// Lowers size bytes (at most 8) into a word, the rest zero.
static inline uint64_t LowerWord(const char* text, size_t size) {
  return LowerWord(LoadWord(text, size));
}

// Element names arrive as written; states compare them in lower case.
static std::string LowerCaseName(const char* name) {
  std::string lower(name);
  char* p = &lower[0];
  size_t left = lower.size();
  for (; left >= 8; p += 8, left -= 8)
    StoreWord(p, 8, LowerWord(p, 8));
  StoreWord(p, left, LowerWord(p, left));
  return lower;
}

// Type names as the value type reads them, taken once from the type itself: the name of
// each type that reads back as that type, as a lower-case word (all are 8 bytes or less),
// placed by a multiplicative hash chosen here so that no two share a slot.
namespace {
struct TTypeNames {
  static constexpr unsigned kSlotBits = 6;
  uint64_t fMultiplier = 0;  // 0: no hash was found, nothing is placed
  uint64_t fWord[1 << kSlotBits] = {};
  size_t fSize[1 << kSlotBits] = {};  // 0: a free slot
  TCIMValue::TCIMType::ECIMType fType[1 << kSlotBits] = {};

  unsigned Slot(uint64_t word) const { return (word * fMultiplier) >> (64 - kSlotBits); }

  TTypeNames() {
    std::vector<std::pair<std::string, TCIMValue::TCIMType::ECIMType> > names;
    for (int type = 0; type < TCIMValue::TCIMType::kArray; ++type) {
      try {
        TCIMValue::TCIMType::ECIMType ecim = TCIMValue::TCIMType::ECIMType(type);
        std::string name = TCIMValue::TCIMType(ecim).ToString();
        if (name.size() <= 8 && TCIMValue::TCIMType(name) == ecim)
          names.emplace_back(name, ecim);
      } catch (TZELException const&) {
      }
    }
    for (uint64_t odd = 1; odd < 2000 && !Place(names, 0x9e3779b97f4a7c15ull * odd); odd += 2) {
    }
  }

  bool Place(const std::vector<std::pair<std::string, TCIMValue::TCIMType::ECIMType> >& names,
             uint64_t multiplier) {
    fMultiplier = multiplier;
    std::fill(std::begin(fSize), std::end(fSize), 0);
    for (auto const& name : names) {
      unsigned slot = Slot(LowerWord(name.first.data(), name.first.size()));
      if (fSize[slot]) {
        fMultiplier = 0;
        std::fill(std::begin(fSize), std::end(fSize), 0);
        return false;
      }
      fWord[slot] = LowerWord(name.first.data(), name.first.size());
      fSize[slot] = name.first.size();
      fType[slot] = name.second;
    }
    return true;
  }
};
}  // namespace

// What TCIMType(text) gives, without a copy of the text for the common names; anything
// else is left to it, errors included.
static TCIMValue::TCIMType TypeOfName(const std::string& text) {
  static const TTypeNames types;
  if (!text.empty() && text.size() <= 8) {
    uint64_t word = LowerWord(text.data(), text.size());
    unsigned slot = types.Slot(word);
    if (types.fSize[slot] == text.size() && types.fWord[slot] == word)
      return types.fType[slot];
  }
  return TCIMValue::TCIMType(text);
}

// A failure inside a state gets a line naming where it happened, then goes on bare.
[[noreturn]] static void RethrowWithLine(TZELException const& e, unsigned int line) {
  ZelLog(zelLogError, std::string("TCIMXMLParser: Threw exception ") + e.what() + " on line " +
                          std::to_string(line));
  throw TZELException(e.GetCode());
}

// A date-time that cannot be read is logged and replaced by the start of 1970.
static TCIMValue InvalidDateTime(const TCIMXMLParser& parser) {
  TCIMDateTime epoch(/*year=*/1970, /*month=*/1, /*day=*/1, 0, 0, 0, 0, /*utcOffset=*/0);
  ZelLog(zelLogError, "Invalid datetime found on line " + std::to_string(parser.GetCurLine()) +
                          ".  Defaulting the datetime to " + epoch.ToUIString() + ".");
  return TCIMValue(epoch);
}

// The shape of the attribute handlers: the attribute's value, read by read, when the
// attribute is the one named.
template <class Value, class Read>
static bool HandleNamed(TAttributeMap::const_iterator attribute, std::string_view name,
                        Value& value, Read read) {
  if (attribute->first != name)
    return false;
  value = read(attribute->second);
  return true;
}

static const std::string& AsText(const std::string& text) { return text; }

static bool ReadBool(const std::string& text) { return ZelReadBool(text); }

static unsigned int ReadUnsignedInt(const std::string& text) {
  return ZelReadNumber<unsigned int>(text);
}

void ZelCheckVersion(TCIMXMLParser& parser, const TAttributeMap& attributes,
                     const std::string& attribute, std::initializer_list<std::string_view> accepted,
                     const char* message) {
  TAttributeMap::const_iterator given = attributes.find(attribute);
  if (given != attributes.end() &&
      std::find(accepted.begin(), accepted.end(), given->second) == accepted.end())
    parser.FatalError(message);
}

bool ZelIsKeyDecl(const TCIMPropertyDecl& decl) { return decl.GetBody()->IsKey(); }

// ---- State blocks -----------------------------------------------------------------------

namespace {
// Sizes in steps of 16 bytes up to 1 KB; a list keeps at most as many blocks as elements
// nest deep in practice, so a parse holds a few kilobytes at most.
constexpr std::size_t kStateStep = 16, kStateSizes = 64, kStateKept = 32;

struct TStateBlockLists {
  struct TFree {
    TFree* fNext;
  };
  TFree* fHead[kStateSizes] = {};
  unsigned fCount[kStateSizes] = {};

  ~TStateBlockLists() {
    for (TFree* head : fHead)
      while (head) {
        TFree* next = head->fNext;
        ::operator delete(head);
        head = next;
      }
  }
};

thread_local TStateBlockLists gStateBlocks;
}  // namespace

void* ZelStateBlockTake(std::size_t size) {
  std::size_t steps = (size + kStateStep - 1) / kStateStep;
  if (steps >= kStateSizes)
    return ::operator new(size);
  TStateBlockLists& lists = gStateBlocks;
  if (TStateBlockLists::TFree* block = lists.fHead[steps]) {
    lists.fHead[steps] = block->fNext;
    --lists.fCount[steps];
    return block;
  }
  return ::operator new(steps * kStateStep);
}

void ZelStateBlockGive(void* block, std::size_t size) noexcept {
  std::size_t steps = (size + kStateStep - 1) / kStateStep;
  TStateBlockLists& lists = gStateBlocks;
  if (steps >= kStateSizes || lists.fCount[steps] >= kStateKept) {
    ::operator delete(block);
    return;
  }
  TStateBlockLists::TFree* free = static_cast<TStateBlockLists::TFree*>(block);
  free->fNext = lists.fHead[steps];
  lists.fHead[steps] = free;
  ++lists.fCount[steps];
}

// ---- The frame ------------------------------------------------------------------------

TCIMXMLParser::TCIMXMLParser(TContainer* container)
    : fContainer(container), fUX402Mode(false) {
  fStateStack.push_back(boost::shared_ptr<TParseState>(new TStateStart));
}

TCIMXMLParser::~TCIMXMLParser() {
  // Innermost first: a state may refer to what its enclosing states hold.
  while (!fStateStack.empty())
    fStateStack.pop_back();
}

void TCIMXMLParser::StartElement(const char* name, std::map<std::string, std::string>& attributes) {
  std::string element = LowerCaseName(name);
  try {
    if (fStateStack.empty())
      FatalError(kStateCorrupt);  // more end tags than states: see TParseState::StartElement
    // No reference taken: a state never pops itself on a start tag, and the deque keeps it
    // in place while a child is pushed.
    fStateStack.back()->StartElement(*this, element, attributes);
  } catch (TZELException const& e) {
    RethrowWithLine(e, GetCurLine());
  }
}

void TCIMXMLParser::EndElement(const char*) {
  // No state reads the name of the element that ends: it is neither copied nor lowered.
  std::string element;
  try {
    if (fStateStack.empty())
      FatalError(kStateCorrupt);
    // Taken out of its entry rather than copied (no count to touch): the state pops the
    // emptied entry itself and lives here until its EndElement has returned.
    boost::shared_ptr<TParseState> top;
    top.swap(fStateStack.back());
    top->EndElement(*this, element);
  } catch (TZELException const& e) {
    RethrowWithLine(e, GetCurLine());
  }
}

void TCIMXMLParser::processingInstruction(const char*, const char*) {}

void TCIMXMLParser::characters(const char* text, unsigned int) {
  // The text as far as its NUL: the tokenizer ends every run in place, and a reference to
  // byte 0 adds nothing.
  fCharData.append(text);
}

void TCIMXMLParser::notationDecl(const char*, const char*, const char*) {}

void TCIMXMLParser::FatalError(const char* message) {
  ZelLog(zelLogError, "CIM-XML Parser line " + std::to_string(GetCurLine()) + ":" + message);
  throw TZELException(zelStatusInvalidSpecificationDocument);
}

void TCIMXMLParser::SetUX402Mode() { fUX402Mode = true; }

std::vector<TCIMClass*> TCIMXMLParser::GetClassesCollected() const { return fClassesCollected; }

bool TCIMXMLParser::ConvertBool(std::string& text) { return ReadBool(text); }

unsigned int TCIMXMLParser::ConvertUnsignedInt(std::string& text) {
  return ReadUnsignedInt(text);
}

// Date-times that cannot be read are logged here with their line; every other text is read
// by the value's text constructor.
TCIMValue TCIMXMLParser::ParseValue(TCIMValue::TCIMType type, std::string& text) {
  if (type != TCIMValue::TCIMType::kDateTime)
    return TCIMValue(type, text, *fContainer);
  try {
    return TCIMValue(type, text, *fContainer);
  } catch (TZELException const& e) {
    if (e.GetCode() != zelStatusInvalidDateTime)
      throw;
  }
  return InvalidDateTime(*this);
}

bool TCIMXMLParser::HandleCIMName(TAttributeMap::const_iterator attribute, std::string& name) {
  return HandleNamed(attribute, "name"sv, name, AsText);
}

bool TCIMXMLParser::HandleCIMType(TAttributeMap::const_iterator attribute,
                                  TCIMValue::TCIMType& type) {
  return HandleNamed(attribute, "type"sv, type, TypeOfName);
}

bool TCIMXMLParser::HandleQualifierFlavor(TAttributeMap::const_iterator attribute,
                                          unsigned int& flavor) {
  unsigned int bit = ZelAttributeBitOf(kFlavorAttributes, attribute->first);
  if (!bit)
    return false;
  if (ReadBool(attribute->second))
    flavor |= bit;
  else
    flavor &= ~bit;
  return true;
}

bool TCIMXMLParser::HandleClassOrigin(TAttributeMap::const_iterator attribute,
                                      std::string& origin) {
  return HandleNamed(attribute, "classorigin"sv, origin, AsText);
}

bool TCIMXMLParser::HandlePropagated(TAttributeMap::const_iterator attribute, bool& propagated) {
  return HandleNamed(attribute, "propagated"sv, propagated, ReadBool);
}

bool TCIMXMLParser::HandleArraySize(TAttributeMap::const_iterator attribute, unsigned int& size) {
  return HandleNamed(attribute, "arraysize"sv, size, ReadUnsignedInt);
}

bool TCIMXMLParser::HandleSuperClass(TAttributeMap::const_iterator attribute,
                                     std::string& superclass) {
  return HandleNamed(attribute, "superclass"sv, superclass, AsText);
}

bool TCIMXMLParser::HandleClassName(TAttributeMap::const_iterator attribute,
                                    std::string& className) {
  return HandleNamed(attribute, "classname"sv, className, AsText);
}

bool TCIMXMLParser::HandleReferenceClass(TAttributeMap::const_iterator attribute,
                                         std::string& referenceClass) {
  return HandleNamed(attribute, "referenceclass"sv, referenceClass, AsText);
}

void TCIMXMLParser::UnexpectedElement(const std::string& name) {
  FatalError((kUnexpectedElement + name).c_str());
  throw TZELException(zelStatusInvalidSpecificationDocument);  // FatalError does not return
}

// ---- TParseState ----------------------------------------------------------------------

TCIMXMLParser::TParseState::~TParseState() {}

// A child of an element that takes none pushes nothing, so its end tag pops this state
// early. Documents are not expected to do that; no recovery is attempted.
void TCIMXMLParser::TParseState::StartElement(TCIMXMLParser&, std::string&, TAttributeMap&) {}

void TCIMXMLParser::TParseState::EndElement(TCIMXMLParser& parser, std::string&) {
  parser.fStateStack.pop_back();
}

void TCIMXMLParser::TParseState::HandleAttrs(TCIMXMLParser&, TAttributeMap&) {}

// ---- Document states ------------------------------------------------------------------

// (document) ::= CIM
void TCIMXMLParser::TStateStart::StartElement(TCIMXMLParser& parser, std::string& name,
                                              TAttributeMap& attributes) {
  if (name != "cim"sv)
    parser.UnexpectedElement(name);
  parser.Push<TStateCIM>(attributes);
}

// <!ELEMENT CIM (MESSAGE|DECLARATION)>
// <!ATTLIST CIM CIMVERSION CDATA #REQUIRED DTDVERSION CDATA #REQUIRED>
void TCIMXMLParser::TStateCIM::StartElement(TCIMXMLParser& parser, std::string& name,
                                            TAttributeMap& attributes) {
  if (!ZelPushChild(name, "declaration"sv, [&] { parser.Push<TStateDeclaration>(attributes); },
                    "message"sv, [&] { parser.Push<TStateMessage>(attributes); }))
    parser.UnexpectedElement(name);
}

void TCIMXMLParser::TStateCIM::HandleAttrs(TCIMXMLParser& parser, TAttributeMap& attributes) {
  ZelCheckVersion(parser, attributes, "cimversion", {"2.8"sv, "2.0"sv}, kUnknownCIMVersion);
  ZelCheckVersion(parser, attributes, "dtdversion", {"2.1"sv, "2.0"sv}, kUnknownDTDVersion);
}

// <!ELEMENT DECLARATION (DECLGROUP|DECLGROUP.WITHNAME|DECLGROUP.WITHPATH)+>
void TCIMXMLParser::TStateDeclaration::StartElement(TCIMXMLParser& parser, std::string& name,
                                                    TAttributeMap& attributes) {
  if (!ZelPushChild(
          name, "declgroup"sv, [&] { parser.Push<TStateDeclGroup>(attributes); },
          "declgroup.withname"sv, [&] { parser.Push<TStateDeclGroupWithName>(attributes); },
          "declgroup.withpath"sv, [&] { parser.Push<TStateDeclGroupWithPath>(attributes); }))
    parser.UnexpectedElement(name);
}

// <!ELEMENT DECLGROUP ((LOCALNAMESPACEPATH|NAMESPACEPATH)?,QUALIFIER.DECLARATION*,VALUE.OBJECT*)>
// <!ELEMENT DECLGROUP.WITHNAME ((LOCALNAMESPACEPATH|NAMESPACEPATH)?,QUALIFIER.DECLARATION*,
//                               VALUE.NAMEDOBJECT*)>
// Phases: 0 the optional path, 1 qualifier declarations, 2 objects. An element that does
// not fit a phase moves on to the next one and is judged there.
void TCIMXMLParser::TStateDeclGroup::StartElement(TCIMXMLParser& parser, std::string& name,
                                                  TAttributeMap& attributes) {
  switch (fPhase) {
  case 0:
    fPhase = 1;
    if (name == "namespacepath"sv) {
      parser.Push<TStateNamespacePath>(attributes, fHost, fNamespace);
      return;
    }
    if (name == "localnamespacepath"sv) {
      parser.Push<TStateLocalNamespacePath>(attributes, fNamespace);
      return;
    }
    [[fallthrough]];
  case 1:
    if (name == "qualifier.declaration"sv) {
      parser.Push<TStateQualifierDeclaration>(attributes);
      return;
    }
    fPhase = 2;
    [[fallthrough]];
  case 2:
    if (name == fObjectElement) {
      if (name == "value.object"sv)
        parser.Push<TStateValueObject>(attributes);
      else
        parser.Push<TStateValueNamedObject>(attributes);
      return;
    }
    parser.UnexpectedElement(name);
  default:
    parser.FatalError(kStateCorrupt);
  }
}

// <!ELEMENT DECLGROUP.WITHPATH (VALUE.OBJECTWITHPATH|VALUE.OBJECTWITHLOCALPATH)*>
void TCIMXMLParser::TStateDeclGroupWithPath::StartElement(TCIMXMLParser& parser,
                                                          std::string& name,
                                                          TAttributeMap& attributes) {
  if (!ZelPushChild(
          name, "value.objectwithpath"sv,
          [&] { parser.Push<TStateValueObjectWithPath>(attributes); },
          "value.objectwithlocalpath"sv,
          [&] { parser.Push<TStateValueObjectWithLocalPath>(attributes); }))
    parser.UnexpectedElement(name);
}

// <!ELEMENT QUALIFIER.DECLARATION (SCOPE,(VALUE|VALUE.ARRAY)?)>
// <!ATTLIST QUALIFIER.DECLARATION %CIMName; %CIMType; #REQUIRED ISARRAY (true|false) #IMPLIED
//           %ArraySize; %QualifierFlavor;>
// Phases: 0 SCOPE (required here), 1 the default value, 2 done.
TCIMXMLParser::TStateQualifierDeclaration::TStateQualifierDeclaration()
    : fIsArray(false), fIsArrayGiven(false), fArraySize(0), fFlavor(0), fScope(0),
      fValueRead(false), fPhase(0) {}

void TCIMXMLParser::TStateQualifierDeclaration::HandleAttrs(TCIMXMLParser&,
                                                            TAttributeMap& attributes) {
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a) {
    if (HandleCIMName(a, fName) || HandleCIMType(a, fType) || HandleArraySize(a, fArraySize) ||
        HandleQualifierFlavor(a, fFlavor))
      continue;
    if (a->first == "isarray"sv) {
      fIsArray = ReadBool(a->second);
      fIsArrayGiven = true;
    }
  }
  if (fIsArray)
    fType = TCIMValue::TCIMType::ECIMType(fType | TCIMValue::TCIMType::kArray);
}

void TCIMXMLParser::TStateQualifierDeclaration::StartElement(TCIMXMLParser& parser,
                                                             std::string& name,
                                                             TAttributeMap& attributes) {
  switch (fPhase) {
  case 0:
    if (name != "scope"sv)
      parser.FatalError(kExpectedScope);
    fPhase = 1;
    parser.Push<TStateScope>(attributes, fScope);
    return;
  case 1:
    if (name == "value"sv)
      parser.Push<TStateValue>(attributes, parser, fValue, fType);
    else if (name == "value.array"sv)
      parser.Push<TStateValueArray>(attributes, fValue, fType, fArraySize);
    else
      parser.UnexpectedElement(name);
    fValueRead = true;
    fPhase = 2;
    return;
  case 2:
    parser.UnexpectedElement(name);
  default:
    parser.FatalError(kStateCorrupt);
  }
}

void TCIMXMLParser::TStateQualifierDeclaration::EndElement(TCIMXMLParser& parser,
                                                           std::string& name) {
  if ((!fIsArray && fArraySize != 0) ||
      (fIsArrayGiven && fValueRead && fValue.IsArray() != fIsArray) ||
      (fValueRead && fArraySize != 0 && !fValue.IsArray()))
    parser.FatalError(kIncompatibleAttributes);
  TCIMValue value = fValueRead ? fValue : TCIMValue(fType, fArraySize);
  TCIMQualifierDecl* decl = parser.fContainer->AllocateQualifierDecl(
      fName, value, TCIMQualifierDecl::EScope(fScope), TCIMQualifierDecl::EFlavor(fFlavor));
  try {
    decl->AddToContainer();
  } catch (TZELException const& e) {
    delete decl;  // refused: still ours
    if (e.GetCode() != zelStatusAlreadyExists)
      throw;
    // A document may repeat a declaration the container already has: the first one stays.
  }
  TParseState::EndElement(parser, name);
}

// <!ELEMENT SCOPE EMPTY>
// <!ATTLIST SCOPE CLASS ASSOCIATION REFERENCE PROPERTY METHOD PARAMETER INDICATION (true|false)>
void TCIMXMLParser::TStateScope::HandleAttrs(TCIMXMLParser&, TAttributeMap& attributes) {
  // Presence alone sets the bit, on purpose: CLASS="false" still scopes to classes.
  for (TAttributeMap::const_iterator a = attributes.begin(); a != attributes.end(); ++a)
    fScope |= ZelAttributeBitOf(kScopeAttributes, a->first);
}
