// Preparing a property file for an update of attributes, and writing records and header in place.
#ifndef ZRCFG_ATTR_PROPERTY_UPDATE_H_
#define ZRCFG_ATTR_PROPERTY_UPDATE_H_

#include <stdint.h>

#include "core/object_image.h"

namespace zrcfg {

// How a file that has to be brought into the object's directory first is guarded meanwhile.
enum class PrepareGuard { kNone, kLock };

// Makes sure that the image's property file is in its place, unless `file` has it open, and writes
// its path (kFilePathSize). 0; 8 missing, or locked by another; 9 lock not obtained.
uint32_t bring_file(const ObjectImage &image, const PropertyFd &file, PrepareGuard guard,
                    char *path);

// Makes sure that the file is open for writing; one that is already is used as it is. 0, or 8.
uint32_t open_for_update(const char *path, PropertyFd &file);

// Both.
uint32_t prepare_update(const ObjectImage &image, PropertyFd &file, PrepareGuard guard);

// Runs the work of an update on the property file of an image that the caller opened, for a work
// step that is called on its own. `work` takes a PropertyFd & and returns the result code.
template <typename Work>
uint32_t with_own_file(Work work) {
  PropertyFd file;
  const uint32_t result = work(file);
  file.close();
  return result;
}

// Writes the header to the place that it came from. Logs a failure, which callers do not report.
void write_header(int fd, const ObjectImage &image);

// Collects the records that a call changes, and writes neighbours with one call.
class RecordWriter {
 public:
  RecordWriter(int fd, ObjectImage &image) : fd_(fd), image_(image) {}

  // Marks the record at `position`, counted from 0, as to be written.
  void mark(uint32_t position);
  // Writes the records marked, and no other. Where that fails they are tried one by one, and each
  // failure is logged. Returns the number of records written.
  uint32_t flush();

 private:
  bool is_marked(uint32_t position) const;
  bool write(uint32_t first, uint32_t count);
  uint32_t write_run(uint32_t first, uint32_t count);

  int fd_;
  ObjectImage &image_;
  uint32_t end_ = 0;         // Behind the last one marked.
  uint8_t marked_[32] = {};  // One bit for each record; an object has 255 at most.
};

}  // namespace zrcfg

#endif  // ZRCFG_ATTR_PROPERTY_UPDATE_H_
