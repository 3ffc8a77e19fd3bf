// The single write with the value checked first.
#include "values/checked_single_value.h"

#include <string.h>

#include "core/call_frame.h"
#include "core/export.h"
#include "core/single_value.h"
#include "core/value_section.h"

namespace zrcfg {
namespace {

// 0, or 7 when the value is refused or no record has the name.
uint32_t check_value(ObjectImage &image, const char *name, const char *value) {
  const ParamRecord *const record = find_record(image, name);
  if (record == nullptr) {
    ZRCFG_TRACE("read finish param is not exist!\n");
    return ZRCFG_E_FILE;
  }
  const uint32_t filter = record->param_check.get();
  ZRCFG_TRACE("Find the param! param name=%s! filter_id=%d value_struct=%s\n", name,
              static_cast<int>(filter), value);
  return check_param_value_valid_regex(filter, value) == 0 ? ZRCFG_OK : ZRCFG_E_FILE;
}

uint32_t check_and_write(OpenObject &object, const ValueWrite &write) {
  uint32_t result = check_value(*object.loaded.image, write.name, write.value);
  if (result == ZRCFG_OK) {
    result = write_value(object, write);
  }
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("set_single_param_value_by_param_name() fail ret=%d!\n", static_cast<int>(result));
  }
  return result;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int set_single_param_value_by_param_name_check(ZrcfgObject *image,
                                                            const char *paramName,
                                                            const char *value, char *changed,
                                                            char *oldValue) {
  if (image == nullptr || paramName == nullptr || value == nullptr || oldValue == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  uint32_t result = check_storable({paramName, value, nullptr, nullptr});
  if (result == ZRCFG_OK) {
    result = check_value(*static_cast<ObjectImage *>(image), paramName, value);
  }
  if (result == ZRCFG_OK) {
    result = set_single_param_value_by_param_name(image, paramName, value,
                                                  reinterpret_cast<uint8_t *>(changed), oldValue);
  }
  return static_cast<int>(result);
}

ZRCFG_EXPORT int zrcfg_setsingleparamval_ext_get_old_value_check(const char *url, const char *name,
                                                                 const char *value, int timeout,
                                                                 char *changed, char *oldValue) {
  if (url == nullptr || name == nullptr || value == nullptr || changed == nullptr ||
      oldValue == nullptr) {
    return static_cast<int>(refuse_null(NullText::kExclaimed));
  }
  if (!value_length_ok(name, value)) {
    return ZRCFG_OK;
  }
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  if (!is_single_line(name, value, strlen(value))) {
    return ZRCFG_E_FILE;
  }
  const ValueWrite write = {name, value, reinterpret_cast<uint8_t *>(changed), oldValue};
  return static_cast<int>(
      with_object(url, ZRCFG_LOCK_EXCLUSIVE, timeout, Access::kWrite,
                  [&](OpenObject &object) { return check_and_write(object, write); }));
}

}  // extern "C"
