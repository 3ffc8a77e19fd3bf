// The directories that are watched, and how they follow what happens.
#include "tools/zrcfg/watch/watch_tree.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/property_file.h"
#include "core/store_file.h"
#include "tools/zrcfg/progress.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/snapshot/object_set.h"
#include "zrcfg.h"

namespace zrcfg_tool {

using zrcfg_store::ObjectPlace;

namespace {

constexpr int kLockPause = 10;  // Milliseconds between two tries, as the library has it.

// Opening, locking and reading are no events, or the watch would wake itself.
constexpr uint32_t kTreeEvents =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_ONLYDIR | IN_MASK_ADD;
constexpr uint32_t kObjectEvents = kTreeEvents | IN_MODIFY;

// Where a node lies. The length of a path bounds the recursion.
void place_of(const WatchNode *node, ObjectPlace &place) {
  if (node->parent == nullptr) {
    place.cut(0);
    return;
  }
  place_of(node->parent, place);
  (void)place.enter(node->name);  // It was entered before.
}

bool out_of_memory() {
  complain("out of memory");
  return false;
}

}  // namespace

WatchTree::~WatchTree() {
  if (root_ != nullptr) {
    drop(root_);
  }
}

// Frees a node and all below it.
void WatchTree::drop(WatchNode *node) {
  while (node->first_child != nullptr) {
    WatchNode *const child = node->first_child;
    node->first_child = child->next_sibling;
    drop(child);
  }
  const int watch = node->watch;
  if (watch != kNoWatch) {
    table_.remove(node);
    (void)inotify_rm_watch(inotify_, watch);  // It may have gone with its directory.
  }
  free_node(node);
}

NodeRole WatchTree::role_of(const char *url, bool &wanted) const {
  wanted = true;
  bool on_the_way = false;
  for (size_t i = 0; i < url_count_; ++i) {
    if (is_within(url, urls_[i].text)) {
      return NodeRole::kInside;
    }
    on_the_way = on_the_way || is_within(urls_[i].text, url);
  }
  wanted = on_the_way || url_count_ == 0;
  return on_the_way ? NodeRole::kOnTheWay : NodeRole::kInside;
}

bool WatchTree::start(int timeout) {
  timeout_ = timeout == ZRCFG_NO_LOCK ? ZRCFG_NO_LOCK : 0;
  root_ = new_node(nullptr, "");
  if (root_ == nullptr) {
    return out_of_memory();
  }
  if (!store_.open(nullptr)) {
    return false;
  }
  root_->role = NodeRole::kOnTheWay;
  bool exists = false;
  if (!set_watch(root_, ObjectPlace(), exists)) {
    return false;
  }
  if (!read_all(timeout)) {
    return false;
  }
  for (size_t i = 0; i < url_count_; ++i) {
    if (zrcfg_isobjectexist(urls_[i].text) != 1) {
      report_refusal(urls_[i].text, "", ZRCFG_E_NOT_FOUND);
      return false;
    }
  }
  starting_ = false;
  return true;
}

// The locks are tried here, since the library's own waiting does not end with a signal.
bool WatchTree::read_all(int timeout) {
  const int64_t end = milliseconds_now() + timeout;
  for (;;) {
    if (update() == Update::kEnd) {
      return false;
    }
    if (locked_.text[0] == '\0') {
      return true;
    }
    if (timeout != ZRCFG_WAIT_FOREVER && milliseconds_now() >= end) {
      report_unread(locked_.text, ReadResult::kLocked);
      return false;
    }
    if (!signals_.wait_for(-1, 0, kLockPause)) {
      return false;
    }
  }
}

bool WatchTree::report_watch_failure(const char *url) const {
  if (errno == ENOSPC) {
    complain(
        "%s: cannot be watched: %zu directories are, and the system's limit is reached "
        "(/proc/sys/fs/inotify/max_user_watches)",
        url, table_.count());
  } else {
    complain("%s: cannot be watched: %s", url, strerror(errno));
  }
  return false;
}

// Whether the directory stands where `other` has it too, and is better called so: the kernel has
// one watch for it, so it can be only one of the two.
bool WatchTree::is_second_name(const WatchNode *node, const WatchNode *other) const {
  if (other->is_link && !node->is_link) {
    return false;
  }
  ObjectPlace place;
  struct stat mine;
  struct stat others;
  char path[ZRCFG_URL_SIZE];
  place_of(node, place);
  memcpy(path, place.path, sizeof path);
  place_of(other, place);
  return fstatat(store_.fd, path, &mine, 0) == 0 &&
         fstatat(store_.fd, place.path, &others, 0) == 0 && mine.st_dev == others.st_dev &&
         mine.st_ino == others.st_ino;
}

// Watches the node's directory, whichever stands there now. False when that fails for another
// reason than that it does not exist.
bool WatchTree::set_watch(WatchNode *node, const ObjectPlace &place, bool &exists) {
  char path[sizeof zrcfg::kStoreRoot + ZRCFG_URL_SIZE];
  (void)snprintf(path, sizeof path, "%s%s", zrcfg::kStoreRoot, place.path);  // Fits.
  const uint32_t events = node->role == NodeRole::kInside ? kObjectEvents : kTreeEvents;
  const int watch = inotify_add_watch(inotify_, path, events);
  exists = watch != -1;
  if (!exists) {
    return errno == ENOENT || errno == ENOTDIR ||
           (errno == EACCES && node->role == NodeRole::kCandidate) ||
           report_watch_failure(place.url);
  }
  if (watch == node->watch) {
    return true;
  }
  // The directory is another one than before. It may have been moved here from elsewhere.
  WatchNode *const other = table_.find(watch);
  if (other != nullptr && is_second_name(node, other)) {
    exists = false;
    return true;
  }
  if (other != nullptr) {
    table_.remove(other);
    mark(other->parent != nullptr ? other->parent : other, false, true);
  }
  const int old_watch = node->watch;
  if (old_watch != kNoWatch) {
    table_.remove(node);
    (void)inotify_rm_watch(inotify_, old_watch);  // It may have gone with its directory.
  }
  if (!table_.insert(node, watch)) {
    (void)inotify_rm_watch(inotify_, watch);  // The end is near.
    return out_of_memory();
  }
  mark_all(node);
  return true;
}

void WatchTree::mark(WatchNode *node, bool file, bool children) {
  node->read_file = node->read_file || (file && node->role == NodeRole::kInside);
  node->list_children = node->list_children || children;
  for (WatchNode *above = node->parent; above != nullptr; above = above->parent) {
    above->visit_below = true;
  }
}

// The length of a path bounds the recursion.
void WatchTree::mark_all(WatchNode *node) {
  mark(node, true, true);
  for (WatchNode *child = node->first_child; child != nullptr; child = child->next_sibling) {
    mark_all(child);
  }
}

bool WatchTree::note(const inotify_event &event) {
  if ((event.mask & IN_Q_OVERFLOW) != 0) {
    mark_all(root_);
    return printer_.overflow();
  }
  WatchNode *const node = table_.find(event.wd);
  if (node == nullptr) {
    return true;  // Of a directory that is no longer watched.
  }
  if ((event.mask & IN_IGNORED) != 0) {
    table_.remove(node);
    if (node->parent == nullptr) {
      complain("%s: has gone", zrcfg::kStoreRoot);
      return false;
    }
    mark(node->parent, false, true);
  } else if ((event.mask & IN_ISDIR) != 0 || node == root_) {
    mark(node, false, true);  // In the root a link may lead to an object too.
  } else if (event.len > 0 && strcmp(event.name, zrcfg::kPropertyFileName) == 0) {
    mark(node, true, node->role == NodeRole::kCandidate);
  }
  return true;
}

Update WatchTree::update() {
  again_ = false;
  locked_.text[0] = '\0';
  ObjectPlace place;
  while (root_->list_children || root_->visit_below) {
    if (!visit(root_, place)) {
      return Update::kEnd;
    }
    if (again_) {
      return Update::kAgain;
    }
  }
  return Update::kDone;
}

// Does what is marked at a node and below it. The length of a path bounds the recursion.
bool WatchTree::visit(WatchNode *node, ObjectPlace &place) {
  if (node->role == NodeRole::kCandidate) {
    return visit_candidate(node, place);
  }
  if (node->read_file) {
    node->read_file = false;
    if (!read_file(node, place)) {
      return false;
    }
    if (node->read_file && node->file == nullptr) {
      return true;  // A new object that cannot be read yet is told before what is below it.
    }
  }
  if (node->list_children) {
    node->list_children = false;
    if (!list_children(node, place)) {
      return false;
    }
  }
  if (!node->visit_below) {
    return true;
  }
  node->visit_below = false;
  const size_t length = place.length;
  for (WatchNode *child = node->first_child; child != nullptr; child = child->next_sibling) {
    if (!child->read_file && !child->list_children && !child->visit_below) {
      continue;
    }
    const bool entered = place.enter(child->name);
    const bool go_on = !entered || visit(child, place);
    place.cut(length);
    if (!go_on) {
      return false;
    }
  }
  return true;
}

// A directory of the root counts as soon as it has become an object.
bool WatchTree::visit_candidate(WatchNode *node, ObjectPlace &place) {
  node->read_file = false;
  node->list_children = false;
  node->visit_below = false;
  char path[zrcfg::kFilePathSize];
  zrcfg_store::property_path(place, path);
  if (faccessat(store_.fd, path, F_OK, 0) != 0) {
    return true;
  }
  node->role = NodeRole::kInside;
  mark(node, true, true);
  bool exists = false;
  return set_watch(node, place, exists) && visit(node, place);
}

size_t WatchTree::object_count() const {
  size_t count = 0;
  // Without recursion: down to the children, else on to the next, else back up.
  for (const WatchNode *node = root_; node != nullptr;) {
    count += node->file != nullptr ? 1 : 0;
    if (node->first_child != nullptr) {
      node = node->first_child;
      continue;
    }
    while (node != nullptr && node->next_sibling == nullptr) {
      node = node->parent;
    }
    node = node != nullptr ? node->next_sibling : nullptr;
  }
  return count;
}

}  // namespace zrcfg_tool
