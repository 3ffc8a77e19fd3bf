// What the listings of an object's parameters have in common: what is hidden, how nodes are named.
#ifndef ZRCFG_CORE_LISTING_H_
#define ZRCFG_CORE_LISTING_H_

#include <stdint.h>
#include <string.h>

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

// Writes URL and name into a zeroed field; a longer text than the field is cut.
template <size_t kFieldSize>
void name_node(char (&field)[kFieldSize], const char *url, const char *name, size_t name_length) {
  const size_t url_length = strnlen(url, kFieldSize - 1);
  const size_t room = kFieldSize - 1 - url_length;
  memcpy(field, url, url_length);
  memcpy(field + url_length, name, name_length < room ? name_length : room);
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
  name_node(node->*name, url, record.name, strnlen(record.name, kNameSize));
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
