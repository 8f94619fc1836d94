// zelcollect's command line: what to load, what to collect, where the results go.
#ifndef ZELCOLLECTOPTIONS_H
#define ZELCOLLECTOPTIONS_H

#include "zelcore.h"

#include <stdexcept>
#include <string>
#include <vector>

struct ZelCollectOptions {
  enum EFormat { eText, eXML, eJSON };

  std::string fPluginDir;                ///< empty: the bundled plugins
  std::vector<std::string> fSchemaFiles; ///< loaded after the bundled schema
  std::vector<std::string> fClassNames;  ///< empty: every class
  std::string fOutputFile = "inventory.xml.gz";
  bool fWriteOutput = true;
  bool fVerify = false;
  std::string fLogFile;
  zelLogSeverity fLogLevel = zelLogStatus;
  EFormat fFormat = eText;
  bool fHelp = false;
  bool fVersion = false;
};

/// A command line that cannot be used; the message is for the user.
class ZelUsageError : public std::runtime_error {
public:
  explicit ZelUsageError(const std::string& message) : std::runtime_error(message) {}
};

/// Throws ZelUsageError.
ZelCollectOptions ZelParseOptions(int argc, char** argv);
const char* ZelUsageText();

#endif
