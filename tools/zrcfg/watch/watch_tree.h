// The objects that are watched, as they were last seen, and how they follow what happens.
#ifndef ZRCFG_TOOLS_ZRCFG_WATCH_WATCH_TREE_H_
#define ZRCFG_TOOLS_ZRCFG_WATCH_WATCH_TREE_H_

#include "tools/store/object_place.h"
#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/snapshot/object_file.h"
#include "tools/zrcfg/watch/event_printer.h"
#include "tools/zrcfg/watch/watch_node.h"

struct inotify_event;

namespace zrcfg_tool {

// How a round of updates ended.
enum class Update {
  kDone,
  kAgain,  // Something is locked, or in the middle of a change: call again soon.
  kEnd,    // The watch ends: see the printer, or a report.
};

// Its memory is what the property files hold (a well-formed one has less than 97 KiB) and a node
// for each directory, of which the kernel lets a user watch a limited number.
class WatchTree {
 public:
  // `inotify` and `urls` stay the caller's.
  WatchTree(int inotify, const ObjectUrl *urls, size_t url_count, const StopSignals &signals,
            EventPrinter &printer)
      : inotify_(inotify),
        urls_(urls),
        url_count_(url_count),
        signals_(signals),
        printer_(printer) {}
  ~WatchTree();
  WatchTree(const WatchTree &) = delete;
  WatchTree &operator=(const WatchTree &) = delete;

  // Watches all that there is and reads it, waiting for locks so long in all. Reports and returns
  // false when that fails, or a URL has no object; also false when asked to stop.
  bool start(int timeout);
  size_t object_count() const;

  // Notes what an event asks to look at. Whether the watch can go on, else it is reported.
  bool note(const inotify_event &event);
  // Looks at all that was noted and prints what has changed.
  Update update();

 private:
  bool read_all(int timeout);
  NodeRole role_of(const char *url, bool &wanted) const;
  bool set_watch(WatchNode *node, const zrcfg_store::ObjectPlace &place, bool &exists);
  bool report_watch_failure(const char *url) const;

  bool visit(WatchNode *node, zrcfg_store::ObjectPlace &place);
  bool visit_candidate(WatchNode *node, zrcfg_store::ObjectPlace &place);
  bool list_children(WatchNode *node, zrcfg_store::ObjectPlace &place);
  bool keep_child(WatchNode *node, const char *name, bool is_link, zrcfg_store::ObjectPlace &place,
                  WatchNode **&link);
  bool remove_before(const char *name, zrcfg_store::ObjectPlace &place, WatchNode **link);
  WatchNode *add_child(WatchNode *node, const char *name, NodeRole role, WatchNode **link);
  bool is_second_name(const WatchNode *node, const WatchNode *other) const;
  bool read_file(WatchNode *node, const zrcfg_store::ObjectPlace &place);
  bool take_file(WatchNode *node, const char *url);
  bool take_damage(WatchNode *node, const char *url, const char *reason);
  bool forget_file(WatchNode *node, const char *url);
  bool remove_subtree(WatchNode *node, zrcfg_store::ObjectPlace &place);
  void mark(WatchNode *node, bool file, bool children);
  void mark_all(WatchNode *node);
  void drop(WatchNode *node);

  int inotify_;
  const ObjectUrl *urls_;
  size_t url_count_;
  const StopSignals &signals_;
  EventPrinter &printer_;
  StoreRoot store_;
  WatchNode *root_ = nullptr;
  WatchTable table_;
  Bytes file_;
  int timeout_ = 0;
  bool starting_ = true;
  bool again_ = false;
  ObjectUrl locked_ = {};  // One that could not be read in the last update; empty for none.
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_WATCH_WATCH_TREE_H_
