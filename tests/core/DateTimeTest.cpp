// TCIMDateTime: the CIM text form, validation, the readable forms, comparison, arithmetic.
#include "ZelTest.h"

#include "TCIMDateTime.h"
#include "ScopedTimeZone.h"

#include <cstdio>

namespace {

// Timestamps are converted as local time: every test runs in a fixed zone.
class DateTimeTest : public ::testing::Test {
protected:
  ScopedTimeZone fZone{"UTC0"};
};

TCIMDateTime Stamp(char const* text) { return TCIMDateTime(std::string(text)); }

std::string Add(char const* a, char const* b) { return (Stamp(a) + Stamp(b)).ToString(); }
std::string Sub(char const* a, char const* b) { return (Stamp(a) - Stamp(b)).ToString(); }

bool MktimeAccepts(struct tm fields) {
  fields.tm_isdst = 0;
  return mktime(&fields) != static_cast<time_t>(-1);
}

bool ReaderAccepts(struct tm const& fields) {
  char text[64];
  std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d.000000+000", fields.tm_year + 1900,
                fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec);
  try {
    TCIMDateTime stamp{std::string(text)};
    return true;
  } catch (TZELException const& e) {
    EXPECT_EQ(e.GetCode(), zelStatusInvalidDateTime);
    return false;
  }
}

} // namespace

TEST_F(DateTimeTest, TextReadsBackAsItWasWritten) {
  for (char const* text : {"20031107153000.000000-300", "19991231235959.999999+999",
                           "00000002041500.000000:000", "99999999235959.999999:000"})
    EXPECT_EQ(Stamp(text).ToString(), text);
  EXPECT_EQ(Stamp("20040229000000.000001-000").ToString(), "20040229000000.000001+000");
  EXPECT_EQ(TCIMDateTime(2003, 1, 2, 3, 4, 5, 6, -5).ToString(), "20030102030405.000006-005");
}

TEST_F(DateTimeTest, IntervalsReadAsWordsOrAsTotalHours) {
  struct Row {
    TCIMDateTime interval;
    char const* words;
    char const* hours;
  };
  Row const rows[] = {
      {Stamp("00000002041500.000000:000"), "2 days 4 hours 15 minutes ", "52:15:00.000"},
      {TCIMDateTime(0, 0, 0, 0, 0), "", "00:00:00.000"},
      {TCIMDateTime(0, 0, 0, 1, 1500), "1 second 1 millisecond 500 microseconds ",
       "00:00:01.001"},
      {TCIMDateTime(1, 1, 1, 1, 1001),
       "1 day 1 hour 1 minute 1 second 1 millisecond 1 microsecond ", "25:01:01.001"},
      {Stamp("99999999235959.999999:000"),
       "99999999 days 23 hours 59 minutes 59 seconds 999 milliseconds 999 microseconds ",
       "2399999999:59:59.999"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(row.interval.ToUIString(), row.words);
    EXPECT_EQ(row.interval.ToAbbrUIString(), row.hours);
  }
}

TEST_F(DateTimeTest, MalformedTextIsRejectedAndChangesNothing) {
  // An interval's tail must be 000; 24 and 26 characters; a non-digit first, inside and last;
  // no dot at 14; neither sign nor colon at 21.
  char const* const rows[] = {"00000002041500.000000:001", "00000002041500.000000:00",
                              "20031107153000.000000+0000", "-0031107153000.000000+000",
                              "2003110715300a.000000+000",  "20031107153000.000000+00a",
                              "20031107153000,000000+000",  "20031107153000.000000*000"};
  TCIMDateTime value = Stamp("20031107153000.000000-300");
  TCIMDateTime empty;
  for (char const* row : rows) {
    EXPECT_ZEL_THROW(value.Set(std::string(row)), zelStatusInvalidDateTime);
    EXPECT_ZEL_THROW(empty.Set(std::string(row)), zelStatusInvalidDateTime);
  }
  EXPECT_EQ(value.ToString(), "20031107153000.000000-300");
  EXPECT_TRUE(empty.IsNull());
}

TEST_F(DateTimeTest, IntervalFieldsAreCheckedTimestampsOnlyByMktimeEachSetKeepsTheOthersFields) {
  TCIMDateTime value(1, 2, 3, 4, 5);
  EXPECT_ZEL_THROW(value.Set(0, 24, 0, 0, 0), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.Set(0, 0, 60, 0, 0), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.Set(0, 0, 0, 60, 0), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.Set(0, 0, 0, 0, 1000000), zelStatusInvalidDateTime);
  EXPECT_EQ(value.ToString(), "00000001020304.000005:000");
  value.Set(4000000000u, 23, 59, 59, 999999); // Days are not limited.
  EXPECT_EQ(value.GetDay(), 4000000000u);

  // Out-of-range timestamp fields that mktime normalises are kept as given, on purpose.
  EXPECT_EQ(TCIMDateTime(2003, 13, 7, 15, 75, 0, 5000000, 0).ToString(),
            "20031307157500.5000000+000");

  // Each kind of Set keeps what the other owns.
  value.Set(std::string("20031107153000.000000-300"));
  value.Set(2, 4, 15, 0, 0);
  EXPECT_TRUE(value.IsInterval());
  EXPECT_EQ(value.GetYear(), 2003);
  EXPECT_EQ(value.GetUTCOffset(), -300);
  value.Set(2004, 1, 2, 3, 4, 5, 6, 7);
  EXPECT_EQ(value.ToString(), "20040102030405.000006+007");

  value.Clear();
  EXPECT_TRUE(value.IsNull());
  EXPECT_ZEL_THROW(value.ToString(), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.ToUIString(), zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(value.ToAbbrUIString(), zelStatusInvalidDateTime);
  value.Set(std::string("00000000000001.000000:000"));
  EXPECT_FALSE(value.IsNull());
}

TEST_F(DateTimeTest, PrecisionShowsTheDateOnlyAndCopiesNeverShareIt) {
  TCIMDateTime stamp(2003, 11, 7, 15, 30, 0, 0, -300);
  TCIMDateTime copy(stamp), assigned;
  assigned = stamp;
  EXPECT_EQ(stamp.ToUIString(), "11/07/2003 15:30:00");
  stamp.SetPrecision(true);
  EXPECT_TRUE(stamp.GetPrecision());
  EXPECT_EQ(stamp.ToUIString(), "11/07/2003 ");
  EXPECT_EQ(stamp.ToString(), "20031107153000.000000-300");
  stamp.Set(1, 0, 0, 0, 0);
  EXPECT_EQ(copy.ToUIString(), "11/07/2003 15:30:00");
  EXPECT_EQ(assigned.ToUIString(), "11/07/2003 15:30:00");
}

TEST_F(DateTimeTest, ComparisonByInstantOrByLengthNeverMixed) {
  struct Row {
    TCIMDateTime a, b;
    bool equal, less;
  };
  Row const rows[] = {
      {Stamp("20031107153000.000000+000"), Stamp("20031107163000.000000+060"), true, false},
      {Stamp("20031107153000.000000+060"), Stamp("20031107153000.000000+000"), false, true},
      {Stamp("20031107153000.000001+000"), Stamp("20031107153000.000002+000"), false, true},
      // Fields beyond their range compare as mktime normalises them.
      {TCIMDateTime(2003, 13, 1, 0, 0, 0, 0, 0), Stamp("20040101000000.000000+000"), true, false},
      // The seconds decide first: a timestamp's microseconds never carry over.
      {TCIMDateTime(2003, 11, 7, 15, 30, 0, 1500000, 0), TCIMDateTime(2003, 11, 7, 15, 30, 1, 0, 0),
       false, true},
      {TCIMDateTime(0, 23, 59, 59, 999999), TCIMDateTime(1, 0, 0, 0, 0), false, true},
      {TCIMDateTime(0, 0, 0, 1, 5), TCIMDateTime(0, 0, 0, 1, 6), false, true},
  };
  for (Row const& row : rows) {
    SCOPED_TRACE(row.a.ToString() + " vs " + row.b.ToString());
    EXPECT_EQ(row.a == row.b, row.equal);
    EXPECT_EQ(row.a < row.b, row.less);
  }
  TCIMDateTime stamp = Stamp("20031107153000.000000+000");
  TCIMDateTime interval(1, 0, 0, 0, 0), empty;
  EXPECT_ZEL_THROW(stamp == interval, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(interval < stamp, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(empty < stamp, zelStatusInvalidDateTime);
  // Arithmetic without meaning throws as well.
  EXPECT_ZEL_THROW(stamp + stamp, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(stamp + empty, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(empty + interval, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(stamp - empty, zelStatusInvalidDateTime);
  EXPECT_ZEL_THROW(TCIMDateTime::GetDifference(stamp, interval), zelStatusNotImplemented);
}

TEST_F(DateTimeTest, ArithmeticInMicroseconds) {
  std::pair<std::string, char const*> const rows[] = {
      // Intervals: sums, and distances whatever the order.
      {Add("00000000235959.999999:000", "00000000000000.000001:000"), "00000001000000.000000:000"},
      {Sub("00000000000000.000001:000", "00000000010000.000000:000"), "00000000005959.999999:000"},
      {Sub("99999999235959.999999:000", "99999999235959.999999:000"), "00000000000000.000000:000"},
      // A timestamp and an interval, in either order: the timestamp's offset is kept.
      {Add("20031231235959.500000+000", "00000000000001.000000:000"), "20040101000000.500000+000"},
      {Add("00000000000001.000000:000", "20031231235959.500000+000"), "20040101000000.500000+000"},
      {Sub("20031107153000.000000-300", "00000007160000.000001:000"), "20031030232959.999999-300"},
      // Two timestamps: the distance between the instants, whatever the order.
      {Sub("20031107153000.000000+000", "20031107153000.000000+060"), "00000000010000.000000:000"},
      {Sub("20031107153000.000000+060", "20031107153000.000000+000"), "00000000010000.000000:000"},
      {Sub("20040301000000.000000+000", "20040228120000.250000+000"), "00000001115959.750000:000"},
  };
  for (auto const& row : rows)
    EXPECT_EQ(row.first, row.second);
}

TEST_F(DateTimeTest, SummerTimeDoesNotShiftTheArithmetic) {
  // Central European rules, with summer time from the last Sunday of March to that of October.
  ScopedTimeZone summer("CET-1CEST,M3.5.0,M10.5.0/3");
  EXPECT_EQ(Add("20030101120000.000000+120", "00000181000000.000000:000"),
            "20030701120000.000000+120");
  EXPECT_EQ(Sub("20030701120000.000000+000", "20030101120000.000000+120"),
            "00000181020000.000000:000");
}

// A timestamp is valid exactly when mktime accepts its fields; the reader decides most of them
// without asking mktime, so its answer is checked against mktime's own around the one second
// that mktime refuses (the second before 1970, local time) and far from it.
TEST_F(DateTimeTest, ValidityAgreesWithMktimeAroundTheEpochInEveryZone) {
  char const* zones[] = {"UTC0", "EST5EDT,M3.2.0,M11.1.0", "CET-1CEST,M3.5.0,M10.5.0/3",
                         "NZST-12NZDT,M9.5.0,M4.1.0/3", "XXX-14"};
  for (char const* zone : zones) {
    SCOPED_TRACE(zone);
    ScopedTimeZone scoped(zone);
    int refused = 0;
    // Local wall clocks from three days before to three days after the epoch's last second.
    for (time_t t = -3 * 86400 - 1; t <= 3 * 86400; t += 1800) {
      for (time_t probe : {t, t - 1, t + 1}) {
        struct tm fields;
        localtime_r(&probe, &fields);
        bool expected = MktimeAccepts(fields);
        refused += !expected;
        EXPECT_EQ(ReaderAccepts(fields), expected) << "at " << probe;
      }
    }
    EXPECT_GE(refused, 1) << "the second before 1970 was never probed";

    struct tm far = tm();
    far.tm_year = 2003 - 1900;
    far.tm_mon = 10;
    far.tm_mday = 7;
    EXPECT_TRUE(ReaderAccepts(far));
  }
  // The offset is taken off the minutes before mktime sees them.
  EXPECT_ZEL_THROW(TCIMDateTime(std::string("19700101000059.000000+001")),
                   zelStatusInvalidDateTime);
  // Fields past their range are normalised by mktime, not refused.
  EXPECT_EQ(TCIMDateTime(std::string("20031399997599.000000+000")).ToString(),
            "20031399997599.000000+000");
}
