// The URL of one instance, split into table and number.
#include "lifecycle/instance_url.h"

#include <string.h>

#include "core/decimal_text.h"
#include "core/export.h"
#include "core/object_path.h"
#include "core/trace.h"

namespace zrcfg {

bool split_instance_url(const char *url, InstanceUrl &split) {
  size_t length = strlen(url);
  ZRCFG_TRACE("exportGetObjUrlAndIndex() url=%s, Len=%d\n", url, static_cast<int>(length));
  if (length > 0 && url[length - 1] == '.') {
    --length;
  }
  size_t number_at = length;
  while (number_at > 0 && url[number_at - 1] != '.') {
    --number_at;
  }
  if (number_at == 0) {
    return false;
  }
  const char *const number = url + number_at;
  if (*number < '1' || *number > '9') {
    return false;
  }
  split = {number_at, decimal_value(number)};
  return true;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" ZRCFG_EXPORT int exportGetObjUrlAndIndex(const char *url, char *objUrlOut, int *pIndex) {
  InstanceUrl split;
  if (url == nullptr || objUrlOut == nullptr || pIndex == nullptr ||
      !split_instance_url(url, split) || split.table_length >= kUrlSize) {
    return -1;
  }
  *pIndex = split.index;
  memcpy(objUrlOut, url, split.table_length);
  objUrlOut[split.table_length] = '\0';
  return 0;
}
