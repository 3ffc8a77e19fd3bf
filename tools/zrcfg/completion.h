// What may stand where a word of a command is being typed.
#ifndef ZRCFG_TOOLS_ZRCFG_COMPLETION_H_
#define ZRCFG_TOOLS_ZRCFG_COMPLETION_H_

#include <stddef.h>

#include "tools/zrcfg/bytes.h"

namespace zrcfg_tool {

// Words, one behind the other.
struct Candidates {
  Bytes text;                // Each ends in a line feed.
  const char *before = "";   // Stands before what is typed of each,
  size_t before_length = 0;  // with so many characters.

  // Adds HEAD NAME TAIL when it begins with `typed`. Nothing is added without memory.
  void add(const char *typed, const char *head, const char *name, const char *tail);
};

// Adds all candidates for the last of `count` words (one at least) behind the program's name. One
// that ends in "." or "=" goes on. Nothing is reported; what the store does not tell is left out.
void complete_words(const char *const *words, int count, Candidates &out);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_COMPLETION_H_
