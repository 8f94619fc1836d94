// Built under the sanitizers only: the leaks kept on purpose (scripts/lsan.supp) are not
// reported, and the report of their suppression stays off standard error, which holds only
// zelcollect's own messages. LSAN_OPTIONS in the environment still takes precedence.
extern "C" const char* __lsan_default_options() {
  return "suppressions=" ZEL_LSAN_SUPPRESSIONS ":print_suppressions=0";
}
