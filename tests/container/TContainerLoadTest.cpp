// Loading a container from real plain and gzip files (made here with zlib), and failures.
#include "SchemaHelpers.h"

#include <algorithm>
#include <fstream>
#include <zlib.h>

#include <unistd.h>

namespace {

// Twelve lines, ZT_Base and ZT_Derived left open; the class is registered before an error on
// line 12.
std::string const kDocument = ZelTest::ReadFile(ZEL_TEST_DATA_DIR "/unclosed.xml");
std::string const kWhole = kDocument + "</CLASS></VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>\n";

class ContainerLoadTest : public ZelTest {
protected:
  std::string WriteGzip(std::string const& name, std::string const& contents) const {
    std::string path = TempPath(name);
    gzFile file = gzopen(path.c_str(), "wb");
    gzwrite(file, contents.data(), static_cast<unsigned>(contents.size()));
    gzclose(file);
    return path;
  }

  // The gzip bytes with a trailer that announces length.
  static std::string WithLength(std::string bytes, unsigned long length) {
    for (int i = 0; i < 4; ++i)
      bytes[bytes.size() - 4 + i] = static_cast<char>(length >> (8 * i) & 0xFF);
    return bytes;
  }

  TContainer fContainer;
};

// A container that makes its own object types, as hosts do to attach their data.
int gMadeClasses;
class TCountingContainer : public TContainer {
  TCIMClass* AllocateClass(const std::string& name, TCIMClass* superclass) const override {
    ++gMadeClasses;
    return TContainer::AllocateClass(name, superclass);
  }
};

TEST_F(ContainerLoadTest, PlainAndGzipFilesLoadTheSameClassesThroughTheFactory) {
  gMadeClasses = 0;
  // ".gz" anywhere in the name means gzip.
  for (std::string path : {WriteFile("plain.xml", kWhole), WriteGzip("a.xml.gz", kWhole),
                           WriteGzip("archive.gz.xml", kWhole)}) {
    TCountingContainer container;
    EXPECT_EQ((TNames{"ZT_Base", "ZT_Derived"}), Names(container.PopulateContainerFromFile(path)));
  }
  // Two classes a file; the root is made while only the base container exists.
  EXPECT_EQ(6, gMadeClasses);
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(ContainerLoadTest, FilesThatAreMissingLieOrBreakAreRefused) {
  std::ifstream in(WriteGzip("good.xml.gz", kWhole).c_str(), std::ios::binary);
  std::string good((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  struct Row { const char* name; std::string bytes; zelStatusCode code; };
  Row rows[] = {
      {"data.xml.gz", kWhole, zelStatusInvalidGzipFile},
      {"longer.xml.gz", WithLength(good, kWhole.size() + 1), zelStatusCorruptGzipFile},
      {"shorter.xml.gz", WithLength(good, kWhole.size() - 1), zelStatusCorruptGzipFile},
      {"huge.xml.gz", WithLength(good, 104857601), zelStatusInvalidSpecificationDocument},
      {"tiny.xml.gz", "\x1f\x8b", zelStatusFileSystemError},
      {"one.xml.gz", "\x1f", zelStatusFileSystemError},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(WriteFile(row.name, row.bytes)),
                     row.code);
  }
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(TempPath("missing.xml")),
                   zelStatusFileSystemError);
  std::string large = WriteFile("large.xml", "");
  ASSERT_EQ(truncate(large.c_str(), 104857601), 0);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(large),
                   zelStatusInvalidSpecificationDocument);
  EXPECT_EQ(fContainer.FindClass("ZT_Base"), nullptr);
  EXPECT_TRUE(LoggedLines().empty());
}

// An error of the object model is logged once, before the parser's line; the file comes last.
TEST_F(ContainerLoadTest, ParseErrorsNameTheFileAfterTheParserLine) {
  std::string empty = WriteFile("empty.xml", ""), badName = ZEL_TEST_DATA_DIR "/bad-name.xml";
  EXPECT_ZEL_THROW(TContainer().PopulateContainerFromFile(empty),
                   zelStatusInvalidSpecificationDocument);
  EXPECT_ZEL_THROW(TContainer().PopulateContainerFromFile(badName), zelStatusInvalidCIMName);
  EXPECT_EQ(LoggedLines(),
            (TNames{"ZEL_Core: [Error] CIM-XML Parser line 1:Unexpected character before prolog",
                    "ZEL_Core: [Error] Previous error was while parsing file '" + empty + "'",
                    "ZEL_Core: [Error] CIM name 'Bad-Name' is invalid",
                    "ZEL_Core: [Error] TCIMXMLParser: Threw exception zelStatusInvalidCIMName "
                    "on line 7",
                    "ZEL_Core: [Error] Previous error was while parsing file '" + badName + "'"}));

  // What was registered before the error on line 13 stays.
  std::string broken = WriteGzip("broken.xml.gz", kDocument + "</VALUE.OBJECT>\n");
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(broken),
                   zelStatusInvalidSpecificationDocument);
  EXPECT_LOGGED("ZEL_Core: [Error] Previous error was while parsing file '" + broken + "'");
  EXPECT_NE(fContainer.FindClass("ZT_Base"), nullptr);
  EXPECT_EQ(fContainer.FindClass("ZT_Derived"), nullptr);
}

// Past 8 MB the loader gives back the pages the parse has passed: the open elements' start
// tags, which their end tags are matched against, stay readable, and lines stay exact.
TEST_F(ContainerLoadTest, LargeDocumentsKeepTheirEndTagsAndLines) {
  std::string declaration =
      "<QUALIFIER.DECLARATION NAME=\"ABSTRACT\" TYPE=\"boolean\">\n"
      "<SCOPE CLASS=\"true\"/>\n</QUALIFIER.DECLARATION>\n";
  std::string large = kDocument.substr(0, kDocument.find("<VALUE.OBJECT>"));
  while (large.size() < (10u << 20))
    large += declaration;  // the repeats are ignored, the first one stays
  large += "<VALUE.OBJECT><CLASS NAME=\"ZT_Last\">\n"
           "<QUALIFIER NAME=\"ABSTRACT\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>\n"
           "</CLASS></VALUE.OBJECT>\n";
  unsigned lines = static_cast<unsigned>(std::count(large.begin(), large.end(), '\n'));
  for (std::string path : {WriteFile("large.xml", large + "</DECLGROUP></DECLARATION></CIM>\n"),
                           WriteGzip("large.xml.gz", large + "</DECLGROUP></DECLARATION></CIM>\n")}) {
    SCOPED_TRACE(path);
    TContainer container;
    EXPECT_EQ(TNames{"ZT_Last"}, Names(container.PopulateContainerFromFile(path)));
  }
  EXPECT_TRUE(LoggedLines().empty());

  // DECLGROUP, opened on line 4, is closed by the wrong name on the last line.
  TNames expected;
  for (std::string path : {WriteFile("wrong.xml", large + "</DECLARATION></CIM>\n"),
                           WriteGzip("wrong.xml.gz", large + "</DECLARATION></CIM>\n")}) {
    SCOPED_TRACE(path);
    TContainer container;
    EXPECT_ZEL_THROW(container.PopulateContainerFromFile(path),
                     zelStatusInvalidSpecificationDocument);
    expected.push_back("ZEL_Core: [Error] CIM-XML Parser line " + std::to_string(lines + 1) +
                       ":Start and end element names don't match");
    expected.push_back("ZEL_Core: [Error] Previous error was while parsing file '" + path + "'");
  }
  EXPECT_EQ(LoggedLines(), expected);
}

} // namespace
