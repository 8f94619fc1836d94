// Display texts of property values under the display qualifiers of a real class.
#include "cim/TCIMPropertyImpl.h"

#include "SchemaHelpers.h"

namespace {

typedef std::vector<std::pair<std::string, TCIMValue>> TQualifiers;
typedef std::vector<const char*> TList;

TCIMValue NullOf(unsigned int type) {
  return TCIMValue(TCIMType(static_cast<TCIMType::ECIMType>(type)), 0);
}

TCIMValue StringArray(TList texts) {
  return TCIMValue(TCIMType(TCIMType::kString), 0,
                   std::vector<TCIMValue>(texts.begin(), texts.end()));
}

const TCIMValue kHex((unsigned char)16);

struct Row { const char* expected; TCIMValue value; TQualifiers qualifiers; };

TQualifiers Map(TList valueMap, TList values) {
  return {{"ValueMap", StringArray(valueMap)}, {"Values", StringArray(values)}};
}

TQualifiers Units(const char* units, TQualifiers more = {}) {
  more.emplace_back("UNITS", TCIMValue(units));
  return more;
}

class DisplayTest : public ZelTest {
protected:
  DisplayTest() : fClass(*fContainer.AllocateClass("ZEL_Disk", 0)) {
    fContainer.AddClass(fClass);
    std::pair<const char*, unsigned int> decls[] = {
        {"NULLDISPLAY", TCIMType::kString},
        {"UNITS", TCIMType::kString},
        {"DISPLAYFIXEDUNITS", TCIMType::kString},
        {"BASE", TCIMType::kUint8},
        {"DISPLAYCPUTIME", TCIMType::kBoolean},
        {"ABBREVIATEUNITS", TCIMType::kBoolean},
        {"ValueMap", TCIMType::kString | TCIMType::kArray},
        {"Values", TCIMType::kString | TCIMType::kArray}};
    for (const auto& decl : decls)
      Declare(fContainer, decl.first, NullOf(decl.second), 0);
  }

  /// A new declaration P<n> of the class, of the value's type, with these qualifiers.
  const TCIMPropertyDecl& Declaration(const TCIMValue& value, const TQualifiers& qualifiers) {
    TCIMPropertyDecl& decl =
        *new TCIMPropertyDecl("P" + std::to_string(++fCount), fClass, NullOf(value.GetType()));
    for (const auto& q : qualifiers)
      Qualify(decl, fContainer, q.first, q.second);
    decl.AddToContainer();
    return decl;
  }

  /// ToString() of a property holding value under these qualifiers.
  std::string Show(const TCIMValue& value, const TQualifiers& qualifiers) {
    return TCIMProperty(Declaration(value, qualifiers), value).ToString();
  }

  void Check(std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
      SCOPED_TRACE(testing::Message() << "row " << &row - rows.begin());
      EXPECT_EQ(row.expected, Show(row.value, row.qualifiers));
    }
  }

  TContainer fContainer;
  TCIMClass& fClass;
  int fCount = 0;
};

TEST_F(DisplayTest, NullTextBaseAndValuesWithoutUnits) {
  Check({
      {"", NullOf(TCIMType::kUint32), {}},
      // The text wins over units; a NULL text or one that is not a string is no text.
      {"none", NullOf(TCIMType::kUint64), {{"UNITS", "Bytes"}, {"NULLDISPLAY", "none"}}},
      {"", NullOf(TCIMType::kUint32), {{"NULLDISPLAY", NullOf(TCIMType::kString)}}},
      {"", NullOf(TCIMType::kUint32), {{"NULLDISPLAY", true}}},
      {"FF", 255u, {{"BASE", kHex}}},
      // Only a non-NULL uint8 counts as a base.
      {"255", 255u, {{"BASE", (unsigned short)16}}},
      {"255", 255u, {{"BASE", NullOf(TCIMType::kUint8)}}},
      // Only unsigned integers with a known unit get units; others keep the base.
      {"FF", 255u, {{"BASE", kHex}, {"UNITS", "Watts"}}},
      {"1536", 1536, Units("Bytes")},
      {"1536", 1536u, {{"UNITS", NullOf(TCIMType::kString)}}},
      {"1536", 1536ul, Units("kiloBytes")}, // Prefixes are case-sensitive.
  });
}

TEST_F(DisplayTest, ScaledUnitsStepThroughThePrefixesOrToTheFixedOne) {
  TQualifiers abbreviated = {{"ABBREVIATEUNITS", true}};
  Check({
      {"1.5 KiloBytes", 1536ul, Units("Bytes")},
      {"1.5 KB", 1536ul, Units("Bytes", abbreviated)},
      {"1024 Bytes", 1024ul, Units("Bytes")}, // Equal to the divisor: not scaled.
      {"3 MB/s", 3145728ul, Units("Bytes per Second", abbreviated)},
      // Bits step by 1024, bits per second by 1000.
      {"976.6 Kb", 1000000ul, Units("Bits", abbreviated)},
      {"1000 KiloBits per Second", 1000000ul, Units("Bits per Second")},
      {"1 Mbps", 1000001ul, Units("Bits per Second", abbreviated)},
      // Peta is the top: larger amounts stay in it, whole digits and all.
      {"2048 PB", 2097152ul, Units("TeraBytes", abbreviated)},
      {"4.9 Bytes", 5000ul, Units("MilliBytes")}, // Sub-unit prefixes climb too.
      // ABBREVIATEUNITS counts whatever its value, false included, but not NULL.
      {"1.5 KB", 1536ul, Units("Bytes", {{"ABBREVIATEUNITS", false}})},
      {"1.5 KiloBytes", 1536ul, Units("Bytes", {{"ABBREVIATEUNITS", NullOf(TCIMType::kBoolean)}})},
      // One decimal in single precision, rounded to even on a tie, ".0" dropped.
      {"1.2 KiloBytes", 1280ul, Units("Bytes")},
      // 16777217 has no float: it shows as its neighbour 16777216.
      {"16777216 KiloBytes", 16777217ul, Units("KiloBytes", {{"DISPLAYFIXEDUNITS", "Kilo"}})},
      {"0.1 KiloBytes", 100ul, Units("Bytes", {{"DISPLAYFIXEDUNITS", "Kilo"}})},
      // Already at or above the fixed unit: no scaling at all, not even back down.
      {"3 GigaBytes", 3ul, Units("GigaBytes", {{"DISPLAYFIXEDUNITS", "Mega"}})},
      {"3000 GigaBytes", 3000ul, Units("GigaBytes", {{"DISPLAYFIXEDUNITS", "Giga"}})},
      // "Peta" is no fixed unit: scaling is automatic.
      {"5 MegaBytes", 5242880ul, Units("Bytes", {{"DISPLAYFIXEDUNITS", "Peta"}})},
  });
}

TEST_F(DisplayTest, SecondsShowAsAnInterval) {
  Check({
      {"1 hour 1 minute 1 second ", 3661ul, Units("Seconds")},
      {"2 days 2 hours 2 minutes 2 seconds ", 180122ul, Units("Seconds")},
      {"1 second 500 milliseconds ", 1500ul, Units("MilliSeconds")},
      {"1 second 1 microsecond ", 1000001ul, Units("MicroSeconds")},
      {"1 millisecond 500 microseconds ", 1500999ul, Units("NanoSeconds")}, // Whole microseconds.
      // CPU time: total hours, and any non-NULL value asks for it.
      {"27:46:40.250", 100000250ul, Units("MilliSeconds", {{"DISPLAYCPUTIME", false}})},
      {"1 hour 1 minute 1 second ", 3661ul,
       Units("Seconds", {{"DISPLAYCPUTIME", NullOf(TCIMType::kBoolean)}})},
  });
  // Kilo and larger prefixes leave the interval NULL, which has no display text.
  EXPECT_ZEL_THROW(Show(TCIMValue(3ul), Units("KiloSeconds")), zelStatusInvalidDateTime);
}

TEST_F(DisplayTest, ValueMapsTurnCodesIntoTextsBeforeAnyOtherRule) {
  // The usual reserved ranges: ".." holds what lies between its neighbours.
  TQualifiers status =
      Map({"0", "1", "..", "0x8000.."}, {"Unknown", "Other", "DMTF Reserved", "Vendor Reserved"});
  // The map wins over units and base; NULL has no code, so it takes the NULL text.
  TQualifiers mapped = {{"ValueMap", StringArray({"4"})}, {"Values", StringArray({"Four"})},
                        {"UNITS", "Bytes"}, {"BASE", kHex}, {"NULLDISPLAY", "-"}};
  Check({{"Other", 1ul, status}, {"DMTF Reserved", 2ul, status},
         {"DMTF Reserved", 32767ul, status}, {"Vendor Reserved", 32768ul, status},
         {"Four", 4ul, mapped}, {"-", NullOf(TCIMType::kUint64), mapped}, {"8 Bytes", 8ul, mapped},
         // Values alone count from 0; booleans are codes, signed numbers never are.
         {"Yes", true, {{"Values", StringArray({"No", "Yes"})}}},
         {"2", 2u, {{"Values", StringArray({"No", "Yes"})}}},
         {"1", 1, {{"Values", StringArray({"Zero", "One"})}}},
         {"1", 1u, {{"ValueMap", StringArray({"1"})}}}}); // No Values, no map.
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(DisplayTest, ValueMapFaultyMapsAreLoggedAndIgnored) {
  TCIMValue numbers(TCIMType(TCIMType::kUint8), 0, {TCIMValue((unsigned char)1)});
  Check({{"1", 1u, {{"Values", numbers}}},
         {"1", 1u, {{"Values", StringArray({"One"})}, {"ValueMap", numbers}}},
         {"1", 1u, Map({"0", "1"}, {"Zero", "One", "Two"})},
         {"4", 4u, Map({"1", "3..", ".."}, {"One", "Three up", "Rest"})},
         {"4", 4u, Map({"1", "3..", "..9"}, {"One", "Three up", "To nine"})}});
  EXPECT_EQ(
      LoggedLines(),
      (TNames{"ZEL_Core: [Warning] Property P1 has a VALUE qualifier that isn't a string!",
              "ZEL_Core: [Warning] Property P2 has a VALUEMAP qualifier that isn't a string!",
              "ZEL_Core: [Warning] Property P3 has VALUE and VALUEMAP qualifiers that aren't the "
              "same size!",
              "ZEL_Core: [Warning] Property P4 has a .. VALUEMAP entry after another entry that "
              "ends with ..!",
              "ZEL_Core: [Warning] Property P5 has a ..<value> VALUEMAP entry after another "
              "entry that ends with ..!"}));
  // NULL values are not looked up, so a faulty map stays silent for them.
  Show(NullOf(TCIMType::kUint32), {{"Values", numbers}});
  EXPECT_EQ(5u, LoggedLines().size());
}

TEST_F(DisplayTest, ArraysAndPreviousValuesFollowTheSameRules) {
  TQualifiers mapped = {{"ValueMap", StringArray({"1", "3..5"})},
                        {"Values", StringArray({"One", "Three to five"})}, {"BASE", kHex}};
  TCIMValue codes(TCIMType(TCIMType::kUint16), 0,
                  {(unsigned short)1, (unsigned short)4, (unsigned short)31});
  TCIMProperty property(Declaration(codes, mapped), codes);
  EXPECT_EQ((TNames{"One", "Three to five", "1F"}), property.ToStringVector());
  EXPECT_EQ("{ 1, 4, 1F }", property.ToString()); // The whole array in one text is not mapped.
  EXPECT_EQ((TNames{"1", "4", "1F"}), property.GetBody()->ToStringVectorWithBase());
  property.SetPrevValue(
      TCIMValue(TCIMType(TCIMType::kUint16), 0, {(unsigned short)1, (unsigned short)3}));
  EXPECT_EQ((TNames{"One", "Three to five"}), property.PrevToStringVector());
  EXPECT_EQ((TNames{"1", "3"}), property.GetBody()->PrevToStringVectorWithBase());

  // NULL elements take the NULL text; a NULL array has no elements.
  TQualifiers sized = Units("Bytes", {{"NULLDISPLAY", "?"}});
  TCIMValue sizes(TCIMType(TCIMType::kUint64), 0, {TCIMValue(1536ul), NullOf(TCIMType::kUint64)});
  TCIMProperty array(Declaration(sizes, sized), sizes);
  EXPECT_EQ((TNames{"1.5 KiloBytes", "?"}), array.ToStringVector());
  TCIMValue none = NullOf(TCIMType::kUint64 | TCIMType::kArray);
  TCIMProperty nulled(Declaration(none, sized), none);
  EXPECT_EQ(TNames{}, nulled.ToStringVector());
  EXPECT_EQ("?", nulled.ToString());

  TCIMProperty scalar(Declaration(TCIMValue(0ul), sized), TCIMValue(2048ul));
  scalar.SetPrevValue(TCIMValue(1536ul));
  EXPECT_EQ("1.5 KiloBytes", scalar.PrevToString());
  scalar.SetPrevValue();
  EXPECT_EQ("?", scalar.PrevToString());
}

} // namespace
