// Reading a directory through a descriptor and a small block.
#include "lifecycle/dir_reader.h"

#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace zrcfg {
namespace {

bool is_dot_entry(const char *name) {
  return strcmp(name, ".") == 0 || strcmp(name, "..") == 0;
}

}  // namespace

const DirEntry *DirReader::next() {
  for (;;) {
    if (at_ == end_) {
      const long got = syscall(SYS_getdents64, fd_, block_, sizeof block_);
      if (got <= 0) {
        return nullptr;
      }
      at_ = 0;
      end_ = static_cast<size_t>(got);
    }
    const DirEntry *const entry = reinterpret_cast<const DirEntry *>(block_ + at_);
    at_ += entry->size;
    if (!is_dot_entry(entry->name)) {
      return entry;
    }
  }
}

}  // namespace zrcfg
