// The directories that are watched: a tree of them, and the kernel's numbers for them.
#ifndef ZRCFG_TOOLS_ZRCFG_WATCH_WATCH_NODE_H_
#define ZRCFG_TOOLS_ZRCFG_WATCH_WATCH_NODE_H_

#include <stddef.h>
#include <stdint.h>

namespace zrcfg_tool {

inline constexpr int kNoWatch = -1;

// Why a directory is watched.
enum class NodeRole {
  kOnTheWay,   // An object that is watched lies below it, or may come to.
  kCandidate,  // In the root: no object so far.
  kInside,     // It is, or may become, an object that is watched.
};

struct WatchNode {
  WatchNode *parent;
  WatchNode *first_child;  // In the order of compare_names.
  WatchNode *next_sibling;
  WatchNode *next_in_slot;  // Of the table of watches.
  char *name;
  int watch;  // The kernel's number; kNoWatch when the directory has gone.
  NodeRole role;
  bool is_link;        // In the root: a link to a directory.
  bool read_file;      // The property file is to be read again,
  bool list_children;  // the directory to be listed again,
  bool visit_below;    // something of the two to be done further below.
  char *file;          // The last well-formed property file, a zero byte behind it; null for none.
  size_t file_size;
  int64_t damaged_since;  // Milliseconds on the monotonic clock; 0 while it is not.
  bool damage_told;
};

// Null without memory. `parent` may be null; the node is in no list yet.
WatchNode *new_node(WatchNode *parent, const char *name);
// Frees a node that has no children and no watch.
void free_node(WatchNode *node);

// Finds nodes by their watch.
class WatchTable {
 public:
  WatchTable() = default;
  ~WatchTable();
  WatchTable(const WatchTable &) = delete;
  WatchTable &operator=(const WatchTable &) = delete;

  WatchNode *find(int watch) const;
  // False without memory. No other node may have that watch.
  bool insert(WatchNode *node, int watch);
  // Takes the node's watch from it.
  void remove(WatchNode *node);
  size_t count() const { return count_; }

 private:
  bool grow();
  size_t slot_of(int watch) const { return static_cast<size_t>(watch) & (capacity_ - 1); }

  WatchNode **slots_ = nullptr;
  size_t capacity_ = 0;  // A power of two.
  size_t count_ = 0;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_WATCH_WATCH_NODE_H_
