// A table that a call has open, and the paths of its instances.
#ifndef ZRCFG_LIFECYCLE_TABLE_H_
#define ZRCFG_LIFECYCLE_TABLE_H_

#include <stdint.h>

#include "core/object_image.h"
#include "core/object_path.h"

namespace zrcfg {

// The path of one instance: the table's directory followed by the number, without a slash.
struct InstancePath {
  char text[kFilePathSize];

  InstancePath(const DirPath &table, int index);
  // Whether the instance's directory can be opened.
  bool exists() const;
  // Whether a new instance can have the number. One that cannot be opened for want of means keeps
  // its number: it would be overwritten.
  bool is_free() const;
};

struct Table {
  DirPath dir;
  OpenObject object;

  // Opens the table of `url` (known to be short enough); logs a failure.
  uint32_t open(const char *url, uint32_t rw_type, int timeout);
  void close() { close_object(object); }

  const ObjectHeader &header() const { return object.loaded.image->header; }
  uint8_t rw() const { return header_field::kRw.get(header()); }
  // Whether there is a template instance.
  bool has_template() const;
};

// The name of the parent's counter, as a text that outlives the open table.
struct CounterName {
  char text[sizeof(ObjectHeader::pnoe) + 1];

  explicit CounterName(const Table &table);
};

// Copies an instance. False, with nothing left of the copy, when the source cannot be examined or
// a path of the copy is too long; logs it.
bool copy_instance(const InstancePath &from, const InstancePath &to);

}  // namespace zrcfg

#endif  // ZRCFG_LIFECYCLE_TABLE_H_
