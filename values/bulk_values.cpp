// The work steps of the bulk calls: what a request list does to a value table.
#include "values/bulk_values.h"

#include <string.h>

#include "core/export.h"
#include "core/property_file.h"
#include "core/record_index.h"
#include "core/refuse_null.h"
#include "core/request_list.h"
#include "core/single_value.h"
#include "core/trace.h"
#include "values/request_check.h"
#include "values/value_table.h"

namespace zrcfg {
namespace {

template <typename Char>
Char *slot_at(Char *table, int position) {
  return table + static_cast<size_t>(position) * kValueSlotSize;
}

const ParamRecord &record_at(ObjectImage &image, int position) {
  return records(image).begin()[position];
}

constexpr int kIgnoredValue = kNoRecord - 1;

// Finds the record that a node names; kIgnoredValue, logged, for a node whose value is too long.
// The length is looked at where records are compared, so not in an object without any.
int find_requested(RecordIndex &index, ObjectImage &image, const ParamValueEntry &node,
                   const char *name) {
  if (image.header.param_num > 0 && !value_length_ok(name, node.value)) {
    return kIgnoredValue;
  }
  return index.find(node.name);
}

void set_slot(const ParamRecord &record, char *slot, ParamValueEntry &node, const char *name) {
  ZRCFG_TRACE("param->name = %s value = %s\n", name, node.value);
  strncpy(node.old_value, slot, kMaxValueLength);
  node.old_value[kMaxValueLength] = '\0';
  if (strcmp(node.old_value, node.value) != 0) {
    copy_slot(slot, node.value);
    node.changed = 1;
  } else {
    ZRCFG_TRACE("Same value,don't write!Multi\n");
    node.changed = 0;
  }
  report_attributes(record, node);
}

void restore_slot(char *slot, const ParamValueEntry &node, const char *name, bool &restored) {
  char old_value[kValueSlotSize] = {};
  memcpy(old_value, node.old_value, kMaxValueLength);
  ZRCFG_TRACE("param->name = %s old_value = %s\n", name, old_value);
  if (node.changed == 1) {
    ZRCFG_TRACE("value is changed.\n");
    memcpy(slot, old_value, sizeof old_value);
    restored = true;
  }
}

// The part of a checked write for one node that changes nothing but the fault of a refused one.
uint32_t check_node(const ParamRecord &record, ParamValueEntry &node, const char *name) {
  const uint32_t filter = record.param_check.get();
  ZRCFG_TRACE("param->name = %s param_check=%d value = %s\n", name, static_cast<int>(filter),
              node.value);
  if (check_param_value_valid_regex(filter, node.value) == 0) {
    return ZRCFG_OK;
  }
  mark_refused(node);
  return ZRCFG_E_FILE;
}

uint32_t check_values(ObjectImage &image, ParamValueEntry *list) {
  RecordIndex index(records(image));
  return for_each_request(list, [&](ParamValueEntry &node) -> uint32_t {
    const FieldName name(node.name);
    const int position = find_requested(index, image, node, name.text);
    if (position == kNoRecord) {
      ZRCFG_TRACE("pList->name = %s not exist.\n", name.text);
      return ZRCFG_E_NO_PARAMETER;
    }
    if (position == kIgnoredValue) {
      return ZRCFG_OK;
    }
    return check_node(record_at(image, position), node, name.text);
  });
}

}  // namespace

void report_attributes(const ParamRecord &record, ParamValueEntry &node) {
  copy_flags(record, node);
  ZRCFG_TRACE("pList's flash_rw= %d\n", node.flash_rw);
  ZRCFG_TRACE("pList's noti= %d\n", node.noti);
  ZRCFG_TRACE("pList's inform_dbus= %d\n", node.inform_dbus);
  ZRCFG_TRACE("pList's namechange= %d\n", node.namechange);
  ZRCFG_TRACE("pList's inform_tr069= %d\n", node.inform_tr069);
}

uint32_t output_values(ObjectImage &image, const char *table, ParamValueEntry *list) {
  RecordIndex index(records(image));
  return for_each_request(list, [&](ParamValueEntry &node) -> uint32_t {
    const int position = index.find(node.name);
    if (position == kNoRecord) {
      return ZRCFG_OK;
    }
    ZRCFG_TRACE("param=%d \n", position);
    ZRCFG_TRACE("param->name = %s\n", FieldName(node.name).text);
    copy_slot(node.value, slot_at(table, position));
    return ZRCFG_OK;
  });
}

uint32_t apply_values(ObjectImage &image, char *table, ParamValueEntry *list) {
  RecordIndex index(records(image));
  return for_each_request(list, [&](ParamValueEntry &node) -> uint32_t {
    const FieldName name(node.name);
    const int position = find_requested(index, image, node, name.text);
    if (position >= 0) {
      set_slot(record_at(image, position), slot_at(table, position), node, name.text);
    }
    return ZRCFG_OK;
  });
}

uint32_t restore_values(ObjectImage &image, char *table, ParamValueEntry *list, bool &restored) {
  RecordIndex index(records(image));
  return for_each_request(list, [&](ParamValueEntry &node) -> uint32_t {
    const FieldName name(node.name);
    if (!is_failed(node)) {
      ZRCFG_TRACE("param(%s) is not error.\n", name.text);
      return ZRCFG_OK;
    }
    const int position = find_requested(index, image, node, name.text);
    if (position >= 0) {
      restore_slot(slot_at(table, position), node, name.text, restored);
    }
    return ZRCFG_OK;
  });
}

uint32_t apply_checked_values(ObjectImage &image, char *table, ParamValueEntry *list) {
  const uint32_t result = check_values(image, list);
  return result == ZRCFG_OK ? apply_values(image, table, list) : result;
}

}  // namespace zrcfg

using namespace zrcfg;

namespace {

// Runs a step on a list that is worth it.
template <typename Step>
int run_step(ZrcfgObject *image, ParamValueEntry *list, ListUse use, Step step) {
  uint32_t result = check_requests(list, use);
  if (result == ZRCFG_OK) {
    result = step(*static_cast<ObjectImage *>(image));
  }
  return static_cast<int>(result);
}

}  // namespace

extern "C" {

ZRCFG_EXPORT int outputToMultiParamValueList(ZrcfgObject *image, char *pValue,
                                             ParamValueEntry *list) {
  if (image == nullptr || pValue == nullptr || list == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  return run_step(image, list, ListUse::kRead,
                  [&](ObjectImage &object) { return output_values(object, pValue, list); });
}

ZRCFG_EXPORT int modiMultiParamValues(ZrcfgObject *image, char *pValue, ParamValueEntry *list) {
  if (any_null(NullText::kExclaimed, image, pValue, list)) {
    return ZRCFG_E_ARGUMENT;
  }
  return run_step(image, list, ListUse::kWrite,
                  [&](ObjectImage &object) { return apply_values(object, pValue, list); });
}

ZRCFG_EXPORT int modi_multi_param_values_ext(ZrcfgObject *image, char *pValue,
                                             ParamValueEntry *list, unsigned char *restored) {
  if (any_null(NullText::kExclaimed, image, pValue, list) ||
      any_null(NullText::kExclaimed, restored, restored, restored)) {
    return ZRCFG_E_ARGUMENT;
  }
  bool any_restored = false;
  const int result = run_step(image, list, ListUse::kRollBack, [&](ObjectImage &object) {
    return restore_values(object, pValue, list, any_restored);
  });
  if (any_restored) {
    *restored = 1;
  }
  return result;
}

ZRCFG_EXPORT int modi_multi_param_values_check(ZrcfgObject *image, char *pValue,
                                               ParamValueEntry *list) {
  if (any_null(NullText::kExclaimed, image, pValue, list)) {
    return ZRCFG_E_ARGUMENT;
  }
  return run_step(image, list, ListUse::kCheckedWrite,
                  [&](ObjectImage &object) { return apply_checked_values(object, pValue, list); });
}

}  // extern "C"
