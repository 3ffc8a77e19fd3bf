// set PATH=VALUE...: changes the values of parameters.
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/param_path.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

struct Assignment {
  ParamPath path;
  const char *value;
};

// Splits at the first "="; an exit code.
int parse_assignment(const char *text, Assignment &assignment) {
  const char *const equals = strchr(text, '=');
  if (equals == nullptr) {
    complain("%s: not PATH=VALUE", text);
    return kExitUsage;
  }
  assignment.value = equals + 1;
  const size_t path_length = static_cast<size_t>(equals - text);
  return split_param_path(text, path_length, assignment.path) ? kExitOk : kExitUsage;
}

// What the library would ignore or store so that it reads back otherwise is an error here.
int check_value(const char *text, const Assignment &assignment) {
  const int path_length = static_cast<int>(assignment.value - text - 1);
  const size_t length = strlen(assignment.value);
  if (length >= ZRCFG_VALUE_SIZE) {
    complain("set %.*s: the value has %zu characters, at most 255 can be stored", path_length, text,
             length);
    return kExitRefused;
  }
  if (strchr(assignment.value, '\n') != nullptr) {
    complain("set %.*s: the value holds a line feed, which cannot be stored", path_length, text);
    return kExitRefused;
  }
  if (assignment.value[0] == '\r') {
    complain("set %.*s: the value begins with a carriage return and would read back empty",
             path_length, text);
    return kExitRefused;
  }
  return kExitOk;
}

}  // namespace

int run_set(const Options &options, const Arguments &arguments) {
  Assignment assignment;
  for (int i = 0; i < arguments.count; ++i) {
    int exit_code = parse_assignment(arguments.values[i], assignment);
    if (exit_code == kExitOk) {
      exit_code = check_value(arguments.values[i], assignment);
    }
    if (exit_code != kExitOk) {
      return exit_code;
    }
  }
  for (int i = 0; i < arguments.count; ++i) {
    (void)parse_assignment(arguments.values[i], assignment);  // Held above.
    const uint32_t result = zrcfg_setsingleparamval(assignment.path.url, assignment.path.name,
                                                    assignment.value, options.timeout);
    if (result != ZRCFG_OK) {
      report_refusal("set", assignment.path.url, assignment.path.name, result);
      return kExitRefused;
    }
  }
  return kExitOk;
}

}  // namespace zrcfg_tool
