// The existence test of the instance calls.
#include "core/checked_url.h"
#include "core/export.h"
#include "core/trace.h"
#include "zrcfg.h"

using namespace zrcfg;

extern "C" ZRCFG_EXPORT uint32_t zrcfg_isobjectexist(const char *url) {
  DirPath path;
  const uint32_t result = check_url_to_path(url, NullText::kExclaimed, path);
  if (result != ZRCFG_OK) {
    return result == ZRCFG_E_NOT_FOUND ? 0 : result;
  }
  ZRCFG_TRACE("obj_path =  %s\n", path.text);
  const int exists = isDirExist(path.text);
  ZRCFG_TRACE("res =  %d\n", exists);
  return static_cast<uint32_t>(exists);
}
