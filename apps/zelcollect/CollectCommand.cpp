// zelcollect (collect): inventories this machine with the collector plugins, prints the
// result and writes it as CIM-XML.
#include "Commands.h"

#include "Errors.h"
#include "Format.h"
#include "Inventory.h"
#include "Options.h"
#include "Redaction.h"
#include "ResultFile.h"
#include "SavedInventory.h"
#include "Supervisor.h"
#include "Upload.h"

#include "TCIMXMLWriter.h"
#include "TContainer.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>

namespace fs = std::filesystem;

namespace zelcollect {

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

// Sends the CIM-XML result file, or the inventory as gzip CIM-XML when there is no such file
// (none, or one in another format).
static void Upload(const TOptions& options, const std::string& output, TContainer& schema) {
  std::string name = options.fUploadName.empty() ? DefaultUploadName(schema) : options.fUploadName;
  if (output.empty())
    UploadInventory(schema, name);
  else
    UploadResultFile(output, name);
  std::cerr << "zelcollect: uploaded " << (output.empty() ? "the inventory" : output)
            << " to zelupload as " << name << ".xml.gz" << std::endl;
}

// In the worker: the result file first, so that a failing standard output cannot cost it,
// then standard output. A redacted run hashes its SENSITIVE values before either.
static int WriteResults(const TOptions& options, const std::string& output,
                        const std::string& redactionKey, std::unique_ptr<TContainer>& previous,
                        TContainer& schema, const TCollectionOutcome& outcome) {
  if (!options.fCompareFile.empty()) { // before anything is written: a file that will not do
    try {
      previous.reset(new TContainer);
      ReadSavedInventory(options.fCompareFile, *previous);
    } catch (TSetUpError& e) {
      std::cerr << "zelcollect: " << e.what() << std::endl;
      return kExitTrouble;
    }
  }
  TPresentation presentation;
  presentation.fFull = options.fFull;
  presentation.fFullClasses = options.fClassNames;
  if (options.fRedact) {
    RedactContainer(schema, redactionKey);
    presentation.fRedacted = true;
  }
  TInventory inventory(schema);
  int status = kExitOK;
  double writeMs = 0;
  EFormat resultFormat = EFormat::kXml;
  if (!output.empty()) {
    TClock::time_point start = TClock::now();
    TFileSafety safety = TFileSafety::From(options);
    if (options.fRedact)
      safety.fNewMode = 0644; // nothing in it identifies the machine
    FormatOfFile(output, resultFormat);
    try {
      if (resultFormat == EFormat::kXml) {
        WriteResultFile(output, schema, safety);
      } else {
        std::ostringstream bytes;
        WriteInventory(bytes, resultFormat, inventory, presentation);
        WriteFileSafely(output, bytes.str(), IsGzipName(output), safety);
      }
    } catch (TSetUpError& e) {
      std::cerr << "zelcollect: " << e.what() << std::endl;
      status = kExitTrouble;
    }
    writeMs = Milliseconds(start);
  }
  if (!output.empty() && status == kExitOK && options.fVerify)
    Verify(output, TCIMXMLWriter::Write(schema, TCIMXMLWriter::eClassesWithInstances),
           outcome.fMilliseconds, writeMs);
  if (status == kExitOK && options.fUpload) {
    try {
      Upload(options, resultFormat == EFormat::kXml ? output : "", schema);
    } catch (TSetUpError& e) { // the result file stays as written
      std::cerr << "zelcollect: " << e.what() << std::endl;
      status = kExitTrouble;
    }
  }
  // Standard output last; with --compare it holds the differences instead of the inventory,
  // since the comparison turns the container into its differences.
  std::ostringstream printed;
  int compared = kExitOK;
  bool told = !output.empty() && status == kExitOK && options.fFormat == EFormat::kText;
  if (previous) {
    if (told)
      printed << "\nResult file  " << output << " (" << FileSize(output) << " bytes)\n";
    compared = ReportDifferences(options, schema, *previous, printed);
  } else {
    WriteInventory(printed, options.fFormat, inventory, presentation);
    if (told)
      printed << "\nResult file  " << output << " (" << FileSize(output) << " bytes)\n";
  }
  status = std::max(status, WriteStandardOutput(printed.str()));
  return std::max(status, compared);
}

int RunCollect(const TOptions& options) {
  std::string output = options.fWriteOutput ? fs::absolute(options.fOutputFile).string() : "";
  // Where the result goes, and the site key of a redacted run, are known to work before
  // anything is collected.
  if (!output.empty() && !options.fList)
    CheckWritable(output, TFileSafety::From(options));
  std::string redactionKey;
  if (options.fRedact && !options.fList)
    redactionKey = LoadRedactionKey(options.fRedactKeyFile.empty() ? DefaultRedactionKeyFile()
                                                                   : options.fRedactKeyFile);
  // Read in the worker; it outlives the worker's containers, which point into it.
  std::unique_ptr<TContainer> previous;
  return TSupervisor(options).Run([&](TContainer& schema, const TCollectionOutcome& outcome) {
    return WriteResults(options, output, redactionKey, previous, schema, outcome);
  });
}

} // namespace zelcollect
