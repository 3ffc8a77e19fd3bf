// Commands that come as lines of text.
#ifndef ZRCFG_TOOLS_ZRCFG_SCRIPT_H_
#define ZRCFG_TOOLS_ZRCFG_SCRIPT_H_

#include <stddef.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/word_list.h"

namespace zrcfg_tool {

// Whether one begins; it is refused, and reported, inside another.
bool begin_script();

// Runs the command of a line, given without its line feed, on top of `defaults`; an empty line does
// nothing. `number` is what its errors name, 0 for none. Every failure is reported, and standard
// output is written out. An exit code.
int run_line(char *line, size_t length, size_t number, WordList &words, const Options &defaults);

// What a script's own options mean for its lines: defaults.
Options script_defaults(const Options &options);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SCRIPT_H_
