// ZelRetryOnSignal: runs a system call again for as long as a signal interrupts it.
#ifndef ZELRETRYONSIGNAL_H
#define ZELRETRYONSIGNAL_H

#include <cerrno>

/// The first result of call() that is not a failure with EINTR.
template <class Call>
inline auto ZelRetryOnSignal(Call call) -> decltype(call()) {
  for (;;) {
    auto result = call();
    if (result >= 0 || errno != EINTR)
      return result;
  }
}

#endif
