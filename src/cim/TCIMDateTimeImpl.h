// TCIMDateTimeImpl: the fields of a CIM timestamp or interval, with parsing, validation,
// printing, comparison and arithmetic.
#ifndef TCIMDATETIMEIMPL_H
#define TCIMDATETIMEIMPL_H

#include "TCIMDateTime.h"

#include <stdint.h>
#include <string>
#include <utility>

class TCIMDateTimeImpl {
public:
  TCIMDateTimeImpl();

  void Set(unsigned short year, unsigned short month, unsigned int day, unsigned short hour,
           unsigned short minute, unsigned short second, unsigned int microseconds,
           short utcOffset);
  void Set(unsigned int days, unsigned short hours, unsigned short minutes, unsigned short seconds,
           unsigned int microseconds);
  void Set(std::string const& text);

  std::string ToString() const;
  std::string ToUIString() const;
  std::string ToAbbrUIString() const;

  unsigned short GetYear() const { return fYear; }
  unsigned short GetMonth() const { return fMonth; }
  unsigned int GetDay() const { return fDay; }
  unsigned short GetHour() const { return fHour; }
  unsigned short GetMinute() const { return fMinute; }
  unsigned short GetSecond() const { return fSecond; }
  unsigned int GetMicroSeconds() const { return fMicroSeconds; }
  short GetUTCOffset() const { return fUTCOffset; }
  bool IsInterval() const { return fInterval; }
  bool IsNull() const { return fNull; }
  bool GetPrecision() const { return fPrecision; }
  void SetPrecision(bool dateOnly) { fPrecision = dateOnly; }
  void Clear() { fNull = true; }

  bool operator==(TCIMDateTimeImpl const& other) const;
  bool operator<(TCIMDateTimeImpl const& other) const;
  void Add(TCIMDateTimeImpl const& left, TCIMDateTimeImpl const& right);
  void Subtract(TCIMDateTimeImpl const& left, TCIMDateTimeImpl const& right);

private:
  std::pair<int64_t, unsigned int> Seconds() const;
  int64_t Microseconds() const;
  /// The fields both kinds hold, and the kind; the value is no longer NULL.
  void SetClock(unsigned int day, unsigned short hour, unsigned short minute,
                unsigned short second, unsigned int microseconds, bool interval);
  void SetIntervalFromMicroseconds(int64_t total);
  void SetTimestampFromMicroseconds(int64_t instant, short utcOffset);

  bool fNull;
  unsigned short fYear;
  unsigned short fMonth;
  unsigned int fDay;
  unsigned short fHour;
  unsigned short fMinute;
  unsigned short fSecond;
  unsigned int fMicroSeconds;
  short fUTCOffset;
  bool fInterval;
  bool fPrecision;
};

#endif
