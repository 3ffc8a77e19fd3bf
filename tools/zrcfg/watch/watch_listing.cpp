// The children of a watched directory, brought in line with what is there.
#include <errno.h>
#include <string.h>

#include "tools/store/directory_names.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/watch/watch_tree.h"

namespace zrcfg_tool {

using zrcfg_store::DirectoryNames;
using zrcfg_store::Entry;
using zrcfg_store::EntryKind;
using zrcfg_store::ObjectPlace;

// Brings the children in line with the directory. Each is watched before it is looked into, so
// nothing that happens there is missed.
bool WatchTree::list_children(WatchNode *node, ObjectPlace &place) {
  DirectoryNames names(store_.fd, place.path);
  WatchNode **link = &node->first_child;
  for (const Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    const bool is_link = node == root_ && entry->kind == EntryKind::kLink;
    if ((is_link || entry->kind == EntryKind::kDirectory) &&
        !keep_child(node, entry->name, is_link, place, link)) {
      return false;
    }
  }
  if (names.error() != 0 && names.error() != ENOENT && names.error() != ENOTDIR) {
    complain("%s: cannot be listed: %s", place.url, strerror(names.error()));
    return false;
  }
  return remove_before(nullptr, place, link);
}

// Removes the children from `link` on that stand before `name`, or all: they have gone.
bool WatchTree::remove_before(const char *name, ObjectPlace &place, WatchNode **link) {
  while (*link != nullptr &&
         (name == nullptr || zrcfg_store::compare_names((*link)->name, name) < 0)) {
    WatchNode *const gone = *link;
    *link = gone->next_sibling;
    if (!remove_subtree(gone, place)) {
      return false;
    }
  }
  return true;
}

// Watches the child of that name, which is made if it is new, and moves `link` behind it. One that
// is not there any more stays at `link`, and goes with those that are not listed.
bool WatchTree::keep_child(WatchNode *node, const char *name, bool is_link, ObjectPlace &place,
                           WatchNode **&link) {
  if (!remove_before(name, place, link)) {
    return false;
  }
  const size_t length = place.length;
  bool wanted = false;
  if (!place.enter(name)) {
    return true;  // No object can have that name.
  }
  const NodeRole role = role_of(place.url, wanted);
  WatchNode *child = *link;
  if (wanted && (child == nullptr || strcmp(child->name, name) != 0)) {
    child = add_child(node, name, role, link);
  }
  bool go_on = !wanted || child != nullptr;
  if (wanted && child != nullptr) {
    bool exists = false;
    child->is_link = is_link;
    go_on = set_watch(child, place, exists);
    link = go_on && exists ? &child->next_sibling : link;
  }
  place.cut(length);
  return go_on;
}

// Null without memory, which is reported.
WatchNode *WatchTree::add_child(WatchNode *node, const char *name, NodeRole role,
                                WatchNode **link) {
  WatchNode *const child = new_node(node, name);
  if (child == nullptr) {
    complain("out of memory");
    return nullptr;
  }
  const bool is_candidate = role == NodeRole::kInside && node == root_ && url_count_ == 0;
  child->role = is_candidate ? NodeRole::kCandidate : role;
  child->next_sibling = *link;
  *link = child;
  return child;
}

// Prints that the objects at and below a node, which is in no list any more, have gone. `place` is
// that of its parent.
bool WatchTree::remove_subtree(WatchNode *node, ObjectPlace &place) {
  const size_t length = place.length;
  (void)place.enter(node->name);  // It was entered before.
  bool go_on = forget_file(node, place.url);
  while (go_on && node->first_child != nullptr) {
    WatchNode *const child = node->first_child;
    node->first_child = child->next_sibling;
    go_on = remove_subtree(child, place);
  }
  place.cut(length);
  drop(node);
  return go_on;
}

}  // namespace zrcfg_tool
