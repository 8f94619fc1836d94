// TLogger: filters by severity, writes prefixed lines to the log file or the OS output
// routine, and keeps recent entries in memory.
#include "TLogger.h"

#include "IPlugin.h"
#include "IPluginCallbacks.h"
#include "TOSSpecific.h"
#include "TZELException.h"

#include <cerrno>

static const int kMaxDumpBytes = 10240;

// The tag written after the prefix; throws for severities that have none.
static const char* SeverityTag(zelLogSeverity severity) {
  switch (severity) {
  case zelLogError:
    return "[Error] ";
  case zelLogWarning:
    return "[Warning] ";
  case zelLogStatus:
    return "[Status] ";
  case zelLogDebug:
    return "[Debug] ";
  case zelLogVerbose:
    return "[Verbose] ";
  case zelLogMemoryOnly:
    break;
  }
  throw TZELException(zelStatusFail);
}

TLogger* TLogger::fgInstance = 0;

ILogger::~ILogger() {}

int TLogger::Initialize() {
  fgInstance = new TLogger();
  return 0;
}

TLogger* TLogger::GetInstance() { return fgInstance; }

TLogger::TLogger() : fThreshold(zelLogStatus) {}

TLogger::~TLogger() {
  if (!fLogFilename.empty() && fLogFile.is_open()) {
    fLogFile << "-- VOK Log Closed ----------------------------\n";
    fLogFile.close();
  }
}

void TLogger::OutputLogEntry(IPlugin const* plugin, zelLogSeverity severity,
                             std::string const& text) {
  if (severity != zelLogMemoryOnly && severity > fThreshold)
    return;
  if (severity <= zelLogDebug || severity == zelLogMemoryOnly) {
    TLogEntry entry = {plugin, severity, text, TOSSpecific::GetLocalTime()};
    fLog.push_back(entry);
  }
  if (severity == zelLogMemoryOnly)
    return;

  std::string line = "ZEL_";
  line += plugin ? plugin->GetCallbacks()->GetName() + ": " : std::string("Core: ");
  line += SeverityTag(severity); // Throws after the entry above was kept, on purpose.
  line += text;
  line += '\n';

  if (!fLogFilename.empty()) {
    fLogFile << line;
    fLogFile.flush();
  } else {
    TOSSpecific::OutputLogString(line);
  }
}

void TLogger::OutputLogEntry(IPlugin const* plugin, zelLogSeverity severity, void const* data,
                             int size) {
  // The size test comes before the threshold: an oversized block is always reported.
  if (size > kMaxDumpBytes) {
    OutputLogEntry(0, zelLogError, std::string("Too much data to log--10k limit!"));
    return;
  }
  if (severity == zelLogMemoryOnly || severity > fThreshold)
    return;

  static const char kHex[] = "0123456789abcdef";
  unsigned char const* bytes = static_cast<unsigned char const*>(data);
  std::string text;
  text.reserve(size > 0 ? size * 3 : 0);
  for (int i = 0; i < size; ++i) {
    text += kHex[bytes[i] >> 4];
    text += kHex[bytes[i] & 0xf];
    text += ' ';
  }
  OutputLogEntry(plugin, severity, text);
}

std::list<ILogger::TLogEntry>& TLogger::GetLog() { return fLog; }

void TLogger::ClearLog() { fLog.clear(); }

void TLogger::SetLogThreshold(zelLogSeverity threshold) { fThreshold = threshold; }

zelLogSeverity TLogger::GetLogThreshold() { return fThreshold; }

void TLogger::SetLogFilename(std::string name) {
  fLogFilename = name;
  if (fLogFile.is_open())
    fLogFile.close();
  fLogFile.clear();
  errno = 0;
  // At-end without append: an existing file is emptied.
  fLogFile.open(fLogFilename.c_str(), std::ios::out | std::ios::ate);
  if (fLogFile.good()) {
    fLogFile << "-- VOK Log Opened ----------------------------\n";
    fLogFile.flush();
    return;
  }
  throw TZELException(errno == EACCES ? zelStatusAccessDenied : zelStatusFileSystemError);
}
