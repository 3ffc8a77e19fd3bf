// del INSTANCE-URL...: deletes instances of tables.
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/number.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr int kTemplateNumber = 0;

struct Instance {
  ObjectUrl table;
  int index;
};

// Splits an instance's URL, with or without its final dot; reports what is wrong with it.
bool parse_instance(const Options &options, const char *text, Instance &instance) {
  size_t length = strlen(text);
  if (length > 0 && text[length - 1] == '.') {
    --length;
  }
  const void *const dot = memrchr(text, '.', length);
  const size_t table_length =
      dot != nullptr ? static_cast<size_t>(static_cast<const char *>(dot) - text) + 1 : 0;
  if (table_length < 2 ||
      !parse_number(text + table_length, length - table_length, instance.index)) {
    complain("%s: not an instance's URL (Table.Number.)", text);
    return false;
  }
  if (table_length >= sizeof instance.table.text) {
    complain("%s: the object URL is longer than 255 characters", text);
    return false;
  }
  if (instance.index == kTemplateNumber && !options.has(kTemplate)) {
    complain(
        "del: %s: is the template, without which the table takes no more instances; "
        "--template deletes it",
        text);
    return false;
  }
  memcpy(instance.table.text, text, table_length);
  instance.table.text[table_length] = '\0';
  return true;
}

// The part of the argument behind the table's URL.
const char *number_behind(const char *text, const Instance &instance) {
  return text + strlen(instance.table.text);
}

uint32_t delete_instance(const Options &options, const Instance &instance) {
  const char *const table = instance.table.text;
  return options.has(kStatic) ? zrcfg_delobject_static(table, instance.index, options.timeout)
                              : zrcfg_delobject(table, instance.index, options.timeout);
}

}  // namespace

int run_del(const Options &options, const Arguments &arguments) {
  Instance instance;
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
