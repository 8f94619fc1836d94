// TCIMValue: types and their names, strict access, parsing, text, arrays, comparison, copies.
#include "ZelTest.h"

#include "ILogger.h"
#include "TCIMDateTime.h"
#include "TCIMValue.h"
#include "TRootObject.h"
#include "helpers.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <utility>

typedef TCIMValue::TCIMType T;

namespace {

class ValueTest : public ZelTest {};

TCIMValue Parse(T type, std::string text) {
  return TCIMValue(type, text, Placeholder<TContainer>(0));
}

std::vector<TCIMValue> Elements(std::initializer_list<TCIMValue> values) { return values; }

} // namespace

TEST(ValueTypeTest, NamesReadCaseInsensitivelyAndPrintWithoutTheArrayBit) {
  EXPECT_EQ(T("UINT16"), T::kUint16);
  EXPECT_EQ(T("Boolean"), T::kBoolean);
  EXPECT_EQ(T("DateTime"), T::kDateTime);
  const char* const names[] = {"uint8",  "sint8",  "uint16", "sint16", "uint32",
                               "sint32", "uint64", "sint64", "real32", "real64",
                               "string", "boolean", "datetime"};
  const T::ECIMType types[] = {T::kUint8,  T::kSint8,  T::kUint16, T::kSint16, T::kUint32,
                               T::kSint32, T::kUint64, T::kSint64, T::kReal32, T::kReal64,
                               T::kString, T::kBoolean, T::kDateTime};
  for (int i = 0; i < 13; ++i) {
    EXPECT_EQ(T(std::string(names[i])), types[i]) << names[i];
    EXPECT_EQ(T(types[i]).ToString(), names[i]);
  }
  EXPECT_ZEL_THROW(T("char"), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(T("reference"), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(T("uint8 "), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(T(""), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(T("\xc9uint8"), zelStatusTypeMismatch);

  EXPECT_EQ(T(T::kChar).ToString(), "char");
  EXPECT_EQ(T(T::kReference).ToString(), "reference");
  EXPECT_EQ(T(static_cast<T::ECIMType>(T::kUint32 | T::kArray)).ToString(), "uint32");
  EXPECT_ZEL_THROW(T().ToString(), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(T(T::kArray).ToString(), zelStatusTypeMismatch);
  EXPECT_EQ(T(static_cast<T::ECIMType>(T::kChar | T::kArray)).ToString(), "char");

  std::ostringstream out;
  out << T(T::kReal64) << "|" << T(static_cast<T::ECIMType>(T::kString | T::kArray));
  EXPECT_EQ(out.str(), "real64|string");
}

TEST(ValueTypeTest, EachConstructorGivesItsType) {
  TCIMValue none;
  EXPECT_EQ(none.GetType(), T::kNull);
  EXPECT_TRUE(none.IsNull());
  EXPECT_EQ(none.GetReferencedClass(), nullptr);
  EXPECT_EQ(none.GetMaxArraySize(), 0u);

  EXPECT_EQ(TCIMValue(true).GetType(), 1);
  EXPECT_EQ(TCIMValue(static_cast<unsigned char>(1)).GetType(), 2);
  EXPECT_EQ(TCIMValue(static_cast<signed char>(1)).GetType(), 3);
  EXPECT_EQ(TCIMValue(static_cast<unsigned short>(1)).GetType(), 4);
  EXPECT_EQ(TCIMValue(static_cast<short>(1)).GetType(), 5);
  EXPECT_EQ(TCIMValue(1u).GetType(), 6);
  EXPECT_EQ(TCIMValue(1).GetType(), 7);
  EXPECT_EQ(TCIMValue(1ul).GetType(), 8);
  EXPECT_EQ(TCIMValue(1l).GetType(), 9);
  EXPECT_EQ(TCIMValue(1.0f).GetType(), 10);
  EXPECT_EQ(TCIMValue(1.0).GetType(), 11);
  EXPECT_EQ(TCIMValue(std::string("x")).GetType(), 13);
  EXPECT_EQ(TCIMValue("x").GetType(), 13);
  EXPECT_EQ(TCIMValue(TCIMDateTime()).GetType(), 14);
  EXPECT_FALSE(TCIMValue(1).IsNull());

  TCIMValue scalar(T::kUint8, 0);
  EXPECT_EQ(scalar.GetType(), T::kUint8);
  EXPECT_TRUE(scalar.IsNull());
  EXPECT_FALSE(scalar.IsArray());
  TCIMValue array(T::kUint8, 5);
  EXPECT_EQ(array.GetType(), 18);
  EXPECT_TRUE(array.IsArray());
  EXPECT_EQ(array.GetMaxArraySize(), 5u);
  EXPECT_TRUE(array.IsNull());

  EXPECT_TRUE(TCIMValue(T::kReference, 0).IsReference());
  TCIMValue references(T::kReference, 3);
  EXPECT_FALSE(references.IsReference());
  EXPECT_TRUE(references.IsArray());
}

TEST(ValueAccessTest, AValueYieldsOnlyItsOwnNativeType) {
  TCIMValue small(static_cast<unsigned char>(5));
  EXPECT_EQ(static_cast<unsigned char>(small), 5);
  EXPECT_ZEL_THROW(static_cast<unsigned int>(small), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(static_cast<signed char>(small), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(static_cast<bool>(small), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(static_cast<std::string>(small), zelStatusTypeMismatch);

  EXPECT_EQ(static_cast<bool>(TCIMValue(true)), true);
  EXPECT_ZEL_THROW(static_cast<int>(TCIMValue(true)), zelStatusTypeMismatch);
  EXPECT_EQ(static_cast<signed char>(TCIMValue(static_cast<signed char>(-5))), -5);
  EXPECT_EQ(static_cast<unsigned short>(TCIMValue(static_cast<unsigned short>(65535))), 65535);
  EXPECT_EQ(static_cast<short>(TCIMValue(static_cast<short>(-300))), -300);
  EXPECT_ZEL_THROW(static_cast<unsigned short>(TCIMValue(static_cast<short>(3))),
                   zelStatusTypeMismatch);
  EXPECT_EQ(static_cast<unsigned int>(TCIMValue(4000000000u)), 4000000000u);
  EXPECT_EQ(static_cast<int>(TCIMValue(-7)), -7);
  EXPECT_ZEL_THROW(static_cast<long>(TCIMValue(-7)), zelStatusTypeMismatch);
  EXPECT_EQ(static_cast<unsigned long>(TCIMValue(~0ul)), ~0ul);
  EXPECT_EQ(static_cast<long>(TCIMValue(std::numeric_limits<long>::min())),
            std::numeric_limits<long>::min());
  EXPECT_EQ(static_cast<float>(TCIMValue(1.5f)), 1.5f);
  EXPECT_ZEL_THROW(static_cast<double>(TCIMValue(1.5f)), zelStatusTypeMismatch);
  EXPECT_EQ(static_cast<double>(TCIMValue(2.25)), 2.25);
  EXPECT_ZEL_THROW(static_cast<float>(TCIMValue(2.25)), zelStatusTypeMismatch);
  EXPECT_EQ(static_cast<std::string>(TCIMValue("text")), "text");
  EXPECT_ZEL_THROW(static_cast<TCIMDateTime>(TCIMValue("text")), zelStatusTypeMismatch);
  TCIMDateTime interval(1, 2, 3, 4, 5);
  EXPECT_EQ(static_cast<TCIMDateTime>(TCIMValue(interval)).ToString(),
            "00000001020304.000005:000");

  // NULL is reported before the type, even for the wrong type.
  EXPECT_ZEL_THROW(static_cast<unsigned char>(TCIMValue(T::kUint8, 0)), zelStatusValueIsNULL);
  EXPECT_ZEL_THROW(static_cast<int>(TCIMValue(T::kString, 0)), zelStatusValueIsNULL);
  EXPECT_ZEL_THROW(static_cast<bool>(TCIMValue()), zelStatusValueIsNULL);
}

TEST(ValueAccessTest, ArrayElementsAreReachableAndModifiableInPlace) {
  TCIMValue array(T::kUint16, 0,
                  Elements({static_cast<unsigned short>(1), static_cast<unsigned short>(2)}));
  std::vector<TCIMValue>& elements = array;
  ASSERT_EQ(elements.size(), 2u);
  elements[1] = TCIMValue(static_cast<unsigned short>(9));
  elements.push_back(TCIMValue(static_cast<unsigned short>(10)));
  EXPECT_EQ(array.ToString(10), "{ 1, 9, 10 }");

  TCIMValue scalar(3);
  EXPECT_ZEL_THROW((void)static_cast<std::vector<TCIMValue>&>(scalar), zelStatusTypeMismatch);
  TCIMValue nullArray(T::kUint16, 4);
  EXPECT_ZEL_THROW((void)static_cast<std::vector<TCIMValue>&>(nullArray), zelStatusValueIsNULL);
  EXPECT_ZEL_THROW(static_cast<unsigned short>(array), zelStatusTypeMismatch);
}

TEST(ValueSetTest, ScalarSettersReplaceTypeAndBodyButKeepClassAndSize) {
  TCIMClass& someClass = Placeholder<TCIMClass>(1);
  TCIMValue value(T::kUint8, 4);
  value.SetReferencedClass(someClass);
  value.Set(7u);
  EXPECT_EQ(value.GetType(), T::kUint32);
  EXPECT_EQ(static_cast<unsigned int>(value), 7u);
  EXPECT_EQ(value.GetReferencedClass(), &someClass);
  EXPECT_EQ(value.GetMaxArraySize(), 4u);
  value.Set("now a string");
  EXPECT_EQ(value.GetType(), T::kString);
  EXPECT_EQ(value.GetMaxArraySize(), 4u);
  value.Set(std::string("again"));
  value.Set(TCIMDateTime(0, 0, 0, 1, 0));
  EXPECT_EQ(value.GetType(), T::kDateTime);
  value.Set(static_cast<signed char>(-1));
  EXPECT_EQ(static_cast<signed char>(value), -1);

  // The class may only be set while the value is NULL, and stays as it was.
  TCIMClass& otherClass = Placeholder<TCIMClass>(2);
  EXPECT_ZEL_THROW(value.SetReferencedClass(otherClass), zelStatusInvalidOpSequence);
  EXPECT_EQ(value.GetReferencedClass(), &someClass);

  // SetNullValue takes the size only for an array type.
  value.SetNullValue(T::kUint16, 9);
  EXPECT_TRUE(value.IsNull());
  EXPECT_EQ(value.GetType(), T::kUint16);
  EXPECT_EQ(value.GetMaxArraySize(), 4u);
  value.SetNullValue(static_cast<T::ECIMType>(T::kUint16 | T::kArray), 9);
  EXPECT_EQ(value.GetMaxArraySize(), 9u);
  EXPECT_TRUE(value.IsArray());
  value.SetReferencedClass(otherClass);
  EXPECT_EQ(value.GetReferencedClass(), &otherClass);
}

TEST(ValueParseTest, TextIsReadByStreamExtractionOfTheType) {
  EXPECT_EQ(static_cast<bool>(Parse(T::kBoolean, " true")), true);
  EXPECT_EQ(static_cast<bool>(Parse(T::kBoolean, "false")), false);
  EXPECT_EQ(static_cast<unsigned char>(Parse(T::kUint8, "300")), 44); // Truncated to 8 bits.
  EXPECT_EQ(static_cast<unsigned char>(Parse(T::kUint8, "65")), 65);  // A number, not 'A'.
  EXPECT_EQ(static_cast<signed char>(Parse(T::kSint8, "200")), -56);
  EXPECT_EQ(static_cast<signed char>(Parse(T::kSint8, "-1")), -1);
  EXPECT_EQ(static_cast<unsigned short>(Parse(T::kUint16, "  65535xyz")), 65535);
  EXPECT_EQ(static_cast<short>(Parse(T::kSint16, "-32768")), -32768);
  EXPECT_EQ(static_cast<unsigned int>(Parse(T::kUint32, "4000000000")), 4000000000u);
  EXPECT_EQ(static_cast<int>(Parse(T::kSint32, "\t-12 34")), -12);
  EXPECT_EQ(static_cast<unsigned long>(Parse(T::kUint64, "18446744073709551615")), ~0ul);
  EXPECT_EQ(static_cast<long>(Parse(T::kSint64, "-9223372036854775808")),
            std::numeric_limits<long>::min());
  EXPECT_EQ(static_cast<float>(Parse(T::kReal32, "0.5")), 0.5f);
  EXPECT_EQ(static_cast<double>(Parse(T::kReal64, "2.5e3")), 2500.0);
  EXPECT_EQ(static_cast<std::string>(Parse(T::kString, " a b ")), " a b ");
  EXPECT_EQ(Parse(T::kDateTime, "20031107153000.000000-300").ToString(10),
            "20031107153000.000000-300");

  EXPECT_ZEL_THROW(Parse(T::kDateTime, "2003"), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(Parse(T::kNull, "1"), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(Parse(T::kChar, "c"), zelStatusTypeMismatch);
  EXPECT_ZEL_THROW(Parse(static_cast<T::ECIMType>(T::kUint8 | T::kArray), "1"),
                   zelStatusTypeMismatch);
}

TEST(ValueTextTest, NumbersPrintInTheRadicesTheirTypeAllows) {
  EXPECT_EQ(TCIMValue(255u).ToString(10), "255");
  EXPECT_EQ(TCIMValue(255u).ToString(16), "FF");
  EXPECT_EQ(TCIMValue(255u).ToString(8), "377");
  EXPECT_EQ(TCIMValue(static_cast<unsigned char>(65)).ToString(10), "65");
  EXPECT_EQ(TCIMValue(static_cast<unsigned char>(65)).ToString(16), "41");
  EXPECT_EQ(TCIMValue(static_cast<unsigned short>(0)).ToString(8), "0");
  EXPECT_EQ(TCIMValue(~0ul).ToString(16), "FFFFFFFFFFFFFFFF");
  EXPECT_EQ(TCIMValue(~0ul).ToString(10), "18446744073709551615");

  EXPECT_EQ(TCIMValue(-1).ToString(10), "-1");
  EXPECT_EQ(TCIMValue(static_cast<signed char>(-128)).ToString(10), "-128");
  EXPECT_EQ(TCIMValue(static_cast<short>(-300)).ToString(10), "-300");
  EXPECT_EQ(TCIMValue(std::numeric_limits<long>::min()).ToString(10), "-9223372036854775808");
  EXPECT_ZEL_THROW(TCIMValue(-1).ToString(16), zelStatusNotSupported);
  EXPECT_ZEL_THROW(TCIMValue(1l).ToString(8), zelStatusNotSupported);

  EXPECT_EQ(TCIMValue(3.14159265).ToString(10), "3.14159");
  EXPECT_EQ(TCIMValue(1e20).ToString(10), "1e+20");
  EXPECT_EQ(TCIMValue(0.1f).ToString(10), "0.1");
  EXPECT_EQ(TCIMValue(-2.5).ToString(10), "-2.5");
  EXPECT_ZEL_THROW(TCIMValue(2.5).ToString(16), zelStatusNotSupported);

  EXPECT_EQ(TCIMValue(true).ToString(16), "true");
  EXPECT_EQ(TCIMValue(true).ToString(8), "true");
  EXPECT_EQ(TCIMValue(false).ToString(10), "false");

  // The radix is checked first, for every numeric type.
  EXPECT_ZEL_THROW(TCIMValue(5u).ToString(2), zelStatusNotSupported);
  EXPECT_ZEL_THROW(TCIMValue(-5).ToString(2), zelStatusNotSupported);
  EXPECT_ZEL_THROW(TCIMValue(0.5).ToString(0), zelStatusNotSupported);
  EXPECT_ZEL_THROW(TCIMValue(true).ToString(2), zelStatusNotSupported);
}

TEST(ValueTextTest, OtherBodiesNullsAndArrays) {
  EXPECT_EQ(TCIMValue("Mixed Case, \"quoted\"").ToString(2), "Mixed Case, \"quoted\"");
  EXPECT_EQ(TCIMValue("").ToString(10), "");
  EXPECT_EQ(TCIMValue(TCIMDateTime("20031107153000.000000+000")).ToString(16),
            "20031107153000.000000+000");
  EXPECT_ZEL_THROW(TCIMValue(TCIMDateTime()).ToString(10), zelStatusInvalidDateTime);

  EXPECT_ZEL_THROW(TCIMValue(T::kUint8, 0).ToString(2), zelStatusValueIsNULL);
  EXPECT_ZEL_THROW(TCIMValue().ToString(10), zelStatusValueIsNULL);

  EXPECT_EQ(TCIMValue(T::kUint8, 0, Elements({})).ToString(10), "{  }");
  TCIMValue numbers(T::kUint8, 0,
                    Elements({static_cast<unsigned char>(1), static_cast<unsigned char>(2)}));
  EXPECT_EQ(numbers.ToString(10), "{ 1, 2 }");
  TCIMValue wide(T::kUint32, 0, Elements({255u, 16u}));
  EXPECT_EQ(wide.ToString(16), "{ FF, 10 }");
  EXPECT_EQ(wide.ToString(8), "{ 377, 20 }");
  TCIMValue words(T::kString, 0, Elements({"a", "b c"}));
  EXPECT_EQ(words.ToString(10), "{ a, b c }");
  TCIMValue signedArray(T::kSint32, 0, Elements({-1}));
  EXPECT_ZEL_THROW(signedArray.ToString(16), zelStatusNotSupported);
  EXPECT_ZEL_THROW(TCIMValue(T::kUint8, 3).ToString(10), zelStatusValueIsNULL);
}

TEST_F(ValueTest, ArrayElementsMustHaveTheElementType) {
  TCIMValue array(T::kUint8, 1,
                  Elements({static_cast<unsigned char>(1), static_cast<unsigned char>(2)}));
  EXPECT_EQ(array.GetType(), 18);
  EXPECT_EQ(array.GetMaxArraySize(), 1u); // Not checked against the elements.
  TCIMValue again(static_cast<T::ECIMType>(T::kUint8 | T::kArray), 0, Elements({}));
  EXPECT_EQ(again.GetType(), 18);
  EXPECT_TRUE(LoggedLines().empty());

  TCIMValue value;
  EXPECT_ZEL_THROW(value.Set(T::kUint8, 3,
                             Elements({static_cast<unsigned char>(1),
                                       static_cast<unsigned short>(2), "x"})),
                   zelStatusInvalidProperty);
  EXPECT_EQ(LoggedLines(), std::vector<std::string>{"ZEL_Core: [Error] ERROR: Attempting to "
                                                    "create array of type uint8, but element "
                                                    "is of type uint16."});
  // The value keeps the new array body.
  EXPECT_FALSE(value.IsNull());
  EXPECT_EQ(value.GetType(), 18);
  EXPECT_EQ(value.GetMaxArraySize(), 3u);
  EXPECT_EQ(static_cast<std::vector<TCIMValue>&>(value).size(), 3u);

  // Logged at severity error: kept with the threshold at its lowest.
  TRootObject::GetCoreLogger()->SetLogThreshold(zelLogError);
  EXPECT_ZEL_THROW(TCIMValue(T::kString, 0, Elements({"a", 1.5})), zelStatusInvalidProperty);
  EXPECT_LOGGED("ZEL_Core: [Error] ERROR: Attempting to create array of type string, but "
                "element is of type real64.");
}

TEST(ValueEqualityTest, NullsTypesAndBodies) {
  EXPECT_TRUE(TCIMValue(T::kUint8, 0) == TCIMValue(T::kUint8, 0));
  EXPECT_FALSE(TCIMValue(T::kUint8, 0) == TCIMValue(T::kUint16, 0));
  EXPECT_TRUE(TCIMValue() == TCIMValue());
  EXPECT_TRUE(TCIMValue(T::kUint8, 4) == TCIMValue(T::kUint8, 4));
  EXPECT_FALSE(TCIMValue(T::kUint8, 4) == TCIMValue(T::kUint8, 5));
  TCIMValue toOne(T::kReference, 0), toOther(T::kReference, 0), toOneAgain(T::kReference, 0);
  toOne.SetReferencedClass(Placeholder<TCIMClass>(1));
  toOneAgain.SetReferencedClass(Placeholder<TCIMClass>(1));
  toOther.SetReferencedClass(Placeholder<TCIMClass>(2));
  EXPECT_TRUE(toOne == toOneAgain);
  EXPECT_FALSE(toOne == toOther);

  EXPECT_FALSE(TCIMValue(T::kUint8, 0) == TCIMValue(static_cast<unsigned char>(0)));
  EXPECT_FALSE(TCIMValue(static_cast<unsigned char>(0)) == TCIMValue(T::kUint8, 0));
  EXPECT_FALSE(TCIMValue(static_cast<unsigned char>(1)) ==
               TCIMValue(static_cast<unsigned short>(1)));
  EXPECT_FALSE(TCIMValue(1) == TCIMValue(1u));
  EXPECT_TRUE(TCIMValue(static_cast<signed char>(-1)) == TCIMValue(static_cast<signed char>(-1)));
  EXPECT_TRUE(TCIMValue(true) == TCIMValue(true));
  EXPECT_FALSE(TCIMValue(true) == TCIMValue(false));
  EXPECT_TRUE(TCIMValue(~0ul) == TCIMValue(~0ul));
  EXPECT_FALSE(TCIMValue(1l << 40) == TCIMValue(1l << 41));

  TCIMValue nan(std::nan(""));
  EXPECT_FALSE(nan == nan);
  EXPECT_TRUE(nan != nan);
  EXPECT_FALSE(TCIMValue(std::nanf("")) == TCIMValue(std::nanf("")));
  EXPECT_TRUE(TCIMValue(0.0) == TCIMValue(-0.0));
  EXPECT_TRUE(TCIMValue(0.1f) == TCIMValue(0.1f));

  EXPECT_FALSE(TCIMValue("abc") == TCIMValue("ABC"));
  EXPECT_FALSE(TCIMValue(std::string("a\0b", 3)) == TCIMValue("a"));
  EXPECT_TRUE(TCIMValue(std::string("a\0b", 3)) == TCIMValue(std::string("a\0b", 3)));

  // Timestamps are equal as instants; a timestamp refuses to meet an interval.
  ScopedTimeZone zone("UTC0");
  EXPECT_TRUE(TCIMValue(TCIMDateTime("20031107153000.000000+000")) ==
              TCIMValue(TCIMDateTime("20031107163000.000000+060")));
  EXPECT_ZEL_THROW(TCIMValue(TCIMDateTime("20031107153000.000000+000")) ==
                       TCIMValue(TCIMDateTime(1, 0, 0, 0, 0)),
                   zelStatusInvalidDateTime);
}

TEST(ValueEqualityTest, ArraysCompareElementByElement) {
  TCIMValue a(T::kSint16, 0, Elements({static_cast<short>(1), static_cast<short>(2)}));
  TCIMValue same(T::kSint16, 7, Elements({static_cast<short>(1), static_cast<short>(2)}));
  TCIMValue shorter(T::kSint16, 0, Elements({static_cast<short>(1)}));
  TCIMValue other(T::kSint16, 0, Elements({static_cast<short>(1), static_cast<short>(3)}));
  TCIMValue otherType(T::kUint16, 0,
                      Elements({static_cast<unsigned short>(1), static_cast<unsigned short>(2)}));
  EXPECT_TRUE(a == same); // The bound only matters between NULL arrays.
  EXPECT_FALSE(a == shorter);
  EXPECT_FALSE(shorter == a);
  EXPECT_FALSE(a == other);
  EXPECT_FALSE(a == otherType);
  EXPECT_FALSE(a == TCIMValue(static_cast<short>(1)));
  EXPECT_TRUE(TCIMValue(T::kString, 0, Elements({})) == TCIMValue(T::kString, 0, Elements({})));
}

TEST(ValueOrderTest, NullFirstThenTypeThenValue) {
  TCIMValue null8(T::kUint8, 0);
  EXPECT_TRUE(null8 < TCIMValue(static_cast<unsigned char>(0)));
  EXPECT_TRUE(TCIMValue() < TCIMValue(""));
  EXPECT_FALSE(TCIMValue(static_cast<unsigned char>(0)) < null8);
  EXPECT_FALSE(null8 < TCIMValue(T::kString, 0));
  EXPECT_FALSE(TCIMValue(T::kString, 0) < null8);

  EXPECT_TRUE(TCIMValue(static_cast<unsigned char>(255)) < TCIMValue(""));
  EXPECT_FALSE(TCIMValue("") < TCIMValue(static_cast<unsigned char>(255)));
  EXPECT_TRUE(TCIMValue(5) < TCIMValue(-1e300)); // sint32 (7) before real64 (11).
  EXPECT_FALSE(TCIMValue(-1e300) < TCIMValue(5));

  EXPECT_TRUE(TCIMValue(false) < TCIMValue(true));
  EXPECT_TRUE(TCIMValue(static_cast<unsigned char>(100)) <
              TCIMValue(static_cast<unsigned char>(200)));
  EXPECT_TRUE(TCIMValue(static_cast<signed char>(-1)) < TCIMValue(static_cast<signed char>(0)));
  EXPECT_TRUE(TCIMValue(static_cast<unsigned short>(1)) <
              TCIMValue(static_cast<unsigned short>(65535)));
  EXPECT_TRUE(TCIMValue(static_cast<short>(-2)) < TCIMValue(static_cast<short>(1)));
  EXPECT_TRUE(TCIMValue(1u) < TCIMValue(4000000000u));
  EXPECT_TRUE(TCIMValue(-5) < TCIMValue(3));
  EXPECT_TRUE(TCIMValue(1ul) < TCIMValue(~0ul));
  EXPECT_TRUE(TCIMValue(std::numeric_limits<long>::min()) < TCIMValue(0l));
  EXPECT_TRUE(TCIMValue(-0.5f) < TCIMValue(0.25f));
  EXPECT_FALSE(TCIMValue(2.0) < TCIMValue(-3.0));

  EXPECT_TRUE(TCIMValue("a") < TCIMValue("\xff"));  // Unsigned bytes.
  EXPECT_TRUE(TCIMValue("ab") < TCIMValue("b"));
  EXPECT_TRUE(TCIMValue("a") < TCIMValue("ab")); // Then length.
  EXPECT_TRUE(TCIMValue("B") < TCIMValue("a"));

  TCIMValue array(T::kUint8, 0, Elements({static_cast<unsigned char>(1)}));
  EXPECT_ZEL_THROW(array < array, zelStatusNotImplemented);
  EXPECT_TRUE(TCIMValue(static_cast<unsigned char>(9)) < array); // Type 2 before 18.
  EXPECT_TRUE(TCIMValue(T::kUint8, 2) < array);
}

TEST(ValueOrderTest, DerivedOperatorsFollowEqualityAndLess) {
  TCIMValue one(1), two(2);
  EXPECT_TRUE(one != two);
  EXPECT_TRUE(two > one);
  EXPECT_FALSE(one > two);
  EXPECT_FALSE(one > one);
  EXPECT_TRUE(one >= one);
  EXPECT_TRUE(one <= one);
  EXPECT_TRUE(one <= two);
  EXPECT_FALSE(two <= one);

  // NaN is neither equal nor less: so it counts as greater.
  TCIMValue nan(std::nan("")), half(0.5);
  EXPECT_TRUE(nan > half);
  EXPECT_TRUE(half > nan);
  EXPECT_TRUE(nan >= half);
  EXPECT_FALSE(nan <= half);
  EXPECT_TRUE(nan != nan);

  TCIMValue nullOne(T::kSint32, 0);
  EXPECT_TRUE(one > nullOne);
  EXPECT_TRUE(nullOne <= one);
  EXPECT_TRUE(nullOne <= TCIMValue(T::kSint32, 0));
}

TEST(ValueCopyTest, CopiesAreDeep) {
  TCIMValue original(T::kString, 0, Elements({"a", "b"}));
  TCIMValue copy(original);
  static_cast<std::vector<TCIMValue>&>(copy)[0].Set("changed");
  EXPECT_EQ(original.ToString(10), "{ a, b }");
  EXPECT_EQ(copy.ToString(10), "{ changed, b }");

  TCIMValue assigned;
  assigned = original;
  static_cast<std::vector<TCIMValue>&>(original).clear();
  EXPECT_EQ(assigned.ToString(10), "{ a, b }");
  assigned = assigned;
  EXPECT_EQ(assigned.ToString(10), "{ a, b }");

  TCIMValue stamp(TCIMDateTime("20031107153000.000000+000"));
  TCIMValue stampCopy = stamp;
  static_cast<TCIMDateTime>(stamp).Clear(); // A copy of the inner date-time, not the body.
  EXPECT_EQ(stampCopy.ToString(10), "20031107153000.000000+000");
  EXPECT_EQ(stamp.ToString(10), "20031107153000.000000+000");

  TCIMValue nullArray(T::kSint16, 7);
  TCIMValue nullCopy(nullArray);
  EXPECT_TRUE(nullCopy.IsNull());
  EXPECT_EQ(nullCopy.GetType(), T::kSint16 | T::kArray);
  EXPECT_EQ(nullCopy.GetMaxArraySize(), 7u);

  TCIMValue reference(T::kReference, 0);
  reference.SetReferencedClass(Placeholder<TCIMClass>(3));
  TCIMValue referenceCopy(reference);
  EXPECT_EQ(referenceCopy.GetType(), T::kReference);
  EXPECT_EQ(referenceCopy.GetReferencedClass(), &Placeholder<TCIMClass>(3));

  TCIMValue untyped;
  TCIMValue untypedCopy(untyped); // Equal already: nothing to copy.
  EXPECT_EQ(untypedCopy.GetType(), T::kNull);
}

TEST(ValueCopyTest, AnEqualSourceLeavesTheTargetAlone) {
  TCIMValue target(T::kUint8, 5);
  target.SetReferencedClass(Placeholder<TCIMClass>(1));
  target.Set(T::kUint8, 5, Elements({static_cast<unsigned char>(1)}));
  target = TCIMValue(T::kUint8, 9, Elements({static_cast<unsigned char>(1)}));
  EXPECT_EQ(target.GetMaxArraySize(), 5u);
  EXPECT_EQ(target.GetReferencedClass(), &Placeholder<TCIMClass>(1));
  target = TCIMValue(T::kUint8, 9, Elements({static_cast<unsigned char>(2)}));
  EXPECT_EQ(target.GetMaxArraySize(), 9u);
  EXPECT_EQ(target.ToString(10), "{ 2 }");

  // Bodies that refuse to compare are different: the copy goes ahead.
  TCIMValue when(TCIMDateTime("20031107153000.000000+000"));
  when = TCIMValue(TCIMDateTime(2, 4, 15, 0, 0));
  EXPECT_EQ(when.ToString(10), "00000002041500.000000:000");
  TCIMValue unset(TCIMDateTime{});
  unset = TCIMValue(TCIMDateTime(1, 0, 0, 0, 0));
  EXPECT_EQ(unset.ToString(10), "00000001000000.000000:000");
}

TEST(ValueCopyTest, UntypedAndCharValuesCannotBeCopied) {
  TCIMValue target(5);
  EXPECT_ZEL_THROW(target = TCIMValue(), zelStatusTypeMismatch);
  EXPECT_TRUE(target.IsNull());
  EXPECT_EQ(target.GetType(), T::kNull);

  TCIMValue charValue(T::kChar, 0);
  EXPECT_ZEL_THROW(TCIMValue copy(charValue), zelStatusTypeMismatch);
  TCIMValue charArray(T::kChar, 2);
  TCIMValue charArrayCopy(charArray); // An array type copies its bound, whatever the element.
  EXPECT_EQ(charArrayCopy.GetMaxArraySize(), 2u);
}

TEST(ValueCopyTest, AValueCanBeSetFromItsOwnElements) {
  TCIMValue value(T::kUint8, 0,
                  Elements({static_cast<unsigned char>(1), static_cast<unsigned char>(2)}));
  value.Set(T::kUint8, 5, static_cast<std::vector<TCIMValue>&>(value));
  EXPECT_EQ(value.ToString(10), "{ 1, 2 }");
  EXPECT_EQ(value.GetMaxArraySize(), 5u);
  value = static_cast<std::vector<TCIMValue>&>(value)[1];
  EXPECT_EQ(value.GetType(), T::kUint8);
  EXPECT_EQ(static_cast<unsigned char>(value), 2);
}

TEST(ValueCopyTest, MovesFollowTheCopyRulesAndLeaveTheSourceNull) {
  TCIMValue source("text");
  TCIMValue moved(std::move(source));
  EXPECT_EQ(moved.ToString(10), "text");
  EXPECT_TRUE(source.IsNull());
  EXPECT_EQ(source.GetType(), T::kString);

  TCIMValue reference(T::kReference, 0);
  reference.SetReferencedClass(Placeholder<TCIMClass>(2));
  TCIMValue scalar(7u);
  TCIMValue target(T::kUint32, 0);
  target.SetReferencedClass(Placeholder<TCIMClass>(4));
  target = std::move(scalar);
  EXPECT_EQ(static_cast<unsigned int>(target), 7u);
  EXPECT_EQ(target.GetReferencedClass(), &Placeholder<TCIMClass>(4)); // kept: not a reference
  target = std::move(reference);
  EXPECT_EQ(target.GetReferencedClass(), &Placeholder<TCIMClass>(2));

  TCIMValue bounded(T::kUint8, 5, Elements({static_cast<unsigned char>(1)}));
  TCIMValue equal(T::kUint8, 9, Elements({static_cast<unsigned char>(1)}));
  bounded = std::move(equal);
  EXPECT_EQ(bounded.GetMaxArraySize(), 5u);
  EXPECT_FALSE(equal.IsNull()); // Nothing was taken.

  TCIMValue value(T::kUint8, 0,
                  Elements({static_cast<unsigned char>(1), static_cast<unsigned char>(2)}));
  value = std::move(static_cast<std::vector<TCIMValue>&>(value)[1]);
  EXPECT_EQ(value.GetType(), T::kUint8);
  EXPECT_EQ(static_cast<unsigned char>(value), 2);

  TCIMValue charValue(T::kChar, 0);
  EXPECT_ZEL_THROW(TCIMValue charMoved(std::move(charValue)), zelStatusTypeMismatch);
  TCIMValue number(5);
  EXPECT_ZEL_THROW(number = TCIMValue(), zelStatusTypeMismatch);
  EXPECT_TRUE(number.IsNull());
}
