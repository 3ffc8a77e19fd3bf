// The predicates that decide what listings leave out.
#include <stdint.h>

#include "core/export.h"
#include "core/property_file.h"
#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr uint8_t kSupportedDeviceKinds = 0xBF;  // Every device kind but that of bit 6.

int is_hidden(uint8_t device_type, uint8_t hide) {
  ZRCFG_TRACE("device_type = %d\n", static_cast<int8_t>(device_type));
  if (hide != 0) {
    ZRCFG_TRACE("hide = 1\n");
    return 1;
  }
  if (device_type != 0 && (device_type & kSupportedDeviceKinds) == 0) {
    ZRCFG_TRACE("device_type mask calc is 0!\n");
    return 1;
  }
  return 0;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int objIsHide(const void *header) {
  if (header == nullptr) {
    return 1;
  }
  const ObjectHeader &object = *static_cast<const ObjectHeader *>(header);
  return is_hidden(object.device_type, header_field::kHide.get(object));
}

ZRCFG_EXPORT int paramIsHide(const void *record) {
  if (record == nullptr) {
    return 1;
  }
  const ParamRecord &parameter = *static_cast<const ParamRecord *>(record);
  return is_hidden(parameter.device_type, record_field::kHide.get(parameter));
}

}  // extern "C"
