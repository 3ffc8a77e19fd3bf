// A caller's request list: the one walk over it, with its bound, and the flags of its nodes.
#ifndef ZRCFG_CORE_REQUEST_LIST_H_
#define ZRCFG_CORE_REQUEST_LIST_H_

#include <stdint.h>

#include "core/property_file.h"
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

// Copies a record's attributes into the node's attribute word.
inline void copy_flags(const ParamRecord &record, ParamValueEntry &node) {
  node.flash_rw = record_field::kFlashRw.get(record) & 1u;
  node.noti = record_field::kNoti.get(record) & 15u;
  node.inform_dbus = record.inform_dbus;
  node.namechange = record_field::kNamechange.get(record) & 1u;
  node.inform_tr069 = record_field::kInformTr069.get(record) & 1u;
}

}  // namespace zrcfg

#endif  // ZRCFG_CORE_REQUEST_LIST_H_
