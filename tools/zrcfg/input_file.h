// Reading a whole file that a command was given.
#ifndef ZRCFG_TOOLS_ZRCFG_INPUT_FILE_H_
#define ZRCFG_TOOLS_ZRCFG_INPUT_FILE_H_

#include "tools/zrcfg/bytes.h"

namespace zrcfg_tool {

// Reads the file of that name, "-" for standard input, with a zero byte behind it. Reports and
// returns false when it cannot be read.
bool read_input_file(const char *name, Bytes &bytes);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_INPUT_FILE_H_
