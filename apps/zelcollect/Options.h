// zelcollect's command line: the command, what to load, what to collect, where results go.
#ifndef ZELCOLLECT_OPTIONS_H
#define ZELCOLLECT_OPTIONS_H

#include "Format.h"

#include "zelcore.h"

#include <string>
#include <vector>

namespace zelcollect {

struct TOptions {
  std::string fCommand = "collect";     ///< collect, or the verb given first
  std::vector<std::string> fArguments;  ///< the command's operands
  std::string fPluginDir;               ///< empty: the bundled plugins
  std::vector<std::string> fSchemaFiles; ///< loaded after the bundled schema
  std::vector<std::string> fClassNames; ///< empty: every class
  std::string fOutputFile = "inventory.xml.gz";
  bool fWriteOutput = true;
  bool fVerify = false;
  std::string fLogFile;
  zelLogSeverity fLogLevel = zelLogStatus;
  EFormat fFormat = EFormat::kText;
  bool fUpload = false;   ///< send the result to the collection server
  std::string fUploadName; ///< empty: host and collection time
  std::string fCompareFile; ///< collect: print the differences against this inventory
  bool fAll = false;        ///< compare volatile properties too
  bool fHelp = false;
  bool fVersion = false;
};

/// Throws TUsageError.
TOptions ParseOptions(int argc, char** argv);
const char* UsageText();

} // namespace zelcollect

#endif
