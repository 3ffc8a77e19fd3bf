// The bytes of a snapshot; docs/format.md has their grammar.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_SNAPSHOT_FILE_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_SNAPSHOT_FILE_H_

#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/snapshot/object_set.h"

namespace zrcfg_tool {

// Whether a file's bytes begin like those of a snapshot.
bool looks_like_snapshot(const Bytes &file);

// Appends the snapshot of what was read from `scope` ("" for a whole store). Reports and returns
// false without memory.
bool encode_snapshot(const ObjectSet &objects, const char *scope, Bytes &file);

// Takes a snapshot apart. Its length, its checksum, every path and every property file are checked;
// reports and returns false when something is wrong, or without memory. `name` is what the file is
// called.
bool decode_snapshot(const Bytes &file, const char *name, ObjectUrl &scope, ObjectSet &objects);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_SNAPSHOT_FILE_H_
