// Local time, host name, current directory, sleeping and the administrator test, each
// against the system's own answer.
#include "ScopedTimeZone.h"
#include "helpers.h"

#include <chrono>
#include <ctime>

class TimeAndIdentityTest : public ZelTest {};

// Seconds since the epoch of a date-time's fields, read in its own UTC offset.
static time_t EpochOf(TCIMDateTime const& dt) {
  struct tm fields = {};
  EXPECT_NE(::strptime(dt.ToString().c_str(), "%Y%m%d%H%M%S", &fields), nullptr);
  return ::timegm(&fields) - dt.GetUTCOffset() * 60;
}

TEST_F(TimeAndIdentityTest, GetLocalTimeIsNowWithTheZonesOffset) {
  // Five and a half hours east of UTC, then the same with summer time all year.
  for (auto zone : {std::make_pair("ZEL-5:30", 330), {"ZEL-5:30ZDT,0/0,J365/25", 390}}) {
    ScopedTimeZone scoped(zone.first);
    time_t before = std::time(nullptr);
    TCIMDateTime now = TOSSpecific::GetLocalTime();
    time_t after = std::time(nullptr);
    EXPECT_FALSE(now.IsInterval());
    EXPECT_EQ(now.GetUTCOffset(), zone.second);
    EXPECT_GE(EpochOf(now), before);
    EXPECT_LE(EpochOf(now), after);
    EXPECT_EQ(now.GetMicroSeconds() % 1000, 0u) << "milliseconds only";
  }
}

TEST_F(TimeAndIdentityTest, HostNameCurrentDirectorySleepAndRights) {
  char host[256] = {};
  ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
  EXPECT_EQ(TOSSpecific::GetMachineName(), host);
  EXPECT_EQ(TOSSpecific::GetOperatingSystemName(), host);
  // The path-length limit is no pathconf name: the query fails on Linux, on purpose.
  EXPECT_ZEL_THROW(TOSSpecific::GetCurrentDir(), zelStatusFail);

  // USleep takes milliseconds.
  auto start = std::chrono::steady_clock::now();
  TOSSpecific::USleep(5);
  auto slept = std::chrono::steady_clock::now() - start;
  EXPECT_GE(slept, std::chrono::milliseconds(5));
  EXPECT_LT(slept, std::chrono::milliseconds(1000));

  // Root is the administrator, nobody is not.
  if (::getuid() != 0)
    GTEST_SKIP() << "not root: no administrator to compare with nobody";
  EXPECT_TRUE(TOSSpecific::IsAdmin());
  EXPECT_EQ(AsNobody(TOSSpecific::IsAdmin), 0);
}
