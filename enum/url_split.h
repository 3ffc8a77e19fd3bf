// Parameter paths split into object URL and name, and the instance numbers in an object URL.
#ifndef ZRCFG_ENUM_URL_SPLIT_H_
#define ZRCFG_ENUM_URL_SPLIT_H_

#include "core/object_path.h"
#include "core/property_file.h"

// Splits behind the last dot: `objOut` (256 bytes) receives the object URL with its final dot,
// `paramOut` (64 bytes) the name. 0, or -1 with both untouched: null, empty, no dot, or a part too
// long for its buffer.
extern "C" int get_obj_and_param_from_url(const char *path, char *objOut, char *paramOut);

namespace zrcfg {

struct ParamPath {
  char url[kUrlSize];
  char name[kNameSize];
};

// The same into one record; whether it could be split.
bool split_param_path(const char *path, ParamPath &split);

}  // namespace zrcfg

#endif  // ZRCFG_ENUM_URL_SPLIT_H_
