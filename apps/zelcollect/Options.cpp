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

// The upload's name: the default (empty) unless given.
static std::string UploadName(const char* value) {
  return value ? CheckUploadName(value) : "";
}

// What an option does to the options, given its value (NULL when it has none).
using TApply = void (*)(TOptions& options, const char* value);

template <bool TOptions::*Flag, bool kValue = true>
static void Set(TOptions& options, const char*) {
  options.*Flag = kValue;
}

template <auto Field>
static void Assign(TOptions& options, const char* value) {
  options.*Field = value;
}

template <auto Field, auto Read>
static void Parse(TOptions& options, const char* value) {
  options.*Field = Read(value);
}

template <std::vector<std::string> TOptions::*List>
static void Append(TOptions& options, const char* value) {
  (options.*List).push_back(value);
}

template <TApply First, TApply Second>
static void Both(TOptions& options, const char* value) {
  First(options, value);
  Second(options, value);
}

// Every option once, in the order of the help: its long name, its value, its letter (0 for
// none) and what it does.
static const struct {
  const char* fName;
  int fHasValue;
  char fLetter;
  TApply fApply;
} kOptions[] = {
    {"plugin-dir", required_argument, 'p', Append<&TOptions::fPluginDirs>},
    {"no-bundled", no_argument, 0, Set<&TOptions::fNoBundled>},
    {"schema", required_argument, 's', Append<&TOptions::fSchemaFiles>},
    {"class", required_argument, 'c', Append<&TOptions::fClassNames>},
    {"exclude", required_argument, 'x', Append<&TOptions::fExcludedClasses>},
    {"list", no_argument, 0, Set<&TOptions::fList>},
    {"output", required_argument, 'o',
     Both<Assign<&TOptions::fOutputFile>, Set<&TOptions::fWriteOutput>>},
    {"no-output", no_argument, 'n', Set<&TOptions::fWriteOutput, false>},
    {"verify", no_argument, 0, Set<&TOptions::fVerify>},
    {"log-file", required_argument, 'l', Assign<&TOptions::fLogFile>},
    {"log-level", required_argument, 'L',
     Both<Parse<&TOptions::fLogLevel, ParseLevel>, Set<&TOptions::fLogLevelGiven>>},
    {"format", required_argument, 'f', Parse<&TOptions::fFormat, ParseFormat>},
    {"full", no_argument, 0, Set<&TOptions::fFull>},
    {"redact", no_argument, 0, Set<&TOptions::fRedact>},
    {"redact-key", required_argument, 0,
     Both<Set<&TOptions::fRedact>, Assign<&TOptions::fRedactKeyFile>>},
    {"timeout", required_argument, 0, Parse<&TOptions::fTimeout, ParseSeconds>},
    {"allow-unsafe-plugins", no_argument, 0, Set<&TOptions::fAllowUnsafePlugins>},
    {"follow-symlinks", no_argument, 0, Set<&TOptions::fFollowSymlinks>},
    {"upload", optional_argument, 0,
     Both<Set<&TOptions::fUpload>, Parse<&TOptions::fUploadName, UploadName>>},
    {"compare", required_argument, 0, Assign<&TOptions::fCompareFile>},
    {"all", no_argument, 0, Set<&TOptions::fAll>},
    {"help", no_argument, 'h', Set<&TOptions::fHelp>},
    {"version", no_argument, 'V', Set<&TOptions::fVersion>},
};

TOptions ParseOptions(int argc, char** argv) {
  const int kCount = sizeof kOptions / sizeof *kOptions;
  const int kNoLetter = 256; // getopt's code of row i without a letter: kNoLetter + i
  std::vector<option> longOptions;
  std::string letters = ":"; // A missing value is told apart from an unknown option.
  for (int i = 0; i < kCount; ++i) {
    int code = kOptions[i].fLetter ? kOptions[i].fLetter : kNoLetter + i;
    longOptions.push_back({kOptions[i].fName, kOptions[i].fHasValue, 0, code});
    if (kOptions[i].fLetter)
      letters += std::string(1, kOptions[i].fLetter) +
                 (kOptions[i].fHasValue == required_argument ? ":" : "");
  }
  longOptions.push_back({0, 0, 0, 0});
  TOptions options;
  int first = 1;
  if (argc > 1 && argv[1][0] != '-' && FindCommand(argv[1])) {
    options.fCommand = argv[1];
    first = 2;
  }
  optind = first;
  opterr = 0; // The message is ours.
  int code;
  while ((code = getopt_long(argc, argv, letters.c_str(), longOptions.data(), 0)) != -1) {
    if (code == ':')
      throw TUsageError(std::string("option '") + argv[optind - 1] + "' needs a value");
    int row = 0;
    while (row < kCount && longOptions[row].val != code)
      ++row;
    if (row == kCount)
      throw TUsageError(std::string("unknown option '") + argv[optind - 1] + "'");
    kOptions[row].fApply(options, optarg);
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
