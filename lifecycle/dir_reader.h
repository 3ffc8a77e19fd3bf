// Reading a directory through a descriptor and a small block, which costs a tree walk neither a
// stream's allocation nor much stack on each level.
#ifndef ZRCFG_LIFECYCLE_DIR_READER_H_
#define ZRCFG_LIFECYCLE_DIR_READER_H_

#include <fcntl.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

namespace zrcfg {

inline constexpr int kDirFlags = O_RDONLY | O_DIRECTORY | O_NONBLOCK;

// An entry as the kernel hands it out on every target.
struct DirEntry {
  uint64_t inode;
  int64_t offset;
  uint16_t size;
  unsigned char type;  // DT_REG and others; DT_UNKNOWN where the file system does not tell.
  char name[1];        // As long as the entry's size allows.
};

// Yields the entries of the directory behind `fd`, which stays the caller's; not "." and "..".
class DirReader {
 public:
  // cppcheck-suppress uninitMemberVar ; a buffer, filled before each use
  explicit DirReader(int fd) : fd_(fd) {}

  // Null at the end of the directory, and when it cannot be read.
  const DirEntry *next();

 private:
  // Takes an entry with the longest name that a file system permits.
  static constexpr size_t kBlockSize = 512;

  int fd_;
  size_t at_ = 0;
  size_t end_ = 0;
  alignas(DirEntry) char block_[kBlockSize];
};

}  // namespace zrcfg

#endif  // ZRCFG_LIFECYCLE_DIR_READER_H_
