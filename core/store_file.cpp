// The only door to the file system: system calls on paths relative to the store root "/var/".
#include "core/store_file.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include "core/export.h"

namespace zrcfg {
namespace {

constexpr size_t kRootLength = sizeof(kStoreRoot) - 1;
constexpr size_t kJoinedPathSize = 320;        // Room for every path that the library builds.
constexpr size_t kCreateJoinedPathSize = 256;  // open_create cuts here.
constexpr mode_t kCreateMode = 0666;

// A path below the store root. An unusable one leaves errno set and `ok` false.
struct RootedPath {
  char text[kJoinedPathSize];
  bool ok;

  explicit RootedPath(const char *path) {
    if (path == nullptr) {
      errno = EFAULT;
      ok = false;
      return;
    }
    const size_t length = strlen(path);
    if (length >= kJoinedPathSize - kRootLength) {
      errno = ENAMETOOLONG;
      ok = false;
      return;
    }
    memcpy(text, kStoreRoot, kRootLength);
    memcpy(text + kRootLength, path, length + 1);
    ok = true;
  }
};

}  // namespace

bool means_absent(int error) {
  return error == ENOENT || error == ENOTDIR || error == EACCES || error == ELOOP;
}

int open_store_file(const char *path, int flags) {
  int fd;
  do {
    fd = OPEN(path, flags | O_CLOEXEC);
  } while (fd == -1 && errno == EINTR);
  return fd;
}

ssize_t read_at(int fd, void *buffer, size_t size, off_t offset) {
  ssize_t got;
  do {
    got = pread(fd, buffer, size, offset);
  } while (got == -1 && errno == EINTR);
  return got;
}

bool write_all_at(int fd, const void *bytes, size_t size, off_t offset) {
  const char *from = static_cast<const char *>(bytes);
  while (size > 0) {
    const ssize_t written = pwrite(fd, from, size, offset);
    if (written == -1 && errno == EINTR) {
      continue;
    }
    if (written <= 0) {
      return false;
    }
    from += written;
    offset += written;
    size -= static_cast<size_t>(written);
  }
  return true;
}

bool truncate_to(int fd, off_t size) {
  int result;
  do {
    result = ftruncate(fd, size);
  } while (result == -1 && errno == EINTR);
  return result == 0;
}

}  // namespace zrcfg

using zrcfg::RootedPath;

extern "C" {

ZRCFG_EXPORT FILE *FOPEN(const char *path, const char *mode) {
  if (mode == nullptr) {
    errno = EINVAL;
    return nullptr;
  }
  const RootedPath rooted(path);
  return rooted.ok ? fopen(rooted.text, mode) : nullptr;
}

ZRCFG_EXPORT DIR *OPENDIR(const char *path) {
  const RootedPath rooted(path);
  return rooted.ok ? opendir(rooted.text) : nullptr;
}

ZRCFG_EXPORT int OPEN(const char *path, int flags) {
  const RootedPath rooted(path);
  return rooted.ok ? open(rooted.text, flags) : -1;
}

ZRCFG_EXPORT int open_create(const char *path, int flags) {
  if (path == nullptr) {
    errno = EFAULT;
    return -1;
  }
  char joined[zrcfg::kCreateJoinedPathSize];
  (void)snprintf(joined, sizeof joined, "%s%s", zrcfg::kStoreRoot, path);  // Cuts by contract.
  return open(joined, flags, zrcfg::kCreateMode);
}

ZRCFG_EXPORT int ACCESS(const char *path, int mode) {
  const RootedPath rooted(path);
  return rooted.ok ? access(rooted.text, mode) : -1;
}

ZRCFG_EXPORT int LSTAT(const char *path, struct stat *status) {
  const RootedPath rooted(path);
  return rooted.ok ? lstat(rooted.text, status) : -1;
}

ZRCFG_EXPORT int STAT(const char *path, struct stat *status) {
  const RootedPath rooted(path);
  return rooted.ok ? stat(rooted.text, status) : -1;
}

ZRCFG_EXPORT int MKDIR(const char *path, mode_t mode) {
  const RootedPath rooted(path);
  return rooted.ok ? mkdir(rooted.text, mode) : -1;
}

ZRCFG_EXPORT int REMOVE(const char *path) {
  const RootedPath rooted(path);
  return rooted.ok ? remove(rooted.text) : -1;
}

ZRCFG_EXPORT int RMDIR(const char *path) {
  const RootedPath rooted(path);
  return rooted.ok ? rmdir(rooted.text) : -1;
}

}  // extern "C"
