// One property file as it stands on disk, well formed or not. Nothing is locked.
#ifndef ZRCFG_TOOLS_STORE_STORED_OBJECT_H_
#define ZRCFG_TOOLS_STORE_STORED_OBJECT_H_

#include <stdint.h>
#include <sys/stat.h>

#include "core/object_image.h"
#include "core/property_file.h"
#include "core/value_section.h"

namespace zrcfg_store {

enum class FileState {
  kRead,        // Header and records are there; what the file lacks of them reads as zero.
  kMissing,     // No such file.
  kNotRegular,  // A directory, a link, a FIFO, a device.
  kUnreadable,  // `error()` says why.
  kBadLength,   // The length word is missing or out of range.
  kTooLarge,    // More bytes than the library reads.
  kNoMemory,
};

// What may be wrong with a file that was read.
enum DamageBit : unsigned {
  kShortFile = 1u << 0,       // It ends within header or records.
  kPartialRecord = 1u << 1,   // The length word is not that of whole records.
  kTooManyRecords = 1u << 2,  // More than 255.
  kMissingLines = 1u << 3,    // Fewer values than records.
  kEmptyLine = 1u << 4,       // A line without even the mark of the empty value.
  kLongLine = 1u << 5,        // A value over 255 characters.
  kZeroByte = 1u << 6,        // A zero byte among the values; readers stop there.
  kOpenLine = 1u << 7,        // The last value has no line feed.
  kSurplus = 1u << 8,         // Bytes behind the last record's value.
  kZeroTail = 1u << 9,        // From a kZeroByte on there are only zero bytes.
};

// The file's values as readers find them, and what stands between and behind them.
struct LineCount {
  unsigned damage = 0;  // DamageBits from kMissingLines on.
  uint32_t values = 0;  // At most one a record.
  size_t end = 0;       // Of the last of them, its line feed included, within the section.
};

class StoredObject {
 public:
  StoredObject() = default;
  ~StoredObject();
  StoredObject(const StoredObject &) = delete;
  StoredObject &operator=(const StoredObject &) = delete;

  // Reads the file `path`, which is relative to the directory `dir_fd` (or AT_FDCWD). Does not
  // follow a link in place of the file, and never waits. What was read before is dropped. Whether
  // the state is kRead.
  bool load(int dir_fd, const char *path);

  FileState state() const { return state_; }
  int error() const { return error_; }
  // Of the file, unless it is missing or unreadable: size, times, inode.
  const struct stat &status() const { return status_; }

  // The rest for kRead only.
  uint32_t length_word() const;
  const zrcfg::ObjectHeader &header() const { return loaded_.image->header; }
  // All records of the file, of which the library serves the first `header().param_num`.
  const zrcfg::ParamRecord *records() const;
  uint32_t record_count() const;
  // The bytes behind the records. zrcfg::ValueLines yields the values in record order.
  const zrcfg::ValueSection &section() const { return loaded_.section; }
  LineCount count_lines() const;
  // DamageBits; 0 for a well-formed file.
  unsigned damage() const;

 private:
  bool load_open(int fd);
  void drop();

  FileState state_ = FileState::kMissing;
  int error_ = 0;
  struct stat status_ = {};
  zrcfg::LoadedObject loaded_;
};

// The length of a text field, which may lack its terminator.
template <size_t kSize>
size_t field_length(const char (&field)[kSize]) {
  return strnlen(field, kSize);
}

}  // namespace zrcfg_store

#endif  // ZRCFG_TOOLS_STORE_STORED_OBJECT_H_
