// list URL...: prints all visible values of objects.
#include <stdlib.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/output.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

bool list_object(const Options &options, const ObjectUrl &url, ListPrinter &printer) {
  ParamValueListNode *node = nullptr;
  ParamValueListNode *tail = nullptr;
  const uint32_t result =
      static_cast<uint32_t>(zrcfg_getallparamval(url.text, &node, &tail, options.timeout));
  if (result != ZRCFG_OK) {
    report_refusal(url.text, "", result);
    return false;
  }
  while (node != nullptr) {
    ParamValueListNode *const next = node->next;
    printer.print_value(node->url, node->value, true);
    free(node);
    node = next;
  }
  return true;
}

}  // namespace

int run_list(const Options &options, const Arguments &arguments) {
  ObjectUrl url;
  for (int i = 0; i < arguments.count; ++i) {
    if (!parse_object_url(arguments.values[i], url)) {
      return kExitUsage;
    }
  }
  Form form;
  if (!choose_form(options, form)) {
    return kExitUsage;
  }
  ListPrinter printer(form);
  int exit_code = kExitOk;
  for (int i = 0; i < arguments.count; ++i) {
    (void)parse_object_url(arguments.values[i], url);  // Held above.
    if (!list_object(options, url, printer)) {
      exit_code = kExitRefused;
    }
  }
  return exit_code;
}

}  // namespace zrcfg_tool
