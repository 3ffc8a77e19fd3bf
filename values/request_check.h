// What is refused about a request list before any of it is applied.
#ifndef ZRCFG_VALUES_REQUEST_CHECK_H_
#define ZRCFG_VALUES_REQUEST_CHECK_H_

#include <stdint.h>

#include "zrcfg.h"

namespace zrcfg {

enum class ListUse { kRead, kWrite, kCheckedWrite, kRollBack };

// Looks at the first 1001 nodes. 0; 10 when a node that needs a value has none; 7 when a value to
// be stored holds a line feed, which is logged (a checked write also marks the node's fault).
uint32_t check_requests(ParamValueEntry *list, ListUse use);

// Whether the caller has marked the node as failed.
bool is_failed(const ParamValueEntry &node);

// Stores the fault code of a refused value, where the caller wants it.
void mark_refused(ParamValueEntry &node);

}  // namespace zrcfg

#endif  // ZRCFG_VALUES_REQUEST_CHECK_H_
