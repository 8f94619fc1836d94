// TZELException: a bare status code; what() names it.
#include "TZELException.h"

TZELException::TZELException(zelStatusCode code) : fCode(code) {}

TZELException::~TZELException() throw() {}

const char* TZELException::what() const throw() { return zelTranslateStatusCode(fCode); }
