// zelcollect's exit statuses and the failures that end a command with a message.
#ifndef ZELCOLLECT_ERRORS_H
#define ZELCOLLECT_ERRORS_H

#include <functional>
#include <stdexcept>
#include <string>

namespace zelcollect {

enum EExit {
  kExitOK = 0,
  kExitFailed = 1,  ///< the collection ran but some plugin failed; diff: differences found
  kExitTrouble = 2, ///< usage or set-up error, unreadable input
};

/// A command line that cannot be used; the message is for the user.
class TUsageError : public std::runtime_error {
public:
  explicit TUsageError(const std::string& message) : std::runtime_error(message) {}
};

/// A step that failed and ends the command with exit status 2; the message names the object
/// and the reason.
class TSetUpError : public std::runtime_error {
public:
  explicit TSetUpError(const std::string& message) : std::runtime_error(message) {}
};

/// Runs a command's body; a usage error, set-up error or unexpected core failure that
/// escapes it is printed on standard error and gives kExitTrouble.
int ReportErrors(const std::function<int()>& body);

} // namespace zelcollect

#endif
