// TZELException: the library's one exception type; it carries a status code and nothing else.
#ifndef TZELEXCEPTION_H
#define TZELEXCEPTION_H

#include "zelcore.h"

#include <exception>

class ZEL_API TZELException : public std::exception {
public:
  explicit TZELException(zelStatusCode code);
  virtual ~TZELException() throw();
  /// The code's name, e.g. "zelStatusInvalidDateTime".
  virtual const char* what() const throw() override;

  zelStatusCode GetCode() const { return fCode; }

private:
  zelStatusCode fCode;
};

#endif
