// zelcollect (collect): inventories this machine with the collector plugins, prints the
// result and writes it as CIM-XML.
#include "Commands.h"

#include "CoreSession.h"
#include "Errors.h"
#include "Format.h"
#include "Inventory.h"
#include "Options.h"
#include "ResultFile.h"
#include "SavedInventory.h"
#include "Supervisor.h"
#include "Upload.h"

#include "TCIMXMLWriter.h"
#include "TContainer.h"

#include <chrono>
#include <iomanip>
#include <iostream>
#include <memory>

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

// Sends the result file, or the inventory as gzip CIM-XML when there is no such file.
static void Upload(const TOptions& options, const std::string& output, TContainer& schema) {
  std::string name = options.fUploadName.empty() ? DefaultUploadName(schema) : options.fUploadName;
  if (output.empty())
    UploadInventory(schema, name);
  else
    UploadResultFile(output, name);
  std::cerr << "zelcollect: uploaded " << (output.empty() ? "the inventory" : output)
            << " to zelupload as " << name << ".xml.gz" << std::endl;
}

int RunCollect(const TOptions& options) {
  TBundle bundle = TBundle::Find();
  fs::path pluginDir = options.fPluginDir.empty() ? bundle.fPluginDir : fs::path(options.fPluginDir);
  std::string output = options.fWriteOutput ? fs::absolute(options.fOutputFile).string() : "";

  std::unique_ptr<TContainer> previous; // outlives the session's container, which points into it
  TCoreSession session(options);
  if (!options.fCompareFile.empty()) { // read first: a file that will not do fails at once
    previous.reset(new TContainer);
    ReadSavedInventory(options.fCompareFile, *previous);
  }
  TContainer& schema = session.GetSchema();
  LoadSchema(schema, bundle.fSchemaDir, options.fSchemaFiles);
  TCollectionOutcome outcome = TSupervisor(options).Run(schema, pluginDir);

  TInventory inventory(schema);
  if (!previous)
    WriteInventory(std::cout, options.fFormat, inventory);

  if (!output.empty()) {
    TClock::time_point start = TClock::now();
    WriteResultFile(output, schema);
    double writeMs = Milliseconds(start);
    if (options.fFormat == EFormat::kText)
      std::cout << "\nResult file  " << output << " (" << FileSize(output) << " bytes)\n";
    if (options.fVerify)
      Verify(output, TCIMXMLWriter::Write(schema, TCIMXMLWriter::eClassesWithInstances),
             outcome.fMilliseconds, writeMs);
  }
  std::cout.flush();
  if (options.fUpload)
    Upload(options, output, schema);

  // Written and uploaded first: the comparison turns the container into its differences.
  int status = previous ? ReportDifferences(options, schema, *previous) : kExitOK;
  if (outcome.fFailures.empty())
    return status;
  std::cerr << "zelcollect: " << outcome.fFailures.size()
            << (outcome.fFailures.size() == 1 ? " plugin failure:" : " plugin failures:")
            << "\n";
  for (const std::string& failure : outcome.fFailures)
    std::cerr << "  " << failure << "\n";
  return kExitFailed;
}

} // namespace zelcollect
