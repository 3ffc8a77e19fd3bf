// Where an object lies below the root of a store: its directory path and its URL.
#ifndef ZRCFG_TOOLS_STORE_OBJECT_PLACE_H_
#define ZRCFG_TOOLS_STORE_OBJECT_PLACE_H_

#include <stddef.h>

#include "core/object_path.h"

namespace zrcfg_store {

// A directory such as "A/B/1/" and its URL "A.B.1.", both of the same length; "" is the root
// itself.
struct ObjectPlace {
  char path[zrcfg::kUrlSize] = "";
  char url[zrcfg::kUrlSize] = "";
  size_t length = 0;

  // Takes a URL with its final dot, or "". False when it is too long.
  bool set_url(const char *new_url);
  // Goes down to the child directory `name`. False, with nothing changed, when a URL cannot have
  // it: it becomes too long, or the name has a dot.
  bool enter(const char *name);
  // Goes back up to an earlier length.
  void cut(size_t earlier_length);
  // The name of the last component, which `name` (kUrlSize bytes) receives; "" for the root.
  void last_name(char *name) const;
  // Whether the last component is an instance number.
  bool is_instance() const;
};

// The path of the object's property file below the root, in `out` (kFilePathSize bytes).
void property_path(const ObjectPlace &place, char *out);

}  // namespace zrcfg_store

#endif  // ZRCFG_TOOLS_STORE_OBJECT_PLACE_H_
