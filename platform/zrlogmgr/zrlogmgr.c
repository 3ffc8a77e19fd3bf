/* Host stand-in for the device's log library: prints to standard error up to the level that the
 * environment variable ZRLOG_LEVEL names at the first call, and returns at once without it. */
#include "platform/zrlogmgr/zrlogmgr.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>

enum { kNotRead = -2, kNone = -1 };

/* The level asked for. Threads that read it first at the same time store the same. */
static int wanted_level = kNotRead;

static int read_level(void) {
  const char *text = getenv("ZRLOG_LEVEL");
  const int level = text != NULL ? atoi(text) : kNone;
  __atomic_store_n(&wanted_level, level, __ATOMIC_RELAXED);
  return level;
}

int zr_mod_log_printf(const char *module, int level, const char *format, ...) {
  int wanted = __atomic_load_n(&wanted_level, __ATOMIC_RELAXED);
  if (wanted == kNotRead) {
    wanted = read_level();
  }
  if (level > wanted) {
    return 0;
  }
  char text[1024];
  va_list arguments;
  va_start(arguments, format);
  vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return fprintf(stderr, "[%s] %s", module, text);
}
