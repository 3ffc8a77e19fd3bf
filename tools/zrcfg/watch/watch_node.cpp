// The directories that are watched: a tree of them, and the kernel's numbers for them.
#include "tools/zrcfg/watch/watch_node.h"

#include <stdlib.h>
#include <string.h>

namespace zrcfg_tool {
namespace {

constexpr size_t kFirstCapacity = 256;

}  // namespace

WatchNode *new_node(WatchNode *parent, const char *name) {
  WatchNode *const node = static_cast<WatchNode *>(calloc(1, sizeof(WatchNode)));
  if (node == nullptr) {
    return nullptr;
  }
  node->name = strdup(name);
  if (node->name == nullptr) {
    free(node);
    return nullptr;
  }
  node->parent = parent;
  node->watch = kNoWatch;
  return node;
}

void free_node(WatchNode *node) {
  free(node->file);
  free(node->name);
  free(node);
}

WatchTable::~WatchTable() {
  free(slots_);
}

WatchNode *WatchTable::find(int watch) const {
  if (capacity_ == 0) {
    return nullptr;
  }
  WatchNode *node = slots_[slot_of(watch)];
  while (node != nullptr && node->watch != watch) {
    node = node->next_in_slot;
  }
  return node;
}

bool WatchTable::insert(WatchNode *node, int watch) {
  if (count_ == capacity_ && !grow()) {
    return false;
  }
  node->watch = watch;
  node->next_in_slot = slots_[slot_of(watch)];
  slots_[slot_of(watch)] = node;
  ++count_;
  return true;
}

void WatchTable::remove(WatchNode *node) {
  if (node->watch == kNoWatch) {
    return;
  }
  WatchNode **link = &slots_[slot_of(node->watch)];
  while (*link != node) {
    link = &(*link)->next_in_slot;
  }
  *link = node->next_in_slot;
  node->watch = kNoWatch;
  --count_;
}

bool WatchTable::grow() {
  const size_t old_capacity = capacity_;
  WatchNode **const old_slots = slots_;
  const size_t grown = old_capacity == 0 ? kFirstCapacity : 2 * old_capacity;
  // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers.
  WatchNode **const slots = static_cast<WatchNode **>(calloc(grown, sizeof *slots));
  if (slots == nullptr) {
    return false;
  }
  slots_ = slots;
  capacity_ = grown;
  for (size_t i = 0; i < old_capacity; ++i) {
    for (WatchNode *node = old_slots[i]; node != nullptr;) {
      WatchNode *const next = node->next_in_slot;
      node->next_in_slot = slots_[slot_of(node->watch)];
      slots_[slot_of(node->watch)] = node;
      node = next;
    }
  }
  free(old_slots);
  return true;
}

}  // namespace zrcfg_tool
