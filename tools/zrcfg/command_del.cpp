// del INSTANCE-URL...: deletes instances of tables.
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr int kTemplateNumber = 0;

// Splits an instance's URL, with or without its final dot; reports what is wrong with it.
bool parse_instance(const Options &options, const char *text, InstanceName &instance) {
  ObjectUrl url;
  if (!parse_object_url(text, url)) {
    return false;
  }
  if (!split_instance(url, instance)) {
    complain("%s: not an instance's URL (Table.Number.)", text);
    return false;
  }
  if (instance.index == kTemplateNumber && !options.has(kTemplate)) {
    complain(
        "%s: is the template, without which the table takes no more instances; --template deletes "
        "it",
        text);
    return false;
  }
  return true;
}

// The part of the argument behind the table's URL.
const char *number_behind(const char *text, const InstanceName &instance) {
  return text + strlen(instance.table.text);
}

uint32_t delete_instance(const Options &options, const InstanceName &instance) {
  const char *const table = instance.table.text;
  return options.has(kStatic) ? zrcfg_delobject_static(table, instance.index, options.timeout)
                              : zrcfg_delobject(table, instance.index, options.timeout);
}

}  // namespace

int run_del(const Options &options, const Arguments &arguments) {
  InstanceName instance;
  for (int i = 0; i < arguments.count; ++i) {
    if (!parse_instance(options, arguments.values[i], instance)) {
      return kExitUsage;
    }
  }
  int exit_code = kExitOk;
  for (int i = 0; i < arguments.count; ++i) {
    (void)parse_instance(options, arguments.values[i], instance);  // Held above.
    const uint32_t result = delete_instance(options, instance);
    if (result != ZRCFG_OK) {
      report_table_refusal(instance.table.text, number_behind(arguments.values[i], instance),
                           result);
      exit_code = kExitRefused;
    }
  }
  return exit_code;
}

}  // namespace zrcfg_tool
