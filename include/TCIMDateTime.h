// TCIMDateTime: a CIM timestamp or interval, or NULL; copies never share state.
#ifndef TCIMDATETIME_H
#define TCIMDATETIME_H

#include "zelcore.h"

#include <boost/shared_ptr.hpp>
#include <string>

class TCIMDateTimeImpl;

/// Every failure throws TZELException(zelStatusInvalidDateTime) unless noted.
class ZEL_API TCIMDateTime {
public:
  TCIMDateTime();
  TCIMDateTime(unsigned short year, unsigned short month, unsigned int day, unsigned short hour,
               unsigned short minute, unsigned short second, unsigned int microseconds,
               short utcOffset);
  TCIMDateTime(unsigned int days, unsigned short hours, unsigned short minutes,
               unsigned short seconds, unsigned int microseconds);
  /// From the 25-character CIM form, "yyyymmddhhmmss.mmmmmm+utc" or "ddddddddhhmmss.mmmmmm:000".
  TCIMDateTime(std::string text);
  TCIMDateTime(TCIMDateTime const& other);
  TCIMDateTime& operator=(TCIMDateTime const& other);

  void Set(unsigned short year, unsigned short month, unsigned int day, unsigned short hour,
           unsigned short minute, unsigned short second, unsigned int microseconds,
           short utcOffset);
  void Set(unsigned int days, unsigned short hours, unsigned short minutes, unsigned short seconds,
           unsigned int microseconds);
  void Set(std::string text);

  /// The 25-character CIM form.
  std::string ToString() const;
  /// "mm/dd/yyyy hh:mm:ss", or "1 day 2 hours ..." for an interval.
  std::string ToUIString() const;
  /// "hh:mm:ss.mmm" with total hours, for an interval.
  std::string ToAbbrUIString() const;

  unsigned short GetYear() const;
  unsigned short GetMonth() const;
  unsigned int GetDay() const;
  unsigned short GetHour() const;
  unsigned short GetMinute() const;
  unsigned short GetSecond() const;
  unsigned int GetMicroSeconds() const;
  short GetUTCOffset() const;
  bool IsInterval() const;
  bool IsNull() const;
  bool GetPrecision() const;
  /// When set, ToUIString() of a timestamp shows the date only.
  void SetPrecision(bool dateOnly);
  void Clear();

  bool operator==(TCIMDateTime const& other) const;
  bool operator<(TCIMDateTime const& other) const;
  TCIMDateTime operator+(TCIMDateTime const& other) const;
  TCIMDateTime operator-(TCIMDateTime const& other) const;

  /// Always throws zelStatusNotImplemented.
  static TCIMDateTime GetDifference(TCIMDateTime& a, TCIMDateTime& b);

  TCIMDateTimeImpl* GetBody() const;

private:
  boost::shared_ptr<TCIMDateTimeImpl> fBody;
};

#endif
