// Status codes, the exception, and the C frame: NULL arguments, caught codes, the value-array
// and date-time functions.
#include "ZelTest.h"

#include "TCIMDateTime.h"
#include "TRootObject.h"
#include "plugins/cwrappers.h"

#include <cstring>

namespace {

class CFrameTest : public ZelTest {};

} // namespace

TEST(StatusTest, CodesAreNamedByTheirEnumeratorAndRootAccessorsCreateNothing) {
  EXPECT_STREQ(zelTranslateStatusCode(zelStatusOK), "zelStatusOK");
  EXPECT_STREQ(zelTranslateStatusCode(static_cast<zelStatusCode>(37)),
               "zelStatusContainerMismatch");
  EXPECT_STREQ(zelTranslateStatusCode(static_cast<zelStatusCode>(38)), "zelStatusEnd");
  EXPECT_STREQ(TZELException(static_cast<zelStatusCode>(21)).what(), "zelStatusInvalidDateTime");
  CoreInit(); // A no-op that hosts may call.
  EXPECT_EQ(TRootObject::GetQueryManager(), nullptr);
  EXPECT_EQ(TRootObject::GetPluginManager(), nullptr);
  EXPECT_NE(TRootObject::GetCoreLogger(), nullptr); // Created by the test environment.
}

TEST_F(CFrameTest, ValueArraysTakeValuesOfAnyTypeInOrder) {
  zelCIMValueArray* array = 0;
  ASSERT_EQ(zelNewCIMValueArray(&array), zelStatusOK);
  char text[] = "copied";
  TCIMDateTime when(std::string("20031107153000.000000-300"));
  zelStatusCode const added[] = {
      zelArrayAddBoolean(array, 2),          zelArrayAddBoolean(array, 0),
      zelArrayAddUint8(array, 200),          zelArrayAddSint8(array, -100),
      zelArrayAddUint16(array, 60000),       zelArrayAddSint16(array, -30000),
      zelArrayAddUint32(array, 4000000000u), zelArrayAddSint32(array, -2000000000),
      zelArrayAddUint64(array, UINT64_MAX),  zelArrayAddSint64(array, INT64_MIN),
      zelArrayAddString(array, text),        zelArrayAddDateTime(array, &when)};
  for (zelStatusCode code : added)
    EXPECT_ZEL_STATUS(code, zelStatusOK);
  std::strcpy(text, "after!");
  when.Clear();

  std::string typesAndTexts;
  for (TCIMValue const& value : array->fValues)
    typesAndTexts += value.GetType().ToString() + "=" + value.ToString(10) + " ";
  EXPECT_EQ(typesAndTexts, "boolean=true boolean=false uint8=200 sint8=-100 uint16=60000 "
                           "sint16=-30000 uint32=4000000000 sint32=-2000000000 "
                           "uint64=18446744073709551615 sint64=-9223372036854775808 "
                           "string=copied datetime=20031107153000.000000-300 ");
  EXPECT_ZEL_STATUS(zelDeleteCIMValueArray(array), zelStatusOK);
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(CFrameTest, NullArgumentsAreLoggedAndRefused) {
  // Logged at severity error: kept even at the lowest threshold.
  TRootObject::GetCoreLogger()->SetLogThreshold(zelLogError);
  TCIMDateTime when;
  TCIMDateTime* dt = 0;
  zelCIMValueArray* array = 0;
  ASSERT_EQ(zelNewCIMValueArray(&array), zelStatusOK);
  ASSERT_EQ(zelNewCIMDateTime(&dt), zelStatusOK);
  std::pair<zelStatusCode, char const*> const rows[] = {
      {zelNewCIMValueArray(0), "zelNewCIMValueArray: NULL array parameter"},
      {zelDeleteCIMValueArray(0), "zelDeleteCIMValueArray: NULL array parameter"},
      {zelArrayAddBoolean(0, 1), "zelArrayAddBoolean: NULL array parameter"},
      {zelArrayAddUint8(0, 1), "zelArrayAddUint8: NULL array parameter"},
      {zelArrayAddSint8(0, 1), "zelArrayAddUint8: NULL array parameter"}, // Uint8's text.
      {zelArrayAddUint16(0, 1), "zelArrayAddUint16: NULL array parameter"},
      {zelArrayAddSint16(0, 1), "zelArrayAddSint16: NULL array parameter"},
      {zelArrayAddUint32(0, 1), "zelArrayAddUint32: NULL array parameter"},
      {zelArrayAddSint32(0, 1), "zelArrayAddSint32: NULL array parameter"},
      {zelArrayAddUint64(0, 1), "zelArrayAddUint64: NULL array parameter"},
      {zelArrayAddSint64(0, 1), "zelArrayAddSint64: NULL array parameter"},
      {zelArrayAddString(0, "x"), "zelArrayAddString: NULL array and/or value parameter"},
      {zelArrayAddDateTime(0, &when), "zelArrayAddDateTime: NULL array and/or value parameter"},
      {zelArrayAddString(array, 0), "zelArrayAddString: NULL array and/or value parameter"},
      {zelArrayAddDateTime(array, 0), "zelArrayAddDateTime: NULL array and/or value parameter"},
      {zelNewCIMDateTime(0), "zelNewCIMDateTime: NULL datetime parameter"},
      {zelGetLocalTime(0), "zelGetLocalTime: NULL datetime "},
      {zelDeleteCIMDateTime(0), "zelDeleteCIMDateTime: NULL datetime parameter"},
      {zelSetDateTime(0, 2003, 11, 7, 15, 30, 0, 0, 0), "zelSetDateTime: NULL datetime parameter"},
      {zelSetDateTimeInterval(0, 1, 0, 0, 0, 0), "zelSetDateTimeInterval: NULL datetime parameter"},
      {zelSetDateTimeString(0, "20031107153000.000000-300"),
       "zelSetDateTimeString: NULL datetime and/or str parameter"},
      {zelSetDateTimeString(dt, 0), "zelSetDateTimeString: NULL datetime and/or str parameter"}};
  std::vector<std::string> expected;
  for (auto const& row : rows) {
    EXPECT_ZEL_STATUS(row.first, zelStatusFail) << row.second;
    expected.push_back(std::string("ZEL_Core: [Error] ") + row.second);
  }
  EXPECT_EQ(LoggedLines(), expected); // One line each, in order.
  EXPECT_TRUE(array->fValues.empty());
  EXPECT_TRUE(dt->IsNull());
  EXPECT_ZEL_STATUS(zelDeleteCIMValueArray(array), zelStatusOK);
  EXPECT_ZEL_STATUS(zelDeleteCIMDateTime(dt), zelStatusOK);
}

TEST_F(CFrameTest, DateTimeFunctionsSetAndReportTheCaughtCode) {
  TCIMDateTime* dt = 0;
  ASSERT_EQ(zelNewCIMDateTime(&dt), zelStatusOK);
  EXPECT_TRUE(dt->IsNull());
  EXPECT_ZEL_STATUS(zelSetDateTime(dt, 2003, 11, 7, 15, 30, 0, 250, -300), zelStatusOK);
  EXPECT_EQ(dt->ToString(), "20031107153000.000250-300");
  EXPECT_ZEL_STATUS(zelSetDateTimeInterval(dt, 2, 4, 15, 0, 0), zelStatusOK);
  EXPECT_EQ(dt->ToString(), "00000002041500.000000:000");
  EXPECT_ZEL_STATUS(zelSetDateTimeString(dt, "20031107153000.000000+060"), zelStatusOK);
  // A caught code is only returned: the frame adds no line.
  TRootObject::GetCoreLogger()->SetLogThreshold(zelLogVerbose);
  EXPECT_ZEL_STATUS(zelSetDateTimeString(dt, "junk"), zelStatusInvalidDateTime);
  EXPECT_EQ(dt->ToString(), "20031107153000.000000+060");
  EXPECT_TRUE(LoggedLines().empty());

  // The local time comes from the OS services, whose suite checks it.
  EXPECT_ZEL_STATUS(zelGetLocalTime(dt), zelStatusOK);
  EXPECT_FALSE(dt->IsInterval());
  EXPECT_ZEL_STATUS(zelDeleteCIMDateTime(dt), zelStatusOK);
}
