/* The C interface of an installed zelcore: a status text and a date-time that it refuses. */
#include "zelcore.h"

#include <stdio.h>

int main(void) {
  TCIMDateTime* dt = NULL;
  zelStatusCode status = zelNewCIMDateTime(&dt);
  printf("new date-time: %s\n", zelTranslateStatusCode(status));
  printf("not a date-time: %s\n", zelTranslateStatusCode(zelSetDateTimeString(dt, "tomorrow")));
  zelDeleteCIMDateTime(dt);
  return status == zelStatusOK ? 0 : 1;
}
