// Export of values: a configuration replayed parameter by parameter, as its mode selects.
#include "lifecycle/export_values.h"

#include <stdlib.h>
#include <string.h>

#include "core/call_frame.h"
#include "core/export.h"
#include "core/record_index.h"
#include "core/request_list.h"
#include "core/single_value.h"
#include "lifecycle/export_mode.h"
#include "values/bulk_values.h"
#include "values/request_check.h"
#include "values/value_table.h"

namespace zrcfg {
namespace {

bool selects(int mode, const ParamRecord &record) {
  const uint8_t key = record_field::kKey.get(record);
  if (mode == kModeThatLogsKey) {
    ZRCFG_TRACE("param->ubv.boolval.key=%d\n", key);
  }
  const bool selected = selected_by_mode(mode, key);
  ZRCFG_TRACE("write_flag=%d!\n", selected ? 1 : 0);
  return selected;
}

// Sets one value by `write`, which takes a ValueWrite, when the mode selects it.
template <typename Write>
uint32_t export_value(ObjectImage &image, const char *name, const char *value, int mode,
                      uint8_t *write_flag, Write write) {
  const ParamRecord *const record = find_record(image, name);
  const bool selected = record != nullptr && selects(mode, *record);
  if (selected) {
    const uint32_t result = write(ValueWrite{name, value, nullptr, nullptr});
    if (result != ZRCFG_OK) {
      ZRCFG_TRACE("setSingleParamValueByParamName() fail ret=%d!\n", static_cast<int>(result));
      return result;
    }
  }
  if (write_flag != nullptr) {
    *write_flag = selected ? 1 : 0;
  }
  return ZRCFG_OK;
}

uint32_t export_into(OpenObject &object, const char *name, const char *value, int mode,
                     uint8_t *write_flag) {
  uint32_t result = ZRCFG_E_ARGUMENT;
  if (!any_null(NullText::kPlain, object.loaded.image, name, value)) {
    result = export_value(*object.loaded.image, name, value, mode, write_flag,
                          [&](const ValueWrite &write) {
                            const uint32_t refused = check_storable(write);
                            return refused != ZRCFG_OK ? refused : write_value(object, write);
                          });
  }
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("export_SetParamVal return =%d!\n", static_cast<int>(result));
  }
  return result;
}

// Sets the slots of a list that has passed check_requests.
uint32_t export_list(ObjectImage &image, char *table, ParamValueEntry *list, int mode) {
  RecordIndex index(records(image));
  return for_each_request(list, [&](ParamValueEntry &node) -> uint32_t {
    const int position = index.find(node.name);
    if (position == kNoRecord) {
      return ZRCFG_OK;
    }
    const ParamRecord &record = records(image).begin()[position];
    const bool selected = selects(mode, record);
    if (selected) {
      copy_slot(table + static_cast<size_t>(position) * kValueSlotSize, node.value);
      report_attributes(record, node);
    }
    node.changed = selected ? 1 : 0;
    return ZRCFG_OK;
  });
}

uint32_t export_multi(OpenObject &object, ParamValueEntry *list, int mode) {
  char *table = nullptr;
  uint32_t result = build_value_table(object, &table);
  if (result == ZRCFG_OK) {
    result = export_list(*object.loaded.image, table, list, mode);
  }
  if (result == ZRCFG_OK) {
    result = store_value_table(object, table);
  }
  if (result != ZRCFG_OK) {
    // The name that a failure of any of these steps has always had.
    ZRCFG_TRACE("createObjByPath() fail ret=%d!\n", static_cast<int>(result));
  }
  free(table);
  return result;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t export_SetParamVal(ZrcfgObject *image, const char *paramName,
                                         const char *value, int mode, uint8_t *pWriteFlag) {
  if (any_null(NullText::kPlain, image, paramName, value)) {
    return ZRCFG_E_ARGUMENT;
  }
  return export_value(*static_cast<ObjectImage *>(image), paramName, value, mode, pWriteFlag,
                      [&](const ValueWrite &write) {
                        return setSingleParamValueByParamName(image, write.name, write.value,
                                                              write.changed);
                      });
}

ZRCFG_EXPORT uint32_t export_modiMultiParamValues(ZrcfgObject *image, char *valueTable,
                                                  ParamValueEntry *list, int mode) {
  if (any_null(NullText::kPlain, image, valueTable, list)) {
    return ZRCFG_E_ARGUMENT;
  }
  const uint32_t result = check_requests(list, ListUse::kWrite);
  return result == ZRCFG_OK
             ? export_list(*static_cast<ObjectImage *>(image), valueTable, list, mode)
             : result;
}

ZRCFG_EXPORT uint32_t zrcfg_exportsingleparamval(const char *url, const char *name,
                                                 const char *value, int mode, uint8_t *pWriteFlag) {
  if (url == nullptr) {
    return refuse_null(NullText::kExclaimed);
  }
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  if (name != nullptr && value != nullptr && !is_single_line(name, value, strlen(value))) {
    return ZRCFG_E_FAILED;
  }
  DirPath path;
  url_to_dir_path(url, path);
  OpenObject object;
  uint32_t result = open_at(object, path, ZRCFG_LOCK_EXCLUSIVE, ZRCFG_NO_LOCK, Access::kWrite);
  if (result != ZRCFG_OK) {
    return result;
  }
  result = export_into(object, name, value, mode, pWriteFlag);
  close_object(object);
  return result == ZRCFG_OK ? ZRCFG_OK : ZRCFG_E_FAILED;
}

ZRCFG_EXPORT uint32_t zrcfg_exportmultiparamval(const char *url, ParamValueEntry *list, int timeout,
                                                int mode) {
  if (url == nullptr || list == nullptr) {
    return refuse_null(NullText::kExclaimed);
  }
  ZRCFG_TRACE("objUrl = %s\n", url);
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  const uint32_t result = check_requests(list, ListUse::kWrite);
  if (result != ZRCFG_OK) {
    return result;
  }
  return with_object(url, ZRCFG_LOCK_EXCLUSIVE, timeout, Access::kWrite,
                     [&](OpenObject &object) { return export_multi(object, list, mode); });
}

}  // extern "C"
