/* A library calling a function that nothing defines: loads only with lazy binding. */
void zelOsTestMissingFunction(void);

void ZelOsCallMissing(void) { zelOsTestMissingFunction(); }
