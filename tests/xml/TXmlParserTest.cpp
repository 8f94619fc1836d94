// The XML tokenizer: events, references, the deliberate leniencies and every syntax error.
#include "TXmlParser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

namespace {

struct TStopParsing {};

// A tokenizer that writes every event into one string: "<name a=1 b=2>|text|</name>|?TBD TBD|
// !message@line|". Text that is not NUL-terminated in place is marked "(unterminated)".
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

} // namespace

TEST(TXmlParserTest, DeliversPrologMiscAndElementsInOrder) {
  EXPECT_EQ(Events("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!-- c -->\n"
                   "<!DOCTYPE CIM SYSTEM \"CIM_DTD_V20.dtd\">\n<?pi x?>\n"
                   "<CIM CIMVERSION=\"2.0\" b='x\"y'>\n <B/>text\n<?pi?><!-- inner --></CIM>\n"
                   "<!-- trailer --><?end?>\n"),
            "?TBD TBD|<CIM b=x\"y cimversion=2.0>|\n |<B>|</B>|text\n|?TBD TBD|</CIM>|?TBD TBD|");
  EXPECT_EQ(Events("<a\tx = 'v'\r\n y=\"w\" ></a>"), "<a x=v y=w>|</a>|");
  EXPECT_EQ(Events("<_n:s.e-1 a:b.c-d_=''/>"), "<_n:s.e-1 a:b.c-d_=>|</_n:s.e-1>|");
  // Attribute names are lower-cased, element names and values kept as written.
  EXPECT_EQ(Events("<Mixed NaMe=\"MiXeD\"/>"), "<Mixed name=MiXeD>|</Mixed>|");
  // Each element gets only its own attributes.
  EXPECT_EQ(Events("<a x='1' y='2'><b z='3'/><c/><d y='4' x='5'/></a>"),
            "<a x=1 y=2>|<b z=3>|</b>|<c>|</c>|<d x=5 y=4>|</d>|</a>|");
}

TEST(TXmlParserTest, EveryStartTagGetsExactlyItsOwnAttributes) {
  // Tags of one name in a row, with the same, fewer, more, reordered and repeated names,
  // tags of other names (and without attributes) between them.
  EXPECT_EQ(Events("<r><p n='1' t='a'/><p n='2' t='b'/><v/><p n='3' t='c'/><p n='4'/>"
                   "<p t='5'/><p n='6' t='d' x='e'/><p x='7' n='8'/><p/><q n='9'/>"
                   "<p N='10' T='f'/></r>"),
            "<r>|<p n=1 t=a>|</p>|<p n=2 t=b>|</p>|<v>|</v>|<p n=3 t=c>|</p>|<p n=4>|</p>|"
            "<p t=5>|</p>|<p n=6 t=d x=e>|</p>|<p n=8 x=7>|</p>|<p>|</p>|<q n=9>|</q>|"
            "<p n=10 t=f>|</p>|</r>|");
  // A repeat is found whether the names before it matched the last tag's or not.
  EXPECT_EQ(Events("<r><p n='1' t='2'/><p n='3' n='4'/></r>"),
            "<r>|<p n=1 t=2>|</p>|!Attribute appears twice@1|");
  EXPECT_EQ(Events("<r><p n='1' t='2'/><p n='3' t='4' T='5'/></r>"),
            "<r>|<p n=1 t=2>|</p>|!Attribute appears twice@1|");
  EXPECT_EQ(Events("<r><p n='1' t='2'/><p t='3' n='4' t='5'/></r>"),
            "<r>|<p n=1 t=2>|</p>|!Attribute appears twice@1|");

  // A callback may change the map it is given: the next tag still gets only its own.
  struct TChanging : TRecordingParser {
    void StartElement(const char* name, std::map<std::string, std::string>& attributes) override {
      TRecordingParser::StartElement(name, attributes);
      if (!attributes.empty())
        attributes.erase(attributes.begin());
      attributes["zz"] = "added";
      attributes["n"] = "changed";
    }
  } changing;
  EXPECT_EQ(changing.Run("<r><p n='1' t='2'/><p n='3' t='4'/><v/><p t='5'/><w/></r>"),
            "<r>|<p n=1 t=2>|</p>|<p n=3 t=4>|</p>|<v>|</v>|<p t=5>|</p>|<w>|</w>|</r>|");
}

TEST(TXmlParserTest, ReferencesArriveAsSingleBytesBetweenTextPieces) {
  EXPECT_EQ(Events("<a>1&#65;&#x41;&#x4a;&#X6A;&AMP;&lt;&Gt;&quot;&apos;2</a>"),
            "<a>|1|A|A|J|j|&|<|>|\"|'|2|</a>|");
  // Values above 255 keep their low byte, on purpose.
  EXPECT_EQ(Events("<a>&#321;&#x141;&#65601;&#xFFFF;</a>"), "<a>|A|A|A|\xFF|</a>|");
  EXPECT_EQ(Events("<a>&#0;</a>"), std::string("<a>|\0|</a>|", 11));
  // Runs of every length up to and past the short ones end at the reference, the tag or
  // the end of the buffer.
  for (size_t length = 1; length <= 40; ++length) {
    std::string text(length, 'x');
    EXPECT_EQ(Events("<a>" + text + "&gt;" + text + "</a>"),
              "<a>|" + text + "|>|" + text + "|</a>|");
    EXPECT_EQ(Events("<a>" + text), "<a>|" + text + "|!Unexpected character where element "
                                                   "expected@1|");
  }
}

TEST(TXmlParserTest, EndTagMayExtendTheStartName) {
  // The end tag is compared over the start name's length only; EndElement gets that much.
  EXPECT_EQ(Events("<abc></abcd>"), "<abc>|</abc>|");
  EXPECT_EQ(Events("<v><value></value.array></v >"), "<v>|<value>|</value>|</v>|");
  EXPECT_EQ(Events("<abc></ab>"), "<abc>|!Start and end element names don't match@1|");
}

TEST(TXmlParserTest, IgnoresWhateverFollowsTheRootAndUnterminatedConstructs) {
  EXPECT_EQ(Events("<a/>trailing <b>junk & </c>"), "<a>|</a>|");
  EXPECT_EQ(Events("<a/>\n<!-- c --> <?p?>\n<b/>"), "<a>|</a>|?TBD TBD|");
  EXPECT_EQ(Events("<a/><!-- unterminated"), "<a>|</a>|");
  // Unterminated constructs inside the root fail without a message.
  EXPECT_EQ(Events("<a>x<!-- open"), "<a>|x|");
  EXPECT_EQ(Events("<a><?pi"), "<a>|");
  // No CDATA: "<!" must open a comment.
  EXPECT_EQ(Events("<a><![CDATA[x]]></a>"), "<a>|");
  // The unterminated declaration leaves the parser on "<?", which is not an element name.
  EXPECT_EQ(Events("<?xml <a/>"), "!Invalid element/attribute name@1|");
  EXPECT_EQ(Events("<?xml?><!DOCTYPE a"), "!Invalid element/attribute name@1|");
}

TEST(TXmlParserTest, ParsingGoesOnWhenFatalErrorReturns) {
  TRecordingParser parser(/*stopAtError=*/false);
  EXPECT_EQ(parser.Run(" <a/>"),
            "!Unexpected character before prolog@1|!Unexpected character before element@1|");
}

TEST(TXmlParserTest, BufferIsRestoredOnEveryPath) {
  std::string xml = "<?xml?><a x='1'><b>text&amp;more</b><c/></a>";
  TRecordingParser parser;
  parser.Run(xml);
  EXPECT_EQ(parser.BufferText(), xml);

  struct TThrowing : TRecordingParser {
    void characters(const char*, unsigned int) override { throw TStopParsing(); }
  } throwing;
  xml = "<a><b><c>deep text</c></b></a>";
  throwing.Run(xml);
  EXPECT_EQ(throwing.fEvents, "<a>|<b>|<c>|");
  EXPECT_EQ(throwing.BufferText(), xml);
}

TEST(TXmlParserTest, MillionLevelsDeepAreReadWithoutRecursion) {
  std::string open, close, starts, ends;
  for (int i = 0; i < 1000000; ++i) {
    open += "<e>";
    close += "</e>";
    starts += "<e>|";
    ends += "</e>|";
  }
  EXPECT_TRUE(Events(open + close) == starts + ends);
  EXPECT_TRUE(Events(open) == starts + "!Unexpected character where element expected@1|");
}

TEST(TXmlParserTest, ReadsMultiMegabyteValuesAndText) {
  std::string value(12 << 20, 'v');
  for (size_t i = 0; i < value.size(); i += 4093)
    value[i] = static_cast<char>('a' + i % 26);
  value[77] = '\n';
  value[1000] = '\''; // The other quotation mark is part of the value.
  std::string events = Events("<a v=\"" + value + "\">" + value + "&lt;" + value + "</a>");
  EXPECT_TRUE(events == "<a v=" + value + ">|" + value + "|<|" + value + "|</a>|");
}

// One row per message, each on a line other than the first where it can be.
TEST(TXmlParserTest, MalformedInputsReportOneMessageWithItsLine) {
  struct {
    const char* fInput;
    const char* fError;
  } const kRows[] = {
      {"", "Unexpected character before prolog@1"},
      {"\xEF\xBB\xBF<a/>", "Unexpected character before prolog@1"},
      {"<?xml?>\n<!doctype a>\n<a/>", "Unexpected character in doctypedecl@2"},
      {"<?xml version='1.0'?>\n\nroot", "Unexpected character before element@3"},
      {"<?xml?><!DOCTYPE a [ <!ELEMENT a ANY> ]><a/>", "Unexpected character before element@1"},
      {"<!-- c -->\n<a/>", "Invalid element/attribute name@1"},
      {"<a>\n\n</1a>", "Invalid element/attribute name@3"},
      {"<a x\n'1'/>", "Unexpected character between attribute name and value@2"},
      {"<a x=\n1/>", "Unexpected character after equals of attribute name@2"},
      {"<a x='\n\n<'/>", "Unexpected character in attribute value@3"},
      {"<a x='1' x='2\n\n'/>", "Attribute appears twice@3"},
      {"<r><a x='1' y='2'/><b y='1' Y='2'/></r>", "Attribute appears twice@1"},
      {"<a>\n</a\n x>", "Unexpected character before end of element@3"},
      {"<a>\ntext", "Unexpected character where element expected@2"},
      {"<a>\n<b>\n</a>", "Start and end element names don't match@3"},
      {"<ab>\n</a", "Start and end element names don't match@2"},
      {"<Ab></aB>", "Start and end element names don't match@1"},
      {"<a>\n</", "Invalid element/attribute name@2"},
      {"<a>\n&nbsp;</a>", "Unknown entity reference@2"},
      {"<a>&#12a;</a>", "Unknown entity reference@1"},
      {"<a>\n&#x;</a>", "Invalid hex character@2"},
      {"<a>&#;</a>", "Invalid hex character@1"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.fInput);
    TRecordingParser parser;
    parser.Run(row.fInput);
    EXPECT_EQ(parser.fErrors, std::vector<std::string>{row.fError});
    std::string input = row.fInput;
    if (std::none_of(input.begin(), input.end(), ::isupper)) { // Else names were lower-cased.
      EXPECT_EQ(parser.BufferText(), row.fInput);
    }
  }
}
