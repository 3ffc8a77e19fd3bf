// The frame of every exported call that works on one object: open, work, close.
#include "core/call_frame.h"

#include "core/trace.h"

namespace zrcfg {

uint32_t open_at(OpenObject &object, const DirPath &path, uint32_t rw_type, int timeout,
                 Access access) {
  const uint32_t result = open_object(object, path.text, rw_type, timeout, access);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("createObjByPath() fail ret=%d!\n", static_cast<int>(result));
  }
  return result;
}

uint32_t open_by_url(OpenObject &object, const char *url, uint32_t rw_type, int timeout,
                     Access access) {
  DirPath path;
  url_to_dir_path(url, path);
  return open_at(object, path, rw_type, timeout, access);
}

}  // namespace zrcfg
