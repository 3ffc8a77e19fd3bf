// Making and removing whole instances, each in one step as others see it.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_INSTANCE_FILES_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_INSTANCE_FILES_H_

#include "tools/zrcfg/snapshot/restore_steps.h"

namespace zrcfg_tool {

// Puts an instance made of the objects of a range in place of what stands there, if anything. It
// is built beside its place, under a name that no object can have, and renamed under the table's
// lock. Reports and returns false when that fails; the old state is then as it was.
bool put_instance(const ObjectUrl &url, const ObjectSet &objects, const ObjectRange &range,
                  int timeout);

// Removes an instance: renamed under the table's lock, then removed. Reports likewise.
bool take_away_instance(const ObjectUrl &url, int timeout);

// Removes what an interrupted call left, if `path`, relative to the store's root, is such a thing.
void remove_if_leftover(const char *path);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_INSTANCE_FILES_H_
