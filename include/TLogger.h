// TLogger: the core logger singleton: threshold, log file and in-memory copy.
#ifndef TLOGGER_H
#define TLOGGER_H

#include "ILogger.h"

#include <fstream>
#include <list>
#include <string>

class ZEL_API TLogger : public ILogger {
public:
  /// Creates the singleton; returns 0. Lines logged before this call are dropped.
  static int Initialize();
  /// Null before Initialize().
  static TLogger* GetInstance();

  virtual ~TLogger();
  virtual void OutputLogEntry(IPlugin const* plugin, zelLogSeverity severity,
                              std::string const& text) override;
  virtual void OutputLogEntry(IPlugin const* plugin, zelLogSeverity severity, void const* data,
                              int size) override;
  virtual std::list<TLogEntry>& GetLog() override;
  virtual void ClearLog() override;
  virtual void SetLogThreshold(zelLogSeverity threshold) override;
  virtual zelLogSeverity GetLogThreshold() override;
  virtual void SetLogFilename(std::string name) override;

  static TLogger* fgInstance;

private:
  TLogger();
  TLogger(TLogger const&);
  TLogger& operator=(TLogger const&);

  zelLogSeverity fThreshold;
  std::string fLogFilename;
  std::ofstream fLogFile;
  std::list<TLogEntry> fLog;
};

#endif
