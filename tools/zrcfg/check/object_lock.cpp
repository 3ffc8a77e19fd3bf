// The lock under which a check reads or repairs one object.
#include "tools/zrcfg/check/object_lock.h"

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>

#include "core/store_file.h"
#include "lock/object_lock.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

// Whether the file can be locked without waiting for its opening, as a FIFO would.
bool is_lockable(int root_fd, const char *path) {
  struct stat status;
  return fstatat(root_fd, path, &status, 0) == 0 &&
         (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode));
}

}  // namespace

bool LockTaker::take(const zrcfg_store::ObjectPlace &place, uint32_t type, int &fd) {
  fd = -1;
  char file[zrcfg::kFilePathSize];
  if (timeout_ == ZRCFG_NO_LOCK || getLockFile(place.path, file) != 0 ||
      !is_lockable(root_fd_, file)) {
    return true;
  }
  const bool known_busy = strcmp(file, busy_file_) == 0;
  const int timeout = known_busy ? 0 : timeout_;
  const uint32_t result = cfgGetLock(file, &fd, timeout, type);
  if (result == ZRCFG_OK) {
    busy_file_[0] = '\0';
    return true;
  }
  if (result != ZRCFG_E_LOCK && type == ZRCFG_LOCK_SHARED) {
    return true;  // Its opening fails, and so will the reading of the object.
  }
  ++failures_;
  if (result != ZRCFG_E_LOCK) {
    complain("%s: its lock, %s%s, cannot be taken", place.url, zrcfg::kStoreRoot, file);
    return false;
  }
  memcpy(busy_file_, file, strlen(file) + 1);
  report_refusal(place.url, "", ZRCFG_E_LOCK);
  return false;
}

void LockTaker::release(int &fd) {
  (void)zrcfg_releaselock(fd);  // Closing ends the lock whatever it reports.
  fd = -1;
}

}  // namespace zrcfg_tool
