// Why the core could not read a document or load a library, in the words a person uses:
// the details come from the core's own log lines and from the file itself.
#ifndef ZELCOLLECT_LOADERRORS_H
#define ZELCOLLECT_LOADERRORS_H

#include "zelcore.h"

#include <string>

class TContainer;

namespace zelcollect {

/// The size of the core's in-memory log: a mark to read what is logged after it.
size_t LogMark();

/// The texts of the errors and warnings logged since the mark by the core or by the plugin
/// given (IPlugin const*), joined with "; ".
std::string LoggedProblems(size_t mark, const void* plugin);

/// ", line N: REASON" or ": REASON" for a CIM-XML document that failed to load into the
/// container with that status, the core's log lines since mark telling where.
std::string DocumentFailure(const std::string& path, size_t mark, zelStatusCode code,
                            TContainer& container);

/// The dynamic loader's reason for refusing a library, or "" when the library is loaded.
std::string LoaderFailure(const std::string& path);

/// "killed by signal 11 (Segmentation fault)".
std::string SignalText(int signal);

} // namespace zelcollect

#endif
