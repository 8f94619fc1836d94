/* An LD_AUDIT module that makes the system's "libcurl.so" unfindable, as on a system without
   libcurl's development package: the loader's cache, the default directories and
   LD_LIBRARY_PATH come up empty. A run path (an installed zelcore's private link) still
   counts. */
#define _GNU_SOURCE
#include <link.h>
#include <stdint.h>
#include <string.h>

unsigned int la_version(unsigned int version) {
  (void)version;
  return LAV_CURRENT;
}

char* la_objsearch(const char* name, uintptr_t* cookie, unsigned int flag) {
  (void)cookie;
  const char* slash = strrchr(name, '/');
  const char* base = slash ? slash + 1 : name;
  /* The requested name itself passes, so the loader goes on to search and report it. */
  if (flag != LA_SER_ORIG && flag != LA_SER_RUNPATH && strcmp(base, "libcurl.so") == 0)
    return NULL;
  return (char*)name;
}
