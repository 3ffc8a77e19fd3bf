// Export of instances: a configuration's instances created and deleted, as its mode selects.
#include <string.h>

#include "core/export.h"
#include "core/refuse_null.h"
#include "core/trace.h"
#include "lifecycle/export_mode.h"
#include "lifecycle/instance_steps.h"
#include "lifecycle/instance_url.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr char kCounterStep[] = "createObjByPath";  // As this failure is named here.
constexpr int kNestedTimeout = 3000;

// What both calls work on: the open table and the instance that is asked for.
struct ExportedInstance {
  Table table;
  int index = 0;
  bool selected = false;  // Whether the mode selects the table.
};

// The part of both calls before the work. On failure the table is closed.
uint32_t open_exported(ExportedInstance &instance, const char *url, int timeout, int mode) {
  ZRCFG_TRACE("pUrl =  %s\n", url);
  InstanceUrl split;
  if (!split_instance_url(url, split)) {
    ZRCFG_TRACE("exportGetObjUrlAndIndex() fail!\n");
    return ZRCFG_E_NOT_FOUND;
  }
  instance.index = split.index;
  const int length = static_cast<int>(split.table_length);
  ZRCFG_TRACE("objUrl=%.*s   index = %d\n", length, url, split.index);
  if (split.table_length >= kUrlSize) {
    ZRCFG_TRACE("objUrl len=%d out of range!\n", length);
    return ZRCFG_E_NOT_FOUND;
  }
  char table_url[kUrlSize];
  memcpy(table_url, url, split.table_length);
  table_url[split.table_length] = '\0';
  Table &table = instance.table;
  const uint32_t result = table.open(table_url, ZRCFG_LOCK_TEMPLATE, timeout);
  if (result != ZRCFG_OK) {
    return result;
  }
  ZRCFG_TRACE("obj->ubv.boolval.rw=%d\n", table.rw());
  if (table.rw() == 0) {
    return close_with(table, ZRCFG_E_NOT_DYNAMIC);
  }
  const uint8_t key = header_field::kKey.get(table.header());
  if (mode == kModeThatLogsKey) {
    ZRCFG_TRACE("obj->ubv.boolval.key=%d\n", key);
  }
  instance.selected = selected_by_mode(mode, key);
  return ZRCFG_OK;
}

uint32_t report_write(uint8_t *write_flag, bool written) {
  const uint8_t flag = written ? 1 : 0;
  if (write_flag != nullptr) {
    *write_flag = flag;
  }
  ZRCFG_TRACE("write_flag=%d!\n", flag);
  return ZRCFG_OK;
}

// Closes the table and logs that it has no template; `name` is that of the path in the text.
uint32_t no_template(Table &table, const char *name, bool close_first) {
  if (close_first) {
    table.close();
  }
  ZRCFG_TRACE("%s=%s not exist, no 0 instance,is not dynamic!\n", name,
              InstancePath(table.dir, 0).text);
  return close_first ? ZRCFG_E_NOT_DYNAMIC : close_with(table, ZRCFG_E_NOT_DYNAMIC);
}

// Deletes the instance that is in the way. The nested call takes the template's lock anew, which
// the open table holds unless it was opened without one.
uint32_t clear_place(const Table &table, const InstancePath &instance, int index) {
  ZRCFG_TRACE("obj_path=%s has exist!rm it first if you are going to add a new one!\n",
              instance.text);
  const uint32_t result = zrcfg_delobject(table.dir.text, index, kNestedTimeout);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("ret =%d!\n", static_cast<int>(result));
    return result;
  }
  ZRCFG_TRACE("after zrcfg_exportaddobject in zrcfg_exportaddobject! ret=%d\n",
              static_cast<int>(result));
  return ZRCFG_OK;
}

uint32_t add_selected(Table &table, int index, int timeout) {
  if (!table.has_template()) {
    return no_template(table, "instance0_obj_path", true);
  }
  const InstancePath instance(table.dir, index);
  if (!instance.is_free()) {
    const uint32_t result = clear_place(table, instance, index);
    if (result != ZRCFG_OK) {
      return close_with(table, result);
    }
  }
  if (index > table.header().max_instance) {
    table.close();
    ZRCFG_TRACE("exceed max number instance.\n");
    return ZRCFG_E_LIMIT;
  }
  return create_and_count(table, instance, timeout, kCounterStep);
}

uint32_t delete_selected(Table &table, int index, int timeout) {
  if (!table.has_template()) {
    return no_template(table, "dst_obj_path", false);
  }
  const InstancePath instance(table.dir, index);
  if (!instance.exists()) {
    return close_with(table, ZRCFG_E_NOT_FOUND);
  }
  // "dirCopy" is what this failure is called.
  return remove_and_count(table, instance, timeout, "dirCopy", kCounterStep);
}

// The frame of both calls; `work` closes the table.
uint32_t export_instance(const char *url, int timeout, int mode, uint8_t *write_flag,
                         uint32_t (*work)(Table &table, int index, int timeout)) {
  if (url == nullptr) {
    return refuse_null(NullText::kExclaimed);
  }
  ExportedInstance instance;
  uint32_t result = open_exported(instance, url, timeout, mode);
  if (result != ZRCFG_OK) {
    return result;
  }
  if (!instance.selected) {
    instance.table.close();
    return report_write(write_flag, false);
  }
  result = work(instance.table, instance.index, timeout);
  return result == ZRCFG_OK ? report_write(write_flag, true) : result;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t zrcfg_exportaddobject(const char *pUrl, int timeout, int mode,
                                            uint8_t *pWriteFlag) {
  return export_instance(pUrl, timeout, mode, pWriteFlag, add_selected);
}

ZRCFG_EXPORT uint32_t zrcfg_exportdelobject(const char *pUrl, int timeout, int mode,
                                            uint8_t *pWriteFlag) {
  return export_instance(pUrl, timeout, mode, pWriteFlag, delete_selected);
}

}  // extern "C"
