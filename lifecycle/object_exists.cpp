// The existence test of the instance calls.
#include "core/export.h"
#include "core/object_path.h"
#include "core/refuse_null.h"
#include "core/trace.h"
#include "zrcfg.h"

using namespace zrcfg;

extern "C" ZRCFG_EXPORT uint32_t zrcfg_isobjectexist(const char *url) {
  if (url == nullptr) {
    return refuse_null(NullText::kExclaimed);
  }
  ZRCFG_TRACE("objUrl =  %s\n", url);
  if (!url_length_ok(url)) {
    return 0;
  }
  DirPath path;
  url_to_dir_path(url, path);
  ZRCFG_TRACE("obj_path =  %s\n", path.text);
  const int exists = isDirExist(path.text);
  ZRCFG_TRACE("res =  %d\n", exists);
  return static_cast<uint32_t>(exists);
}
