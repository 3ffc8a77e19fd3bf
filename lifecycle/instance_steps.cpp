// Steps that the calls on a dynamic table's instances have in common.
#include "lifecycle/instance_steps.h"

#include "core/trace.h"
#include "lifecycle/dir_tree.h"
#include "lifecycle/entry_counter.h"

namespace zrcfg {
namespace {

enum class CounterStep { kAdd = 0, kTakeAway = 1 };

// Closing releases the template's lock before the parent's is taken: the two are never held
// together.
uint32_t close_and_count(Table &table, CounterStep step, int timeout, const char *log_name) {
  const CounterName counter(table);
  table.close();
  const uint32_t result =
      modifyParentNodeNumOfEntry(table.dir.text, counter.text, static_cast<int>(step), timeout);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("%s() fail ret=%d!\n", log_name, static_cast<int>(result));
  }
  return result;
}

}  // namespace

uint32_t create_and_count(Table &table, const InstancePath &instance, int timeout,
                          const char *counter_step) {
  if (!copy_instance(InstancePath(table.dir, 0), instance)) {
    return close_with(table, ZRCFG_E_COPY);
  }
  const uint32_t result = close_and_count(table, CounterStep::kAdd, timeout, counter_step);
  if (result != ZRCFG_OK) {
    (void)dirDel(instance.text);  // The update's failure is what the caller learns.
  }
  return result;
}

uint32_t remove_and_count(Table &table, const InstancePath &instance, int timeout,
                          const char *removal_step, const char *counter_step) {
  if (dirDel(instance.text) != 0) {
    ZRCFG_TRACE("%s() fail!\n", removal_step);
    return close_with(table, ZRCFG_E_REMOVE);
  }
  return close_and_count(table, CounterStep::kTakeAway, timeout, counter_step);
}

}  // namespace zrcfg
