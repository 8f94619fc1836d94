/* A tiny library whose load-time code sets a flag that the test binary defines. */
extern int zelOsFlagModuleLoaded;

/* Looked up through the global scope once the library is loaded. */
int zelOsFlagModuleMarker = 42;

__attribute__((constructor)) static void ZelOsFlagModuleInit(void) {
  zelOsFlagModuleLoaded = 1;
}
