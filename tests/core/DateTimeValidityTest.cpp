// A timestamp is valid exactly when mktime accepts its fields; the reader decides most of them
// without asking mktime, so its answer is checked against mktime's own around the one second
// that mktime refuses (the second before 1970, local time) and far from it.
#include "ZelTest.h"

#include "TCIMDateTime.h"
#include "ScopedTimeZone.h"

#include <cstdio>

namespace {

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

TEST(DateTimeValidityTest, AgreesWithMktimeAroundTheEpochInEveryZone) {
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
  ScopedTimeZone utc("UTC0");
  EXPECT_ZEL_THROW(TCIMDateTime(std::string("19700101000059.000000+001")),
                   zelStatusInvalidDateTime);
  // Fields past their range are normalised by mktime, not refused.
  EXPECT_EQ(TCIMDateTime(std::string("20031399997599.000000+000")).ToString(),
            "20031399997599.000000+000");
}
