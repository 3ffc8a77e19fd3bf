// Writing a file that replaces an older one as a whole or not at all.
#ifndef ZRCFG_TOOLS_ZRCFG_REPLACE_FILE_H_
#define ZRCFG_TOOLS_ZRCFG_REPLACE_FILE_H_

#include <stdio.h>

namespace zrcfg_tool {

// Has `write` write a file of another name, brings it to the medium and renames it to `name`.
// Reports and returns false when that fails; an older file is then as it was. A link stays and what
// it leads to is replaced; a device or a pipe is written to.
bool replace_file(const char *name, bool (*write)(FILE *stream, const void *context),
                  const void *context);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_REPLACE_FILE_H_
