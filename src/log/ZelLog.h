// Internal logging helpers: one log line for the core, and "log, then throw" in one call.
#ifndef ZELLOG_H
#define ZELLOG_H

#include "ILogger.h"
#include "TZELException.h"
#include "zelcore.h"

#include <string>

/// The core logger if a line of this severity would be kept or written, else null; lets
/// callers skip building the text of a line that would be dropped.
ILogger* ZelLogFor(zelLogSeverity severity);

/// One core line (no plugin). Dropped when the logger does not exist yet.
void ZelLog(zelLogSeverity severity, std::string const& text);

/// Builds the text only when the line would be kept: ZelLogLazy(zelLogDebug, [&] { return ...; }).
template <class BuildText>
inline void ZelLogLazy(zelLogSeverity severity, IPlugin const* plugin, BuildText build) {
  if (ILogger* logger = ZelLogFor(severity))
    logger->OutputLogEntry(plugin, severity, build());
}
template <class BuildText>
inline void ZelLogLazy(zelLogSeverity severity, BuildText build) {
  ZelLogLazy(severity, 0, build);
}

/// Writes one core line, then returns the code: the failure of a function that returns it.
zelStatusCode ZelLogStatus(zelStatusCode code, std::string const& text,
                           zelLogSeverity severity = zelLogError);

/// Writes one core line, then throws the bare code.
[[noreturn]] void ZelFail(zelStatusCode code, std::string const& text,
                          zelLogSeverity severity = zelLogError);

#endif
