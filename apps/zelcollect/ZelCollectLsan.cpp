// Built under the sanitizers only: the leaks kept on purpose (scripts/lsan.supp) are not
// reported, and the report of their suppression stays off standard error, which holds only
// zelcollect's own messages. LSAN_OPTIONS in the environment still takes precedence.
extern "C" const char* __lsan_default_options() {
  return "suppressions=" ZEL_LSAN_SUPPRESSIONS ":print_suppressions=0";
}

// A plugin's crash is the supervisor's to report, by the signal that ended the worker: the
// sanitizer leaves SIGSEGV and SIGBUS to the kernel. ASAN_OPTIONS still takes precedence.
extern "C" const char* __asan_default_options() { return "handle_segv=0:handle_sigbus=0"; }
