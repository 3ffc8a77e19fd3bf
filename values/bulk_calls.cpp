// The exported calls that read and write several values of an object given by its URL.
#include <stdlib.h>

#include "core/call_frame.h"
#include "core/checked_url.h"
#include "core/export.h"
#include "values/bulk_values.h"
#include "values/request_check.h"
#include "values/value_table.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

// A value table for the length of one call.
struct OwnTable {
  char *slots = nullptr;

  OwnTable() = default;
  ~OwnTable() { free(slots); }
  OwnTable(const OwnTable &) = delete;
  OwnTable &operator=(const OwnTable &) = delete;
};

// Logs the failure of the step called `name`; returns its code.
uint32_t report(const char *name, uint32_t result) {
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("%s() fail ret=%d!\n", name, static_cast<int>(result));
  }
  return result;
}

uint32_t read_values(OpenObject &object, ParamValueEntry *list) {
  OwnTable table;
  uint32_t result = build_value_table(object, &table.slots);
  if (result != ZRCFG_OK) {
    return report("createObjByPath", result);  // The name that this failure has always had.
  }
  result = list == nullptr ? ZRCFG_E_ARGUMENT : check_requests(list, ListUse::kRead);
  if (result == ZRCFG_OK) {
    result = output_values(*object.loaded.image, table.slots, list);
  }
  return report("getParamValues", result);
}

// How one of the writing calls changes the value table.
struct TableChange {
  ListUse use;
  const char *step;  // Its name in the log.
  uint32_t (*apply)(ObjectImage &image, char *table, ParamValueEntry *list, bool &store);
};

uint32_t change_values(OpenObject &object, ParamValueEntry *list, const TableChange &change) {
  OwnTable table;
  uint32_t result = build_value_table(object, &table.slots);
  if (result != ZRCFG_OK) {
    return report("constructParamValues", result);
  }
  bool store = false;
  result = change.apply(*object.loaded.image, table.slots, list, store);
  if (result != ZRCFG_OK) {
    return report(change.step, result);
  }
  if (!store) {
    ZRCFG_TRACE("all error params are not changed.\n");
    return ZRCFG_OK;
  }
  return report("setParamValuesToMem", store_value_table(object, table.slots));
}

int write_values(const char *url, ParamValueEntry *list, int timeout, const TableChange &change) {
  if (url == nullptr || list == nullptr) {
    return static_cast<int>(refuse_null(NullText::kExclaimed));
  }
  ZRCFG_TRACE("objUrl = %s\n", url);
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  uint32_t result = check_requests(list, change.use);
  if (result == ZRCFG_OK) {
    result = with_object(url, ZRCFG_LOCK_EXCLUSIVE, timeout, Access::kWrite,
                         [&](OpenObject &object) { return change_values(object, list, change); });
  }
  return static_cast<int>(result);
}

constexpr TableChange kSet = {
    ListUse::kWrite, "modiMultiParamValues",
    [](ObjectImage &image, char *table, ParamValueEntry *list, bool &store) {
      store = true;
      return apply_values(image, table, list);
    }};

constexpr TableChange kSetChecked = {
    ListUse::kCheckedWrite, "modi_multi_param_values_check",
    [](ObjectImage &image, char *table, ParamValueEntry *list, bool &store) {
      store = true;
      return apply_checked_values(image, table, list);
    }};

constexpr TableChange kRollBack = {ListUse::kRollBack, "modi_multi_param_values_ext",
                                   restore_values};

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int zrcfg_getmultiparamval(const char *url, ParamValueEntry *list, int timeout) {
  if (url == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  if (check_url_length(url) != ZRCFG_OK) {
    return ZRCFG_E_NOT_FOUND;
  }
  return static_cast<int>(
      with_object(url, ZRCFG_LOCK_SHARED, timeout, Access::kRead,
                  [&](OpenObject &object) { return read_values(object, list); }));
}

ZRCFG_EXPORT int zrcfg_setmultiparamval(const char *url, ParamValueEntry *list, int timeout) {
  return write_values(url, list, timeout, kSet);
}

ZRCFG_EXPORT int zrcfg_setmultiparamval_ext(const char *url, ParamValueEntry *list, int timeout) {
  return write_values(url, list, timeout, kRollBack);
}

ZRCFG_EXPORT int zrcfg_setmultiparamval_check(const char *url, ParamValueEntry *list, int timeout) {
  return write_values(url, list, timeout, kSetChecked);
}

}  // extern "C"
