// All objects of a store, templates and instances, parents first.
#ifndef ZRCFG_TOOLS_STORE_STORE_WALK_H_
#define ZRCFG_TOOLS_STORE_STORE_WALK_H_

#include "tools/store/object_place.h"

namespace zrcfg_store {

enum class Walk {
  kGoOn,
  kSkipBelow,  // Not into what is below this object.
  kStop,       // Ends the walk.
};

struct WalkProblem {
  const ObjectPlace &place;  // The directory.
  const char *name;          // The entry that cannot be addressed; null: the directory.
  int error;  // Why it cannot be read, an errno; of an entry EINVAL (a dot) or ENAMETOOLONG.
};

// What a walk calls, with `context`.
struct WalkCalls {
  Walk (*object)(const ObjectPlace &place, void *context);
  void (*problem)(const WalkProblem &problem, void *context);  // May be null.
  void *context;
};

// Walks over the directory of `start` and all below it; `root_fd` is the store's root directory.
// For the root itself ("") the walk begins with its directories that have a property file, or have
// one in a directory of theirs. Links below `start` are not followed. The next directory is opened
// only when it is visited: what vanishes meanwhile is passed over. False when it was stopped.
bool walk_objects(int root_fd, const ObjectPlace &start, const WalkCalls &calls);

// Whether a directory of the root is, or was, an object.
bool is_root_object(int root_fd, const char *name);

}  // namespace zrcfg_store

#endif  // ZRCFG_TOOLS_STORE_STORE_WALK_H_
