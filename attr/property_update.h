// Preparing a property file for an update of attributes, and writing records and header in place.
#ifndef ZRCFG_ATTR_PROPERTY_UPDATE_H_
#define ZRCFG_ATTR_PROPERTY_UPDATE_H_

#include <stdint.h>

#include "core/object_image.h"

namespace zrcfg {

// How a file that has to be brought into the object's directory first is guarded meanwhile.
enum class PrepareGuard { kNone, kLock };

// Makes sure that the image's property file is in place and open for writing. A file that is open
// for writing already is used as it is. 0; 8 missing, locked by another or not to be opened; 9 lock
// not obtained.
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

// Collects the records that a call changes and writes them with one call.
class RecordWriter {
 public:
  RecordWriter(int fd, ObjectImage &image) : fd_(fd), image_(image) {}

  // Marks the record at `position`, counted from 0, as to be written.
  void mark(uint32_t position);
  // Writes from the first to the last record marked. When that fails the records are tried one by
  // one, and each failure is logged. Returns the number of records written.
  uint32_t flush();

 private:
  bool write(uint32_t first, uint32_t count);

  int fd_;
  ObjectImage &image_;
  uint32_t first_ = 0;
  uint32_t end_ = 0;  // Behind the last one; 0 for none.
};

}  // namespace zrcfg

#endif  // ZRCFG_ATTR_PROPERTY_UPDATE_H_
