// Object locks: which file is locked for an object, how long a request waits, and the release.
#include "lock/object_lock.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/file.h>
#include <unistd.h>

#include "core/checked_url.h"
#include "core/export.h"
#include "core/property_file.h"
#include "core/store_file.h"
#include "core/trace.h"
#include "lock/lock_file.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr int kMillisecondsPerTry = 10;
constexpr useconds_t kPauseMicroseconds = 10000;

bool flock_uninterrupted(int fd, int operation) {
  int result;
  do {
    result = flock(fd, operation);
  } while (result == -1 && errno == EINTR);
  return result == 0;
}

// Locks an open descriptor as the time-out says; ZRCFG_NO_LOCK succeeds without a lock.
bool lock_within(int fd, int timeout, int operation, Wait &wait) {
  if (timeout == ZRCFG_NO_LOCK) {
    return true;
  }
  if (timeout == ZRCFG_WAIT_FOREVER) {
    wait = Wait::kUnknown;
    return flock_uninterrupted(fd, operation);
  }
  if (timeout == 0) {
    return flock_uninterrupted(fd, operation | LOCK_NB);
  }
  // The count is unsigned: a time-out of -10 or less stands for tries practically without end.
  const uint32_t tries = static_cast<uint32_t>(timeout / kMillisecondsPerTry);
  for (uint32_t i = 0; i < tries; ++i) {
    if (flock_uninterrupted(fd, operation | LOCK_NB)) {
      return true;
    }
    wait = Wait::kSome;
    (void)usleep(kPauseMicroseconds);  // A pause cut short by a signal only brings the next try.
  }
  return false;
}

// cfgGetLock behind its null test; `opened` is the lock file's descriptor when it is open already,
// or -1. It is used up in any case.
uint32_t lock_file(const char *path, int opened, int *fd, int timeout, uint32_t rw_type,
                   Wait &wait) {
  *fd = -1;
  if (rw_type > ZRCFG_LOCK_TEMPLATE) {
    if (opened != -1) {
      (void)close(opened);  // Nothing was written through it.
    }
    return ZRCFG_E_LOCK_TYPE;
  }
  const int lock_fd = opened != -1 ? opened : open_store_file(path, O_RDONLY);
  if (lock_fd == -1) {
    ZRCFG_TRACE("unable to open %s file\n", path);
    return ZRCFG_E_NO_FILE;
  }
  const int operation = rw_type == ZRCFG_LOCK_SHARED ? LOCK_SH : LOCK_EX;
  if (!lock_within(lock_fd, timeout, operation, wait)) {
    ZRCFG_TRACE("%s file was not locked.\n", path);
    (void)close(lock_fd);  // Nothing was written through it.
    return ZRCFG_E_LOCK;
  }
  *fd = lock_fd;
  return ZRCFG_OK;
}

void unlock(int fd) {
  if (fd == -1) {
    ZRCFG_TRACE("file(fd=%d) no need unlock.\n", fd);
  } else if (!flock_uninterrupted(fd, LOCK_UN)) {
    ZRCFG_TRACE("file(fd=%d) unlock failed.\n", fd);
  }
}

}  // namespace

int take_object_lock(const char *obj_path, LockFile &file, int *fd, int timeout, uint32_t rw_type) {
  *fd = -1;
  if (!open_lock_file(obj_path, file)) {
    ZRCFG_TRACE("objPath=%s getLockFile fail.\n", obj_path);
    return -1;
  }
  const int opened = file.file.fd;
  file.writable = file.file.writable;
  file.file = {};
  file.wait = Wait::kNone;
  if (lock_file(file.path, opened, fd, timeout, rw_type, file.wait) != ZRCFG_OK) {
    ZRCFG_TRACE("objPath=%s lockfile=%s, rwType=%d ,lock fail.\n", obj_path, file.path,
                static_cast<int>(rw_type));
    return -1;
  }
  ZRCFG_TRACE("objPath=%s lockfile=%s lockfd=%d, rwType=%d, lock succ.\n", obj_path, file.path, *fd,
              static_cast<int>(rw_type));
  return 0;
}

void keep_lock_file(int fd, LockFile &file) {
  unlock(fd);
  file.file.fd = fd;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t cfgGetLock(const char *lockFile, int *fd, int timeout, uint32_t rwType) {
  if (fd == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  *fd = -1;
  if (lockFile == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  Wait wait = Wait::kNone;
  return lock_file(lockFile, -1, fd, timeout, rwType, wait);
}

ZRCFG_EXPORT int getLock(const char *objPath, int *fd, int timeout, uint32_t rwType) {
  if (fd == nullptr) {
    return -1;
  }
  *fd = -1;
  if (objPath == nullptr) {
    return -1;
  }
  LockFile file;
  return take_object_lock(objPath, file, fd, timeout, rwType);
}

ZRCFG_EXPORT int releaseLock(int fd) {
  unlock(fd);
  return fd == -1 ? 0 : close(fd);
}

ZRCFG_EXPORT int isLocked(const char *path) {
  const int fd = open_store_file(path, O_RDONLY);
  if (fd == -1) {
    ZRCFG_TRACE("unable to open %s file\n", path == nullptr ? "" : path);
    return 1;
  }
  const bool locked = !flock_uninterrupted(fd, LOCK_EX | LOCK_NB);
  if (locked) {
    ZRCFG_TRACE("%s was locked by other process.\n", path);
  }
  (void)close(fd);  // Drops the lock that the test may have taken.
  return locked ? 1 : 0;
}

ZRCFG_EXPORT uint32_t zrcfg_lockurl(const char *url, int *fd, int timeout, uint32_t rwType) {
  DirPath path;
  const uint32_t result = check_url_to_path(url, NullText::kExclaimed, path);
  if (result != ZRCFG_OK) {
    if (result == ZRCFG_E_NOT_FOUND && fd != nullptr) {
      *fd = -1;
    }
    return result;
  }
  return getLock(path.text, fd, timeout, rwType) == 0 ? ZRCFG_OK : ZRCFG_E_FAILED;
}

ZRCFG_EXPORT uint32_t zrcfg_islock(const char *url) {
  DirPath path;
  const uint32_t result = check_url_to_path(url, NullText::kExclaimed, path);
  if (result != ZRCFG_OK) {
    return result;
  }
  return static_cast<uint32_t>(isLocked(path.text));
}

ZRCFG_EXPORT int zrcfg_releaselock(int fd) {
  return releaseLock(fd);
}

}  // extern "C"
