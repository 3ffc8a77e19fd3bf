// All parameters of an object, hidden ones included, read through its image.
#include "tools/zrcfg/object_reader.h"

#include <string.h>

namespace zrcfg_tool {
namespace {

// An open object's layout, as the public header and docs/format.md have it.
constexpr size_t kHeaderSize = 184;
constexpr size_t kRecordSize = 124;
constexpr size_t kCountAt = 4;
constexpr size_t kFlagsAt = 4;
constexpr size_t kNameAt = 8;

void read_records(const uint8_t *image, ObjectRows &object) {
  object.count = image[kCountAt];
  for (int i = 0; i < object.count; ++i) {
    const uint8_t *const record = image + kHeaderSize + static_cast<size_t>(i) * kRecordSize;
    ParameterRow &row = object.rows[i];
    memcpy(row.name, record + kNameAt, sizeof row.name - 1);
    row.name[sizeof row.name - 1] = '\0';
    row.key = (record[kFlagsAt] >> 2) & 15;
  }
}

// Reads the values with one call, under the lock that the caller holds.
uint32_t read_values(const char *url, ObjectRows &object) {
  static ParamValueEntry list[kMaxParameters];  // Too large for a small stack.
  if (object.count == 0) {
    return ZRCFG_OK;
  }
  for (int i = 0; i < object.count; ++i) {
    memcpy(list[i].name, object.rows[i].name, sizeof list[i].name);
    list[i].value = object.rows[i].value;
    list[i].value[0] = '\0';
    list[i].next = i + 1 < object.count ? &list[i + 1] : nullptr;
  }
  return static_cast<uint32_t>(zrcfg_getmultiparamval(url, list, ZRCFG_NO_LOCK));
}

void url_to_path(const char *url, char (&path)[ZRCFG_URL_SIZE]) {
  (void)strncpy(path, url, sizeof path - 1);  // An object URL fits.
  path[sizeof path - 1] = '\0';
  for (char *at = path; *at != '\0'; ++at) {
    if (*at == '.') {
      *at = '/';
    }
  }
}

}  // namespace

const ParameterRow *ObjectRows::find(const char *name) const {
  for (int i = 0; i < count; ++i) {
    if (strcmp(rows[i].name, name) == 0) {
      return &rows[i];
    }
  }
  return nullptr;
}

uint32_t read_object_rows(const char *url, int timeout, RowContent content, ObjectRows &object) {
  char path[ZRCFG_URL_SIZE];
  url_to_path(url, path);
  ZrcfgObject *image = nullptr;
  int lock_fd = -1;
  uint32_t result = createObjByPath(&image, path, &lock_fd, ZRCFG_LOCK_SHARED, timeout);
  if (result != ZRCFG_OK) {
    return result;
  }
  read_records(static_cast<const uint8_t *>(image), object);
  if (content == RowContent::kValues) {
    result = read_values(url, object);
  }
  (void)destroyObj(image, lock_fd);  // Always 0.
  return result;
}

}  // namespace zrcfg_tool
