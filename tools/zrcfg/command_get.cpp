// get PATH...: prints the values of parameters.
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/param_path.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

// The library leaves the buffer alone when there is no such parameter; no value holds a line feed.
constexpr char kUntouched[] = "\n";

bool print_value(const Options &options, const char *text, const ParamPath &path) {
  char value[ZRCFG_VALUE_SIZE];
  memcpy(value, kUntouched, sizeof kUntouched);
  uint32_t result = zrcfg_getsingleparamval(path.url, path.name, value, options.timeout);
  if (result == ZRCFG_OK && strcmp(value, kUntouched) == 0) {
    result = ZRCFG_E_NO_PARAMETER;
  }
  if (result != ZRCFG_OK) {
    report_refusal("get", path.url, path.name, result);
    return false;
  }
  if (options.names) {
    printf("%s=", text);
  }
  puts(value);
  return true;
}

}  // namespace

int run_get(const Options &options, const Arguments &arguments) {
  ParamPath path;
  for (int i = 0; i < arguments.count; ++i) {
    if (!split_param_path(arguments.values[i], strlen(arguments.values[i]), path)) {
      return kExitUsage;
    }
  }
  int exit_code = kExitOk;
  for (int i = 0; i < arguments.count; ++i) {
    (void)split_param_path(arguments.values[i], strlen(arguments.values[i]), path);  // Held above.
    if (!print_value(options, arguments.values[i], path)) {
      exit_code = kExitRefused;
    }
  }
  return exit_code;
}

}  // namespace zrcfg_tool
