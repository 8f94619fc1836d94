// Helpers of the core tests: a fixed time zone for one scope, and stand-ins for the objects
// that a value only points to.
#ifndef CORE_HELPERS_H
#define CORE_HELPERS_H

#include <cstdlib>
#include <string>
#include <time.h>

/// Sets TZ (a POSIX rule such as "UTC0", so no zone database is needed) and restores the
/// process's own setting on destruction.
class ScopedTimeZone {
public:
  explicit ScopedTimeZone(char const* zone) {
    char const* old = std::getenv("TZ");
    fHadZone = old != 0;
    if (old)
      fOldZone = old;
    setenv("TZ", zone, 1);
    tzset();
  }
  ~ScopedTimeZone() {
    if (fHadZone)
      setenv("TZ", fOldZone.c_str(), 1);
    else
      unsetenv("TZ");
    tzset();
  }
  ScopedTimeZone(ScopedTimeZone const&) = delete;
  ScopedTimeZone& operator=(ScopedTimeZone const&) = delete;

private:
  bool fHadZone;
  std::string fOldZone;
};

/// A distinct address standing in for a class or container that the code under test only
/// stores or passes on, never touches.
template <class Object>
Object& Placeholder(int index) {
  static double storage[4];
  return *reinterpret_cast<Object*>(&storage[index]);
}

#endif
