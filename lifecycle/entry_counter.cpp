// The parent's counter of a table's instances.
#include "lifecycle/entry_counter.h"

#include <stdio.h>
#include <string.h>

#include "core/call_frame.h"
#include "core/decimal_text.h"
#include "core/export.h"
#include "core/single_value.h"

namespace zrcfg {
namespace {

constexpr size_t kCounterNameSize = 72;

// Cuts a directory path down to its parent's. Without one it only loses its final slash.
void cut_to_parent(char *path) {
  const size_t length = strlen(path);
  if (path[length - 1] == '/') {
    path[length - 1] = '\0';
  }
  char *const slash = strrchr(path, '/');
  if (slash != nullptr) {
    slash[1] = '\0';
  }
}

// The next count; like all arithmetic on the device it wraps.
int next_count(int count, bool deleting) {
  if (!deleting) {
    return static_cast<int>(static_cast<uint32_t>(count) + 1u);
  }
  return count == 0 ? 0 : static_cast<int>(static_cast<uint32_t>(count) - 1u);
}

uint32_t step_counter(OpenObject &parent, const char *name, bool deleting) {
  char value[kValueSlotSize] = {};
  uint32_t result = read_value(parent, name, value);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("getSingleParamValueByParamName() fail ret=%d!\n", static_cast<int>(result));
    return result;
  }
  (void)snprintf(value, sizeof value, "%d", next_count(decimal_value(value), deleting));  // Fits.
  result = write_value(parent, {name, value, nullptr, nullptr});
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("setSingleParamValueByParamName() fail ret=%d!\n", static_cast<int>(result));
  }
  return result;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" ZRCFG_EXPORT uint32_t modifyParentNodeNumOfEntry(const char *objPath, const char *pnoe,
                                                            int isDel, int timeout) {
  if (objPath == nullptr || pnoe == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  if (objPath[0] == '\0') {
    return ZRCFG_E_EMPTY_PATH;
  }
  DirPath path;
  if (!url_length_ok(objPath)) {
    return ZRCFG_E_NOT_FOUND;
  }
  memcpy(path.text, objPath, strlen(objPath) + 1);
  cut_to_parent(path.text);
  OpenObject parent;
  uint32_t result = open_at(parent, path, ZRCFG_LOCK_EXCLUSIVE, timeout, Access::kWrite);
  if (result != ZRCFG_OK) {
    return result;
  }
  const char *const slash = strrchr(pnoe, '/');
  char name[kCounterNameSize];
  (void)snprintf(name, sizeof name, "%s", slash != nullptr ? slash + 1 : "");  // No name is longer.
  ZRCFG_TRACE("obj_path=%s pnoe = %s\n", path.text, name);
  result = step_counter(parent, name, isDel != 0);
  close_object(parent);
  return result;
}
