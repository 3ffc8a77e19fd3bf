// The first step of the calls that take an object's URL: it is logged and its length is checked.
#include "core/checked_url.h"

#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {

uint32_t check_url_length(const char *url) {
  ZRCFG_TRACE("objUrl =  %s\n", url);
  return url_length_ok(url) ? ZRCFG_OK : ZRCFG_E_NOT_FOUND;
}

uint32_t check_url(const char *url, NullText null_text) {
  return url == nullptr ? refuse_null(null_text) : check_url_length(url);
}

uint32_t check_url_to_path(const char *url, NullText null_text, DirPath &path) {
  const uint32_t result = check_url(url, null_text);
  if (result == ZRCFG_OK) {
    url_to_dir_path(url, path);
  }
  return result;
}

}  // namespace zrcfg
