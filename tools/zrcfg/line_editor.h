// Line editing, by the library for it that the machine may have.
#ifndef ZRCFG_TOOLS_ZRCFG_LINE_EDITOR_H_
#define ZRCFG_TOOLS_ZRCFG_LINE_EDITOR_H_

namespace zrcfg_tool {

// Loads the library, with completion of the commands' words and the history of earlier sessions.
// False where there is none, or where $ZRCFG_NO_READLINE is set and not empty.
bool load_line_editor();

// Has a line typed, once the library is loaded. The caller frees it; null at the end of input.
char *edit_line(const char *prompt);

// Adds a line to the history, unless it is empty or begins with a blank.
void remember_line(const char *line);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_LINE_EDITOR_H_
