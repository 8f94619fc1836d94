// TCIMDateTime: forwards to its body; copies clone the body.
#include "TCIMDateTime.h"

#include "cim/TCIMDateTimeImpl.h"
#include "TZELException.h"

#include <boost/make_shared.hpp>

TCIMDateTime::TCIMDateTime() : fBody(boost::make_shared<TCIMDateTimeImpl>()) {}

TCIMDateTime::TCIMDateTime(unsigned short year, unsigned short month, unsigned int day,
                           unsigned short hour, unsigned short minute, unsigned short second,
                           unsigned int microseconds, short utcOffset)
    : fBody(boost::make_shared<TCIMDateTimeImpl>()) {
  fBody->Set(year, month, day, hour, minute, second, microseconds, utcOffset);
}

TCIMDateTime::TCIMDateTime(unsigned int days, unsigned short hours, unsigned short minutes,
                           unsigned short seconds, unsigned int microseconds)
    : fBody(boost::make_shared<TCIMDateTimeImpl>()) {
  fBody->Set(days, hours, minutes, seconds, microseconds);
}

TCIMDateTime::TCIMDateTime(std::string text) : fBody(boost::make_shared<TCIMDateTimeImpl>()) {
  fBody->Set(text);
}

TCIMDateTime::TCIMDateTime(TCIMDateTime const& other)
    : fBody(boost::make_shared<TCIMDateTimeImpl>(*other.fBody)) {}

TCIMDateTime& TCIMDateTime::operator=(TCIMDateTime const& other) {
  *fBody = *other.fBody;
  return *this;
}

void TCIMDateTime::Set(unsigned short year, unsigned short month, unsigned int day,
                       unsigned short hour, unsigned short minute, unsigned short second,
                       unsigned int microseconds, short utcOffset) {
  fBody->Set(year, month, day, hour, minute, second, microseconds, utcOffset);
}

void TCIMDateTime::Set(unsigned int days, unsigned short hours, unsigned short minutes,
                       unsigned short seconds, unsigned int microseconds) {
  fBody->Set(days, hours, minutes, seconds, microseconds);
}

void TCIMDateTime::Set(std::string text) { fBody->Set(text); }
std::string TCIMDateTime::ToString() const { return fBody->ToString(); }
std::string TCIMDateTime::ToUIString() const { return fBody->ToUIString(); }
std::string TCIMDateTime::ToAbbrUIString() const { return fBody->ToAbbrUIString(); }
unsigned short TCIMDateTime::GetYear() const { return fBody->GetYear(); }
unsigned short TCIMDateTime::GetMonth() const { return fBody->GetMonth(); }
unsigned int TCIMDateTime::GetDay() const { return fBody->GetDay(); }
unsigned short TCIMDateTime::GetHour() const { return fBody->GetHour(); }
unsigned short TCIMDateTime::GetMinute() const { return fBody->GetMinute(); }
unsigned short TCIMDateTime::GetSecond() const { return fBody->GetSecond(); }
unsigned int TCIMDateTime::GetMicroSeconds() const { return fBody->GetMicroSeconds(); }
short TCIMDateTime::GetUTCOffset() const { return fBody->GetUTCOffset(); }
bool TCIMDateTime::IsInterval() const { return fBody->IsInterval(); }
bool TCIMDateTime::IsNull() const { return fBody->IsNull(); }
bool TCIMDateTime::GetPrecision() const { return fBody->GetPrecision(); }
void TCIMDateTime::SetPrecision(bool dateOnly) { fBody->SetPrecision(dateOnly); }
void TCIMDateTime::Clear() { fBody->Clear(); }
bool TCIMDateTime::operator==(TCIMDateTime const& other) const { return *fBody == *other.fBody; }
bool TCIMDateTime::operator<(TCIMDateTime const& other) const { return *fBody < *other.fBody; }

TCIMDateTime TCIMDateTime::operator+(TCIMDateTime const& other) const {
  TCIMDateTime result;
  result.fBody->Add(*fBody, *other.fBody);
  return result;
}

TCIMDateTime TCIMDateTime::operator-(TCIMDateTime const& other) const {
  TCIMDateTime result;
  result.fBody->Subtract(*fBody, *other.fBody);
  return result;
}

TCIMDateTime TCIMDateTime::GetDifference(TCIMDateTime&, TCIMDateTime&) {
  throw TZELException(zelStatusNotImplemented);
}

TCIMDateTimeImpl* TCIMDateTime::GetBody() const { return fBody.get(); }
