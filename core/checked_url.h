// The first step of the calls that take an object's URL: it is logged and its length is checked.
#ifndef ZRCFG_CORE_CHECKED_URL_H_
#define ZRCFG_CORE_CHECKED_URL_H_

#include <stdint.h>

#include "core/object_path.h"
#include "core/refuse_null.h"

namespace zrcfg {

// 0, or 1 for a URL that is too long.
uint32_t check_url_length(const char *url);

// The same for a URL that may be null, which gives 10.
uint32_t check_url(const char *url, NullText null_text);

// The same, and the object's directory in `path`.
uint32_t check_url_to_path(const char *url, NullText null_text, DirPath &path);

}  // namespace zrcfg

#endif  // ZRCFG_CORE_CHECKED_URL_H_
