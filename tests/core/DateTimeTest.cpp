// TCIMDateTime: the CIM text form, validation, the readable forms, comparison, arithmetic.
#include "ZelTest.h"

#include "TCIMDateTime.h"
#include "helpers.h"

namespace {

// Timestamps are converted as local time: every test runs in a fixed zone.
class DateTimeTest : public ::testing::Test {
protected:
  ScopedTimeZone fZone{"UTC0"};
};

// Central European rules, with summer time from the last Sunday of March to that of October.
char const kSummerTimeZone[] = "CET-1CEST,M3.5.0,M10.5.0/3";

TCIMDateTime Stamp(char const* text) { return TCIMDateTime(std::string(text)); }

} // namespace

TEST_F(DateTimeTest, TimestampTextReadsAndPrintsBack) {
  TCIMDateTime stamp = Stamp("20031107153000.000000-300");
  EXPECT_FALSE(stamp.IsNull());
  EXPECT_FALSE(stamp.IsInterval());
  EXPECT_EQ(stamp.GetYear(), 2003);
  EXPECT_EQ(stamp.GetMonth(), 11);
  EXPECT_EQ(stamp.GetDay(), 7u);
  EXPECT_EQ(stamp.GetHour(), 15);
  EXPECT_EQ(stamp.GetMinute(), 30);
  EXPECT_EQ(stamp.GetSecond(), 0);
  EXPECT_EQ(stamp.GetMicroSeconds(), 0u);
  EXPECT_EQ(stamp.GetUTCOffset(), -300);
  EXPECT_FALSE(stamp.GetPrecision());
  EXPECT_EQ(stamp.ToString(), "20031107153000.000000-300");

  EXPECT_EQ(Stamp("19991231235959.999999+999").ToString(), "19991231235959.999999+999");
  EXPECT_EQ(Stamp("20040229000000.000001-000").ToString(), "20040229000000.000001+000");
  EXPECT_EQ(TCIMDateTime(2003, 1, 2, 3, 4, 5, 6, 0).ToString(), "20030102030405.000006+000");
  EXPECT_EQ(TCIMDateTime(2003, 1, 2, 3, 4, 5, 6, -5).ToString(), "20030102030405.000006-005");
  EXPECT_EQ(TCIMDateTime(2003, 1, 2, 3, 4, 5, 6, 60).ToString(), "20030102030405.000006+060");
}

TEST_F(DateTimeTest, IntervalTextReadsAndPrintsInThreeForms) {
  TCIMDateTime interval = Stamp("00000002041500.000000:000");
  EXPECT_TRUE(interval.IsInterval());
  EXPECT_EQ(interval.GetDay(), 2u);
  EXPECT_EQ(interval.GetHour(), 4);
  EXPECT_EQ(interval.GetMinute(), 15);
  EXPECT_EQ(interval.GetSecond(), 0);
  EXPECT_EQ(interval.ToString(), "00000002041500.000000:000");
  EXPECT_EQ(interval.ToUIString(), "2 days 4 hours 15 minutes ");
  EXPECT_EQ(interval.ToAbbrUIString(), "52:15:00.000");

  TCIMDateTime longest = Stamp("99999999235959.999999:000");
  EXPECT_EQ(longest.GetDay(), 99999999u);
  EXPECT_EQ(longest.ToString(), "99999999235959.999999:000");
  EXPECT_EQ(longest.ToAbbrUIString(), "2399999999:59:59.999");

  EXPECT_EQ(TCIMDateTime(0, 0, 0, 0, 0).ToUIString(), "");
  EXPECT_EQ(TCIMDateTime(0, 0, 0, 0, 0).ToAbbrUIString(), "00:00:00.000");
  EXPECT_EQ(TCIMDateTime(0, 0, 0, 1, 1500).ToUIString(), "1 second 1 millisecond 500 microseconds ");
  EXPECT_EQ(TCIMDateTime(1, 1, 1, 1, 1001).ToUIString(),
            "1 day 1 hour 1 minute 1 second 1 millisecond 1 microsecond ");
  EXPECT_EQ(TCIMDateTime(3, 0, 2, 0, 7).ToUIString(), "3 days 2 minutes 7 microseconds ");
  EXPECT_EQ(TCIMDateTime(0, 5, 0, 59, 999000).ToUIString(),
            "5 hours 59 seconds 999 milliseconds ");
  EXPECT_EQ(TCIMDateTime(5, 3, 7, 9, 999999).ToAbbrUIString(), "123:07:09.999");
  EXPECT_EQ(TCIMDateTime(12345678, 0, 0, 0, 0).ToString(), "12345678000000.000000:000");
}

TEST_F(DateTimeTest, MalformedTextIsRejectedAndChangesNothing) {
  char const* const rows[] = {
      "00000002041500.000000:001", // An interval's tail must be 000.
      "00000002041500.000000:00",  // 24 characters.
      "20031107153000.000000+0000", // 26 characters.
      "",
      "2003110715300a.000000+000",
      "20031107153000,000000+000", // No dot at 14.
      "20031107153000.000000*000", // Neither sign nor colon at 21.
      "20031107153000.00000a+000",
      "2003110715300 .000000+000",
      "20031107153000.000000+00a",
      "-0031107153000.000000+000",
      "20031107153000.0000000000",
      "20031107153000+000000.000",
  };
  TCIMDateTime value = Stamp("20031107153000.000000-300");
  TCIMDateTime empty;
  for (char const* row : rows) {
    EXPECT_ZEL_THROW(value.Set(std::string(row)), zelStatusInvalidDateTime);
    EXPECT_ZEL_THROW(empty.Set(std::string(row)), zelStatusInvalidDateTime);
    EXPECT_ZEL_THROW(Stamp(row), zelStatusInvalidDateTime);
  }
  EXPECT_EQ(value.ToString(), "20031107153000.000000-300");
  EXPECT_TRUE(empty.IsNull());
}

TEST_F(DateTimeTest, FieldsAreValidatedByKind) {
  TCIMDateTime value(1, 2, 3, 4, 5);
  EXPECT_ZEL_THROW(value.Set(0, 24, 0, 0, 0), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.Set(0, 0, 60, 0, 0), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.Set(0, 0, 0, 60, 0), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.Set(0, 0, 0, 0, 1000000), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(TCIMDateTime(0, 24, 0, 0, 0), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(Stamp("00000000240000.000000:000"), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(Stamp("00000000006000.000000:000"), zelStatusInvalidDateTime);
  EXPECT_EQ(value.ToString(), "00000001020304.000005:000");
  value.Set(4000000000u, 23, 59, 59, 999999); // Days are not limited.
  EXPECT_EQ(value.GetDay(), 4000000000u);

  // Timestamps are only as strict as mktime: out-of-range fields are kept as given.
  TCIMDateTime stamp(2003, 13, 7, 15, 75, 0, 5000000, 0);
  EXPECT_EQ(stamp.GetMonth(), 13);
  EXPECT_EQ(stamp.GetMinute(), 75);
  EXPECT_EQ(stamp.GetMicroSeconds(), 5000000u);
  EXPECT_EQ(Stamp("20031307153000.000000+000").ToString(), "20031307153000.000000+000");
  EXPECT_EQ(Stamp("20030231996099.000000+000").GetDay(), 31u);
}

TEST_F(DateTimeTest, EachKindOfSetKeepsWhatTheOtherOwns) {
  TCIMDateTime value = Stamp("20031107153000.000000-300");
  value.Set(2, 4, 15, 0, 0);
  EXPECT_TRUE(value.IsInterval());
  EXPECT_EQ(value.GetYear(), 2003);
  EXPECT_EQ(value.GetMonth(), 11);
  EXPECT_EQ(value.GetUTCOffset(), -300);
  EXPECT_EQ(value.ToString(), "00000002041500.000000:000");
  value.Set(2004, 1, 2, 3, 4, 5, 6, 7);
  EXPECT_FALSE(value.IsInterval());
  EXPECT_EQ(value.ToString(), "20040102030405.000006+007");

  value.Clear();
  EXPECT_TRUE(value.IsNull());
  EXPECT_ZEL_THROW(value.ToString(), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.ToUIString(), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.ToAbbrUIString(), zelStatusInvalidDateTime);
  EXPECT_TRUE(TCIMDateTime().IsNull());
  EXPECT_ZEL_THROW(TCIMDateTime().ToString(), zelStatusInvalidDateTime);
  value.Set(std::string("00000000000001.000000:000"));
  EXPECT_FALSE(value.IsNull());
}

TEST_F(DateTimeTest, PrecisionShowsTheDateOnly) {
  TCIMDateTime stamp(2003, 11, 7, 15, 30, 0, 0, -300);
  EXPECT_EQ(stamp.ToUIString(), "11/07/2003 15:30:00");
  stamp.SetPrecision(true);
  EXPECT_TRUE(stamp.GetPrecision());
  EXPECT_EQ(stamp.ToUIString(), "11/07/2003 ");
  EXPECT_EQ(stamp.ToString(), "20031107153000.000000-300");
  EXPECT_EQ(TCIMDateTime(2003, 1, 2, 3, 4, 5, 0, 0).ToUIString(), "01/02/2003 03:04:05");

  TCIMDateTime interval(0, 1, 0, 0, 0);
  interval.SetPrecision(true);
  EXPECT_EQ(interval.ToUIString(), "1 hour ");
  stamp.SetPrecision(false);
  EXPECT_EQ(stamp.ToUIString(), "11/07/2003 15:30:00");
}

TEST_F(DateTimeTest, CopiesNeverShareState) {
  TCIMDateTime original = Stamp("20031107153000.000000-300");
  TCIMDateTime copy(original);
  copy.Set(1, 0, 0, 0, 0);
  copy.SetPrecision(true);
  EXPECT_EQ(original.ToString(), "20031107153000.000000-300");
  EXPECT_FALSE(original.GetPrecision());
  EXPECT_NE(copy.GetBody(), original.GetBody());

  TCIMDateTime assigned;
  assigned = original;
  original.Clear();
  EXPECT_EQ(assigned.ToString(), "20031107153000.000000-300");
  EXPECT_NE(assigned.GetBody(), original.GetBody());
}

TEST_F(DateTimeTest, ComparisonByInstantOrByLength) {
  EXPECT_TRUE(Stamp("20031107153000.000000+000") == Stamp("20031107163000.000000+060"));
  EXPECT_TRUE(Stamp("20031107153000.000000+000") == Stamp("20031107103000.000000-300"));
  EXPECT_FALSE(Stamp("20031107153000.000000+000") == Stamp("20031107153000.000000+060"));
  EXPECT_TRUE(Stamp("20031107153000.000000+060") < Stamp("20031107153000.000000+000"));
  EXPECT_TRUE(Stamp("20031107153000.000001+000") == Stamp("20031107153000.000001+000"));
  EXPECT_TRUE(Stamp("20031107153000.000001+000") < Stamp("20031107153000.000002+000"));
  EXPECT_FALSE(Stamp("20031107153000.000002+000") < Stamp("20031107153000.000001+000"));
  EXPECT_TRUE(Stamp("20031231235959.000000+000") < Stamp("20040101000000.000000+000"));
  // Fields beyond their range compare as mktime normalises them.
  EXPECT_TRUE(TCIMDateTime(2003, 13, 1, 0, 0, 0, 0, 0) == Stamp("20040101000000.000000+000"));

  // The seconds decide first: a timestamp's microseconds never carry over.
  TCIMDateTime manyMicros(2003, 11, 7, 15, 30, 0, 1500000, 0);
  TCIMDateTime nextSecond(2003, 11, 7, 15, 30, 1, 0, 0);
  EXPECT_TRUE(manyMicros < nextSecond);
  EXPECT_FALSE(nextSecond < manyMicros);
  EXPECT_FALSE(TCIMDateTime(2003, 11, 7, 15, 30, 0, 1000000, 0) == nextSecond);

  EXPECT_TRUE(TCIMDateTime(1, 0, 0, 0, 0) == TCIMDateTime(0, 23, 59, 59, 999999) +
                                                  TCIMDateTime(0, 0, 0, 0, 1));
  EXPECT_TRUE(TCIMDateTime(0, 23, 59, 59, 999999) < TCIMDateTime(1, 0, 0, 0, 0));
  EXPECT_TRUE(TCIMDateTime(0, 0, 0, 1, 5) < TCIMDateTime(0, 0, 0, 1, 6));
  EXPECT_FALSE(TCIMDateTime(0, 0, 0, 1, 6) < TCIMDateTime(0, 0, 0, 1, 6));
  EXPECT_FALSE(TCIMDateTime(2, 0, 0, 0, 0) == TCIMDateTime(1, 23, 59, 59, 999999));

  TCIMDateTime stamp = Stamp("20031107153000.000000+000");
  TCIMDateTime interval(1, 0, 0, 0, 0);
  EXPECT_ZEL_THROW(stamp == interval, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(interval < stamp, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(stamp == TCIMDateTime(), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(TCIMDateTime() < stamp, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(TCIMDateTime() == TCIMDateTime(), zelStatusInvalidDateTime);
}

TEST_F(DateTimeTest, IntervalsAddAndSubtractToIntervals) {
  EXPECT_EQ((TCIMDateTime(0, 23, 59, 59, 999999) + TCIMDateTime(0, 0, 0, 0, 1)).ToString(),
            "00000001000000.000000:000");
  EXPECT_EQ((TCIMDateTime(1, 2, 3, 4, 5) + TCIMDateTime(1, 22, 57, 56, 999995)).ToString(),
            "00000003010101.000000:000");
  EXPECT_EQ((TCIMDateTime(0, 1, 0, 0, 0) - TCIMDateTime(0, 0, 0, 0, 1)).ToString(),
            "00000000005959.999999:000");
  EXPECT_EQ((TCIMDateTime(0, 0, 0, 0, 1) - TCIMDateTime(0, 1, 0, 0, 0)).ToString(),
            "00000000005959.999999:000");
  EXPECT_EQ((Stamp("99999999235959.999999:000") - Stamp("99999999235959.999999:000")).ToString(),
            "00000000000000.000000:000");
}

TEST_F(DateTimeTest, TimestampPlusIntervalKeepsTheTimestampsOffset) {
  TCIMDateTime second(0, 0, 0, 1, 0);
  EXPECT_EQ((Stamp("20031231235959.500000+000") + second).ToString(),
            "20040101000000.500000+000");
  EXPECT_EQ((second + Stamp("20031231235959.500000+000")).ToString(),
            "20040101000000.500000+000");
  EXPECT_EQ((Stamp("20040228235959.999999-300") + TCIMDateTime(0, 0, 0, 0, 1)).ToString(),
            "20040229000000.000000-300");
  EXPECT_EQ((Stamp("20031107153000.000000+090") + TCIMDateTime(30, 8, 30, 0, 0)).ToString(),
            "20031208000000.000000+090");

  TCIMDateTime hour(0, 1, 0, 0, 0);
  TCIMDateTime stamp = Stamp("20031107153000.000000-300");
  EXPECT_EQ((stamp + hour - hour).ToString(), "20031107153000.000000-300");
  EXPECT_EQ((stamp + hour).ToString(), "20031107163000.000000-300");
  EXPECT_EQ((stamp - TCIMDateTime(7, 16, 0, 0, 1)).ToString(), "20031030232959.999999-300");
  // Normalised by the arithmetic: month 13 reads as January.
  EXPECT_EQ((TCIMDateTime(2003, 13, 1, 0, 0, 0, 0, 0) + second).ToString(),
            "20040101000001.000000+000");
  EXPECT_EQ((TCIMDateTime(2003, 11, 7, 0, 0, 0, 2500000, 0) + second).ToString(),
            "20031107000003.500000+000");
}

TEST_F(DateTimeTest, SummerTimeDoesNotShiftTheArithmetic) {
  ScopedTimeZone summer(kSummerTimeZone);
  TCIMDateTime hour(0, 1, 0, 0, 0);
  TCIMDateTime july = Stamp("20030701120000.000000+000");
  EXPECT_EQ((july + hour).ToString(), "20030701130000.000000+000");
  EXPECT_EQ((july + hour - hour).ToString(), "20030701120000.000000+000");
  EXPECT_EQ((july - TCIMDateTime(0, 0, 0, 0, 0)).ToString(), "20030701120000.000000+000");
  TCIMDateTime january = Stamp("20030101120000.000000+120");
  EXPECT_EQ((january + TCIMDateTime(181, 0, 0, 0, 0)).ToString(), "20030701120000.000000+120");
  EXPECT_EQ((july - january).ToString(), "00000181020000.000000:000");
  EXPECT_TRUE(july + hour == Stamp("20030701130000.000000+000"));
}

TEST_F(DateTimeTest, TimestampMinusTimestampIsTheDistance) {
  TCIMDateTime early = Stamp("20031107153000.000000+060");
  TCIMDateTime late = Stamp("20031107153000.000000+000");
  EXPECT_EQ((late - early).ToString(), "00000000010000.000000:000");
  EXPECT_EQ((early - late).ToString(), "00000000010000.000000:000");
  EXPECT_EQ((Stamp("20040301000000.000000+000") - Stamp("20040228120000.250000+000")).ToString(),
            "00000001115959.750000:000");
  EXPECT_EQ((late - late).ToString(), "00000000000000.000000:000");
}

TEST_F(DateTimeTest, MeaninglessArithmeticThrows) {
  TCIMDateTime stamp = Stamp("20031107153000.000000+000");
  TCIMDateTime interval(1, 0, 0, 0, 0);
  TCIMDateTime empty;
  EXPECT_ZEL_THROW(stamp + stamp, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(interval - stamp, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(stamp + empty, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(empty + interval, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(stamp - empty, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(empty - empty, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(TCIMDateTime::GetDifference(stamp, interval), zelStatusNotImplemented);
  EXPECT_EQ(stamp.ToString(), "20031107153000.000000+000");
  EXPECT_EQ(interval.ToString(), "00000001000000.000000:000");
}
