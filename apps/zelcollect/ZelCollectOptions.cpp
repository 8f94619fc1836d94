// zelcollect's command line, read with getopt_long.
#include "ZelCollectOptions.h"

#include <getopt.h>

static const char kUsage[] =
    "Usage: zelcollect [options]\n"
    "Collects the inventory of this machine with the collector plugins, prints it and\n"
    "writes it as CIM-XML.\n"
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
    "  -h, --help             show this help\n"
    "  -V, --version          show the version\n"
    "\n"
    "Exit status: 0 success, 1 the collection ran but some plugin failed (listed on\n"
    "standard error), 2 usage or set-up error.\n";

const char* ZelUsageText() { return kUsage; }

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
  throw ZelUsageError("unknown log level '" + text +
                      "' (error, warning, status, debug or verbose)");
}

static ZelCollectOptions::EFormat ParseFormat(const std::string& text) {
  if (text == "text")
    return ZelCollectOptions::eText;
  if (text == "xml")
    return ZelCollectOptions::eXML;
  if (text == "json")
    return ZelCollectOptions::eJSON;
  throw ZelUsageError("unknown format '" + text + "' (text, xml or json)");
}

ZelCollectOptions ZelParseOptions(int argc, char** argv) {
  enum { kVerify = 256 };
  static const option kLongOptions[] = {{"plugin-dir", required_argument, 0, 'p'},
                                        {"schema", required_argument, 0, 's'},
                                        {"class", required_argument, 0, 'c'},
                                        {"output", required_argument, 0, 'o'},
                                        {"no-output", no_argument, 0, 'n'},
                                        {"verify", no_argument, 0, kVerify},
                                        {"log-file", required_argument, 0, 'l'},
                                        {"log-level", required_argument, 0, 'L'},
                                        {"format", required_argument, 0, 'f'},
                                        {"help", no_argument, 0, 'h'},
                                        {"version", no_argument, 0, 'V'},
                                        {0, 0, 0, 0}};
  ZelCollectOptions options;
  optind = 1;
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
      throw ZelUsageError(std::string("option '") + argv[optind - 1] + "' needs a value");
    default:
      throw ZelUsageError(std::string("unknown option '") + argv[optind - 1] + "'");
    }
  }
  if (optind < argc)
    throw ZelUsageError(std::string("unexpected argument '") + argv[optind] + "'");
  if (options.fVerify && !options.fWriteOutput)
    throw ZelUsageError("--verify needs a result file");
  return options;
}
