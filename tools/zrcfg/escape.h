// Control characters, and escape sequences that stand for characters.
#ifndef ZRCFG_TOOLS_ZRCFG_ESCAPE_H_
#define ZRCFG_TOOLS_ZRCFG_ESCAPE_H_

#include <stddef.h>

namespace zrcfg_tool {

bool is_control(char c);

// Takes one escape sequence behind its backslash: one of the characters `single`, of which t, r and
// n stand for tab, carriage return and line feed and the others for themselves, or xHH for any byte
// but zero. Returns the characters taken, 0 for none.
size_t unescape(const char *text, const char *single, char &out);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_ESCAPE_H_
