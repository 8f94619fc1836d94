// Name normalisation: lowering and checking eight bytes at a time and byte by byte, at the
// edges of each accepted range, and the comparisons built on it.
#include "ZelTest.h"
#include "cim/ZelText.h"

#include <string>

class NameTest : public ZelTest {};

TEST_F(NameTest, NormalFormsOfValidNames) {
  const std::string kLong = "Cim_" + std::string(30, 'Q') + "_Z09" + std::string(30, 'a');
  struct Row {
    std::string name, normal;
  } rows[] = {
      {"", ""},
      {"K", "k"},
      {"Abcdefg", "abcdefg"},                        // seven: byte by byte
      {"Abcdefghi", "abcdefghi"},                    // nine: blocks overlapping by seven
      {"ABCDEFGH", "abcdefgh"},                      // one block of eight, no tail
      {"_Z9_z0A_", "_z9_z0a_"},                      // every range at once
      {"CIM_ComputerSystem", "cim_computersystem"},  // two blocks and a tail
      {"AZaz09_Mixed", "azaz09_mixed"},
      {kLong, "cim_" + std::string(30, 'q') + "_z09" + std::string(30, 'a')},  // past 64
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.normal, ZelNormalizeName(row.name));
    EXPECT_EQ(row.normal, std::string(ZelNormalName(row.name).View()));
    EXPECT_TRUE(ZelIsNormalFormOf(row.normal, row.name));
  }
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(NameTest, InvalidNamesThrowAfterOneLine) {
  const char* rows[] = {
      "9abcdefghij",     // a digit first, in a block
      "abc-defghijk",    // in the first block
      "abcdefgh-xyz",    // in the tail
      "abcdefg@", "abcdefg[", "abcdefg`", "abcdefg{",  // beside A-Z and a-z
      "abcdefg/", "abcdefg:", "abcdefg^",              // beside 0-9 and _
      "abcdefg\xc3\xa9x",                             // not ASCII
      "ab cdefgh",
      "1a", "a-b", "k@", "_\x80",                   // shorter than eight
  };
  for (const char* name : rows) {
    SCOPED_TRACE(name);
    EXPECT_ZEL_THROW(ZelNormalizeName(name), zelStatusInvalidCIMName);
    EXPECT_ZEL_THROW(ZelNormalName normal(name), zelStatusInvalidCIMName);
    EXPECT_LOGGED(std::string("ZEL_Core: [Error] CIM name '") + name + "' is invalid");
  }
  EXPECT_ZEL_THROW(ZelNormalizeName(std::string("abcdefgh\0ij", 11)), zelStatusInvalidCIMName);
  EXPECT_ZEL_THROW(ZelNormalizeName(std::string("abc\0", 4)), zelStatusInvalidCIMName);
}

TEST_F(NameTest, ComparisonsIgnoreCaseOnly) {
  EXPECT_TRUE(ZelIsNormalFormOf("computersystem", "ComputerSystem"));
  EXPECT_FALSE(ZelIsNormalFormOf("computersystem", "ComputerSysten"));
  EXPECT_FALSE(ZelIsNormalFormOf("computersystem", "ComputerSystems"));
  EXPECT_FALSE(ZelIsNormalFormOf("a_b", "A-B"));
  EXPECT_TRUE(ZelSameName("CIM_Processor", "cim_PROCESSOR"));
  EXPECT_FALSE(ZelSameName("CIM_Processor", "CIM_Processors"));
  EXPECT_TRUE(ZelNameBefore("cim_a", "CIM_B"));
  EXPECT_FALSE(ZelNameBefore("CIM_B", "cim_a"));
  EXPECT_ZEL_THROW(ZelSameName("CIM_Processor", "CIM-Processor"), zelStatusInvalidCIMName);
}
