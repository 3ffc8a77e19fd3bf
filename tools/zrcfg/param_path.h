// A full parameter path, split into object URL and parameter name.
#ifndef ZRCFG_TOOLS_ZRCFG_PARAM_PATH_H_
#define ZRCFG_TOOLS_ZRCFG_PARAM_PATH_H_

#include <stddef.h>

#include "zrcfg.h"

namespace zrcfg_tool {

struct ParamPath {
  char url[ZRCFG_URL_SIZE];
  char name[ZRCFG_NAME_SIZE];
};

// Splits the `length` characters at `text` behind their last dot. Reports and returns false when
// they are no parameter path.
bool split_param_path(const char *text, size_t length, ParamPath &path);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_PARAM_PATH_H_
