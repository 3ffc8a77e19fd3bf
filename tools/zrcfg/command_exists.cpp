// exists URL: tells by the exit code whether an object exists.
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/output.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {

int run_exists(const Options &options, const Arguments &arguments) {
  if (arguments.count != 1) {
    complain("takes one URL");
    return kExitUsage;
  }
  ObjectUrl url;
  if (!parse_object_url(arguments.values[0], url)) {
    return kExitUsage;
  }
  Form form;
  if (!choose_form(options, form)) {
    return kExitUsage;
  }
  const uint32_t result = CheckObjExist(url.text);
  if (form != Form::kText) {
    RecordPrinter(form).print(Field::of("exists", result == ZRCFG_OK));
  }
  if (result == ZRCFG_OK) {
    return kExitOk;
  }
  report_refusal(url.text, "", result);
  return kExitRefused;
}

}  // namespace zrcfg_tool
