/* A plugin library that registers nothing while it loads. */
__attribute__((constructor)) static void LoadQuietly(void) {}
