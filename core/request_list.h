// The one walk over a caller's request list, with its bound.
#ifndef ZRCFG_CORE_REQUEST_LIST_H_
#define ZRCFG_CORE_REQUEST_LIST_H_

#include <stdint.h>

#include "zrcfg.h"

namespace zrcfg {

// Calls `visit` for each node until it returns another code than 0, which is the result. Behind
// 1001 nodes a further one gives 14.
template <typename Node, typename Visit>
uint32_t for_each_request(Node *list, Visit visit) {
  uint32_t handled = 0;
  for (Node *node = list; node != nullptr; node = node->next) {
    if (handled == ZRCFG_MAX_REQUESTS) {
      return ZRCFG_E_LIST_TOO_LONG;
    }
    const uint32_t result = visit(*node);
    if (result != ZRCFG_OK) {
      return result;
    }
    ++handled;
  }
  return ZRCFG_OK;
}

}  // namespace zrcfg

#endif  // ZRCFG_CORE_REQUEST_LIST_H_
