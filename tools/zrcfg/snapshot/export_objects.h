// A configuration text as objects, to be compared with others.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_EXPORT_OBJECTS_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_EXPORT_OBJECTS_H_

#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/snapshot/object_set.h"

namespace zrcfg_tool {

// Makes a property file without attributes of each object that the text, which is changed on the
// way, has values or an instance of. `scope` receives the deepest object that they all lie in, of
// an instance its table; it stays as it is when there is none. Reports and returns false when the
// text is none, or deletes.
bool read_export(Bytes &text, ObjectUrl &scope, ObjectSet &objects);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_EXPORT_OBJECTS_H_
