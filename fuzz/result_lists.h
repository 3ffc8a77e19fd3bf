// Lists that the library hands out: looked at to the last byte, and freed.
#ifndef ZRCFG_FUZZ_RESULT_LISTS_H_
#define ZRCFG_FUZZ_RESULT_LISTS_H_

#include <stdlib.h>

#include "fuzz/check.h"
#include "zrcfg.h"

namespace zrcfg_fuzz {

inline void look_at(const ParamValueListNode &node) {
  require(is_terminated(node.url, sizeof node.url), "a listed URL has no end");
  require(is_terminated(node.value, sizeof node.value), "a listed value has no end");
}

inline void look_at(const ParamAttrNode &node) {
  require(is_terminated(node.name, sizeof node.name), "a listed name has no end");
}

inline void look_at(const SubObjName &node) {
  require(is_terminated(node.name, sizeof node.name), "a listed name has no end");
}

inline void look_at(const NODE_INFO &node) {
  require(is_terminated(node.name, sizeof node.name), "a listed name has no end");
}

template <typename Node>
void look_at_and_free(Node *head) {
  while (head != nullptr) {
    look_at(*head);
    Node *const next = head->next;
    free(head);
    head = next;
  }
}

}  // namespace zrcfg_fuzz

#endif  // ZRCFG_FUZZ_RESULT_LISTS_H_
