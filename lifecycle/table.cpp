// A table that a call has open, and the paths of its instances.
#include "lifecycle/table.h"

#include <errno.h>
#include <stdio.h>
#include <string.h>

#include "core/call_frame.h"
#include "core/store_file.h"
#include "lifecycle/dir_tree.h"

namespace zrcfg {

InstancePath::InstancePath(const DirPath &table, int index) {
  // Fits: 255 characters and a number of at most 11.
  (void)snprintf(text, sizeof text, "%s%d", table.text, index);
}

bool InstancePath::exists() const {
  return isDirExist(text) == 1;
}

bool InstancePath::is_free() const {
  if (exists()) {
    return false;
  }
  return means_absent(errno);
}

uint32_t Table::open(const char *url, uint32_t rw_type, int timeout) {
  url_to_dir_path(url, dir);
  return open_at(object, dir, rw_type, timeout, Access::kRead);
}

bool Table::has_template() const {
  return InstancePath(dir, 0).exists();
}

CounterName::CounterName(const Table &table) {
  const auto &pnoe = table.header().pnoe;
  const size_t length = strnlen(pnoe, sizeof pnoe);
  memcpy(text, pnoe, length);
  text[length] = '\0';
}

bool copy_instance(const InstancePath &from, const InstancePath &to) {
  bool all_fitted;
  if (copy_tree(from.text, to.text, all_fitted) == 0) {
    if (all_fitted) {
      return true;
    }
    (void)dirDel(to.text);  // The copy is refused as a whole.
  }
  ZRCFG_TRACE("dirCopy() fail!\n");
  return false;
}

}  // namespace zrcfg
