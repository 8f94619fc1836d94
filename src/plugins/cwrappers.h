// The frame shared by every exported C function: the NULL-argument line, the catch of
// TZELException, and the bodies behind the opaque C handles.
#ifndef CWRAPPERS_H
#define CWRAPPERS_H

#include "TCIMValue.h"
#include "TRootObject.h"
#include "TZELException.h"
#include "log/ZelLog.h"
#include "zelcore.h"

#include <vector>

/// The body of the opaque C value array.
struct zelCIMValueArray {
  std::vector<TCIMValue> fValues;
};

/// Logs the function's NULL-argument text (passed whole, never assembled) and returns
/// zelStatusFail.
inline zelStatusCode ZelNullArgument(char const* text, IPlugin const* plugin = 0,
                                     zelLogSeverity severity = zelLogError) {
  if (ILogger* logger = TRootObject::GetCoreLogger())
    logger->OutputLogEntry(plugin, severity, text);
  return zelStatusFail;
}

/// Runs work and turns a TZELException into its code, logging nothing (the thrower has).
/// Other exception types pass through on purpose.
template <class Work>
inline zelStatusCode ZelGuard(Work work) {
  try {
    work();
  } catch (TZELException& e) {
    return e.GetCode();
  }
  return zelStatusOK;
}

#endif
