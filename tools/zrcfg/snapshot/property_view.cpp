// A well-formed property file that lies in memory, through core's own definition of its bytes.
#include "tools/zrcfg/snapshot/property_view.h"

#include <string.h>

#include "tools/zrcfg/raw_file.h"

namespace zrcfg_tool {
namespace {

using zrcfg::BigEndian32;
using zrcfg::kHeaderSize;
using zrcfg::kLengthWordSize;

template <size_t kSize>
bool same_text(const char (&a)[kSize], const char (&b)[kSize]) {
  return strncmp(a, b, kSize) == 0;
}

}  // namespace

bool view_structure(const char *bytes, size_t size, PropertyView &view) {
  if (size < kLengthWordSize) {
    return false;
  }
  BigEndian32 word;
  memcpy(word.bytes, bytes, sizeof word.bytes);
  const uint32_t length = word.get();
  if (length < kHeaderSize || length > zrcfg::kMaxStructSize || size - kLengthWordSize < length ||
      (length - kHeaderSize) % zrcfg::kRecordSize != 0) {
    return false;
  }
  const char *const header = bytes + kLengthWordSize;
  view.header = reinterpret_cast<const zrcfg::ObjectHeader *>(header);
  view.records = reinterpret_cast<const zrcfg::ParamRecord *>(header + kHeaderSize);
  view.count = zrcfg::record_count(length);
  return true;
}

const char *view_property_file(char *bytes, size_t size, PropertyView &view) {
  const char *const damage = raw_file_damage(reinterpret_cast<const uint8_t *>(bytes), size);
  if (damage != nullptr) {
    return damage;
  }
  (void)view_structure(bytes, size, view);  // Holds for what is not damaged.
  const size_t section_at =
      kLengthWordSize + kHeaderSize + size_t{view.count} * sizeof(zrcfg::ParamRecord);
  view.section = {bytes + section_at, size - section_at, static_cast<off_t>(section_at),
                  static_cast<off_t>(size)};
  return nullptr;
}

bool same_model(const PropertyView &a, const PropertyView &b) {
  if (a.count != b.count || a.header->device_type != b.header->device_type ||
      !same_text(a.header->pnoe, b.header->pnoe) ||
      !same_text(a.header->devfunc, b.header->devfunc) ||
      !same_text(a.header->extra_text, b.header->extra_text)) {
    return false;
  }
  for (uint32_t i = 0; i < a.count; ++i) {
    if (!same_text(a.records[i].name, b.records[i].name)) {
      return false;
    }
  }
  return true;
}

void FieldText::copy(const char *field, size_t size) {
  const size_t length = strnlen(field, size);
  memcpy(text, field, length);
  text[length] = '\0';
}

}  // namespace zrcfg_tool
