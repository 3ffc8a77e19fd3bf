// The frame of every exported call that works on one object: open, work, close.
#ifndef ZRCFG_CORE_CALL_FRAME_H_
#define ZRCFG_CORE_CALL_FRAME_H_

#include <stdint.h>

#include "core/object_image.h"
#include "core/object_path.h"
#include "core/refuse_null.h"

namespace zrcfg {

// Opens the object in a directory; logs a failure.
uint32_t open_at(OpenObject &object, const DirPath &path, uint32_t rw_type, int timeout,
                 Access access);

// The same for a URL that is known to be short enough.
uint32_t open_by_url(OpenObject &object, const char *url, uint32_t rw_type, int timeout,
                     Access access);

// Opens the object of `url` (known to be short enough), runs `work` on it and closes it on every
// path. `work` takes an OpenObject & and returns the result code.
template <typename Work>
uint32_t with_object(const char *url, uint32_t rw_type, int timeout, Access access, Work work) {
  OpenObject object;
  uint32_t result = open_by_url(object, url, rw_type, timeout, access);
  if (result != ZRCFG_OK) {
    return result;
  }
  result = work(object);
  close_object(object);
  return result;
}

}  // namespace zrcfg

#endif  // ZRCFG_CORE_CALL_FRAME_H_
