// The device's log call, in a program that fuzzes: every line is formatted, so that each text that
// a caller hands over is read to its end, and then forgotten.
#include <stdarg.h>
#include <stdio.h>

#include "platform/zrlogmgr/zrlogmgr.h"

extern "C" __attribute__((visibility("default"))) int zr_mod_log_printf(const char *, int,
                                                                        const char *format, ...) {
  char line[4096];
  va_list arguments;
  va_start(arguments, format);
  const int length = vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  return length;
}
