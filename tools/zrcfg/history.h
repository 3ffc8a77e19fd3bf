// The lines that were typed, kept in a file from one session to the next.
#ifndef ZRCFG_TOOLS_ZRCFG_HISTORY_H_
#define ZRCFG_TOOLS_ZRCFG_HISTORY_H_

namespace zrcfg_tool {

// Hands out the newest lines of $ZRCFG_HISTORY, or ~/.zrcfg_history, the oldest first; a file that
// has grown long is cut down to them. Without such a file there are none.
void load_history(void (*take)(const char *line));

// Appends a line to the file, which is made for its owner only. What does not work is passed over.
void append_history(const char *line);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_HISTORY_H_
