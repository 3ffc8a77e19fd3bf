// The object image: one heap block with a property file's header and records, and the directory.
#ifndef ZRCFG_CORE_OBJECT_IMAGE_H_
#define ZRCFG_CORE_OBJECT_IMAGE_H_

#include <stdint.h>
#include <string.h>

#include "core/object_path.h"
#include "core/property_fd.h"
#include "core/property_file.h"
#include "core/value_section.h"
#include "lock/object_lock.h"
#include "zrcfg.h"

namespace zrcfg {

// What createObjByPath hands out points at this: the header in file layout, the records behind it,
// then the directory path with its terminator. What does not fit the 4-byte slots on 64-bit hosts
// lies in a prefix in front of it; only object_image.cpp knows how.
struct ObjectImage {
  ObjectHeader header;
};

// The records that a call serves: exactly `param_num`, in file order.
class RecordRange {
 public:
  RecordRange(ParamRecord *first, uint32_t count) : first_(first), count_(count) {}
  ParamRecord *begin() const { return first_; }
  ParamRecord *end() const { return first_ + count_; }
  uint32_t size() const { return count_; }

 private:
  ParamRecord *first_;
  uint32_t count_;
};

RecordRange records(ObjectImage &image);

// The number of records that the file holds, which may exceed what `param_num` can say.
uint32_t stored_record_count(const ObjectImage &image);

// The directory path that the image was opened with.
const char *image_dir_path(const ObjectImage &image);

// Whether the record's name is the `length` characters of `name`. A name field without terminator
// ends at its width.
inline bool has_name(const ParamRecord &record, const char *name, size_t length) {
  return length <= kNameSize && (length == kNameSize || record.name[length] == '\0') &&
         memcmp(record.name, name, length) == 0;
}

// The first record of that name; null when there is none.
ParamRecord *find_record(ObjectImage &image, const char *name);

// A name out of a record or a request node as text, with a terminator in any case.
struct FieldName {
  char text[kNameSize + 1];

  explicit FieldName(const char (&field)[kNameSize]);
};

// A property file read afresh: image and value section in one block.
struct LoadedObject {
  ObjectImage *image = nullptr;
  ValueSection section = {};
};

// Reads the file behind `fd` whole. 0; 10 when it is malformed, too large or cannot be read; 15
// when there is no memory. The image is freed with free_image.
uint32_t load_object(int fd, const char *dir_path, LoadedObject &loaded);
void free_image(ObjectImage *image);

// An object that an exported call has open: lock, image, and for writers the file itself.
struct OpenObject {
  LoadedObject loaded;
  PropertyFd file;  // Stays open for Access::kWrite only.
  int lock_fd = -1;
};

// createObjByPath that keeps what it read; close_object undoes it. Result codes as there.
uint32_t open_object(OpenObject &object, const char *dir_path, uint32_t rw_type, int timeout,
                     Access access);
void close_object(OpenObject &object);

// The same for a reader that locks the object once more: the lock file stays open between the two
// locks, in `lock`.
uint32_t open_object_to_lock_again(OpenObject &object, const char *dir_path, uint32_t rw_type,
                                   int timeout, LockFile &lock);
void close_object_to_lock_again(OpenObject &object, LockFile &lock);

}  // namespace zrcfg

#endif  // ZRCFG_CORE_OBJECT_IMAGE_H_
