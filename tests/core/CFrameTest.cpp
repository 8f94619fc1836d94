// The C frame: NULL arguments, caught codes, the value-array and date-time functions.
#include "ZelTest.h"

#include "TCIMDateTime.h"
#include "cwrappers.h"
#include "helpers.h"

#include <cstring>
#include <stdexcept>

namespace {

class CFrameTest : public ZelTest {
protected:
  void SetUp() override {
    ZelTest::SetUp();
    // NULL arguments are logged at severity error: kept even at the lowest threshold.
    TRootObject::GetCoreLogger()->SetLogThreshold(zelLogError);
  }
};

typedef TCIMValue::TCIMType T;

} // namespace

TEST_F(CFrameTest, ValueArraysTakeValuesOfAnyTypeInOrder) {
  zelCIMValueArray* array = 0;
  ASSERT_EQ(zelNewCIMValueArray(&array), zelStatusOK);
  ASSERT_NE(array, nullptr);
  EXPECT_TRUE(array->fValues.empty());

  char text[] = "copied";
  TCIMDateTime when(std::string("20031107153000.000000-300"));
  EXPECT_ZEL_STATUS(zelArrayAddBoolean(array, 2), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddBoolean(array, 0), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddUint8(array, 200), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddSint8(array, -100), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddUint16(array, 60000), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddSint16(array, -30000), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddUint32(array, 4000000000u), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddSint32(array, -2000000000), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddUint64(array, UINT64_MAX), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddSint64(array, INT64_MIN), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddString(array, text), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddDateTime(array, &when), zelStatusOK);
  std::strcpy(text, "after!");
  when.Clear();

  std::vector<TCIMValue> const& values = array->fValues;
  ASSERT_EQ(values.size(), 12u);
  const T::ECIMType types[] = {T::kBoolean, T::kBoolean, T::kUint8,  T::kSint8,
                               T::kUint16,  T::kSint16,  T::kUint32, T::kSint32,
                               T::kUint64,  T::kSint64,  T::kString, T::kDateTime};
  for (size_t i = 0; i < values.size(); ++i)
    EXPECT_EQ(values[i].GetType(), types[i]) << "element " << i;
  EXPECT_EQ(static_cast<bool>(values[0]), true);
  EXPECT_EQ(static_cast<bool>(values[1]), false);
  EXPECT_EQ(static_cast<unsigned char>(values[2]), 200);
  EXPECT_EQ(static_cast<signed char>(values[3]), -100);
  EXPECT_EQ(static_cast<unsigned short>(values[4]), 60000);
  EXPECT_EQ(static_cast<short>(values[5]), -30000);
  EXPECT_EQ(static_cast<unsigned int>(values[6]), 4000000000u);
  EXPECT_EQ(static_cast<int>(values[7]), -2000000000);
  EXPECT_EQ(static_cast<unsigned long>(values[8]), UINT64_MAX);
  EXPECT_EQ(static_cast<long>(values[9]), INT64_MIN);
  EXPECT_EQ(static_cast<std::string>(values[10]), "copied");
  EXPECT_EQ(values[11].ToString(10), "20031107153000.000000-300");

  EXPECT_ZEL_STATUS(zelDeleteCIMValueArray(array), zelStatusOK);
  EXPECT_TRUE(LoggedLines().empty());
}

TEST_F(CFrameTest, ValueArrayFunctionsRefuseNullArguments) {
  TCIMDateTime when;
  EXPECT_ZEL_STATUS(zelNewCIMValueArray(0), zelStatusFail);
  EXPECT_ZEL_STATUS(zelDeleteCIMValueArray(0), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddBoolean(0, 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddUint8(0, 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddSint8(0, 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddUint16(0, 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddSint16(0, 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddUint32(0, 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddSint32(0, 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddUint64(0, 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddSint64(0, 1), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddString(0, "x"), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddDateTime(0, &when), zelStatusFail);

  zelCIMValueArray* array = 0;
  ASSERT_EQ(zelNewCIMValueArray(&array), zelStatusOK);
  EXPECT_ZEL_STATUS(zelArrayAddString(array, 0), zelStatusFail);
  EXPECT_ZEL_STATUS(zelArrayAddDateTime(array, 0), zelStatusFail);
  EXPECT_TRUE(array->fValues.empty());
  EXPECT_ZEL_STATUS(zelDeleteCIMValueArray(array), zelStatusOK);

  std::vector<std::string> expected = {
      "ZEL_Core: [Error] zelNewCIMValueArray: NULL array parameter",
      "ZEL_Core: [Error] zelDeleteCIMValueArray: NULL array parameter",
      "ZEL_Core: [Error] zelArrayAddBoolean: NULL array parameter",
      "ZEL_Core: [Error] zelArrayAddUint8: NULL array parameter",
      "ZEL_Core: [Error] zelArrayAddUint8: NULL array parameter", // Sint8 keeps the Uint8 text.
      "ZEL_Core: [Error] zelArrayAddUint16: NULL array parameter",
      "ZEL_Core: [Error] zelArrayAddSint16: NULL array parameter",
      "ZEL_Core: [Error] zelArrayAddUint32: NULL array parameter",
      "ZEL_Core: [Error] zelArrayAddSint32: NULL array parameter",
      "ZEL_Core: [Error] zelArrayAddUint64: NULL array parameter",
      "ZEL_Core: [Error] zelArrayAddSint64: NULL array parameter",
      "ZEL_Core: [Error] zelArrayAddString: NULL array and/or value parameter",
      "ZEL_Core: [Error] zelArrayAddDateTime: NULL array and/or value parameter",
      "ZEL_Core: [Error] zelArrayAddString: NULL array and/or value parameter",
      "ZEL_Core: [Error] zelArrayAddDateTime: NULL array and/or value parameter",
  };
  EXPECT_EQ(LoggedLines(), expected);
}

TEST_F(CFrameTest, DateTimeFunctionsSetAndReportTheCaughtCode) {
  TCIMDateTime* dt = 0;
  ASSERT_EQ(zelNewCIMDateTime(&dt), zelStatusOK);
  ASSERT_NE(dt, nullptr);
  EXPECT_TRUE(dt->IsNull());

  EXPECT_ZEL_STATUS(zelSetDateTime(dt, 2003, 11, 7, 15, 30, 0, 250, -300), zelStatusOK);
  EXPECT_EQ(dt->ToString(), "20031107153000.000250-300");
  EXPECT_ZEL_STATUS(zelSetDateTime(dt, 2003, 13, 7, 15, 30, 0, 0, 0), zelStatusOK);
  EXPECT_EQ(dt->GetMonth(), 13);

  EXPECT_ZEL_STATUS(zelSetDateTimeInterval(dt, 2, 4, 15, 0, 0), zelStatusOK);
  EXPECT_EQ(dt->ToUIString(), "2 days 4 hours 15 minutes ");
  EXPECT_ZEL_STATUS(zelSetDateTimeInterval(dt, 0, 24, 0, 0, 0), zelStatusInvalidDateTime);
  EXPECT_EQ(dt->ToString(), "00000002041500.000000:000");

  EXPECT_ZEL_STATUS(zelSetDateTimeString(dt, "20031107153000.000000-300"), zelStatusOK);
  EXPECT_EQ(dt->GetUTCOffset(), -300);
  EXPECT_ZEL_STATUS(zelSetDateTimeString(dt, "20031107153000,000000+000"),
                    zelStatusInvalidDateTime);
  EXPECT_ZEL_STATUS(zelSetDateTimeString(dt, ""), zelStatusInvalidDateTime);
  EXPECT_EQ(dt->ToString(), "20031107153000.000000-300");

  // A caught code is only returned: the frame adds no line.
  TRootObject::GetCoreLogger()->SetLogThreshold(zelLogVerbose);
  EXPECT_ZEL_STATUS(zelSetDateTimeString(dt, "junk"), zelStatusInvalidDateTime);
  EXPECT_TRUE(LoggedLines().empty());

  EXPECT_ZEL_STATUS(zelDeleteCIMDateTime(dt), zelStatusOK);
}

TEST_F(CFrameTest, LocalTimeCarriesTheZonesOffset) {
  TCIMDateTime* dt = 0;
  ASSERT_EQ(zelNewCIMDateTime(&dt), zelStatusOK);
  {
    ScopedTimeZone zone("EST5");
    EXPECT_ZEL_STATUS(zelGetLocalTime(dt), zelStatusOK);
    EXPECT_FALSE(dt->IsNull());
    EXPECT_FALSE(dt->IsInterval());
    EXPECT_EQ(dt->GetUTCOffset(), -300);
    EXPECT_GE(dt->GetYear(), 2024);
  }
  ScopedTimeZone zone("UTC0");
  TCIMDateTime before = *dt; // Read in EST as -300: the same instant once read in UTC.
  EXPECT_ZEL_STATUS(zelGetLocalTime(dt), zelStatusOK);
  EXPECT_EQ(dt->GetUTCOffset(), 0);
  TCIMDateTime elapsed = *dt - before;
  EXPECT_TRUE(elapsed < TCIMDateTime(0, 0, 1, 0, 0)) << elapsed.ToString();
  EXPECT_ZEL_STATUS(zelDeleteCIMDateTime(dt), zelStatusOK);
}

TEST_F(CFrameTest, DateTimeFunctionsRefuseNullArguments) {
  TCIMDateTime* dt = 0;
  ASSERT_EQ(zelNewCIMDateTime(&dt), zelStatusOK);
  EXPECT_ZEL_STATUS(zelNewCIMDateTime(0), zelStatusFail);
  EXPECT_ZEL_STATUS(zelGetLocalTime(0), zelStatusFail);
  EXPECT_ZEL_STATUS(zelDeleteCIMDateTime(0), zelStatusFail);
  EXPECT_ZEL_STATUS(zelSetDateTime(0, 2003, 11, 7, 15, 30, 0, 0, 0), zelStatusFail);
  EXPECT_ZEL_STATUS(zelSetDateTimeInterval(0, 1, 0, 0, 0, 0), zelStatusFail);
  EXPECT_ZEL_STATUS(zelSetDateTimeString(0, "20031107153000.000000-300"), zelStatusFail);
  EXPECT_ZEL_STATUS(zelSetDateTimeString(dt, 0), zelStatusFail);
  EXPECT_TRUE(dt->IsNull());
  EXPECT_ZEL_STATUS(zelDeleteCIMDateTime(dt), zelStatusOK);

  std::vector<std::string> expected = {
      "ZEL_Core: [Error] zelNewCIMDateTime: NULL datetime parameter",
      "ZEL_Core: [Error] zelGetLocalTime: NULL datetime ",
      "ZEL_Core: [Error] zelDeleteCIMDateTime: NULL datetime parameter",
      "ZEL_Core: [Error] zelSetDateTime: NULL datetime parameter",
      "ZEL_Core: [Error] zelSetDateTimeInterval: NULL datetime parameter",
      "ZEL_Core: [Error] zelSetDateTimeString: NULL datetime and/or str parameter",
      "ZEL_Core: [Error] zelSetDateTimeString: NULL datetime and/or str parameter",
  };
  EXPECT_EQ(LoggedLines(), expected);
}

TEST_F(CFrameTest, GuardCatchesOnlyTheLibrarysException) {
  EXPECT_ZEL_STATUS(ZelGuard([] {}), zelStatusOK);
  EXPECT_ZEL_STATUS(ZelGuard([] { throw TZELException(zelStatusNotFound); }), zelStatusNotFound);
  EXPECT_THROW(ZelGuard([] { throw std::runtime_error("not ours"); }), std::runtime_error);
  EXPECT_ZEL_STATUS(ZelNullArgument("zelSomething: NULL thing parameter"), zelStatusFail);
  EXPECT_LOGGED("ZEL_Core: [Error] zelSomething: NULL thing parameter");
}
