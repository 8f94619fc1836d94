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
  // Outputs: how much the formats for people show, and redaction.
  bool fFull = false;
  bool fRedact = false;
  std::string fRedactKeyFile; ///< empty: the default key file
  std::string fCompareFile; ///< collect: print the differences against this inventory
  bool fAll = false;        ///< compare volatile properties too
  bool fHelp = false;
  bool fVersion = false;

  // Which plugins run, how they are contained, and how files are created.
  std::vector<std::string> fPluginDirs;      ///< -p: added to the bundled plugins
  bool fNoBundled = false;                   ///< --no-bundled
  std::vector<std::string> fExcludedClasses; ///< -x
  bool fList = false;                        ///< --list: plugins and classes, no collection
  unsigned fTimeout = 120;                   ///< seconds per plugin call
  bool fAllowUnsafePlugins = false;          ///< load files others could have written
  bool fFollowSymlinks = false;              ///< write through a link at the output's name
  bool fLogLevelGiven = false;               ///< -L: without -l the log goes to stderr
};

/// Throws TUsageError.
TOptions ParseOptions(int argc, char** argv);
const char* UsageText();

} // namespace zelcollect

#endif
