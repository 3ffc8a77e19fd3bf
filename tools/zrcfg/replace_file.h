// Writing a file that replaces an older one as a whole or not at all.
#ifndef ZRCFG_TOOLS_ZRCFG_REPLACE_FILE_H_
#define ZRCFG_TOOLS_ZRCFG_REPLACE_FILE_H_

#include <stdio.h>

namespace zrcfg_tool {

// Whether the name is that of standard output: "-", or that of the file which it is.
bool is_standard_output(const char *name);

// Has `write` write a file of another name, brings it to the medium and renames it to `name`.
// Reports and returns false when that fails; an older file is then as it was. The new file has the
// older one's permissions. A link stays and what it leads to is replaced; a device, a pipe and
// standard output are written to.
bool replace_file(const char *name, bool (*write)(FILE *stream, const void *context),
                  const void *context);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_REPLACE_FILE_H_
