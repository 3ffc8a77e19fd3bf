// What the command line says on standard error.
#ifndef ZRCFG_TOOLS_ZRCFG_REPORT_H_
#define ZRCFG_TOOLS_ZRCFG_REPORT_H_

#include <stdint.h>

namespace zrcfg_tool {

// Prints "zrcfg: ", the formatted text and a line feed.
void complain(const char *format, ...) __attribute__((format(printf, 1, 2)));

// The meaning of a result code of the library, in words.
const char *meaning_of(uint32_t result);

// Prints a refusal of the store: the command, the object or parameter (URL and name, which may be
// empty), the code and its meaning.
void report_refusal(const char *command, const char *url, const char *name, uint32_t result);

// The same for a call on the instances of the table `url`: a missing template has no lock either.
void report_table_refusal(const char *command, const char *url, const char *name, uint32_t result);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_REPORT_H_
