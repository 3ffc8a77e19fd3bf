// The lock under which a check reads or repairs one object.
#ifndef ZRCFG_TOOLS_ZRCFG_CHECK_OBJECT_LOCK_H_
#define ZRCFG_TOOLS_ZRCFG_CHECK_OBJECT_LOCK_H_

#include <stdint.h>

#include "core/object_path.h"
#include "tools/store/object_place.h"

namespace zrcfg_tool {

// Takes locks one at a time, each released before the next.
class LockTaker {
 public:
  LockTaker(int root_fd, int timeout) : root_fd_(root_fd), timeout_(timeout) {}

  // Takes the lock of an object. False, which is reported, when another process holds it for too
  // long. Where there is no lock file, nothing is locked. A file that was not to be had in time is
  // waited for only once: all instances of a table share one.
  bool take(const zrcfg_store::ObjectPlace &place, uint32_t type, int &fd);
  static void release(int &fd);

  // How many objects were not to be had.
  uint32_t failures() const { return failures_; }

 private:
  int root_fd_;
  int timeout_;
  char busy_file_[zrcfg::kFilePathSize] = "";
  uint32_t failures_ = 0;
};

// Holds an object's lock for as long as it lives.
class ScopedLock {
 public:
  ScopedLock(LockTaker &taker, const zrcfg_store::ObjectPlace &place, uint32_t type)
      : ok_(taker.take(place, type, fd_)) {}
  ~ScopedLock() { LockTaker::release(fd_); }
  ScopedLock(const ScopedLock &) = delete;
  ScopedLock &operator=(const ScopedLock &) = delete;

  bool ok() const { return ok_; }

 private:
  int fd_ = -1;
  bool ok_;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_CHECK_OBJECT_LOCK_H_
