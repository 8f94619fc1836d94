// Helpers of the core tests: a fixed time zone for one scope, and stand-ins for the objects
// that a value only points to.
#ifndef CORE_HELPERS_H
#define CORE_HELPERS_H

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

/// A distinct address standing in for a class or container that the code under test only
/// stores or passes on, never touches.
template <class Object>
Object& Placeholder(int index) {
  static double storage[4];
  return *reinterpret_cast<Object*>(&storage[index]);
}

#endif
