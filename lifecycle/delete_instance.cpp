// Deleting instances of dynamic tables.
#include "core/checked_url.h"
#include "core/export.h"
#include "core/trace.h"
#include "lifecycle/instance_steps.h"
#include "zrcfg.h"

using namespace zrcfg;

extern "C" ZRCFG_EXPORT uint32_t zrcfg_delobject(const char *url, int index, int timeout) {
  uint32_t result = check_url(url, NullText::kExclaimed);
  if (result != ZRCFG_OK) {
    return result;
  }
  Table table;
  result = table.open(url, ZRCFG_LOCK_TEMPLATE, timeout);
  if (result != ZRCFG_OK) {
    return result;
  }
  if (table.rw() == 0) {
    return close_with(table, ZRCFG_E_NOT_DYNAMIC);
  }
  if (!table.has_template()) {
    ZRCFG_TRACE("dst_obj_path=%s not exist, no 0 instance,is not dynamic!\n",
                InstancePath(table.dir, 0).text);
    return close_with(table, ZRCFG_E_NOT_DYNAMIC);
  }
  // No range is tested: number 0 is the template itself.
  const InstancePath instance(table.dir, index);
  if (!instance.exists()) {
    return close_with(table, ZRCFG_E_NOT_FOUND);
  }
  return remove_and_count(table, instance, timeout, "dirDel", "modifyParentNodeNumOfEntry");
}
