// Loading a container from real files, plain and gzip (made here with zlib), and every way
// that can fail.
#include "ZelTest.h"

#include "TCIMClass.h"
#include "TContainer.h"

#include <fstream>
#include <zlib.h>

#include <unistd.h>

namespace {

typedef std::vector<std::string> TLines;

// Twelve lines; the class is registered before the error on line 12.
std::string const kDocument =
    "<?xml version=\"1.0\"?>\n"
    "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">\n"
    "<DECLARATION>\n"
    "<DECLGROUP>\n"
    "<QUALIFIER.DECLARATION NAME=\"ABSTRACT\" TYPE=\"boolean\">\n"
    "<SCOPE CLASS=\"true\"/>\n"
    "</QUALIFIER.DECLARATION>\n"
    "<VALUE.OBJECT><CLASS NAME=\"ZT_Base\">\n"
    "<QUALIFIER NAME=\"ABSTRACT\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>\n"
    "</CLASS></VALUE.OBJECT>\n"
    "<VALUE.OBJECT><CLASS NAME=\"ZT_Derived\" SUPERCLASS=\"ZT_Base\">\n"
    "<QUALIFIER NAME=\"ABSTRACT\" TYPE=\"boolean\"><VALUE>true</VALUE></QUALIFIER>\n";
std::string const kEnd = "</CLASS></VALUE.OBJECT></DECLGROUP></DECLARATION></CIM>\n";

class ContainerLoadTest : public ZelTest {
protected:
  std::string WriteGzip(std::string const& name, std::string const& contents) const {
    std::string path = TempPath(name);
    gzFile file = gzopen(path.c_str(), "wb");
    EXPECT_NE(file, nullptr);
    EXPECT_EQ(gzwrite(file, contents.data(), static_cast<unsigned>(contents.size())),
              static_cast<int>(contents.size()));
    gzclose(file);
    return path;
  }
  static std::string ReadAll(std::string const& path) {
    std::ifstream in(path.c_str(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  // A copy of a gzip file whose trailer announces length.
  std::string WithLength(std::string const& gzipPath, std::string const& name,
                         unsigned long length) const {
    std::string bytes = ReadAll(gzipPath);
    for (int i = 0; i < 4; ++i)
      bytes[bytes.size() - 4 + i] = static_cast<char>(length >> (8 * i) & 0xFF);
    return WriteFile(name, bytes);
  }

  std::vector<std::string> Names(std::vector<TCIMClass*> const& classes) const {
    std::vector<std::string> names;
    for (TCIMClass* cls : classes)
      names.push_back(cls->GetName());
    return names;
  }

  TContainer fContainer;
};

TEST_F(ContainerLoadTest, PlainAndGzipFilesLoadTheSameClasses) {
  std::string doc = kDocument + kEnd;
  EXPECT_EQ(Names(fContainer.PopulateContainerFromFile(WriteFile("plain.xml", doc))),
            (TLines{"ZT_Base", "ZT_Derived"}));
  TContainer zipped;
  EXPECT_EQ(Names(zipped.PopulateContainerFromFile(WriteGzip("zipped.xml.gz", doc))),
            (TLines{"ZT_Base", "ZT_Derived"}));
  // ".gz" anywhere in the path means gzip.
  TContainer inside;
  EXPECT_EQ(Names(inside.PopulateContainerFromFile(WriteGzip("archive.gz.xml", doc))),
            (TLines{"ZT_Base", "ZT_Derived"}));
  EXPECT_ZEL_THROW(inside.PopulateContainerFromFile(WriteFile("plain.gz.d/x.xml", doc)),
                   zelStatusFileSystemError);  // no such directory: the form decides nothing
  EXPECT_ZEL_THROW(inside.PopulateContainerFromFile(WriteFile("data.gz.xml", doc)),
                   zelStatusInvalidGzipFile);
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(ContainerLoadTest, GzipFilesThatLieOrBreakAreRefused) {
  std::string doc = kDocument + kEnd;
  std::string good = WriteGzip("good.xml.gz", doc);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(WriteFile("data.xml.gz", doc)),
                   zelStatusInvalidGzipFile);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(WithLength(good, "longer.xml.gz",
                                                                   doc.size() + 1)),
                   zelStatusCorruptGzipFile);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(WithLength(good, "shorter.xml.gz",
                                                                   doc.size() - 1)),
                   zelStatusCorruptGzipFile);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(WithLength(good, "huge.xml.gz",
                                                                   104857601)),
                   zelStatusInvalidSpecificationDocument);
  std::string badCrc = ReadAll(good);
  badCrc[badCrc.size() - 8] ^= 0x55;
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(WriteFile("crc.xml.gz", badCrc)),
                   zelStatusCorruptGzipFile);
  std::string cut = ReadAll(good);  // half the stream, the whole trailer
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(WriteFile(
                       "cut.xml.gz", cut.substr(0, cut.size() / 2) + cut.substr(cut.size() - 8))),
                   zelStatusCorruptGzipFile);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(WriteFile("tiny.xml.gz", "\x1f\x8b")),
                   zelStatusFileSystemError);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(WriteFile("one.xml.gz", "\x1f")),
                   zelStatusFileSystemError);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(TempPath("missing.xml.gz")),
                   zelStatusFileSystemError);
  EXPECT_EQ(fContainer.FindClass("ZT_Base"), nullptr);
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(ContainerLoadTest, PlainFilesMissingOrTooLargeAreRefused) {
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(TempPath("missing.xml")),
                   zelStatusFileSystemError);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(fTempDir), zelStatusFileSystemError);
  std::string large = WriteFile("large.xml", "");
  ASSERT_EQ(truncate(large.c_str(), 104857601), 0);
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(large),
                   zelStatusInvalidSpecificationDocument);
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(ContainerLoadTest, ParseErrorsNameTheFileAfterTheParserLine) {
  std::string empty = WriteFile("empty.xml", "");
  EXPECT_ZEL_THROW(fContainer.PopulateContainerFromFile(empty),
                   zelStatusInvalidSpecificationDocument);
  EXPECT_EQ(LoggedLines(),
            (TLines{"ZEL_Core: [Error] CIM-XML Parser line 1:Unexpected character before prolog",
                    "ZEL_Core: [Error] Previous error was while parsing file '" + empty + "'"}));

  // The error on line 13 comes from the tokenizer; what was registered before it stays.
  std::string broken = WriteGzip("broken.xml.gz", kDocument + "</VALUE.OBJECT>\n");
  TContainer other;
  EXPECT_ZEL_THROW(other.PopulateContainerFromFile(broken), zelStatusInvalidSpecificationDocument);
  TLines lines = LoggedLines();
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[2], "ZEL_Core: [Error] CIM-XML Parser line 13:Start and end element names "
                      "don't match");
  EXPECT_EQ(lines[3], "ZEL_Core: [Error] Previous error was while parsing file '" + broken + "'");
  EXPECT_NE(other.FindClass("ZT_Base"), nullptr);
  EXPECT_EQ(other.FindClass("ZT_Derived"), nullptr);
}

} // namespace
