// Local time, host name, current directory, sleeping and the administrator test, each
// against the system's own answer.
#include "helpers.h"

#include <chrono>
#include <ctime>

#include <sys/wait.h>

class TimeAndIdentityTest : public ZelTest {};

// Seconds since the epoch of a date-time's fields, read in its own UTC offset.
static time_t EpochOf(TCIMDateTime const& dt) {
  struct tm fields = {};
  fields.tm_year = dt.GetYear() - 1900;
  fields.tm_mon = dt.GetMonth() - 1;
  fields.tm_mday = dt.GetDay();
  fields.tm_hour = dt.GetHour();
  fields.tm_min = dt.GetMinute();
  fields.tm_sec = dt.GetSecond();
  return ::timegm(&fields) - dt.GetUTCOffset() * 60;
}

TEST_F(TimeAndIdentityTest, GetLocalTimeAgreesWithTime) {
  time_t before = std::time(nullptr);
  TCIMDateTime now = TOSSpecific::GetLocalTime();
  time_t after = std::time(nullptr);
  EXPECT_FALSE(now.IsInterval());
  EXPECT_GE(EpochOf(now), before);
  EXPECT_LE(EpochOf(now), after);
  EXPECT_LT(now.GetMicroSeconds(), 1000000u);
  EXPECT_EQ(now.GetMicroSeconds() % 1000, 0u) << "milliseconds only";
}

TEST_F(TimeAndIdentityTest, GetLocalTimeCarriesTheZoneOffset) {
  {
    // Five and a half hours east of UTC, no daylight saving.
    ScopedEnv zone("TZ", "ZEL-5:30");
    ::tzset();
    time_t before = std::time(nullptr);
    TCIMDateTime now = TOSSpecific::GetLocalTime();
    EXPECT_EQ(now.GetUTCOffset(), 330);
    EXPECT_GE(EpochOf(now), before);
    EXPECT_LE(EpochOf(now), before + 2);
  }
  ::tzset();
}

TEST_F(TimeAndIdentityTest, MachineAndOperatingSystemNameAreTheHostName) {
  char host[256] = {};
  ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
  EXPECT_EQ(TOSSpecific::GetMachineName(), host);
  EXPECT_EQ(TOSSpecific::GetOperatingSystemName(), host);
}

TEST_F(TimeAndIdentityTest, GetCurrentDirFailsOnLinux) {
  EXPECT_ZEL_THROW(TOSSpecific::GetCurrentDir(), zelStatusFail);
}

TEST_F(TimeAndIdentityTest, USleepTakesMilliseconds) {
  auto start = std::chrono::steady_clock::now();
  TOSSpecific::USleep(5);
  auto slept = std::chrono::steady_clock::now() - start;
  EXPECT_GE(slept, std::chrono::milliseconds(5));
  EXPECT_LT(slept, std::chrono::milliseconds(1000));
}

TEST_F(TimeAndIdentityTest, IsAdminFollowsTheRealUserId) {
  EXPECT_EQ(TOSSpecific::IsAdmin(), ::getuid() == 0);
  if (::getuid() != 0)
    return;
  // As root, also check the other answer from a child that gives up its rights.
  pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0)
    ::_exit(::setuid(65534) != 0 ? 2 : TOSSpecific::IsAdmin() ? 1 : 0);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0) << "1: still admin; 2: setuid failed";
}
