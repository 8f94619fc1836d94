// TCIMValue: types and their names, strict access, parsing, text, arrays, comparison, copies.
#include "ZelTest.h"

#include "TCIMClass.h"
#include "TCIMDateTime.h"
#include "TCIMValue.h"
#include "TContainer.h"
#include "ScopedTimeZone.h"

#include <climits>
#include <cmath>
#include <sstream>
#include <utility>

typedef TCIMValue::TCIMType TCIMType;

namespace {

// Values only point to their classes: real ones, never registered.
class ValueTest : public ZelTest {
protected:
  TCIMValue Parse(TCIMType type, std::string text) { return TCIMValue(type, text, fContainer); }

  // Stream extraction itself is the reference: every odd text must read the same.
  template <class Native, class Read = Native>
  void ExpectReadAsStream(TCIMType type, std::string const& text) {
    std::istringstream in(text);
    Read expected = Read();
    in >> std::boolalpha >> expected;
    EXPECT_EQ(static_cast<Native>(Parse(type, text)), static_cast<Native>(expected))
        << "type " << type << " text '" << text << "'";
  }

  TContainer fContainer;
  TCIMClass fOne{fContainer, "One", nullptr};
  TCIMClass fTwo{fContainer, "Two", nullptr};
  TCIMClass fThree{fContainer, "Three", nullptr};
};

std::vector<TCIMValue> Elements(std::initializer_list<TCIMValue> values) { return values; }

TCIMValue U8(int n) { return TCIMValue(static_cast<unsigned char>(n)); }
TCIMValue S16(int n) { return TCIMValue(static_cast<short>(n)); }

} // namespace

TEST_F(ValueTest, EachNativeTypeHasItsCIMTypeNameOneAccessorAndItsTexts) {
  struct Row {
    TCIMValue value;
    char const* type;
    char const* decimal;
    char const* hex; // Null where radices 16 and 8 are refused.
  };
  Row rows[] = {
      {TCIMValue(true), "boolean", "true", "true"},
      {U8(65), "uint8", "65", "41"}, // A number, never a character.
      {TCIMValue(static_cast<signed char>(-128)), "sint8", "-128", nullptr},
      {TCIMValue(static_cast<unsigned short>(65535)), "uint16", "65535", "FFFF"},
      {S16(-300), "sint16", "-300", nullptr},
      {TCIMValue(4000000000u), "uint32", "4000000000", "EE6B2800"},
      {TCIMValue(-7), "sint32", "-7", nullptr},
      {TCIMValue(~0ul), "uint64", "18446744073709551615", "FFFFFFFFFFFFFFFF"},
      {TCIMValue(LONG_MIN), "sint64", "-9223372036854775808", nullptr},
      {TCIMValue(0.1f), "real32", "0.1", nullptr},
      {TCIMValue(1e20), "real64", "1e+20", nullptr},
      {TCIMValue(std::string("M \"x\"")), "string", "M \"x\"", "M \"x\""},
      {TCIMValue(TCIMDateTime(1, 2, 3, 4, 5)), "datetime", "00000001020304.000005:000",
       "00000001020304.000005:000"},
  };
  for (Row& row : rows) {
    SCOPED_TRACE(row.type);
    EXPECT_EQ(row.value.GetType().ToString(), row.type);
    EXPECT_EQ(TCIMType(std::string(row.type)), row.value.GetType());
    EXPECT_EQ(row.value.ToString(10), row.decimal);
    EXPECT_TRUE(Parse(row.value.GetType(), row.decimal) == row.value); // Text reads back.
    if (row.hex)
      EXPECT_EQ(row.value.ToString(16), row.hex);
    else
      EXPECT_ZEL_THROW(row.value.ToString(16), zelStatusNotSupported);
    if (row.value.GetType() <= TCIMType::kReal64) // Booleans too refuse other radices.
      EXPECT_ZEL_THROW(row.value.ToString(2), zelStatusNotSupported);
  }
  EXPECT_EQ(TCIMValue(255u).ToString(8), "377");
  // Names read case-insensitively and print without the array bit.
  EXPECT_EQ(TCIMType("UINT16"), TCIMType::kUint16);
  for (char const* bad : {"char", "reference", "uint8 ", "", "\xc9uint8"})
    EXPECT_ZEL_THROW(TCIMType{std::string(bad)}, zelStatusTypeMismatch);
  EXPECT_EQ(TCIMType(TCIMType::kChar).ToString(), "char");
  EXPECT_ZEL_THROW(TCIMType().ToString(), zelStatusTypeMismatch);
  std::ostringstream out;
  out << TCIMType(static_cast<TCIMType::ECIMType>(TCIMType::kString | TCIMType::kArray));
  EXPECT_EQ(out.str(), "string");

  // Access is strict: only the accessor of the exact type answers, with no widening or
  // narrowing (one accessor stands for the others made the same way).
  TCIMValue byte = U8(200), wide(LONG_MIN), text("x");
  EXPECT_EQ(static_cast<unsigned char>(byte), 200);
  EXPECT_EQ(static_cast<long>(wide), LONG_MIN);
  EXPECT_EQ(static_cast<std::string>(text), "x");
  EXPECT_ZEL_THROW(static_cast<unsigned int>(byte), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(static_cast<int>(wide), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(static_cast<std::string>(wide), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW((void)static_cast<std::vector<TCIMValue>&>(text), zelStatusTypeMismatch);
}

TEST_F(ValueTest, NullValuesKeepTheirTypeAndAreReportedBeforeIt) {
  TCIMValue scalar(TCIMType::kUint8, 0), array(TCIMType::kUint8, 5);
  EXPECT_EQ(array.GetType(), 18);
  EXPECT_EQ(array.GetMaxArraySize(), 5u);
  EXPECT_TRUE(TCIMValue(TCIMType::kReference, 0).IsReference());
  EXPECT_FALSE(TCIMValue(TCIMType::kReference, 3).IsReference());

  EXPECT_ZEL_THROW(static_cast<unsigned char>(scalar), zelStatusValueIsNULL);
  EXPECT_ZEL_THROW(static_cast<int>(TCIMValue(TCIMType::kString, 0)), zelStatusValueIsNULL);
  EXPECT_ZEL_THROW((void)static_cast<std::vector<TCIMValue>&>(array), zelStatusValueIsNULL);
  EXPECT_ZEL_THROW(scalar.ToString(2), zelStatusValueIsNULL);
}

TEST_F(ValueTest, ArraysPrintTheirElementsAndRefuseForeignOnes) {
  EXPECT_EQ(TCIMValue(TCIMType::kUint8, 0, Elements({})).ToString(10), "{  }");
  TCIMValue wide(TCIMType::kUint32, 1, Elements({255u, 16u}));
  EXPECT_EQ(wide.ToString(16), "{ FF, 10 }");
  std::vector<TCIMValue>& elements = wide; // Modifiable in place.
  elements[1] = TCIMValue(9u);
  elements.push_back(TCIMValue(10u));
  EXPECT_EQ(wide.ToString(10), "{ 255, 9, 10 }");
  EXPECT_ZEL_THROW(static_cast<unsigned int>(wide), zelStatusTypeMismatch);

  TCIMValue value;
  EXPECT_ZEL_THROW(value.Set(TCIMType::kUint8, 3, Elements({U8(1), TCIMValue(1.5f), "x"})),
                   zelStatusInvalidProperty);
  EXPECT_EQ(LoggedLines(), std::vector<std::string>{"ZEL_Core: [Error] ERROR: Attempting to "
                                                    "create array of type uint8, but element "
                                                    "is of type real32."});
  // The value keeps the new array body.
  EXPECT_EQ(value.GetMaxArraySize(), 3u);
  EXPECT_EQ(static_cast<std::vector<TCIMValue>&>(value).size(), 3u);
}

TEST_F(ValueTest, ScalarSettersReplaceTypeAndBodyButKeepClassAndSize) {
  TCIMClass& someClass = fOne;
  TCIMValue value(TCIMType::kUint8, 4);
  value.SetReferencedClass(someClass);
  value.Set(TCIMDateTime(0, 0, 0, 1, 0));
  EXPECT_EQ(value.GetType(), TCIMType::kDateTime);
  EXPECT_EQ(value.GetReferencedClass(), &someClass);
  EXPECT_EQ(value.GetMaxArraySize(), 4u);

  // The class may only be set while the value is NULL, and stays as it was.
  EXPECT_ZEL_THROW(value.SetReferencedClass(fTwo),
                   zelStatusInvalidOpSequence);
  EXPECT_EQ(value.GetReferencedClass(), &someClass);

  // SetNullValue takes the size only for an array type.
  value.SetNullValue(TCIMType::kUint16, 9);
  EXPECT_TRUE(value.IsNull());
  EXPECT_EQ(value.GetType(), TCIMType::kUint16);
  EXPECT_EQ(value.GetMaxArraySize(), 4u);
  value.SetNullValue(static_cast<TCIMType::ECIMType>(TCIMType::kUint16 | TCIMType::kArray), 9);
  EXPECT_EQ(value.GetMaxArraySize(), 9u);
}

// Numbers and booleans: below. Strings are kept whole; other types are refused.
TEST_F(ValueTest, TextOfAStringIsKeptWholeOtherTypesAreRefused) {
  EXPECT_EQ(Parse(TCIMType::kString, " a b ").ToString(10), " a b ");
  EXPECT_ZEL_THROW(Parse(TCIMType::kChar, "1"), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(Parse(static_cast<TCIMType::ECIMType>(TCIMType::kUint8 | TCIMType::kArray), "1"),
                   zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(Parse(TCIMType::kDateTime, "1"), zelStatusInvalidDateTime);
}

TEST_F(ValueTest, NumbersAndBooleansReadExactlyAsStreamExtractionReadsThem) {
  char const* texts[] = {
      "", " ", "x", "+", "-", "+-1", "--1", "- 1", " \t\n\v\f\r42", "42abc", "+42", "007",
      "0x10", "-0", "255", "256", "-1", "-128", "-129", "32767", "32768", "-32769", "65535",
      "65536", "-65535", "-65536", "2147483647", "2147483648", "-2147483649", "4294967295",
      "4294967296", "-4294967295", "9223372036854775807", "9223372036854775808",
      "-9223372036854775808", "-9223372036854775809", "18446744073709551615",
      "18446744073709551616", "-18446744073709551615", "99999999999999999999999",
      "true", "false", "TRUE", " true", "truex", "tru", "t", "f", "1", "0",
      "12.5", ".5", "-.5", "5.", ".", "-.", "1e", "1e+", "1e-", "e5", "1e3", "1E+3x", "1.5e-3",
      "1e5e3", "1.2.3", "1.e2", "00.25", "0.000001", "inf", "-inf", "nan", "0x1p3", "1,5",
      "3.40282347e+38", "3.5e38", "-3.5e38", "1e-46", "1e-40", "1e308", "1.8e308", "-1.8e308",
      "1e-400", "4.9e-324", "1e-310", "123456789012345678901234567890.5e-20"};
  for (char const* text : texts) {
    ExpectReadAsStream<bool>(TCIMType::kBoolean, text);
    ExpectReadAsStream<unsigned char, unsigned int>(TCIMType::kUint8, text);
    ExpectReadAsStream<signed char, int>(TCIMType::kSint8, text);
    ExpectReadAsStream<unsigned short>(TCIMType::kUint16, text);
    ExpectReadAsStream<short>(TCIMType::kSint16, text);
    ExpectReadAsStream<unsigned int>(TCIMType::kUint32, text);
    ExpectReadAsStream<int>(TCIMType::kSint32, text);
    ExpectReadAsStream<unsigned long>(TCIMType::kUint64, text);
    ExpectReadAsStream<long>(TCIMType::kSint64, text);
    ExpectReadAsStream<float>(TCIMType::kReal32, text);
    ExpectReadAsStream<double>(TCIMType::kReal64, text);
  }
}

TEST_F(ValueTest, EqualityAndOrderGoByNullThenTypeThenBody) {
  ScopedTimeZone zone("UTC0");
  TCIMValue toOne(TCIMType::kReference, 0), toOther(TCIMType::kReference, 0),
      toOneAgain(TCIMType::kReference, 0);
  toOne.SetReferencedClass(fOne);
  toOneAgain.SetReferencedClass(fOne);
  toOther.SetReferencedClass(fTwo);
  TCIMValue pair(TCIMType::kSint16, 0, Elements({S16(1), S16(2)}));
  TCIMValue nan(std::nan("")), withNul(std::string("a\0b", 3));
  struct Row {
    char const* what;
    TCIMValue a, b;
    bool equal;
    int less; // -1: the pair cannot be ordered.
  };
  Row const rows[] = {
      {"NULLs of one type", TCIMValue(TCIMType::kUint8, 0), TCIMValue(TCIMType::kUint8, 0), true,
       0},
      {"NULLs of two types", TCIMValue(TCIMType::kUint8, 0), TCIMValue(TCIMType::kUint16, 0), false,
       0},
      {"NULL arrays of two bounds", TCIMValue(TCIMType::kUint8, 4), TCIMValue(TCIMType::kUint8, 5),
       false, 0},
      {"NULL references to one class", toOne, toOneAgain, true, 0},
      {"NULL references to two classes", toOne, toOther, false, 0},
      {"NULL before a value", TCIMValue(TCIMType::kUint8, 0), U8(0), false, 1},
      {"uint8 before any string", U8(255), TCIMValue(""), false, 1},
      {"sint32 after uint32", TCIMValue(1), TCIMValue(1u), false, 0},
      {"uint8 unsigned", U8(100), U8(200), false, 1},
      {"sint8 signed", TCIMValue(static_cast<signed char>(-1)),
       TCIMValue(static_cast<signed char>(0)), false, 1},
      {"sint64 signed, full width", TCIMValue(LONG_MIN), TCIMValue(1l << 40), false, 1},
      {"real64", TCIMValue(2.0), TCIMValue(-3.0), false, 0},
      {"NaN", nan, nan, false, 0},
      {"signed zeros", TCIMValue(0.0), TCIMValue(-0.0), true, 0},
      {"strings by case", TCIMValue("abc"), TCIMValue("ABC"), false, 0},
      {"unsigned bytes", TCIMValue("a"), TCIMValue("\xff"), false, 1},
      {"bytes before length", TCIMValue("ab"), TCIMValue("b"), false, 1},
      {"embedded NUL", withNul, TCIMValue("a"), false, 0},
      {"timestamps as instants", TCIMValue(TCIMDateTime("20031107153000.000000+000")),
       TCIMValue(TCIMDateTime("20031107163000.000000+060")), true, 0},
      {"arrays whatever their bounds", pair,
       TCIMValue(TCIMType::kSint16, 7, Elements({S16(1), S16(2)})), true, -1},
      {"other elements", pair, TCIMValue(TCIMType::kSint16, 0, Elements({S16(1)})), false, -1},
  };
  for (Row const& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(row.a == row.b, row.equal);
    if (row.less < 0)
      EXPECT_ZEL_THROW(row.a < row.b, zelStatusNotImplemented);
    else
      EXPECT_EQ(row.a < row.b, row.less == 1);
  }
  // The derived operators: NaN is neither equal nor less, so it counts as greater, both ways.
  TCIMValue half(0.5);
  EXPECT_TRUE(nan > half && half > nan && nan >= half && nan != half);
  EXPECT_FALSE(nan <= half);
}

TEST_F(ValueTest, CopiesAreDeepUnlessTheSourceIsEqualAndMayComeFromTheOwnElements) {
  TCIMValue original(TCIMType::kString, 0, Elements({"a", "b"}));
  TCIMValue copy(original), assigned;
  assigned = original;
  static_cast<std::vector<TCIMValue>&>(original)[0].Set("changed");
  assigned = assigned;
  EXPECT_EQ(copy.ToString(10), "{ a, b }");
  EXPECT_EQ(assigned.ToString(10), "{ a, b }");

  TCIMValue reference(TCIMType::kReference, 0);
  reference.SetReferencedClass(fThree);
  EXPECT_EQ(TCIMValue(reference).GetReferencedClass(), &fThree);

  // An equal source leaves the target's class and bound as they were.
  TCIMValue target(TCIMType::kUint8, 5);
  target.SetReferencedClass(fOne);
  target.Set(TCIMType::kUint8, 5, Elements({U8(1)}));
  target = TCIMValue(TCIMType::kUint8, 9, Elements({U8(1)}));
  EXPECT_EQ(target.GetMaxArraySize(), 5u);
  EXPECT_EQ(target.GetReferencedClass(), &fOne);
  target = TCIMValue(TCIMType::kUint8, 9, Elements({U8(2)}));
  EXPECT_EQ(target.GetMaxArraySize(), 9u);
  EXPECT_EQ(target.ToString(10), "{ 2 }");

  // Untyped and char values cannot be copied; the target is left an untyped NULL.
  EXPECT_ZEL_THROW(target = TCIMValue(), zelStatusTypeMismatch);
  EXPECT_TRUE(target.IsNull());
  EXPECT_EQ(target.GetType(), TCIMType::kNull);
  TCIMValue charValue(TCIMType::kChar, 0);
  EXPECT_ZEL_THROW(TCIMValue copy(charValue), zelStatusTypeMismatch);
  TCIMValue charArray(TCIMType::kChar, 2);
  EXPECT_EQ(TCIMValue(charArray).GetMaxArraySize(), 2u); // An array copies its bound only.

  // A value can be set from its own elements.
  TCIMValue value(TCIMType::kUint8, 0, Elements({U8(1), U8(2)}));
  value.Set(TCIMType::kUint8, 5, static_cast<std::vector<TCIMValue>&>(value));
  EXPECT_EQ(value.ToString(10), "{ 1, 2 }");
  TCIMValue same(value);
  value = static_cast<std::vector<TCIMValue>&>(value)[1];
  EXPECT_EQ(static_cast<unsigned char>(value), 2);
  same = std::move(static_cast<std::vector<TCIMValue>&>(same)[0]);
  EXPECT_EQ(static_cast<unsigned char>(same), 1);
}
