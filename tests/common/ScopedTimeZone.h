// A fixed time zone for one scope, for the suites that read local time.
#ifndef SCOPEDTIMEZONE_H
#define SCOPEDTIMEZONE_H

#include <cstdlib>
#include <optional>
#include <string>
#include <time.h>

/// Sets TZ (a POSIX rule such as "UTC0", so no zone database is needed) for the scope.
class ScopedTimeZone {
public:
  explicit ScopedTimeZone(char const* zone) {
    if (char const* old = std::getenv("TZ"))
      fOld = old;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~ScopedTimeZone() {
    fOld ? setenv("TZ", fOld->c_str(), 1) : unsetenv("TZ");
    tzset();
  }

private:
  std::optional<std::string> fOld;
};

#endif
