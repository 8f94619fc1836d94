// zelcollect's command line, read with getopt_long.
#include "Options.h"

#include "Commands.h"
#include "Errors.h"
#include "Upload.h"

#include <cerrno>
#include <cstdlib>

#include <filesystem>

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
    "  -p, --plugin-dir DIR   more plugins, beside the bundled ones (repeatable)\n"
    "      --no-bundled       leave the bundled plugins out\n"
    "  -s, --schema FILE      an extra CIM-XML schema document, loaded before the plugins\n"
    "                         (repeatable)\n"
    "  -c, --class NAME       collect only this class (repeatable; default: every class);\n"
    "                         any case, a superclass collects its subclasses, an\n"
    "                         association also the classes at its ends\n"
    "  -x, --exclude NAME     leave this class out (repeatable)\n"
    "      --list             list the plugins and the classes they collect, and stop\n"
    "  -o, --output FILE      result file, in the format its name says: .xml, .json or\n"
    "                         .html, gzip when it ends in .gz (default: inventory.xml.gz)\n"
    "  -n, --no-output        write no result file\n"
    "      --verify           read the result file back and compare it, with timings\n"
    "  -l, --log-file FILE    write the log to FILE\n"
    "  -L, --log-level LEVEL  error, warning, status (default), debug or verbose;\n"
    "                         without -l the log goes to standard error\n"
    "  -f, --format FORMAT    standard output in text (default), xml, json or html;\n"
    "                         the result file's format follows its name, not -f\n"
    "      --full             text and html: every instance of the classes of more than\n"
    "                         50 instances too (-c CLASS shows that class whole)\n"
    "      --redact           replace serial numbers, UUIDs, addresses, host and account\n"
    "                         names by keyed hashes, in every output and the result file\n"
    "      --redact-key FILE  the site key of --redact (implies it); made with mode 0600\n"
    "                         when missing (default: /var/lib/zelcore/redact.key as root,\n"
    "                         else ~/.config/zelcore/redact.key)\n"
    "      --timeout SECONDS  time allowed to each call of a plugin (default: 120)\n"
    "      --allow-unsafe-plugins\n"
    "                         load plugins and schema documents that others could have\n"
    "                         written (for development; warns)\n"
    "      --follow-symlinks  write the result and log through a symbolic link\n"
    "      --upload[=NAME]    send the result to the collection server, the host named\n"
    "                         zelupload, as NAME.xml.gz (default: HOST-YYYYMMDDThhmmss)\n"
    "      --compare OLD      print the differences against the result file OLD instead\n"
    "                         of the inventory\n"
    "      --all              diff, --compare: compare volatile properties too (times,\n"
    "                         free space and memory)\n"
    "  -h, --help             show this help\n"
    "  -V, --version          show the version\n"
    "\n"
    "Plugins run in a separate process. A plugin that crashes or exceeds its time is\n"
    "named on standard error and left out; the others are collected again without it.\n"
    "Only plugins, documents and directories owned by root (or by the user running\n"
    "zelcollect) and writable by no one else are loaded. The result file is written to\n"
    "a temporary file and renamed over the old one, so a failure leaves the old one as\n"
    "it was; new result and log files are readable by their owner only.\n"
    "\n"
    "Exit status: 0 success, 1 the collection ran but some plugin failed or was not\n"
    "loaded (listed on standard error), 2 usage or set-up error, or the result could\n"
    "not be written or printed, or the upload failed (the result file is kept).\n"
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

static unsigned ParseSeconds(const std::string& text) {
  char* end = nullptr;
  errno = 0;
  unsigned long seconds = std::strtoul(text.c_str(), &end, 10);
  if (text.empty() || *end || text[0] == '-' || errno || seconds == 0 || seconds > 86400)
    throw TUsageError("--timeout takes whole seconds from 1 to 86400, not '" + text + "'");
  return static_cast<unsigned>(seconds);
}

static EFormat ParseFormat(const std::string& text) {
  EFormat format;
  if (!FormatByName(text, format))
    throw TUsageError("unknown format '" + text + "' (" + FormatNames() + ")");
  return format;
}

TOptions ParseOptions(int argc, char** argv) {
  enum {
    kVerify = 256,
    kList,
    kNoBundled,
    kTimeout,
    kAllowUnsafe,
    kFollowSymlinks,
    kUpload,
    kFull,
    kRedact,
    kRedactKey,
    kCompare,
    kAll
  };
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
                                        {"full", no_argument, 0, kFull},
                                        {"redact", no_argument, 0, kRedact},
                                        {"redact-key", required_argument, 0, kRedactKey},
                                        {"compare", required_argument, 0, kCompare},
                                        {"all", no_argument, 0, kAll},
                                        {"help", no_argument, 0, 'h'},
                                        {"version", no_argument, 0, 'V'},
                                        {"exclude", required_argument, 0, 'x'},
                                        {"list", no_argument, 0, kList},
                                        {"no-bundled", no_argument, 0, kNoBundled},
                                        {"timeout", required_argument, 0, kTimeout},
                                        {"allow-unsafe-plugins", no_argument, 0, kAllowUnsafe},
                                        {"follow-symlinks", no_argument, 0, kFollowSymlinks},
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
    int code = getopt_long(argc, argv, ":p:s:c:o:nl:L:f:hVx:", kLongOptions, 0);
    if (code == -1)
      break;
    std::string value = optarg ? optarg : "";
    switch (code) {
    case 'p':
      options.fPluginDirs.push_back(value);
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
      options.fLogLevelGiven = true;
      break;
    case 'f':
      options.fFormat = ParseFormat(value);
      break;
    case kFull:
      options.fFull = true;
      break;
    case kRedact:
      options.fRedact = true;
      break;
    case kRedactKey:
      options.fRedact = true;
      options.fRedactKeyFile = value;
      break;
    case 'h':
      options.fHelp = true;
      break;
    case 'V':
      options.fVersion = true;
      break;
    case 'x':
      options.fExcludedClasses.push_back(value);
      break;
    case kList:
      options.fList = true;
      break;
    case kNoBundled:
      options.fNoBundled = true;
      break;
    case kTimeout:
      options.fTimeout = ParseSeconds(value);
      break;
    case kAllowUnsafe:
      options.fAllowUnsafePlugins = true;
      break;
    case kFollowSymlinks:
      options.fFollowSymlinks = true;
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
  if (options.fWriteOutput && options.fOutputFile.empty())
    throw TUsageError("the result file name is empty (-n writes none)");
  if (options.fNoBundled && options.fPluginDirs.empty())
    throw TUsageError("--no-bundled needs a plugin directory (-p)");
  if (options.fVerify && !options.fWriteOutput)
    throw TUsageError("--verify needs a result file");
  EFormat resultFormat = EFormat::kXml;
  // A directory given as the file is told as such when the collection checks where it writes.
  if (options.fWriteOutput && !FormatOfFile(options.fOutputFile, resultFormat) &&
      !std::filesystem::is_directory(options.fOutputFile))
    throw TUsageError("the name of result file '" + options.fOutputFile +
                      "' says no format (.xml, .json or .html, optionally .gz)");
  if (options.fVerify && resultFormat != EFormat::kXml)
    throw TUsageError("--verify needs a CIM-XML result file (.xml or .xml.gz)");
  return options;
}

} // namespace zelcollect
