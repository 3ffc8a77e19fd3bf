// add URL [INDEX]: creates an instance of a table and prints its URL.
#include <limits.h>
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/number.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr int kAnyNumber = 0;

bool instance_exists(const ObjectUrl &table, int index) {
  char url[ZRCFG_URL_SIZE + 16];
  (void)snprintf(url, sizeof url, "%s%d.", table.text, index);  // Fits.
  return zrcfg_isobjectexist(url) == 1;
}

// Fixed tables have no call that chooses the number, so the lowest free one is tried, and the next
// when somebody else was faster.
uint32_t add_static(const Options &options, const ObjectUrl &table, int &index) {
  if (index != kAnyNumber) {
    return zrcfg_addobject_static(table.text, index, options.from, options.timeout);
  }
  uint32_t result = ZRCFG_E_LIMIT;
  while (result == ZRCFG_E_LIMIT && index < INT_MAX) {
    ++index;
    if (!instance_exists(table, index)) {
      result = zrcfg_addobject_static(table.text, index, options.from, options.timeout);
      if (result == ZRCFG_E_LIMIT && !instance_exists(table, index)) {
        return result;  // Not taken, so it does not fit.
      }
    }
  }
  return result;
}

uint32_t add_dynamic(const Options &options, const ObjectUrl &table, int &index) {
  if (index != kAnyNumber) {
    return zrcfg_addobject_with_index(table.text, index, options.timeout);
  }
  uint32_t chosen = 0;
  const uint32_t result = zrcfg_addobject(table.text, &chosen, options.timeout);
  index = static_cast<int>(chosen);
  return result;
}

}  // namespace

int run_add(const Options &options, const Arguments &arguments) {
  ObjectUrl table;
  int index = kAnyNumber;
  if (arguments.count > 2) {
    complain("takes one table and one number");
    return kExitUsage;
  }
  if (options.has(kStatic) != (options.from != kNoInstance)) {
    complain("--static and --from go together");
    return kExitUsage;
  }
  if (!parse_object_url(arguments.values[0], table)) {
    return kExitUsage;
  }
  if (arguments.count == 2) {
    const char *const text = arguments.values[1];
    if (!parse_number(text, strlen(text), index) || index == kAnyNumber) {
      complain("%s: not an instance number from 1 on", text);
      return kExitUsage;
    }
  }
  const uint32_t result =
      options.has(kStatic) ? add_static(options, table, index) : add_dynamic(options, table, index);
  if (result != ZRCFG_OK) {
    report_table_refusal(table.text, arguments.count == 2 ? arguments.values[1] : "", result);
    return kExitRefused;
  }
  printf("%s%d.\n", table.text, index);
  return kExitOk;
}

}  // namespace zrcfg_tool
