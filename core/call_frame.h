// The frame of every exported call that works on one object: open, work, close.
#ifndef ZRCFG_CORE_CALL_FRAME_H_
#define ZRCFG_CORE_CALL_FRAME_H_

#include <stdint.h>

#include "core/object_image.h"
#include "core/object_path.h"
#include "core/refuse_null.h"
#include "core/trace.h"

namespace zrcfg {

// Opens the object in a directory; logs a failure.
inline uint32_t open_at(OpenObject &object, const DirPath &path, uint32_t rw_type, int timeout,
                        Access access) {
  const uint32_t result = open_object(object, path.text, rw_type, timeout, access);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("createObjByPath() fail ret=%d!\n", static_cast<int>(result));
  }
  return result;
}

// Opens the object of `url` (known to be short enough), runs `work` on it and closes it on every
// path. `work` takes an OpenObject & and returns the result code.
template <typename Work>
uint32_t with_object(const char *url, uint32_t rw_type, int timeout, Access access, Work work) {
  DirPath path;
  url_to_dir_path(url, path);
  OpenObject object;
  uint32_t result = open_at(object, path, rw_type, timeout, access);
  if (result != ZRCFG_OK) {
    return result;
  }
  result = work(object);
  close_object(object);
  return result;
}

}  // namespace zrcfg

#endif  // ZRCFG_CORE_CALL_FRAME_H_
