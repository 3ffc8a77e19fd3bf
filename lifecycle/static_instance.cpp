// Creating and deleting instances of fixed tables, which no counter counts.
#include <string.h>

#include "core/export.h"
#include "core/refuse_null.h"
#include "core/trace.h"
#include "lifecycle/dir_tree.h"
#include "lifecycle/instance_steps.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

// Whether these calls serve the path: they refuse what is longer than a URL may be.
bool fits(const InstancePath &path) {
  return strlen(path.text) < kUrlSize;
}

bool is_there(const InstancePath &path) {
  return fits(path) && path.exists();
}

// Opens the table under its own lock, as a fixed one; `verb` is the call's in the log. On failure
// the table is closed.
uint32_t open_fixed_table(Table &table, const char *url, int timeout, const char *verb) {
  if (!url_length_ok(url)) {
    return ZRCFG_E_NOT_FOUND;
  }
  const uint32_t result = table.open(url, ZRCFG_LOCK_EXCLUSIVE, timeout);
  if (result != ZRCFG_OK) {
    return result;
  }
  ZRCFG_TRACE("%s static obj->ubv.boolval.rw=%d\n", verb, table.rw());
  return table.rw() == 0 ? ZRCFG_OK : close_with(table, ZRCFG_E_NOT_DYNAMIC);
}

uint32_t copy_static(const Table &table, int index, int source_index) {
  const InstancePath source(table.dir, source_index);
  if (!is_there(source)) {
    ZRCFG_TRACE("instance0_obj_path=%s not exist, no 0 instance,is not dynamic!\n", source.text);
    return ZRCFG_E_NOT_DYNAMIC;
  }
  const InstancePath target(table.dir, index);
  if (index <= 0 || !fits(target) || !target.is_free()) {
    ZRCFG_TRACE("%d exceed max number instance or %s is exist.\n", index, target.text);
    return ZRCFG_E_LIMIT;
  }
  return copy_instance(source, target) ? ZRCFG_OK : ZRCFG_E_COPY;
}

uint32_t remove_static(const Table &table, int index) {
  const InstancePath instance(table.dir, index);
  if (!is_there(instance)) {
    return ZRCFG_E_NOT_FOUND;
  }
  if (dirDel(instance.text) != 0) {
    ZRCFG_TRACE("dirDel() fail!\n");
    return ZRCFG_E_REMOVE;
  }
  return ZRCFG_OK;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t zrcfg_addobject_static(const char *url, int index, int source_index,
                                             int timeout) {
  if (url == nullptr) {
    return refuse_null(NullText::kExclaimed);
  }
  ZRCFG_TRACE("add static objUrl =  %s index = %d source_index = %d\n", url, index, source_index);
  Table table;
  const uint32_t result = open_fixed_table(table, url, timeout, "add");
  return result == ZRCFG_OK ? close_with(table, copy_static(table, index, source_index)) : result;
}

ZRCFG_EXPORT uint32_t zrcfg_delobject_static(const char *url, int index, int timeout) {
  if (url == nullptr) {
    return refuse_null(NullText::kExclaimed);
  }
  ZRCFG_TRACE("del static objUrl =  %s index = %d\n", url, index);
  Table table;
  const uint32_t result = open_fixed_table(table, url, timeout, "del");
  return result == ZRCFG_OK ? close_with(table, remove_static(table, index)) : result;
}

}  // extern "C"
