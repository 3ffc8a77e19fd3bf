// Instances whose creation was interrupted: some of the template's files, none of them changed.
#ifndef ZRCFG_TOOLS_ZRCFG_CHECK_HALF_COPIED_H_
#define ZRCFG_TOOLS_ZRCFG_CHECK_HALF_COPIED_H_

#include "tools/store/object_place.h"

namespace zrcfg_tool {

// Whether the tree of an instance is an unfinished copy of its template's: it lacks something, and
// whatever it has is the same, or the beginning of the same. Under the lock of both.
bool is_half_copied(int root_fd, const zrcfg_store::ObjectPlace &instance,
                    const zrcfg_store::ObjectPlace &template_place);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_CHECK_HALF_COPIED_H_
