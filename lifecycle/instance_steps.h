// Steps that the calls on a dynamic table's instances have in common.
#ifndef ZRCFG_LIFECYCLE_INSTANCE_STEPS_H_
#define ZRCFG_LIFECYCLE_INSTANCE_STEPS_H_

#include <stdint.h>

#include "lifecycle/table.h"

namespace zrcfg {

// Closes the table and returns `result`, so that a call can end with it.
inline uint32_t close_with(Table &table, uint32_t result) {
  table.close();
  return result;
}

// Copies the template of an open table to `instance`, closes the table and raises the parent's
// counter. The instance is removed again when that fails, logged under the name `counter_step`.
uint32_t create_and_count(Table &table, const InstancePath &instance, int timeout,
                          const char *counter_step);

// Removes `instance` of an open table, closes the table and lowers the parent's counter. The two
// names are those of the steps in the log lines of their failures.
uint32_t remove_and_count(Table &table, const InstancePath &instance, int timeout,
                          const char *removal_step, const char *counter_step);

}  // namespace zrcfg

#endif  // ZRCFG_LIFECYCLE_INSTANCE_STEPS_H_
