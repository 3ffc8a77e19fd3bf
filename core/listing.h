// What the listings of an object's parameters have in common: what is hidden, how nodes are named.
#ifndef ZRCFG_CORE_LISTING_H_
#define ZRCFG_CORE_LISTING_H_

#include <stdint.h>
#include <stdio.h>

#include "core/object_image.h"
#include "core/result_list.h"
#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {

// Whether the listings leave the object out; that is logged.
inline bool object_is_left_out(const ObjectImage &image) {
  const int hidden = objIsHide(&image.header);
  if (hidden == 1) {
    ZRCFG_TRACE("objIsHid() ret=%d,no need show!\n", hidden);
  }
  return hidden == 1;
}

// Appends a node for a record, with the object's URL and the parameter's name in its `name` field;
// a longer text than the field is cut. 0, with `node` null for a hidden parameter, or 15.
template <typename Node>
uint32_t append_visible(ResultList<Node> &list, const char *url, const ParamRecord &record,
                        char (Node::*name)[256], Node *&node) {
  node = nullptr;
  const int hidden = paramIsHide(&record);
  if (hidden == 1) {
    ZRCFG_TRACE("paramIsHid() ret=%d,no need show!\n", hidden);
    return ZRCFG_OK;
  }
  node = list.append();
  if (node == nullptr) {
    ZRCFG_TRACE("ptr is NULL\n");
    return ZRCFG_E_MEMORY;
  }
  (void)snprintf(node->*name, sizeof(node->*name), "%s%s", url, FieldName(record.name).text);
  return ZRCFG_OK;
}

// Logs the ends of a list and hands it over. An empty one is logged with the object's URL.
template <typename Node>
void finish_list(ResultList<Node> &list, const char *url, char (Node::*name)[256], Node **head,
                 Node **tail) {
  ZRCFG_TRACE("Head=0x%x url=%s\n", trace_address(list.head), list.head ? list.head->*name : url);
  ZRCFG_TRACE("Tail=0x%x url=%s\n", trace_address(list.tail), list.tail ? list.tail->*name : url);
  list.hand_over(head, tail);
}

}  // namespace zrcfg

#endif  // ZRCFG_CORE_LISTING_H_
