// Reading an object's property file byte for byte, under its lock.
#include "tools/zrcfg/snapshot/object_file.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "core/store_file.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

using zrcfg_store::ObjectPlace;

constexpr off_t kMaxFileSize = off_t{32} << 20;  // What the library reads.
constexpr size_t kReadSize = 4096;
constexpr int kStableTries = 100;
constexpr long kStablePause = 2000000;  // Nanoseconds.

bool read_open_file(int fd, Bytes &bytes) {
  struct stat status;
  if (fstat(fd, &status) != 0) {
    return false;
  }
  if (!S_ISREG(status.st_mode) || status.st_size > kMaxFileSize) {
    errno = S_ISREG(status.st_mode) ? EFBIG : EINVAL;
    return false;
  }
  bytes.size = 0;
  for (;;) {
    if (!bytes.reserve(bytes.size + kReadSize + 1)) {
      errno = ENOMEM;
      return false;
    }
    const ssize_t got =
        zrcfg::read_at(fd, bytes.at + bytes.size, kReadSize, static_cast<off_t>(bytes.size));
    if (got < 0) {
      return false;
    }
    bytes.size += static_cast<size_t>(got);
    if (got == 0) {
      bytes.at[bytes.size] = '\0';
      return true;
    }
  }
}

// Reads again until nothing changed between two readings.
bool read_stable(int fd, Bytes &bytes) {
  Bytes again;
  if (!read_open_file(fd, bytes)) {
    return false;
  }
  for (int i = 0; i < kStableTries; ++i) {
    const timespec pause = {0, kStablePause};
    (void)nanosleep(&pause, nullptr);  // An early end does no harm.
    if (!read_open_file(fd, again)) {
      return false;
    }
    if (again.size == bytes.size && memcmp(again.at, bytes.at, bytes.size) == 0) {
      return true;
    }
    bytes.size = 0;
    if (!bytes.append(again.at, again.size + 1)) {
      errno = ENOMEM;
      return false;
    }
    --bytes.size;  // The zero byte behind it does not count.
  }
  errno = EAGAIN;
  return false;
}

ReadResult read_file(const StoreRoot &root, const ObjectPlace &place, bool locked, Bytes &bytes) {
  char path[zrcfg::kFilePathSize];
  zrcfg_store::property_path(place, path);
  int fd;
  do {
    fd = openat(root.fd, path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  } while (fd == -1 && errno == EINTR);
  if (fd == -1) {
    return errno == ENOENT || errno == ENOTDIR ? ReadResult::kMissing : ReadResult::kFailed;
  }
  const bool read = locked ? read_open_file(fd, bytes) : read_stable(fd, bytes);
  const int error = errno;
  (void)close(fd);  // Only read.
  errno = error;
  return read ? ReadResult::kRead : ReadResult::kFailed;
}

// Why the lock of an object was not to be had; errno says why its file cannot be read.
ReadResult without_lock(const StoreRoot &root, const ObjectPlace &place) {
  char path[zrcfg::kFilePathSize];
  zrcfg_store::property_path(place, path);
  if (faccessat(root.fd, path, R_OK, AT_EACCESS) == 0) {
    return ReadResult::kLocked;
  }
  return errno == ENOENT || errno == ENOTDIR ? ReadResult::kMissing : ReadResult::kFailed;
}

}  // namespace

StoreRoot::~StoreRoot() {
  if (fd != -1) {
    (void)close(fd);  // Only read.
  }
}

bool StoreRoot::open(const char *directory) {
  const char *const path = directory != nullptr ? directory : zrcfg::kStoreRoot;
  fd = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd == -1) {
    complain("%s: %s", path, strerror(errno));
    return false;
  }
  struct stat mine;
  struct stat real;
  live = directory == nullptr || (fstat(fd, &mine) == 0 && stat(zrcfg::kStoreRoot, &real) == 0 &&
                                  mine.st_dev == real.st_dev && mine.st_ino == real.st_ino);
  return true;
}

ReadResult read_object_file(const StoreRoot &root, const ObjectPlace &place, int timeout,
                            Bytes &bytes) {
  const bool locks = root.live && timeout != ZRCFG_NO_LOCK;
  int lock_fd = -1;
  if (locks && zrcfg_lockurl(place.url, &lock_fd, timeout, ZRCFG_LOCK_SHARED) != ZRCFG_OK) {
    return without_lock(root, place);
  }
  const ReadResult result = read_file(root, place, locks, bytes);
  const int error = errno;
  (void)zrcfg_releaselock(lock_fd);
  errno = error;
  return result;
}

ReadResult read_held_file(const StoreRoot &root, const ObjectPlace &place, Bytes &bytes) {
  return read_file(root, place, true, bytes);
}

void report_unread(const char *url, ReadResult result) {
  if (result == ReadResult::kMissing) {
    complain("%s: no such object", url);
  } else if (result == ReadResult::kLocked) {
    report_refusal(url, "", ZRCFG_E_LOCK);
  } else {
    complain("%s: cannot be read: %s", url, strerror(errno));
  }
}

}  // namespace zrcfg_tool
