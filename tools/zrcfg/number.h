// A number as an argument.
#ifndef ZRCFG_TOOLS_ZRCFG_NUMBER_H_
#define ZRCFG_TOOLS_ZRCFG_NUMBER_H_

#include <stddef.h>

namespace zrcfg_tool {

// Whether the `length` characters at `text` are a decimal number that an int holds, digits only.
bool parse_number(const char *text, size_t length, int &number);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_NUMBER_H_
