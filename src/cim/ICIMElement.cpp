// The interfaces' destructors, emitted once so that their type information is exported.
#include "ICIMAllowQualifiers.h"
#include "ICIMElement.h"
#include "cim/TCIMElementImpl.h"

ICIMElement::~ICIMElement() {}
ICIMAllowQualifiers::~ICIMAllowQualifiers() {}
TCIMElementImpl::~TCIMElementImpl() {}
