// Internal logging helpers shared by every subsystem.
#include "log/ZelLog.h"

#include "TRootObject.h"

ILogger* ZelLogFor(zelLogSeverity severity) {
  ILogger* logger = TRootObject::GetCoreLogger();
  if (!logger)
    return 0;
  if (severity != zelLogMemoryOnly && severity > logger->GetLogThreshold())
    return 0;
  return logger;
}

void ZelLog(zelLogSeverity severity, std::string const& text) {
  if (ILogger* logger = TRootObject::GetCoreLogger())
    logger->OutputLogEntry(0, severity, text);
}

zelStatusCode ZelLogStatus(zelStatusCode code, std::string const& text,
                           zelLogSeverity severity) {
  ZelLog(severity, text);
  return code;
}

void ZelFail(zelStatusCode code, std::string const& text, zelLogSeverity severity) {
  throw TZELException(ZelLogStatus(code, text, severity));
}
