// The choice of the lock file: the property file of the outermost template instance on the path.
#ifndef ZRCFG_LOCK_LOCK_FILE_H_
#define ZRCFG_LOCK_LOCK_FILE_H_

#include "core/object_path.h"
#include "core/property_fd.h"

namespace zrcfg {

// Whether others may have worked between the opening of a lock file and its lock.
enum class Wait {
  kNone,
  kUnknown,  // The kernel waited, if need be.
  kSome,
};

// The lock file of an object, and its descriptor while nobody holds the lock through that.
struct LockFile {
  char path[kFilePathSize];
  PropertyFd file;
  // How the file is opened when it is the object's own property file; others are only read.
  Access access = Access::kRead;
  bool writable = false;  // Whether the descriptor that was locked permits writing.
  Wait wait = Wait::kNone;

  LockFile() { path[0] = '\0'; }
  ~LockFile() { file.close(); }
  LockFile(const LockFile &) = delete;
  LockFile &operator=(const LockFile &) = delete;
};

// Whether the path still names the file of `fd`, the lock's descriptor: the object may have been
// deleted during the wait, or be another one by now.
bool still_names(LockFile &lock, int fd);

// getLockFile that leaves the file open where finding it took an open, or where `lock` has it open
// already: fills the path and, unless it is -1 then, the descriptor. False when there is no lock
// file.
bool open_lock_file(const char *obj_path, LockFile &lock);

}  // namespace zrcfg

#endif  // ZRCFG_LOCK_LOCK_FILE_H_
