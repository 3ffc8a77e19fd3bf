/* Host stand-in for the device's log library: prints to standard error up to the level that the
 * environment variable ZRLOG_LEVEL names, and returns at once without it. */
#include "platform/zrlogmgr/zrlogmgr.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>

int zr_mod_log_printf(const char *module, int level, const char *format, ...) {
  const char *wanted = getenv("ZRLOG_LEVEL");
  if (wanted == NULL || level > atoi(wanted)) {
    return 0;
  }
  char text[1024];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return fprintf(stderr, "[%s] %s", module, text);
}
