// A result list while a call builds it: one zeroed block a node, linked by `next`.
#ifndef ZRCFG_CORE_RESULT_LIST_H_
#define ZRCFG_CORE_RESULT_LIST_H_

#include <stdlib.h>

namespace zrcfg {

// Frees its nodes unless they were handed over.
template <typename Node>
struct ResultList {
  Node *head = nullptr;
  Node *tail = nullptr;

  ResultList() = default;
  ~ResultList() {
    while (head != nullptr) {
      Node *const next = head->next;
      free(head);
      head = next;
    }
  }
  ResultList(const ResultList &) = delete;
  ResultList &operator=(const ResultList &) = delete;

  // A new node at the tail; null without memory.
  Node *append() {
    Node *const node = static_cast<Node *>(calloc(1, sizeof(Node)));
    if (node == nullptr) {
      return nullptr;
    }
    (tail != nullptr ? tail->next : head) = node;
    tail = node;
    return node;
  }

  // Stores the ends for the caller, who owns the nodes from then on. Without `head_out` nobody
  // could, so nothing is stored and the nodes are freed.
  void hand_over(Node **head_out, Node **tail_out) {
    if (head_out == nullptr) {
      return;
    }
    if (tail_out != nullptr) {
      *tail_out = tail;
    }
    *head_out = head;
    head = nullptr;
  }
};

}  // namespace zrcfg

#endif  // ZRCFG_CORE_RESULT_LIST_H_
