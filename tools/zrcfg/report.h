// What the command line says on standard error, one line an error.
#ifndef ZRCFG_TOOLS_ZRCFG_REPORT_H_
#define ZRCFG_TOOLS_ZRCFG_REPORT_H_

#include <stddef.h>
#include <stdint.h>

namespace zrcfg_tool {

// Where errors come from from now on: a command, and a line of a file (0 for none). Null for none.
void set_report_command(const char *command);
void set_report_line(size_t line);
// The line of the script that is running; 0 for none.
void set_script_line(size_t line);

// Prints "zrcfg: [line OF SCRIPT: ][line N: ][COMMAND: ]", the formatted text and a line feed,
// behind what standard output has got so far.
void complain(const char *format, ...) __attribute__((format(printf, 1, 2)));

// How many errors have been reported.
size_t complaint_count();

// The meaning of a result code of the library, in words.
const char *meaning_of(uint32_t result);

// Prints a refusal of the store: the object or parameter (URL and name, which may be empty), the
// code's meaning and the code.
void report_refusal(const char *url, const char *name, uint32_t result);

// The same for a call on the instances of the table `url`: a missing template has no lock either.
void report_table_refusal(const char *url, const char *name, uint32_t result);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_REPORT_H_
