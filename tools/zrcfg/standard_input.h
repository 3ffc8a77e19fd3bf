// Standard input when it is where the commands come from.
#ifndef ZRCFG_TOOLS_ZRCFG_STANDARD_INPUT_H_
#define ZRCFG_TOOLS_ZRCFG_STANDARD_INPUT_H_

#include <stdio.h>

namespace zrcfg_tool {

// From now on no command may read standard input.
void reserve_standard_input();
bool standard_input_reserved();

// The same, and moves it to a stream of its own, so that processes that a command starts read
// nothing from it either. Reports and returns null when there is none.
FILE *take_standard_input();

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_STANDARD_INPUT_H_
