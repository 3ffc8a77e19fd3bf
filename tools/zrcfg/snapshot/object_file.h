// Reading an object's property file byte for byte, under its lock.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_OBJECT_FILE_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_OBJECT_FILE_H_

#include "tools/store/object_place.h"
#include "tools/zrcfg/bytes.h"

namespace zrcfg_tool {

// Where a store lies.
struct StoreRoot {
  int fd = -1;       // Its root directory.
  bool live = true;  // The one that the library works on, whose objects have locks.

  StoreRoot() = default;
  ~StoreRoot();
  StoreRoot(const StoreRoot &) = delete;
  StoreRoot &operator=(const StoreRoot &) = delete;

  // Opens the directory; the store of the library for null. Reports and returns false when it
  // cannot be opened.
  bool open(const char *directory);
};

enum class ReadResult {
  kRead,
  kMissing,  // There is no such object.
  kLocked,   // The lock was not obtained in time.
  kFailed,   // errno says why.
};

// Reads the whole file, with a zero byte behind it, under the object's shared lock. Without a lock
// (ZRCFG_NO_LOCK, or another store than the live one) it is read until two readings agree.
ReadResult read_object_file(const StoreRoot &root, const zrcfg_store::ObjectPlace &place,
                            int timeout, Bytes &bytes);

// The same under a lock that the caller holds.
ReadResult read_held_file(const StoreRoot &root, const zrcfg_store::ObjectPlace &place,
                          Bytes &bytes);

// Reports why an object was not read.
void report_unread(const char *url, ReadResult result);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_OBJECT_FILE_H_
