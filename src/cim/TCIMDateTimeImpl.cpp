// TCIMDateTimeImpl: the 25-character CIM datetime form, validation through the platform's
// local-time conversion, the readable forms, comparison and arithmetic in microseconds.
#include "cim/TCIMDateTimeImpl.h"

#include "TZELException.h"

#include <cstdio>
#include <cstdlib>
#include <time.h>

static const int64_t kMicrosPerSecond = 1000000;

[[noreturn]] static void InvalidDateTime() { throw TZELException(zelStatusInvalidDateTime); }

// Converts timestamp fields as local time, the minute shifted by the UTC offset. Fields out
// of range are normalised by mktime; only its failure makes the timestamp invalid.
static bool TimestampToSeconds(unsigned short year, unsigned short month, unsigned int day,
                               unsigned short hour, unsigned short minute, unsigned short second,
                               short utcOffset, time_t& seconds) {
  struct tm fields = tm();
  fields.tm_year = year - 1900;
  fields.tm_mon = month - 1;
  fields.tm_mday = static_cast<int>(day);
  fields.tm_hour = hour;
  fields.tm_min = minute - utcOffset;
  fields.tm_sec = second;
  fields.tm_isdst = 0;
  seconds = mktime(&fields);
  return seconds != static_cast<time_t>(-1);
}

// Days from 1970-01-01 to the given day of the proleptic Gregorian calendar; month may run
// past 12 (it carries into the year) and day past the month's end.
static int64_t DaysFromCivil(int64_t year, int64_t month, int64_t day) {
  year += (month - 1) / 12;
  month = (month - 1) % 12 + 1;
  year -= month <= 2;
  int64_t era = (year >= 0 ? year : year - 399) / 400;
  int64_t yearOfEra = year - era * 400;
  int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

// Whether mktime accepts the timestamp. mktime re-reads the zone file on every call, which
// dominates loading a document full of date-times. For fields in the ranges that the text form
// can carry, its only failure is the answer -1, the second before 1970 in local time; no zone
// is more than a day from UTC, so away from that second the answer is known without asking.
static bool IsValidTimestamp(unsigned short year, unsigned short month, unsigned int day,
                             unsigned short hour, unsigned short minute, unsigned short second,
                             short utcOffset) {
  if (year <= 9999 && month >= 1 && month <= 99 && day <= 99 && hour <= 99 && minute <= 99 &&
      second <= 99) {
    int64_t seconds = DaysFromCivil(year, month, day) * 86400 + hour * 3600 +
                      (minute - utcOffset) * 60 + second;
    if (seconds > 2 * 86400 || seconds < -2 * 86400)
      return true;
  }
  time_t seconds;
  return TimestampToSeconds(year, month, day, hour, minute, second, utcOffset, seconds);
}

// Breaks seconds down as local standard time, the inverse of TimestampToSeconds: a
// daylight-saving reading from localtime is moved back by the zone's shift.
static bool SecondsToTimestamp(time_t seconds, struct tm& fields) {
  if (!localtime_r(&seconds, &fields))
    return false;
  if (fields.tm_isdst <= 0)
    return true;
  struct tm standard = fields;
  standard.tm_isdst = 0;
  time_t readAsStandard = mktime(&standard); // The same wall clock, later by the shift.
  if (readAsStandard == static_cast<time_t>(-1))
    return false;
  time_t wallClock = timegm(&fields) - (readAsStandard - seconds);
  return gmtime_r(&wallClock, &fields) != 0;
}

// Both sides must hold the same kind of date-time.
static void CheckComparable(TCIMDateTimeImpl const& a, TCIMDateTimeImpl const& b) {
  if (a.IsNull() || b.IsNull() || a.IsInterval() != b.IsInterval())
    InvalidDateTime();
}

// Reads count decimal digits, already checked to be digits.
static unsigned long Digits(char const* text, int count) {
  unsigned long value = 0;
  for (int i = 0; i < count; ++i)
    value = value * 10 + static_cast<unsigned long>(text[i] - '0');
  return value;
}

// "1 day " or "n days ", for the non-zero parts of an interval.
static void AppendPart(std::string& out, unsigned long count, char const* unit) {
  if (count == 0)
    return;
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%lu %s%s ", count, unit, count == 1 ? "" : "s");
  out += buffer;
}

TCIMDateTimeImpl::TCIMDateTimeImpl()
    : fNull(true), fYear(0), fMonth(0), fDay(0), fHour(0), fMinute(0), fSecond(0),
      fMicroSeconds(0), fUTCOffset(0), fInterval(false), fPrecision(false) {}

void TCIMDateTimeImpl::Set(unsigned short year, unsigned short month, unsigned int day,
                           unsigned short hour, unsigned short minute, unsigned short second,
                           unsigned int microseconds, short utcOffset) {
  if (!IsValidTimestamp(year, month, day, hour, minute, second, utcOffset))
    InvalidDateTime();
  fYear = year;
  fMonth = month;
  fUTCOffset = utcOffset;
  SetClock(day, hour, minute, second, microseconds, /*interval=*/false);
}

void TCIMDateTimeImpl::Set(unsigned int days, unsigned short hours, unsigned short minutes,
                           unsigned short seconds, unsigned int microseconds) {
  if (hours > 23 || minutes > 59 || seconds > 59 || microseconds >= 1000000)
    InvalidDateTime();
  SetClock(days, hours, minutes, seconds, microseconds, /*interval=*/true);
}

// An interval keeps the year, month and offset it had: they are not its fields.
void TCIMDateTimeImpl::SetClock(unsigned int day, unsigned short hour, unsigned short minute,
                                unsigned short second, unsigned int microseconds,
                                bool interval) {
  fDay = day;
  fHour = hour;
  fMinute = minute;
  fSecond = second;
  fMicroSeconds = microseconds;
  fInterval = interval;
  fNull = false;
}

void TCIMDateTimeImpl::Set(std::string const& text) {
  if (text.size() != 25 || text[14] != '.')
    InvalidDateTime();
  for (int i = 0; i < 25; ++i)
    if (i != 14 && i != 21 && (text[i] < '0' || text[i] > '9'))
      InvalidDateTime();

  char const* s = text.c_str();
  unsigned short hour = static_cast<unsigned short>(Digits(s + 8, 2));
  unsigned short minute = static_cast<unsigned short>(Digits(s + 10, 2));
  unsigned short second = static_cast<unsigned short>(Digits(s + 12, 2));
  unsigned int micro = static_cast<unsigned int>(Digits(s + 15, 6));
  unsigned long tail = Digits(s + 22, 3);
  switch (text[21]) {
  case ':':
    if (tail != 0)
      InvalidDateTime();
    Set(static_cast<unsigned int>(Digits(s, 8)), hour, minute, second, micro);
    return;
  case '+':
  case '-': {
    short offset = static_cast<short>(text[21] == '-' ? -static_cast<long>(tail) : tail);
    Set(static_cast<unsigned short>(Digits(s, 4)), static_cast<unsigned short>(Digits(s + 4, 2)),
        static_cast<unsigned int>(Digits(s + 6, 2)), hour, minute, second, micro, offset);
    return;
  }
  default:
    InvalidDateTime();
  }
}

std::string TCIMDateTimeImpl::ToString() const {
  if (fNull)
    InvalidDateTime();
  char buffer[64];
  if (fInterval)
    std::snprintf(buffer, sizeof buffer, "%08u%02u%02u%02u.%06u:000", fDay, fHour, fMinute,
                  fSecond, fMicroSeconds);
  else
    std::snprintf(buffer, sizeof buffer, "%04u%02u%02u%02u%02u%02u.%06u%c%03d", fYear, fMonth,
                  fDay, fHour, fMinute, fSecond, fMicroSeconds, fUTCOffset < 0 ? '-' : '+',
                  std::abs(static_cast<int>(fUTCOffset)));
  return buffer;
}

std::string TCIMDateTimeImpl::ToUIString() const {
  if (fNull)
    InvalidDateTime();
  if (fInterval) {
    std::string out;
    AppendPart(out, fDay, "day");
    AppendPart(out, fHour, "hour");
    AppendPart(out, fMinute, "minute");
    AppendPart(out, fSecond, "second");
    AppendPart(out, fMicroSeconds / 1000, "millisecond");
    AppendPart(out, fMicroSeconds % 1000, "microsecond");
    return out;
  }
  char buffer[64];
  if (fPrecision)
    std::snprintf(buffer, sizeof buffer, "%02u/%02u/%04u ", fMonth, fDay, fYear);
  else
    std::snprintf(buffer, sizeof buffer, "%02u/%02u/%04u %02u:%02u:%02u", fMonth, fDay, fYear,
                  fHour, fMinute, fSecond);
  return buffer;
}

std::string TCIMDateTimeImpl::ToAbbrUIString() const {
  if (fNull)
    InvalidDateTime();
  // A timestamp's day of the month is read as days, as for an interval.
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%02llu:%02u:%02u.%03u",
                static_cast<unsigned long long>(fDay) * 24 + fHour, fMinute, fSecond,
                fMicroSeconds / 1000);
  return buffer;
}

// Whole seconds (an interval's total, a timestamp's instant) and the microseconds that refine
// them: a timestamp's microseconds are not limited, so they never carry into the seconds.
std::pair<int64_t, unsigned int> TCIMDateTimeImpl::Seconds() const {
  if (fInterval)
    return std::make_pair(static_cast<int64_t>(fDay) * 86400 + fHour * 3600 + fMinute * 60 +
                              fSecond,
                          fMicroSeconds);
  time_t seconds;
  if (!TimestampToSeconds(fYear, fMonth, fDay, fHour, fMinute, fSecond, fUTCOffset, seconds))
    InvalidDateTime();
  return std::make_pair(static_cast<int64_t>(seconds), fMicroSeconds);
}

int64_t TCIMDateTimeImpl::Microseconds() const {
  std::pair<int64_t, unsigned int> seconds = Seconds();
  return seconds.first * kMicrosPerSecond + seconds.second;
}

void TCIMDateTimeImpl::SetIntervalFromMicroseconds(int64_t total) {
  int64_t seconds = total / kMicrosPerSecond;
  SetClock(static_cast<unsigned int>(seconds / 86400),
           static_cast<unsigned short>(seconds / 3600 % 24),
           static_cast<unsigned short>(seconds / 60 % 60), static_cast<unsigned short>(seconds % 60),
           static_cast<unsigned int>(total % kMicrosPerSecond), /*interval=*/true);
}

// The instant was shifted by the offset when converted; shift it back so the result reads
// in the same terms as its operand.
void TCIMDateTimeImpl::SetTimestampFromMicroseconds(int64_t instant, short utcOffset) {
  int64_t micros = instant % kMicrosPerSecond;
  int64_t seconds = instant / kMicrosPerSecond;
  if (micros < 0) {
    micros += kMicrosPerSecond;
    --seconds;
  }
  time_t shifted = static_cast<time_t>(seconds + utcOffset * 60);
  struct tm fields;
  if (!SecondsToTimestamp(shifted, fields))
    InvalidDateTime();
  fYear = static_cast<unsigned short>(fields.tm_year + 1900);
  fMonth = static_cast<unsigned short>(fields.tm_mon + 1);
  fUTCOffset = utcOffset;
  SetClock(static_cast<unsigned int>(fields.tm_mday), static_cast<unsigned short>(fields.tm_hour),
           static_cast<unsigned short>(fields.tm_min), static_cast<unsigned short>(fields.tm_sec),
           static_cast<unsigned int>(micros), /*interval=*/false);
}

bool TCIMDateTimeImpl::operator==(TCIMDateTimeImpl const& other) const {
  CheckComparable(*this, other);
  return Seconds() == other.Seconds();
}

bool TCIMDateTimeImpl::operator<(TCIMDateTimeImpl const& other) const {
  CheckComparable(*this, other);
  return Seconds() < other.Seconds();
}

void TCIMDateTimeImpl::Add(TCIMDateTimeImpl const& left, TCIMDateTimeImpl const& right) {
  if (left.fNull || right.fNull)
    InvalidDateTime();
  if (left.fInterval && right.fInterval) {
    SetIntervalFromMicroseconds(left.Microseconds() + right.Microseconds());
  } else if (!left.fInterval && !right.fInterval) {
    InvalidDateTime();
  } else {
    TCIMDateTimeImpl const& stamp = left.fInterval ? right : left;
    TCIMDateTimeImpl const& span = left.fInterval ? left : right;
    SetTimestampFromMicroseconds(stamp.Microseconds() + span.Microseconds(), stamp.fUTCOffset);
  }
}

void TCIMDateTimeImpl::Subtract(TCIMDateTimeImpl const& left, TCIMDateTimeImpl const& right) {
  if (left.fNull || right.fNull)
    InvalidDateTime();
  if (left.fInterval == right.fInterval) { // Two of a kind: the distance, an interval.
    int64_t difference = left.Microseconds() - right.Microseconds();
    SetIntervalFromMicroseconds(difference < 0 ? -difference : difference);
  } else if (!left.fInterval) {
    SetTimestampFromMicroseconds(left.Microseconds() - right.Microseconds(), left.fUTCOffset);
  } else {
    // An interval minus a timestamp has no meaning.
    InvalidDateTime();
  }
}
