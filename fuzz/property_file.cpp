// Target: the input is a property file; every call that opens one works on it.
#include <string>

#include "core/property_file.h"
#include "fuzz/any_object.h"
#include "fuzz/store_file.h"
#include "fuzz/target.h"

namespace {

// Length words between this and the limit are served too, by clearing as many bytes in every call;
// each such input would cost the time of thousands. Some are in the tests of any bytes.
constexpr uint32_t kLargeStruct = 64u << 10;

bool is_slow(const uint8_t *data, size_t size) {
  if (size < sizeof(zrcfg::BigEndian32)) {
    return false;
  }
  const uint32_t length = zrcfg::BigEndian32{{data[0], data[1], data[2], data[3]}}.get();
  return length > kLargeStruct && length <= zrcfg::kMaxStructSize;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  zrcfg_fuzz::require_private_store();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (is_slow(data, size)) {
    return 0;
  }
  zrcfg_fuzz::make_every_call(std::string(reinterpret_cast<const char *>(data), size));
  return 0;
}
