// exists URL: tells by the exit code whether an object exists.
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {

int run_exists(const Options &, const Arguments &arguments) {
  if (arguments.count != 1) {
    complain("exists takes one URL");
    return kExitUsage;
  }
  ObjectUrl url;
  if (!parse_object_url(arguments.values[0], url)) {
    return kExitUsage;
  }
  const uint32_t result = CheckObjExist(url.text);
  if (result == ZRCFG_OK) {
    return kExitOk;
  }
  report_refusal("exists", url.text, "", result);
  return kExitRefused;
}

}  // namespace zrcfg_tool
