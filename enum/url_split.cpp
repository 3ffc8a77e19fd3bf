// Parameter paths split into object URL and name, and the instance numbers in an object URL.
#include "enum/url_split.h"

#include <string.h>

#include "core/decimal_text.h"
#include "core/export.h"
#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr uint32_t kMaxNumbers = 8;
constexpr size_t kMaxDigits = 7;

bool is_digit_char(char c) {
  return c >= '0' && c <= '9';
}

// One instance number while its digits are read.
struct Number {
  char digits[kMaxDigits + 1] = {};
  size_t length = 0;
  bool open = false;

  void start() {
    *this = Number();
    open = true;
  }
  void append(char digit) {
    if (length < kMaxDigits) {
      digits[length++] = digit;
    }
  }
};

}  // namespace

bool split_param_path(const char *path, ParamPath &split) {
  return get_obj_and_param_from_url(path, split.url, split.name) == 0;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int get_obj_and_param_from_url(const char *path, char *objOut, char *paramOut) {
  ZRCFG_TRACE("path=%s\n", trace_text(path));
  if (path == nullptr || objOut == nullptr || paramOut == nullptr) {
    ZRCFG_TRACE("input param is null!\n");
    return -1;
  }
  if (path[0] == '\0') {
    ZRCFG_TRACE("tempLen=0 error!\n");
    return -1;
  }
  const char *const dot = strrchr(path, '.');
  if (dot == nullptr) {
    ZRCFG_TRACE("error,find no dot!\n");
    return -1;
  }
  const size_t url_length = static_cast<size_t>(dot - path) + 1;
  const size_t name_length = strlen(dot + 1);
  if (url_length >= kUrlSize || name_length >= kNameSize) {
    ZRCFG_TRACE("error,object or param name too long!\n");
    return -1;
  }
  memcpy(objOut, path, url_length);
  objOut[url_length] = '\0';
  memcpy(paramOut, dot + 1, name_length + 1);
  return 0;
}

ZRCFG_EXPORT uint32_t zrcfg_getobjidbyobjpath(const char *objPath, uint32_t *pIds) {
  ZRCFG_TRACE("obj_path=%s\n", trace_text(objPath));
  if (objPath == nullptr || pIds == nullptr) {
    return 0;
  }
  memset(pIds, 0, (kMaxNumbers + 1) * sizeof *pIds);
  const size_t length = strnlen(objPath, kUrlSize - 1);
  uint32_t count = 0;
  Number number;
  for (size_t i = 1; i < length; ++i) {
    if (is_digit_char(objPath[i])) {
      if (!number.open && objPath[i - 1] == '.') {
        number.start();
      }
      if (number.open) {
        number.append(objPath[i]);
      }
    } else if (number.open) {
      number.open = false;
      if (count < kMaxNumbers) {
        pIds[++count] = static_cast<uint32_t>(decimal_value(number.digits));
      }
    }
  }
  pIds[0] = count;
  return count;
}

}  // extern "C"
