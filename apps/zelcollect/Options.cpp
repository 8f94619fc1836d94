// zelcollect's command line, read with getopt_long.
#include "Options.h"

#include "Commands.h"
#include "Errors.h"
#include "Upload.h"

#include <getopt.h>

namespace zelcollect {

static const char kUsage[] =
    "Usage: zelcollect [options]\n"
    "       zelcollect upload FILE [NAME]\n"
    "       zelcollect diff OLD NEW\n"
    "       zelcollect show FILE\n"
    "Collects the inventory of this machine with the collector plugins, prints it and\n"
    "writes it as CIM-XML. 'upload' sends a result file written earlier to the collection\n"
    "server. 'diff' prints what was added, removed and changed between two result files,\n"
    "'show' prints a result file as a collection prints its inventory.\n"
    "\n"
    "  -p, --plugin-dir DIR   plugins to load (default: the bundled ones)\n"
    "  -s, --schema FILE      an extra CIM-XML schema document, loaded before the plugins\n"
    "                         (repeatable)\n"
    "  -c, --class NAME       collect only this class (repeatable; default: every class)\n"
    "  -o, --output FILE      result file; gzip when the name holds .gz\n"
    "                         (default: inventory.xml.gz)\n"
    "  -n, --no-output        write no result file\n"
    "      --verify           read the result file back and compare it, with timings\n"
    "  -l, --log-file FILE    write the log to FILE\n"
    "  -L, --log-level LEVEL  error, warning, status (default), debug or verbose\n"
    "  -f, --format FORMAT    text (default), xml or json\n"
    "      --upload[=NAME]    send the result to the collection server, the host named\n"
    "                         zelupload, as NAME.xml.gz (default: HOST-YYYYMMDDThhmmss)\n"
    "      --compare OLD      print the differences against the result file OLD instead\n"
    "                         of the inventory\n"
    "      --all              diff, --compare: compare volatile properties too (times,\n"
    "                         free space and memory)\n"
    "  -h, --help             show this help\n"
    "  -V, --version          show the version\n"
    "\n"
    "Exit status: 0 success, 1 the collection ran but some plugin failed (listed on\n"
    "standard error), 2 usage or set-up error, or the upload failed (the result file is kept).\n"
    "diff and --compare: 0 no differences, 1 differences (or, with --compare, a plugin\n"
    "failure), 2 trouble: a file unreadable or not an inventory.\n";

const char* UsageText() { return kUsage; }

static zelLogSeverity ParseLevel(const std::string& text) {
  static const struct {
    const char* fName;
    zelLogSeverity fLevel;
  } kLevels[] = {{"error", zelLogError},
                 {"warning", zelLogWarning},
                 {"status", zelLogStatus},
                 {"debug", zelLogDebug},
                 {"verbose", zelLogVerbose}};
  for (const auto& level : kLevels) {
    if (text == level.fName)
      return level.fLevel;
  }
  throw TUsageError("unknown log level '" + text +
                    "' (error, warning, status, debug or verbose)");
}

static EFormat ParseFormat(const std::string& text) {
  EFormat format;
  if (!FormatByName(text, format))
    throw TUsageError("unknown format '" + text + "' (" + FormatNames() + ")");
  return format;
}

TOptions ParseOptions(int argc, char** argv) {
  enum { kVerify = 256, kUpload, kCompare, kAll };
  static const option kLongOptions[] = {{"plugin-dir", required_argument, 0, 'p'},
                                        {"schema", required_argument, 0, 's'},
                                        {"class", required_argument, 0, 'c'},
                                        {"output", required_argument, 0, 'o'},
                                        {"no-output", no_argument, 0, 'n'},
                                        {"verify", no_argument, 0, kVerify},
                                        {"log-file", required_argument, 0, 'l'},
                                        {"log-level", required_argument, 0, 'L'},
                                        {"format", required_argument, 0, 'f'},
                                        {"upload", optional_argument, 0, kUpload},
                                        {"compare", required_argument, 0, kCompare},
                                        {"all", no_argument, 0, kAll},
                                        {"help", no_argument, 0, 'h'},
                                        {"version", no_argument, 0, 'V'},
                                        {0, 0, 0, 0}};
  TOptions options;
  int first = 1;
  if (argc > 1 && argv[1][0] != '-' && FindCommand(argv[1])) {
    options.fCommand = argv[1];
    first = 2;
  }
  optind = first;
  opterr = 0; // The message is ours.
  for (;;) {
    int code = getopt_long(argc, argv, ":p:s:c:o:nl:L:f:hV", kLongOptions, 0);
    if (code == -1)
      break;
    std::string value = optarg ? optarg : "";
    switch (code) {
    case 'p':
      options.fPluginDir = value;
      break;
    case 's':
      options.fSchemaFiles.push_back(value);
      break;
    case 'c':
      options.fClassNames.push_back(value);
      break;
    case 'o':
      options.fOutputFile = value;
      options.fWriteOutput = true;
      break;
    case 'n':
      options.fWriteOutput = false;
      break;
    case kVerify:
      options.fVerify = true;
      break;
    case kUpload:
      options.fUpload = true;
      options.fUploadName = optarg ? CheckUploadName(value) : "";
      break;
    case kCompare:
      options.fCompareFile = value;
      break;
    case kAll:
      options.fAll = true;
      break;
    case 'l':
      options.fLogFile = value;
      break;
    case 'L':
      options.fLogLevel = ParseLevel(value);
      break;
    case 'f':
      options.fFormat = ParseFormat(value);
      break;
    case 'h':
      options.fHelp = true;
      break;
    case 'V':
      options.fVersion = true;
      break;
    case ':':
      throw TUsageError(std::string("option '") + argv[optind - 1] + "' needs a value");
    default:
      throw TUsageError(std::string("unknown option '") + argv[optind - 1] + "'");
    }
  }
  options.fArguments.assign(argv + optind, argv + argc);
  if (options.fCommand == "collect" && !options.fArguments.empty())
    throw TUsageError("unexpected argument '" + options.fArguments[0] + "'");
  if (options.fVerify && !options.fWriteOutput)
    throw TUsageError("--verify needs a result file");
  return options;
}

} // namespace zelcollect
