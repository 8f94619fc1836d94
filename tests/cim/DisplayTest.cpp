// Display texts of property values under the display qualifiers of a real class: NULL text,
// bases, units and their scaling, intervals, value maps, arrays and previous values.
#include "TCIMPropertyImpl.h"

#include "TCIMClass.h"
#include "TCIMProperty.h"
#include "TCIMPropertyDecl.h"
#include "TCIMQualifier.h"
#include "TCIMQualifierDecl.h"
#include "TContainer.h"
#include "ZelTest.h"

#include <string>
#include <utility>
#include <vector>

namespace {

typedef TCIMValue::TCIMType TType;
typedef std::vector<std::pair<std::string, TCIMValue>> TQualifiers;
typedef std::vector<std::string> TTexts;

TCIMValue NullOf(TType::ECIMType type) {
  return TCIMValue(TType(type), 0);
}

TCIMValue StringArray(std::vector<const char*> texts) {
  std::vector<TCIMValue> elements(texts.begin(), texts.end());
  return TCIMValue(TType(TType::kString), 0, elements);
}

TCIMValue Uint16Array(std::vector<unsigned short> numbers) {
  std::vector<TCIMValue> elements(numbers.begin(), numbers.end());
  return TCIMValue(TType(TType::kUint16), 0, elements);
}

class DisplayTest : public ZelTest {
protected:
  void SetUp() override {
    ZelTest::SetUp();
    TCIMValue::TCIMType::ECIMType strings =
        static_cast<TType::ECIMType>(TType::kString | TType::kArray);
    const char* const stringQualifiers[] = {"NULLDISPLAY", "UNITS", "DISPLAYFIXEDUNITS"};
    for (const char* name : stringQualifiers)
      Declare(name, NullOf(TType::kString));
    Declare("BASE", NullOf(TType::kUint8));
    Declare("DISPLAYCPUTIME", NullOf(TType::kBoolean));
    Declare("ABBREVIATEUNITS", NullOf(TType::kBoolean));
    Declare("ValueMap", NullOf(strings));
    Declare("Values", NullOf(strings));
    fClass = fContainer.AllocateClass("ZEL_Disk", nullptr);
    fContainer.AddClass(*fClass);
  }

  void Declare(const char* name, const TCIMValue& value) {
    fContainer
        .AllocateQualifierDecl(name, value, TCIMQualifierDecl::eProperty,
                               TCIMQualifierDecl::EFlavor(TCIMQualifierDecl::eOverridable |
                                                          TCIMQualifierDecl::eToSubclass))
        ->AddToContainer();
  }

  /// A new declaration of the class, of the value's type, with these qualifiers.
  const TCIMPropertyDecl& Declaration(const TCIMValue& value, const TQualifiers& qualifiers,
                                      std::string name = "") {
    if (name.empty())
      name = "P" + std::to_string(++fCount);
    TCIMPropertyDecl* decl = new TCIMPropertyDecl(name, *fClass, NullOf(value.GetType()));
    for (const auto& q : qualifiers)
      decl->AddQualifier(*new TCIMQualifier(*fContainer.GetQualifierDecl(q.first), q.second));
    decl->AddToContainer();
    return fClass->GetPropertyDecl(name);
  }

  /// ToString() of a property holding value under these qualifiers.
  std::string Show(const TCIMValue& value, const TQualifiers& qualifiers) {
    return TCIMProperty(Declaration(value, qualifiers), value).ToString();
  }

  /// The same with only "UNITS" and possibly "ABBREVIATEUNITS" or "DISPLAYFIXEDUNITS".
  std::string ShowUnits(unsigned long long number, const char* units, TQualifiers more = {}) {
    more.emplace_back("UNITS", TCIMValue(units));
    return Show(TCIMValue(static_cast<unsigned long>(number)), more);
  }

  TContainer fContainer;
  TCIMClass* fClass = nullptr;
  int fCount = 0;
};

TEST_F(DisplayTest, NullShowsTheNullDisplayTextOrNothing) {
  EXPECT_EQ("", Show(NullOf(TType::kUint32), {}));
  EXPECT_EQ("n/a", Show(NullOf(TType::kUint32), {{"NULLDISPLAY", TCIMValue("n/a")}}));
  EXPECT_EQ("n/a", Show(NullOf(TType::kString), {{"NULLDISPLAY", TCIMValue("n/a")}}));
  // The text wins over units, and a NULL text is no text.
  EXPECT_EQ("none", Show(NullOf(TType::kUint64), {{"UNITS", TCIMValue("Bytes")},
                                                 {"NULLDISPLAY", TCIMValue("none")}}));
  EXPECT_EQ("", Show(NullOf(TType::kUint32), {{"NULLDISPLAY", NullOf(TType::kString)}}));
  // A NULLDISPLAY that is not a string is ignored.
  EXPECT_EQ("", Show(NullOf(TType::kUint32), {{"NULLDISPLAY", TCIMValue(true)}}));
  // A property without an own value shows the declaration's default.
  TCIMPropertyDecl* decl = new TCIMPropertyDecl("Default", *fClass, TCIMValue(7u));
  decl->AddToContainer();
  EXPECT_EQ("7", TCIMProperty(fClass->GetPropertyDecl("Default")).ToString());
}

TEST_F(DisplayTest, BaseQualifierChoosesTheRadix) {
  EXPECT_EQ("255", Show(TCIMValue(255u), {}));
  EXPECT_EQ("FF", Show(TCIMValue(255u), {{"BASE", TCIMValue((unsigned char)16)}}));
  EXPECT_EQ("377", Show(TCIMValue(255u), {{"BASE", TCIMValue((unsigned char)8)}}));
  EXPECT_EQ("true", Show(TCIMValue(true), {{"BASE", TCIMValue((unsigned char)16)}}));
  // Only a non-NULL uint8 counts as a base.
  EXPECT_EQ("255", Show(TCIMValue(255u), {{"BASE", TCIMValue((unsigned short)16)}}));
  EXPECT_EQ("255", Show(TCIMValue(255u), {{"BASE", NullOf(TType::kUint8)}}));
  // An unscaled unit keeps the base and shows no unit.
  EXPECT_EQ("FF", Show(TCIMValue(255u), {{"BASE", TCIMValue((unsigned char)16)},
                                         {"UNITS", TCIMValue("Watts")}}));
  // The value decides what a radix may do.
  EXPECT_ZEL_THROW(Show(TCIMValue(-1), {{"BASE", TCIMValue((unsigned char)16)}}),
                   zelStatusNotSupported);
  EXPECT_ZEL_THROW(Show(TCIMValue(5u), {{"BASE", TCIMValue((unsigned char)2)}}),
                   zelStatusNotSupported);
}

TEST_F(DisplayTest, ScaledUnitsStepThroughThePrefixes) {
  EXPECT_EQ("1.5 KiloBytes", ShowUnits(1536, "Bytes"));
  EXPECT_EQ("1.5 KB", ShowUnits(1536, "Bytes", {{"ABBREVIATEUNITS", TCIMValue(true)}}));
  // A value equal to the divisor is not scaled.
  EXPECT_EQ("1024 Bytes", ShowUnits(1024, "Bytes"));
  EXPECT_EQ("1 KiloBytes", ShowUnits(1025, "Bytes"));
  EXPECT_EQ("2 GigaBytes", ShowUnits(2048, "MegaBytes"));
  EXPECT_EQ("3 MegaBytes per Second", ShowUnits(3145728, "Bytes per Second"));
  EXPECT_EQ("3 MB/s", ShowUnits(3145728, "Bytes per Second",
                                {{"ABBREVIATEUNITS", TCIMValue(true)}}));
  // Bits step by 1024, bits per second by 1000.
  EXPECT_EQ("976.6 KiloBits", ShowUnits(1000000, "Bits"));
  EXPECT_EQ("976.6 Kb", ShowUnits(1000000, "Bits", {{"ABBREVIATEUNITS", TCIMValue(true)}}));
  EXPECT_EQ("1000 KiloBits per Second", ShowUnits(1000000, "Bits per Second"));
  EXPECT_EQ("1 MegaBits per Second", ShowUnits(1000001, "Bits per Second"));
  EXPECT_EQ("1 Mbps", ShowUnits(1000001, "Bits per Second",
                                {{"ABBREVIATEUNITS", TCIMValue(true)}}));
  // Peta is the top: larger amounts stay in it, whole digits and all.
  EXPECT_EQ("5000000 PetaBytes", ShowUnits(5000000, "PetaBytes"));
  EXPECT_EQ("2048 PB", ShowUnits(2097152, "TeraBytes", {{"ABBREVIATEUNITS", TCIMValue(true)}}));
  // Sub-unit prefixes climb too, until the amount fits.
  EXPECT_EQ("4.9 Bytes", ShowUnits(5000, "MilliBytes"));
  // ABBREVIATEUNITS counts whatever its value, false included.
  EXPECT_EQ("1.5 KB", ShowUnits(1536, "Bytes", {{"ABBREVIATEUNITS", TCIMValue(false)}}));
  EXPECT_EQ("1.5 KiloBytes",
            ShowUnits(1536, "Bytes", {{"ABBREVIATEUNITS", NullOf(TType::kBoolean)}}));
}

TEST_F(DisplayTest, ScaledNumbersHaveOneDecimalInSinglePrecision) {
  // One decimal, rounded to even on a tie, ".0" dropped.
  EXPECT_EQ("1.2 KiloBytes", ShowUnits(1280, "Bytes"));
  EXPECT_EQ("1.8 KiloBytes", ShowUnits(1792, "Bytes"));
  EXPECT_EQ("2 KiloBytes", ShowUnits(2047, "Bytes"));
  EXPECT_EQ("200 Bytes", Show(TCIMValue((unsigned char)200), {{"UNITS", TCIMValue("Bytes")}}));
  EXPECT_EQ("1000 Bits", Show(TCIMValue((unsigned short)1000), {{"UNITS", TCIMValue("Bits")}}));
  // 16777217 has no float: it shows as its neighbour 16777216.
  EXPECT_EQ("16777216 KiloBytes",
            ShowUnits(16777217, "KiloBytes", {{"DISPLAYFIXEDUNITS", TCIMValue("Kilo")}}));
  EXPECT_EQ("16 GigaBytes", ShowUnits(17179870000ull, "Bytes"));
  EXPECT_EQ("8192 PetaBytes", ShowUnits(9223372036854775807ull, "Bytes"));
}

TEST_F(DisplayTest, OnlyUnsignedIntegersWithAKnownUnitGetUnits) {
  EXPECT_EQ("1536", Show(TCIMValue(1536), {{"UNITS", TCIMValue("Bytes")}}));
  EXPECT_EQ("1536", Show(TCIMValue(1536.0), {{"UNITS", TCIMValue("Bytes")}}));
  EXPECT_EQ("1536", Show(TCIMValue("1536"), {{"UNITS", TCIMValue("Bytes")}}));
  EXPECT_EQ("1536", ShowUnits(1536, "Watts"));
  EXPECT_EQ("1536", ShowUnits(1536, "KiloWatts"));
  // Prefixes are case-sensitive; a bare prefix leaves an empty, unknown unit.
  EXPECT_EQ("1536", ShowUnits(1536, "kiloBytes"));
  EXPECT_EQ("1536", ShowUnits(1536, "Kilo"));
  EXPECT_EQ("1536", Show(TCIMValue(1536u), {{"UNITS", NullOf(TType::kString)}}));
}

TEST_F(DisplayTest, FixedUnitsScaleDownToTheTargetOnly) {
  EXPECT_EQ("5 MegaBytes", ShowUnits(5242880, "Bytes", {{"DISPLAYFIXEDUNITS", TCIMValue("Mega")}}));
  EXPECT_EQ("5120 KiloBytes",
            ShowUnits(5242880, "Bytes", {{"DISPLAYFIXEDUNITS", TCIMValue("Kilo")}}));
  EXPECT_EQ("5120 KB", ShowUnits(5242880, "Bytes", {{"DISPLAYFIXEDUNITS", TCIMValue("Kilo")},
                                                     {"ABBREVIATEUNITS", TCIMValue(true)}}));
  EXPECT_EQ("0.1 KiloBytes", ShowUnits(100, "Bytes", {{"DISPLAYFIXEDUNITS", TCIMValue("Kilo")}}));
  EXPECT_EQ("0 MegaBytes", ShowUnits(1536, "Bytes", {{"DISPLAYFIXEDUNITS", TCIMValue("Mega")}}));
  EXPECT_EQ("0.5 TeraBits per Second",
            ShowUnits(500, "GigaBits per Second", {{"DISPLAYFIXEDUNITS", TCIMValue("Tera")}}));
  // Already larger than the target: no scaling at all, not even back down.
  EXPECT_EQ("3 GigaBytes", ShowUnits(3, "GigaBytes", {{"DISPLAYFIXEDUNITS", TCIMValue("Mega")}}));
  EXPECT_EQ("3000 GigaBytes",
            ShowUnits(3000, "GigaBytes", {{"DISPLAYFIXEDUNITS", TCIMValue("Giga")}}));
  // "Peta" and other spellings are not fixed units: scaling is automatic.
  EXPECT_EQ("5 MegaBytes", ShowUnits(5242880, "Bytes", {{"DISPLAYFIXEDUNITS", TCIMValue("Peta")}}));
  EXPECT_EQ("5 MegaBytes", ShowUnits(5242880, "Bytes", {{"DISPLAYFIXEDUNITS", TCIMValue("kilo")}}));
}

TEST_F(DisplayTest, SecondsShowAsAnInterval) {
  EXPECT_EQ("1 hour 1 minute 1 second ", ShowUnits(3661, "Seconds"));
  EXPECT_EQ("2 days 2 hours 2 minutes 2 seconds ", ShowUnits(180122, "Seconds"));
  EXPECT_EQ("", ShowUnits(0, "Seconds"));
  EXPECT_EQ("1 second 500 milliseconds ", ShowUnits(1500, "MilliSeconds"));
  EXPECT_EQ("1 second 1 microsecond ", ShowUnits(1000001, "MicroSeconds"));
  // Nanoseconds are cut to whole microseconds.
  EXPECT_EQ("1 millisecond 500 microseconds ", ShowUnits(1500999, "NanoSeconds"));
  EXPECT_EQ("1 minute 5 seconds 1 millisecond ", ShowUnits(65001000000ull, "NanoSeconds"));
  // CPU time: total hours, and any non-NULL value asks for it.
  EXPECT_EQ("01:01:01.000", ShowUnits(3661, "Seconds", {{"DISPLAYCPUTIME", TCIMValue(true)}}));
  EXPECT_EQ("27:46:40.250",
            ShowUnits(100000250, "MilliSeconds", {{"DISPLAYCPUTIME", TCIMValue(false)}}));
  EXPECT_EQ("1 hour 1 minute 1 second ",
            ShowUnits(3661, "Seconds", {{"DISPLAYCPUTIME", NullOf(TType::kBoolean)}}));
  // Kilo and larger prefixes leave the interval NULL, which has no display text.
  EXPECT_ZEL_THROW(ShowUnits(3, "KiloSeconds"), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(ShowUnits(3, "KiloSeconds", {{"DISPLAYCPUTIME", TCIMValue(true)}}),
                   zelStatusInvalidDateTime);
  // Signed durations are plain numbers.
  EXPECT_EQ("3661", Show(TCIMValue(3661), {{"UNITS", TCIMValue("Seconds")}}));
}

class ValueMapTest : public DisplayTest {
protected:
  /// ToString() of a uint16 code under "Values" and, unless empty, "ValueMap".
  std::string ShowCode(unsigned short code, std::vector<const char*> valueMap,
                       std::vector<const char*> values, TQualifiers more = {}) {
    more.emplace_back("Values", StringArray(values));
    if (!valueMap.empty())
      more.emplace_back("ValueMap", StringArray(valueMap));
    return Show(TCIMValue(code), more);
  }
};

TEST_F(ValueMapTest, SingleValuesAndClosedRanges) {
  std::vector<const char*> map = {"0", "1", "2", "3..5", "..7", "9.."};
  std::vector<const char*> values = {"Unknown", "Other", "Ready", "Busy", "Idle", "Vendor"};
  EXPECT_EQ("Unknown", ShowCode(0, map, values));
  EXPECT_EQ("Ready", ShowCode(2, map, values));
  EXPECT_EQ("Busy", ShowCode(3, map, values));
  EXPECT_EQ("Busy", ShowCode(5, map, values));
  // "..7" starts after the entry before it.
  EXPECT_EQ("Idle", ShowCode(6, map, values));
  EXPECT_EQ("Idle", ShowCode(7, map, values));
  // A code no entry holds shows as if there were no map.
  EXPECT_EQ("8", ShowCode(8, map, values));
  EXPECT_EQ("8 Bytes", ShowCode(8, map, values, {{"UNITS", TCIMValue("Bytes")}}));
  EXPECT_EQ("Vendor", ShowCode(9, map, values));
  EXPECT_EQ("Vendor", ShowCode(65535, map, values));
  // The map wins over units and base.
  EXPECT_EQ("Busy", ShowCode(4, map, values, {{"UNITS", TCIMValue("Bytes")},
                                              {"BASE", TCIMValue((unsigned char)16)}}));
  // NULL has no code: the NULL text.
  EXPECT_EQ("-", Show(NullOf(TType::kUint16), {{"Values", StringArray(values)},
                                               {"ValueMap", StringArray(map)},
                                               {"NULLDISPLAY", TCIMValue("-")}}));
}

TEST_F(ValueMapTest, OpenEndsReachToTheNeighbours) {
  // The usual reserved ranges: ".." holds what lies between its neighbours.
  std::vector<const char*> map = {"0", "1", "..", "0x8000.."};
  std::vector<const char*> values = {"Unknown", "Other", "DMTF Reserved", "Vendor Reserved"};
  EXPECT_EQ("Other", ShowCode(1, map, values));
  EXPECT_EQ("DMTF Reserved", ShowCode(2, map, values));
  EXPECT_EQ("DMTF Reserved", ShowCode(32767, map, values));
  EXPECT_EQ("Vendor Reserved", ShowCode(32768, map, values));
  // "x.." stops before the entry after it; "..y" first starts at 0.
  std::vector<const char*> open = {"..1", "4..", "10", ".."};
  std::vector<const char*> names = {"Low", "Middle", "Ten", "High"};
  EXPECT_EQ("Low", ShowCode(0, open, names));
  EXPECT_EQ("2", ShowCode(2, open, names));
  EXPECT_EQ("Middle", ShowCode(9, open, names));
  EXPECT_EQ("Ten", ShowCode(10, open, names));
  EXPECT_EQ("High", ShowCode(11, open, names));
  EXPECT_EQ("High", ShowCode(65535, open, names));
  // Descending neighbours leave an open end nothing: the first entry holding a code wins.
  EXPECT_EQ("7", ShowCode(7, {"5..", "3"}, {"Five up", "Three"}));
  EXPECT_EQ("Two to four", ShowCode(3, {"2..4", "3"}, {"Two to four", "Three"}));
  // Entries that are no number or range are skipped, and hex digits need "0x".
  std::vector<const char*> odd = {"1", "x", "1a", "3..y", "3"};
  std::vector<const char*> oddNames = {"One", "Ex", "Hex", "Bad", "Three"};
  EXPECT_EQ("One", ShowCode(1, odd, oddNames));
  EXPECT_EQ("Three", ShowCode(3, odd, oddNames));
  EXPECT_EQ("26", ShowCode(26, odd, oddNames));
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(ValueMapTest, BuildsResolvedEntries) {
  const TCIMPropertyDecl& decl =
      Declaration(TCIMValue(0u), {{"ValueMap", StringArray({"..", "5..7", "9..", "0X1F"})},
                                  {"Values", StringArray({"a", "b", "c", "d"})}});
  TCIMProperty property(decl, TCIMValue(0u));
  std::vector<TCIMPropertyImpl::TValueMapEntry> entries;
  std::string error = "stale";
  ASSERT_TRUE(property.GetBody()->BuildValueMapEntryArray(entries, error));
  EXPECT_EQ("", error);
  ASSERT_EQ(4u, entries.size());
  EXPECT_EQ(0u, entries[0].fLow);
  EXPECT_EQ(4u, entries[0].fHigh);
  EXPECT_TRUE(entries[0].fOpenLow && entries[0].fOpenHigh);
  EXPECT_EQ(5u, entries[1].fLow);
  EXPECT_EQ(7u, entries[1].fHigh);
  EXPECT_EQ(9u, entries[2].fLow);
  EXPECT_EQ(30u, entries[2].fHigh);
  EXPECT_EQ(31u, entries[3].fLow);
  EXPECT_EQ("d", entries[3].fText);
  std::string text = "unchanged";
  EXPECT_FALSE(property.GetBody()->LookupInTable(TCIMValue(8u), entries, text));
  EXPECT_EQ("unchanged", text);
  EXPECT_TRUE(property.GetBody()->LookupInTable(TCIMValue(30u), entries, text));
  EXPECT_EQ("c", text);
  // A map that starts at the largest code leaves nothing to an open end after it.
  const TCIMPropertyDecl& top = Declaration(
      TCIMValue(0ul), {{"ValueMap", StringArray({"18446744073709551615", "..", "0", "..3"})},
                       {"Values", StringArray({"Max", "Rest", "Zero", "Low"})}});
  TCIMProperty topProperty(top, TCIMValue(0ul));
  ASSERT_TRUE(topProperty.GetBody()->BuildValueMapEntryArray(entries, error));
  EXPECT_GT(entries[1].fLow, entries[1].fHigh);
  EXPECT_EQ("Zero", topProperty.GetBody()->ToString());
  topProperty.SetValue(TCIMValue(2ul));
  EXPECT_EQ("Low", topProperty.ToString());
  topProperty.SetValue(TCIMValue(18446744073709551615ul));
  EXPECT_EQ("Max", topProperty.ToString());
}

TEST_F(ValueMapTest, ValuesAloneAreIndexedAndBooleansAreCodes) {
  EXPECT_EQ("Off", ShowCode(0, {}, {"Off", "On"}));
  EXPECT_EQ("On", ShowCode(1, {}, {"Off", "On"}));
  EXPECT_EQ("2", ShowCode(2, {}, {"Off", "On"}));
  EXPECT_EQ("No", Show(TCIMValue(false), {{"Values", StringArray({"No", "Yes"})}}));
  EXPECT_EQ("Yes", Show(TCIMValue(true), {{"Values", StringArray({"No", "Yes"})}}));
  EXPECT_EQ("Enabled", Show(TCIMValue(true), {{"ValueMap", StringArray({"1", "0"})},
                                              {"Values", StringArray({"Enabled", "Disabled"})}}));
  EXPECT_EQ("Only", Show(TCIMValue((unsigned char)0), {{"Values", TCIMValue("Only")}}));
  // A ValueMap without Values is no map; signed numbers and strings are never codes.
  EXPECT_EQ("1", Show(TCIMValue(1u), {{"ValueMap", StringArray({"1"})}}));
  EXPECT_EQ("1", Show(TCIMValue(1), {{"Values", StringArray({"Zero", "One"})}}));
  EXPECT_EQ("1", Show(TCIMValue("1"), {{"Values", StringArray({"Zero", "One"})}}));
  EXPECT_EQ("7 Bytes", Show(TCIMValue(7ul), {{"Values", NullOf(TType::kString)},
                                             {"UNITS", TCIMValue("Bytes")}}));
}

TEST_F(ValueMapTest, FaultyMapsAreLoggedAndIgnored) {
  TCIMValue numbers(TType(TType::kUint8), 0, {TCIMValue((unsigned char)1)});
  EXPECT_EQ("1", Show(TCIMValue(1u), {{"Values", numbers}}));
  EXPECT_EQ("1", Show(TCIMValue(1u), {{"Values", StringArray({"One"})}, {"ValueMap", numbers}}));
  EXPECT_EQ("1", ShowCode(1, {"0", "1"}, {"Zero", "One", "Two"}));
  EXPECT_EQ("4", ShowCode(4, {"1", "3..", ".."}, {"One", "Three up", "Rest"}));
  EXPECT_EQ("4", ShowCode(4, {"1", "3..", "..9"}, {"One", "Three up", "To nine"}));
  EXPECT_LOGGED("ZEL_Core: [Warning] Property P1 has a VALUE qualifier that isn't a string!");
  EXPECT_LOGGED("ZEL_Core: [Warning] Property P2 has a VALUEMAP qualifier that isn't a string!");
  EXPECT_LOGGED(
      "ZEL_Core: [Warning] Property P3 has VALUE and VALUEMAP qualifiers that aren't the same "
      "size!");
  EXPECT_LOGGED("ZEL_Core: [Warning] Property P4 has a .. VALUEMAP entry after another entry "
                "that ends with ..!");
  EXPECT_LOGGED("ZEL_Core: [Warning] Property P5 has a ..<value> VALUEMAP entry after another "
                "entry that ends with ..!");
  EXPECT_EQ(5u, LoggedLines().size());
  // NULL values are not looked up, so a faulty map stays silent for them.
  Show(NullOf(TType::kUint32), {{"Values", numbers}});
  EXPECT_EQ(5u, LoggedLines().size());

  const TCIMPropertyDecl& decl =
      Declaration(TCIMValue(0u), {{"ValueMap", StringArray({"2..", "..5"})},
                                  {"Values", StringArray({"a", "b"})}}, "Faulty");
  TCIMProperty property(decl, TCIMValue(3u));
  std::vector<TCIMPropertyImpl::TValueMapEntry> entries;
  std::string error;
  EXPECT_FALSE(property.GetBody()->BuildValueMapEntryArray(entries, error));
  EXPECT_EQ("Property Faulty has a ..<value> VALUEMAP entry after another entry that ends with ..!",
            error);
  EXPECT_TRUE(entries.empty());
}

TEST_F(DisplayTest, ArraysShowElementByElement) {
  TQualifiers mapped = {{"ValueMap", StringArray({"1", "3..5"})},
                        {"Values", StringArray({"One", "Three to five"})},
                        {"BASE", TCIMValue((unsigned char)16)}};
  TCIMValue codes = Uint16Array({1, 4, 31});
  TCIMProperty property(Declaration(codes, mapped), codes);
  EXPECT_EQ((TTexts{"One", "Three to five", "1F"}), property.ToStringVector());
  // The whole array in one text is not mapped.
  EXPECT_EQ("{ 1, 4, 1F }", property.ToString());
  EXPECT_EQ((TTexts{"1", "4", "1F"}), property.GetBody()->ToStringVectorWithBase());

  TCIMValue sizes(TType(TType::kUint64), 0, {TCIMValue(1536ul), TCIMValue(12ul)});
  TCIMProperty sized(Declaration(sizes, {{"UNITS", TCIMValue("Bytes")}}), sizes);
  EXPECT_EQ((TTexts{"1.5 KiloBytes", "12 Bytes"}), sized.ToStringVector());
  EXPECT_EQ((TTexts{"1536", "12"}), sized.GetBody()->ToStringVectorWithBase());

  // NULL elements take the NULL text; a NULL array has no elements; empty is empty.
  TCIMValue holes(TType(TType::kUint32), 0, {TCIMValue(2u), NullOf(TType::kUint32)});
  TCIMProperty holed(Declaration(holes, {{"NULLDISPLAY", TCIMValue("?")}}), holes);
  EXPECT_EQ((TTexts{"2", "?"}), holed.ToStringVector());
  EXPECT_EQ((TTexts{"2", "?"}), holed.GetBody()->ToStringVectorWithBase());
  TCIMValue none = NullOf(static_cast<TType::ECIMType>(TType::kUint32 | TType::kArray));
  TCIMProperty nulled(Declaration(none, {{"NULLDISPLAY", TCIMValue("?")}}), none);
  EXPECT_EQ(TTexts{}, nulled.ToStringVector());
  EXPECT_EQ(TTexts{}, nulled.GetBody()->ToStringVectorWithBase());
  EXPECT_EQ("?", nulled.ToString());
  TCIMValue empty(TType(TType::kString), 0, std::vector<TCIMValue>());
  EXPECT_EQ(TTexts{}, TCIMProperty(Declaration(empty, {}), empty).ToStringVector());

  // A scalar gives its one text.
  TCIMProperty scalar(Declaration(TCIMValue(3u), mapped), TCIMValue(3u));
  EXPECT_EQ(TTexts{"Three to five"}, scalar.ToStringVector());
  EXPECT_EQ(TTexts{"3"}, scalar.GetBody()->ToStringVectorWithBase());
}

TEST_F(DisplayTest, PreviousValuesUseTheSameRules) {
  TQualifiers qualifiers = {{"UNITS", TCIMValue("Bytes")}, {"NULLDISPLAY", TCIMValue("gone")},
                            {"BASE", TCIMValue((unsigned char)16)}};
  TCIMProperty property(Declaration(TCIMValue(0u), qualifiers), TCIMValue(2048u));
  // Before a previous value is set, it is the current one.
  EXPECT_EQ("2 KiloBytes", property.PrevToString());
  EXPECT_EQ(TTexts{"2 KiloBytes"}, property.PrevToStringVector());
  property.SetPrevValue(TCIMValue(1536u));
  EXPECT_EQ("2 KiloBytes", property.ToString());
  EXPECT_EQ("1.5 KiloBytes", property.PrevToString());
  EXPECT_EQ(TTexts{"600"}, property.GetBody()->PrevToStringVectorWithBase());
  property.SetPrevValue();
  EXPECT_EQ("gone", property.PrevToString());
  EXPECT_EQ(TTexts{"gone"}, property.GetBody()->PrevToStringVectorWithBase());
  // A NULL previous value of another type is the NULL text too.
  property.SetPrevValue(NullOf(TType::kString));
  EXPECT_EQ("gone", property.PrevToString());

  TCIMValue before = Uint16Array({1, 2});
  TCIMValue now = Uint16Array({2});
  TCIMProperty codes(Declaration(now, {{"Values", StringArray({"Zero", "One", "Two"})}}), now);
  codes.SetPrevValue(before);
  EXPECT_EQ((TTexts{"One", "Two"}), codes.PrevToStringVector());
  EXPECT_EQ(TTexts{"Two"}, codes.ToStringVector());
  EXPECT_EQ((TTexts{"1", "2"}), codes.GetBody()->PrevToStringVectorWithBase());
  EXPECT_EQ("{ 1, 2 }", codes.PrevToString());
}

} // namespace
