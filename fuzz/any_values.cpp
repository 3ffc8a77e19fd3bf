// The calls on values, made on any object.
#include <string.h>

#include <iterator>

#include "core/single_value.h"
#include "fuzz/any_object.h"
#include "fuzz/check.h"
#include "fuzz/image.h"
#include "fuzz/request.h"
#include "fuzz/result_lists.h"
#include "lifecycle/export_values.h"
#include "values/bulk_values.h"
#include "values/checked_single_value.h"
#include "values/value_list.h"
#include "values/value_table.h"
#include "zrcfg.h"

namespace zrcfg_fuzz {
namespace {

constexpr int kTry = 0;
constexpr char kLongValue[] =
    "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abc"
    "def0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789"
    "abcdef0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcde";
static_assert(sizeof kLongValue == ZRCFG_VALUE_SIZE);

int64_t read_one(const AnyObject &object, const std::string &name) {
  const Buffer value(ZRCFG_VALUE_SIZE);
  const uint32_t result = zrcfg_getsingleparamval(object.url.c_str(), name.c_str(), value, kTry);
  require(is_terminated(value, ZRCFG_VALUE_SIZE), "a value has no end");
  return result;
}

// What a write has stored is what a read then finds.
int64_t read_back(const AnyObject &object, uint32_t result, const char *written) {
  const Buffer value(ZRCFG_VALUE_SIZE);
  if (result == ZRCFG_OK) {
    require(zrcfg_getsingleparamval(object.url.c_str(), object.first_name.c_str(), value, kTry) ==
                ZRCFG_OK,
            "a value that was written cannot be read");
    require(strcmp(value, written) == 0, "another value is read than was written");
  }
  return result;
}

int64_t check_one(const AnyObject &object) {
  return zrcfg_paramvalue_check(object.url.c_str(), object.first_name.c_str(), "value", kTry);
}

int64_t read_list(const AnyObject &object) {
  Request request(object, ZRCFG_VALUE_SIZE, "before");
  const int result = zrcfg_getmultiparamval(object.url.c_str(), request.first(), kTry);
  request.look_at_values();
  return result;
}

int64_t list_all(const AnyObject &object) {
  ParamValueListNode *head = nullptr;
  ParamValueListNode *tail = nullptr;
  const int result = zrcfg_getallparamval(object.url.c_str(), &head, &tail, kTry);
  look_at_and_free(head);
  return result;
}

int64_t write_one(const AnyObject &object) {
  return read_back(
      object,
      zrcfg_setsingleparamval(object.url.c_str(), object.first_name.c_str(), kNewValue, kTry),
      kNewValue);
}

int64_t write_longest(const AnyObject &object) {
  uint8_t changed = 0;
  return read_back(object,
                   zrcfg_setsingleparamval_ext(object.url.c_str(), object.first_name.c_str(),
                                               kLongValue, kTry, &changed),
                   kLongValue);
}

int64_t write_empty(const AnyObject &object) {
  uint8_t changed = 0;
  return read_back(object,
                   zrcfg_setsingleparamval_ext(object.url.c_str(), object.first_name.c_str(), "",
                                               kTry, &changed),
                   "");
}

int64_t write_for_old(const AnyObject &object) {
  uint8_t changed = 0;
  const Buffer old_value(ZRCFG_VALUE_SIZE);
  const uint32_t result = zrcfg_setsingleparamval_ext_get_old_value(
      object.url.c_str(), object.first_name.c_str(), kNewValue, kTry, &changed, old_value);
  require(is_terminated(old_value, ZRCFG_VALUE_SIZE), "an old value has no end");
  return read_back(object, result, kNewValue);
}

int64_t write_checked(const AnyObject &object) {
  char changed = 0;
  const Buffer old_value(ZRCFG_VALUE_SIZE);
  const int result = zrcfg_setsingleparamval_ext_get_old_value_check(
      object.url.c_str(), object.last_name.c_str(), kNewValue, kTry, &changed, old_value);
  require(is_terminated(old_value, ZRCFG_VALUE_SIZE), "an old value has no end");
  return result;
}

using ListWrite = int (*)(const char *, ParamValueEntry *, int);

template <ListWrite kCall>
int64_t write_list(const AnyObject &object) {
  Request request(object, ZRCFG_VALUE_SIZE, kNewValue);
  const int result = kCall(object.url.c_str(), request.first(), kTry);
  request.look_at_values();
  return result;
}

int64_t roll_back(const AnyObject &object) {
  Request request(object, ZRCFG_VALUE_SIZE, "value");
  request.set_changed();
  request.set_faults(1);
  return zrcfg_setmultiparamval_ext(object.url.c_str(), request.first(), kTry);
}

int64_t export_one(const AnyObject &object) {
  uint8_t flag = 0;
  return zrcfg_exportsingleparamval(object.url.c_str(), object.first_name.c_str(), kNewValue, 0,
                                    &flag);
}

// Mode 0 selects every parameter, mode 1 those of a class.
template <int kMode>
int64_t export_list(const AnyObject &object) {
  Request request(object, ZRCFG_VALUE_SIZE, kNewValue);
  return zrcfg_exportmultiparamval(object.url.c_str(), request.first(), kTry, kMode);
}

// The work steps, each on an image and where it needs one on a table of the values.

int64_t worker_read(const AnyObject &object) {
  const Image image(object);
  const Buffer value(ZRCFG_VALUE_SIZE);
  return image.get() == nullptr
             ? image.result()
             : getSingleParamValueByParamName(image.get(), object.last_name.c_str(), value);
}

int64_t worker_list(const AnyObject &object) {
  const Image image(object);
  if (image.get() == nullptr) {
    return image.result();
  }
  ParamValueListNode *head = nullptr;
  const int result = constructParamValueList(object.url.c_str(), image.get(), &head, nullptr);
  look_at_and_free(head);
  return result;
}

int64_t worker_write(const AnyObject &object) {
  const Image image(object);
  uint8_t changed = 0;
  return image.get() == nullptr ? image.result()
                                : setSingleParamValueByParamName(
                                      image.get(), object.first_name.c_str(), kNewValue, &changed);
}

int64_t worker_write_for_old(const AnyObject &object) {
  const Image image(object);
  uint8_t changed = 0;
  const Buffer old_value(ZRCFG_VALUE_SIZE);
  return image.get() == nullptr
             ? image.result()
             : set_single_param_value_by_param_name(image.get(), object.last_name.c_str(),
                                                    kNewValue, &changed, old_value);
}

int64_t worker_write_checked(const AnyObject &object) {
  const Image image(object);
  char changed = 0;
  const Buffer old_value(ZRCFG_VALUE_SIZE);
  return image.get() == nullptr
             ? image.result()
             : set_single_param_value_by_param_name_check(image.get(), object.first_name.c_str(),
                                                          kNewValue, &changed, old_value);
}

int64_t worker_export(const AnyObject &object) {
  const Image image(object);
  uint8_t flag = 0;
  return image.get() == nullptr
             ? image.result()
             : export_SetParamVal(image.get(), object.first_name.c_str(), kNewValue, 0, &flag);
}

int64_t table_read(const AnyObject &object) {
  const ValueTable table(object);
  Request request(object, ZRCFG_VALUE_SIZE, "before");
  if (table.get() == nullptr) {
    return table.result();
  }
  const int result = outputToMultiParamValueList(table.image(), table.get(), request.first());
  request.look_at_values();
  return result;
}

int roll_table_back(ZrcfgObject *image, char *table, ParamValueEntry *list) {
  unsigned char restored = 0;
  return modi_multi_param_values_ext(image, table, list, &restored);
}

int export_to_table(ZrcfgObject *image, char *table, ParamValueEntry *list) {
  return static_cast<int>(export_modiMultiParamValues(image, table, list, 0));
}

using TableWork = int (*)(ZrcfgObject *, char *, ParamValueEntry *);

// Changes the table and writes it; the result is that of the first step that fails.
template <TableWork kWork>
int64_t write_table(const AnyObject &object) {
  const ValueTable table(object);
  Request request(object, ZRCFG_VALUE_SIZE, kNewValue);
  request.set_changed();
  request.set_faults(1);
  if (table.get() == nullptr) {
    return table.result();
  }
  const int result = kWork(table.image(), table.get(), request.first());
  return result != 0 ? result : setParamValuesToMem(table.image(), table.get());
}

int64_t read_first(const AnyObject &object) {
  return read_one(object, object.first_name);
}

int64_t read_last(const AnyObject &object) {
  return read_one(object, object.last_name);
}

int64_t read_unknown(const AnyObject &object) {
  return read_one(object, kUnknownName);
}

constexpr AnyCall kReads[] = {
    {"zrcfg_getsingleparamval", Effect::kReads, read_first},
    {"zrcfg_getsingleparamval, last", Effect::kReads, read_last},
    {"zrcfg_getsingleparamval, unknown", Effect::kReads, read_unknown},
    {"zrcfg_paramvalue_check", Effect::kReads, check_one},
    {"zrcfg_getmultiparamval", Effect::kReads, read_list},
    {"zrcfg_getallparamval", Effect::kReads, list_all},
    {"getSingleParamValueByParamName", Effect::kReads, worker_read},
    {"constructParamValueList", Effect::kReads, worker_list},
    {"outputToMultiParamValueList", Effect::kReads, table_read},
};

constexpr AnyCall kWrites[] = {
    {"zrcfg_setsingleparamval", Effect::kWritesValues, write_one},
    {"zrcfg_setsingleparamval_ext", Effect::kWritesValues, write_longest},
    {"zrcfg_setsingleparamval_ext, empty", Effect::kWritesValues, write_empty},
    {"zrcfg_setsingleparamval_ext_get_old_value", Effect::kWritesValues, write_for_old},
    {"zrcfg_setsingleparamval_ext_get_old_value_check", Effect::kWritesValues, write_checked},
    {"zrcfg_setmultiparamval", Effect::kWritesValues, write_list<zrcfg_setmultiparamval>},
    {"zrcfg_setmultiparamval_check", Effect::kWritesValues,
     write_list<zrcfg_setmultiparamval_check>},
    {"zrcfg_setmultiparamval_ext", Effect::kWritesValues, roll_back},
    {"zrcfg_exportsingleparamval", Effect::kWritesValues, export_one},
    {"zrcfg_exportmultiparamval", Effect::kWritesValues, export_list<0>},
    {"zrcfg_exportmultiparamval, class 1", Effect::kWritesValues, export_list<1>},
    {"setSingleParamValueByParamName", Effect::kWritesValues, worker_write},
    {"set_single_param_value_by_param_name", Effect::kWritesValues, worker_write_for_old},
    {"set_single_param_value_by_param_name_check", Effect::kWritesValues, worker_write_checked},
    {"export_SetParamVal", Effect::kWritesValues, worker_export},
    {"modiMultiParamValues", Effect::kWritesValues, write_table<modiMultiParamValues>},
    {"modi_multi_param_values_check", Effect::kWritesValues,
     write_table<modi_multi_param_values_check>},
    {"modi_multi_param_values_ext", Effect::kWritesValues, write_table<roll_table_back>},
    {"export_modiMultiParamValues", Effect::kWritesValues, write_table<export_to_table>},
};

}  // namespace

const std::vector<AnyCall> &any_value_calls() {
  static const std::vector<AnyCall> calls = [] {
    std::vector<AnyCall> all(std::begin(kReads), std::end(kReads));
    all.insert(all.end(), std::begin(kWrites), std::end(kWrites));
    return all;
  }();
  return calls;
}

}  // namespace zrcfg_fuzz
