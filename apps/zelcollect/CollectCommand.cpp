// zelcollect (collect): inventories this machine with the collector plugins, prints the
// result and writes it as CIM-XML.
#include "Commands.h"

#include "CoreSession.h"
#include "Errors.h"
#include "Format.h"
#include "Inventory.h"
#include "Options.h"
#include "Redaction.h"
#include "ResultFile.h"
#include "Supervisor.h"

#include "TCIMXMLWriter.h"
#include "TContainer.h"

#include <chrono>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace fs = std::filesystem;

namespace zelcollect {

typedef std::chrono::steady_clock TClock;

static double Milliseconds(TClock::time_point since) {
  return std::chrono::duration<double, std::milli>(TClock::now() - since).count();
}

// Reads the result file back into a fresh container and writes that again: the two texts
// must be the same.
static void Verify(const std::string& path, const std::string& written, double collectMs,
                   double writeMs) {
  TClock::time_point start = TClock::now();
  TContainer readBack;
  ReadResultFile(path, readBack);
  double readMs = Milliseconds(start);
  if (TCIMXMLWriter::Write(readBack) != written)
    throw TSetUpError("the result file " + path + " does not read back the same");
  std::cerr << "zelcollect: verified " << path << ": " << FileSize(path) << " bytes; "
            << std::fixed << std::setprecision(1) << "collection " << collectMs
            << " ms, writing " << writeMs << " ms, reading back " << readMs << " ms"
            << std::endl;
}

int RunCollect(const TOptions& options) {
  TBundle bundle = TBundle::Find();
  fs::path pluginDir = options.fPluginDir.empty() ? bundle.fPluginDir : fs::path(options.fPluginDir);
  std::string output = options.fWriteOutput ? fs::absolute(options.fOutputFile).string() : "";

  TCoreSession session(options);
  TContainer& schema = session.GetSchema();
  LoadSchema(schema, bundle.fSchemaDir, options.fSchemaFiles);
  TCollectionOutcome outcome = TSupervisor(options).Run(schema, pluginDir);

  TPresentation presentation;
  presentation.fFull = options.fFull;
  presentation.fFullClasses = options.fClassNames;
  if (options.fRedact) {
    std::string keyFile =
        options.fRedactKeyFile.empty() ? DefaultRedactionKeyFile() : options.fRedactKeyFile;
    RedactContainer(schema, LoadRedactionKey(keyFile));
    presentation.fRedacted = true;
  }
  TInventory inventory(schema);
  WriteInventory(std::cout, options.fFormat, inventory, presentation);

  if (!output.empty()) {
    TClock::time_point start = TClock::now();
    EFormat resultFormat = EFormat::kXml;
    FormatOfFile(output, resultFormat);
    if (resultFormat == EFormat::kXml) {
      WriteResultFile(output, schema);
    } else {
      std::ostringstream bytes;
      WriteInventory(bytes, resultFormat, inventory, presentation);
      WriteResultBytes(output, bytes.str());
    }
    double writeMs = Milliseconds(start);
    if (options.fFormat == EFormat::kText)
      std::cout << "\nResult file  " << output << " (" << FileSize(output) << " bytes)\n";
    if (options.fVerify)
      Verify(output, TCIMXMLWriter::Write(schema, TCIMXMLWriter::eClassesWithInstances),
             outcome.fMilliseconds, writeMs);
  }
  std::cout.flush();

  if (outcome.fFailures.empty())
    return kExitOK;
  std::cerr << "zelcollect: " << outcome.fFailures.size()
            << (outcome.fFailures.size() == 1 ? " plugin failure:" : " plugin failures:")
            << "\n";
  for (const std::string& failure : outcome.fFailures)
    std::cerr << "  " << failure << "\n";
  return kExitFailed;
}

} // namespace zelcollect
