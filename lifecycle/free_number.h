// The choice of a new instance's number.
#ifndef ZRCFG_LIFECYCLE_FREE_NUMBER_H_
#define ZRCFG_LIFECYCLE_FREE_NUMBER_H_

#include "lifecycle/table.h"

namespace zrcfg {

// The lowest free number up to the table's limit, which is logged; 0 when all are taken.
int choose_free_number(const Table &table);

}  // namespace zrcfg

#endif  // ZRCFG_LIFECYCLE_FREE_NUMBER_H_
