// The property file of a watched object: what it held when it was last seen, and what it holds.
#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/progress.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/snapshot/property_view.h"
#include "tools/zrcfg/watch/watch_tree.h"

namespace zrcfg_tool {
namespace {

// A file that somebody writes without a lock is in the middle of it for less than that.
constexpr int64_t kDamageSettles = 1000;

}  // namespace

// Reads the file again and prints what has changed. What cannot be read now is left for later.
bool WatchTree::read_file(WatchNode *node, const zrcfg_store::ObjectPlace &place) {
  const ReadResult result = read_object_file(store_, place, timeout_, file_);
  switch (result) {
    case ReadResult::kRead:
      return take_file(node, place.url);
    case ReadResult::kMissing:
      return forget_file(node, place.url);
    case ReadResult::kLocked:
      memcpy(locked_.text, place.url, sizeof locked_.text);
      break;
    case ReadResult::kFailed:
      if (errno != EAGAIN) {
        return take_damage(node, place.url, strerror(errno));
      }
      break;
  }
  mark(node, true, false);
  again_ = true;
  return true;
}

bool WatchTree::take_file(WatchNode *node, const char *url) {
  PropertyView after;
  const char *const damage = view_property_file(file_.at, file_.size, after);
  if (damage != nullptr) {
    return take_damage(node, url, damage);
  }
  node->damaged_since = 0;
  node->damage_told = false;
  if (node->file != nullptr && node->file_size == file_.size &&
      memcmp(node->file, file_.at, file_.size) == 0) {
    return true;
  }
  char *const copy = static_cast<char *>(malloc(file_.size + 1));
  if (copy == nullptr) {
    complain("out of memory");
    return false;
  }
  memcpy(copy, file_.at, file_.size + 1);
  char *const old = node->file;
  const size_t old_size = node->file_size;
  node->file = copy;
  node->file_size = file_.size;
  PropertyView before;
  bool go_on = true;
  if (old != nullptr) {
    (void)view_property_file(old, old_size, before);  // It was well formed.
    go_on = compare_objects(url, before, after, Compared::kAll, printer_.sink());
  } else if (!starting_) {
    go_on = tell_added(url, after, printer_.sink());
  }
  free(old);
  return go_on;
}

// A file that stays damaged is told once; what it held before is kept to compare with.
bool WatchTree::take_damage(WatchNode *node, const char *url, const char *reason) {
  if (node->damage_told) {
    return true;
  }
  const int64_t time = milliseconds_now();
  if (node->damaged_since == 0) {
    node->damaged_since = time;
  }
  if (time - node->damaged_since < kDamageSettles) {
    mark(node, true, false);
    again_ = true;
    return true;
  }
  node->damage_told = true;
  return printer_.damaged(url, reason);
}

bool WatchTree::forget_file(WatchNode *node, const char *url) {
  node->damaged_since = 0;
  node->damage_told = false;
  if (node->file == nullptr) {
    return true;
  }
  PropertyView before;
  (void)view_property_file(node->file, node->file_size, before);  // It was well formed.
  const bool go_on = tell_removed(url, before, printer_.sink());
  free(node->file);
  node->file = nullptr;
  return go_on;
}

}  // namespace zrcfg_tool
