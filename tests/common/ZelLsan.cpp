// Every test binary names the leaks kept on purpose, so that a bare sanitizer run of ctest
// reports only the others. LSAN_OPTIONS in the environment still takes precedence.
extern "C" const char* __lsan_default_options() {
  return "suppressions=" ZEL_LSAN_SUPPRESSIONS;
}
