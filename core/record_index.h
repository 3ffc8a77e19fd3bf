// Finding records by name, for calls that look many names up.
#ifndef ZRCFG_CORE_RECORD_INDEX_H_
#define ZRCFG_CORE_RECORD_INDEX_H_

#include <stdint.h>

#include "core/object_image.h"
#include "core/property_file.h"

namespace zrcfg {

inline constexpr int kNoRecord = -1;

// The first few names are searched for along the records; then a hash table is built, so that long
// lists do not compare every name with every record.
class RecordIndex {
 public:
  // cppcheck-suppress uninitMemberVar ; the chains are built when they are first needed
  explicit RecordIndex(RecordRange range) : range_(range) {}

  // The position of the first record with that name (its field of 64 bytes, or less and
  // terminated), or kNoRecord.
  int find(const char (&name)[kNameSize]);

 private:
  static constexpr unsigned kPlainLookups = 2;
  static constexpr uint32_t kBuckets = 256;

  void build();
  int search(const char *name, size_t length) const;

  RecordRange range_;
  unsigned lookups_ = 0;
  // Positions counted from 1, 0 for none: a chain's first record, and the one behind each record.
  uint8_t first_[kBuckets];
  uint8_t next_[kMaxServedRecords];
};

}  // namespace zrcfg

#endif  // ZRCFG_CORE_RECORD_INDEX_H_
