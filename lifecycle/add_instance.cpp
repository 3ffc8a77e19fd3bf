// Creating instances of dynamic tables.
#include "core/checked_url.h"
#include "core/export.h"
#include "core/trace.h"
#include "lifecycle/free_number.h"
#include "lifecycle/instance_steps.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr char kCounterStep[] = "modifyParentNodeNumOfEntry";

// The part of both calls before the number is chosen. On failure the table is closed.
uint32_t open_for_creation(Table &table, const char *url, int timeout) {
  uint32_t result = check_url(url, NullText::kExclaimed);
  if (result != ZRCFG_OK) {
    return result;
  }
  result = table.open(url, ZRCFG_LOCK_TEMPLATE, timeout);
  if (result != ZRCFG_OK) {
    return result;
  }
  ZRCFG_TRACE("obj->ubv.boolval.rw=%d\n", table.rw());
  if (table.rw() == 0) {
    return close_with(table, ZRCFG_E_NOT_DYNAMIC);
  }
  if (!table.has_template()) {
    table.close();
    ZRCFG_TRACE("instance0_obj_path=%s not exist, no 0 instance,is not dynamic!\n",
                InstancePath(table.dir, 0).text);
    return ZRCFG_E_NOT_DYNAMIC;
  }
  return ZRCFG_OK;
}

}  // namespace
}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t zrcfg_addobject(const char *url, uint32_t *pIndex, int timeout) {
  Table table;
  const uint32_t result = open_for_creation(table, url, timeout);
  if (result != ZRCFG_OK) {
    return result;
  }
  const int number = choose_free_number(table);
  if (number == 0) {
    table.close();
    ZRCFG_TRACE("exceed max number instance.\n");
    return ZRCFG_E_LIMIT;
  }
  if (pIndex != nullptr) {
    *pIndex = static_cast<uint32_t>(number);
  }
  return create_and_count(table, InstancePath(table.dir, number), timeout, kCounterStep);
}

ZRCFG_EXPORT uint32_t zrcfg_addobject_with_index(const char *url, int index, int timeout) {
  Table table;
  const uint32_t result = open_for_creation(table, url, timeout);
  if (result != ZRCFG_OK) {
    return result;
  }
  const InstancePath instance(table.dir, index);
  if (index < 1 || index > table.header().max_instance || !instance.is_free()) {
    ZRCFG_TRACE("%d exceed max number instance or %s is exist.\n", index, instance.text);
    return close_with(table, ZRCFG_E_LIMIT);
  }
  return create_and_count(table, instance, timeout, kCounterStep);
}

}  // extern "C"
