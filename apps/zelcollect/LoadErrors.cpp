// Reasons for the failures of loading.
#include "LoadErrors.h"

#include "ILogger.h"
#include "TContainer.h"
#include "TLogger.h"
#include "TZELException.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <regex>

#include <dlfcn.h>
#include <unistd.h>

namespace zelcollect {

static std::list<ILogger::TLogEntry>::const_iterator Since(size_t mark) {
  std::list<ILogger::TLogEntry>& log = TLogger::GetInstance()->GetLog();
  return std::next(log.cbegin(), static_cast<long>(std::min(mark, log.size())));
}

static bool StartsWith(const std::string& text, const char* prefix) {
  return text.compare(0, std::strlen(prefix), prefix) == 0;
}

size_t LogMark() { return TLogger::GetInstance()->GetLog().size(); }

std::string LoggedProblems(size_t mark, const void* plugin) {
  std::string text;
  for (auto entry = Since(mark); entry != TLogger::GetInstance()->GetLog().cend(); ++entry)
    if (entry->fSeverity <= zelLogWarning && (!entry->fPlugin || entry->fPlugin == plugin))
      text += (text.empty() ? "" : "; ") + entry->fText;
  return text;
}

// The line of a file, without its end; "" when there is none.
static std::string FileLine(const std::string& path, int number) {
  std::ifstream in(path.c_str());
  std::string line;
  for (int i = 0; i < number && std::getline(in, line); ++i) {
  }
  return in ? line : "";
}

// What a name on that line refers to and the document does not define.
static std::string NamedReason(const std::string& line, zelStatusCode code,
                               TContainer& container) {
  static const std::regex kAttribute("([A-Z.]+) +([A-Z]+)=\"([^\"]*)\"|([A-Z]+)=\"([^\"]*)\"");
  auto known = [&](bool cls, const std::string& name) {
    try {
      return cls ? container.FindClass(name) != nullptr
                 : container.FindQualifierDecl(name) != nullptr;
    } catch (TZELException&) {
      return false;
    }
  };
  std::smatch match;
  for (std::string rest = line; std::regex_search(rest, match, kAttribute);
       rest = match.suffix()) {
    std::string element = match[1], attribute = match[2].matched ? match[2] : match[4];
    std::string value = match[2].matched ? match[3] : match[5];
    if (code == zelStatusNotFound) {
      if ((attribute == "SUPERCLASS") && !known(true, value))
        return "superclass " + value + " is not defined";
      if ((attribute == "REFERENCECLASS" || attribute == "CLASSNAME") && !known(true, value))
        return "class " + value + " is not defined";
      if (element == "QUALIFIER" && attribute == "NAME" && !known(false, value))
        return "qualifier " + value + " is not declared";
    } else if (code == zelStatusAlreadyExists && attribute == "NAME") {
      if (element == "CLASS")
        return "class " + value + " is defined twice";
      if (element == "QUALIFIER.DECLARATION")
        return "qualifier " + value + " is declared twice";
    }
  }
  return zelTranslateStatusCode(code);
}

std::string DocumentFailure(const std::string& path, size_t mark, zelStatusCode code,
                            TContainer& container) {
  static const char kSyntax[] = "CIM-XML Parser line ";
  static const char kModel[] = "TCIMXMLParser: Threw exception ";
  for (auto entry = Since(mark); entry != TLogger::GetInstance()->GetLog().cend(); ++entry) {
    const std::string& text = entry->fText;
    if (entry->fPlugin || entry->fSeverity != zelLogError)
      continue;
    if (StartsWith(text, kSyntax)) {
      size_t colon = text.find(':', sizeof kSyntax - 1);
      if (colon != std::string::npos)
        return ", line " + text.substr(sizeof kSyntax - 1, colon - (sizeof kSyntax - 1)) +
               ": " + text.substr(colon + 1);
    }
    size_t on = text.rfind(" on line ");
    if (StartsWith(text, kModel) && on != std::string::npos) {
      int line = std::atoi(text.c_str() + on + 9);
      return ", line " + std::to_string(line) + ": " +
             NamedReason(FileLine(path, line), code, container);
    }
  }
  if (access(path.c_str(), R_OK) != 0)
    return std::string(": ") + std::strerror(errno);
  switch (code) {
  case zelStatusInvalidGzipFile:
    return ": not in gzip format, though its name holds .gz";
  case zelStatusCorruptGzipFile:
    return ": the compressed data are damaged";
  case zelStatusInvalidSpecificationDocument:
    return ": larger than 100 MiB";
  default:
    return std::string(": ") + zelTranslateStatusCode(code);
  }
}

std::string LoaderFailure(const std::string& path) {
  char* real = realpath(path.c_str(), nullptr);
  std::string absolute = real ? real : path;
  std::free(real);
  if (void* handle = dlopen(absolute.c_str(), RTLD_NOW | RTLD_NOLOAD)) {
    dlclose(handle);
    return "";
  }
  // Asking again gives the loader's reason; a library it refuses runs no code.
  void* handle = dlopen(absolute.c_str(), RTLD_NOW | RTLD_GLOBAL);
  if (handle) {
    dlclose(handle);
    return "";
  }
  std::string reason = dlerror();
  if (StartsWith(reason, (absolute + ": ").c_str()))
    reason.erase(0, absolute.size() + 2);
  return reason;
}

std::string SignalText(int signal) {
  return "killed by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

} // namespace zelcollect
