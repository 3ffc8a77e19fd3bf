// The exported calls that read and write one value of an object given by its URL.
#include <string.h>

#include "core/call_frame.h"
#include "core/export.h"
#include "core/single_value.h"
#include "core/value_section.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

// The common part of the three writes, behind their null tests. `step` names the work step in the
// log line of its failure.
uint32_t set_value(const char *url, int timeout, const ValueWrite &write, const char *step) {
  if (!value_length_ok(write.name, write.value)) {
    return ZRCFG_OK;
  }
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  if (!is_single_line(write.name, write.value, strlen(write.value))) {
    return ZRCFG_E_FILE;
  }
  return with_object(url, ZRCFG_LOCK_EXCLUSIVE, timeout, Access::kWrite, [&](OpenObject &object) {
    const uint32_t result = write_value(object, write);
    if (result != ZRCFG_OK) {
      ZRCFG_TRACE("%s() fail ret=%d!\n", step, static_cast<int>(result));
    }
    return result;
  });
}

constexpr char kSetStep[] = "setSingleParamValueByParamName";
constexpr char kSetOldValueStep[] = "set_single_param_value_by_param_name";

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t zrcfg_getsingleparamval(const char *url, const char *name, char *value,
                                              int timeout) {
  if (url == nullptr || name == nullptr || value == nullptr) {
    return refuse_null(NullText::kPlain);
  }
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  return with_object(url, ZRCFG_LOCK_SHARED, timeout, Access::kRead, [&](OpenObject &object) {
    const uint32_t result = read_value(object, name, value);
    if (result != ZRCFG_OK) {
      ZRCFG_TRACE("getSingleParamValueByParamName() fail ret=%d!\n", static_cast<int>(result));
    }
    return result;
  });
}

ZRCFG_EXPORT uint32_t zrcfg_setsingleparamval(const char *url, const char *name, const char *value,
                                              int timeout) {
  return zrcfg_setsingleparamval_ext(url, name, value, timeout, nullptr);
}

ZRCFG_EXPORT uint32_t zrcfg_setsingleparamval_ext(const char *url, const char *name,
                                                  const char *value, int timeout,
                                                  uint8_t *changed) {
  if (url == nullptr || name == nullptr || value == nullptr) {
    return refuse_null(NullText::kExclaimed);
  }
  return set_value(url, timeout, {name, value, changed, nullptr}, kSetStep);
}

ZRCFG_EXPORT uint32_t zrcfg_setsingleparamval_ext_get_old_value(const char *url, const char *name,
                                                                const char *value, int timeout,
                                                                uint8_t *changed, char *oldValue) {
  if (url == nullptr || name == nullptr || value == nullptr || changed == nullptr ||
      oldValue == nullptr) {
    return refuse_null(NullText::kExclaimed);
  }
  return set_value(url, timeout, {name, value, changed, oldValue}, kSetOldValueStep);
}

}  // extern "C"
