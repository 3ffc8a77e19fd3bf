// Object locks: which file is locked for an object, how long a request waits, and the release.
#ifndef ZRCFG_LOCK_OBJECT_LOCK_H_
#define ZRCFG_LOCK_OBJECT_LOCK_H_

#include <stdint.h>

#include "lock/lock_file.h"

// Paths are relative to the store root. Outputs hold at least kFilePathSize bytes; object paths of
// more than 257 characters (the longest directory with "0/" behind it) have no lock file.
extern "C" {
// Writes the directory whose property file is the lock of `objPath`. Always 0.
int getLockPath(const char *objPath, char *lockDir);

// Writes the lock file of `objPath`. 0, or -1 when there is none.
int getLockFile(const char *objPath, char *lockFile);

// Opens and locks `lockFile`. 0 with the descriptor in `*fd`; else -1 in `*fd` and 8 (not to be
// opened), 9 (not obtained in time), 10 (null), 11 (`rwType` not 0, 1 or 2).
uint32_t cfgGetLock(const char *lockFile, int *fd, int timeout, uint32_t rwType);

// Takes the lock of `objPath`. 0 with the descriptor in `*fd`, or -1 with -1 there.
int getLock(const char *objPath, int *fd, int timeout, uint32_t rwType);

// Unlocks and closes. -1 does nothing and gives 0; otherwise the result of the closing.
int releaseLock(int fd);

// Whether someone holds a lock on `path` itself: 1 locked or not to be opened, 0 free.
int isLocked(const char *path);
}

namespace zrcfg {

// getLock that also tells which file it locked. A descriptor that `file` keeps saves the opening.
int take_object_lock(const char *obj_path, LockFile &file, int *fd, int timeout, uint32_t rw_type);

// releaseLock that leaves the file open, for `file` to keep.
void keep_lock_file(int fd, LockFile &file);

}  // namespace zrcfg

#endif  // ZRCFG_LOCK_OBJECT_LOCK_H_
