// A full parameter path, split into object URL and parameter name.
#include "tools/zrcfg/param_path.h"

#include <string.h>

#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

bool refuse(const char *text, size_t length, const char *reason) {
  complain("%.*s: %s", static_cast<int>(length), text, reason);
  return false;
}

}  // namespace

bool split_param_path(const char *text, size_t length, ParamPath &path) {
  const char *const dot = static_cast<const char *>(memrchr(text, '.', length));
  if (dot == nullptr || dot == text) {
    return refuse(text, length, "not a parameter path (Object.Name)");
  }
  const size_t url_length = static_cast<size_t>(dot - text) + 1;
  const size_t name_length = length - url_length;
  if (name_length == 0) {
    return refuse(text, length, "names an object, not a parameter");
  }
  if (url_length >= sizeof path.url) {
    return refuse(text, length, "the object URL is longer than 255 characters");
  }
  if (name_length >= sizeof path.name) {
    return refuse(text, length, "the parameter name is longer than 63 characters");
  }
  memcpy(path.url, text, url_length);
  path.url[url_length] = '\0';
  if (has_empty_component(path.url)) {
    return refuse(text, length, "the object URL has an empty component");
  }
  memcpy(path.name, dot + 1, name_length);
  path.name[name_length] = '\0';
  return true;
}

}  // namespace zrcfg_tool
