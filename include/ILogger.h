// ILogger: the process-wide log as the rest of the library sees it.
#ifndef ILOGGER_H
#define ILOGGER_H

#include "TCIMDateTime.h"
#include "zelcore.h"

#include <list>
#include <string>

class ZEL_API ILogger {
public:
  /// One entry of the in-memory log.
  struct TLogEntry {
    IPlugin const* fPlugin; ///< Null for the core.
    zelLogSeverity fSeverity;
    std::string fText;
    TCIMDateTime fTime; ///< Local time when logged.
  };

  virtual ~ILogger();
  /// Drops lines above the threshold before formatting anything.
  virtual void OutputLogEntry(IPlugin const* plugin, zelLogSeverity severity,
                              std::string const& text) = 0;
  /// A hex dump of at most 10240 bytes on one line.
  virtual void OutputLogEntry(IPlugin const* plugin, zelLogSeverity severity, void const* data,
                              int size) = 0;
  /// Entries of severity up to debug, and memory-only ones, in arrival order.
  virtual std::list<TLogEntry>& GetLog() = 0;
  virtual void ClearLog() = 0;
  virtual void SetLogThreshold(zelLogSeverity threshold) = 0;
  virtual zelLogSeverity GetLogThreshold() = 0;
  /// Opens (and empties) the file; zelStatusAccessDenied or zelStatusFileSystemError.
  virtual void SetLogFilename(std::string name) = 0;
};

#endif
