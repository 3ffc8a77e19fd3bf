// The choice of the lock file: the property file of the outermost template instance on the path.
#include "lock/lock_file.h"

#include <errno.h>
#include <stddef.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/export.h"
#include "core/property_file.h"
#include "core/store_file.h"
#include "core/trace.h"
#include "lock/object_lock.h"
#include "zrcfg.h"

namespace zrcfg {
namespace {

constexpr size_t kNone = static_cast<size_t>(-1);
constexpr char kTemplateSegment[] = "0/";
// The longest object path: a directory path with the template segment behind it.
constexpr size_t kMaxObjectPath = kUrlSize - 1 + sizeof(kTemplateSegment) - 1;
static_assert(kMaxObjectPath + sizeof(kPropertyFileName) <= kFilePathSize);

bool is_digit_char(char c) {
  return c >= '0' && c <= '9';
}

// The position of the first segment at or behind `from` that is an instance number with a "/" on
// both sides, or kNone.
size_t next_instance_number(const char *path, size_t from) {
  const size_t start = from == 0 ? 1 : from;  // The first segment is never an instance number.
  for (size_t i = start; path[i - 1] != '\0' && path[i] != '\0'; ++i) {
    if (path[i - 1] != '/' || !is_digit_char(path[i])) {
      continue;
    }
    size_t end = i;
    while (is_digit_char(path[end])) {
      ++end;
    }
    if (path[end] == '/') {
      return i;
    }
  }
  return kNone;
}

// Writes the path up to `position` with the template's number in place of the instance's.
void template_dir(const char *path, size_t position, char *out) {
  memcpy(out, path, position);
  memcpy(out + position, kTemplateSegment, sizeof kTemplateSegment);
}

// The search for a lock file that is to be opened as well.
struct LockSearch {
  LockFile &lock;
  PropertyFd opened;
};

// Opens the property file of `dir`, or takes it over where it is open.
bool open_property_of(const char *dir, const char *obj_path, LockSearch &search) {
  char path[kFilePathSize];
  if (!join_path(path, sizeof path, dir, kPropertyFileName)) {
    return false;
  }
  LockFile &lock = search.lock;
  if (lock.file.fd != -1 && strcmp(path, lock.path) == 0) {
    search.opened = lock.file;
    lock.file = {};
    return true;
  }
  const bool own = strcmp(dir, obj_path) == 0;
  return search.opened.open(path, own ? lock.access : Access::kRead);
}

// The lock directory of `obj_path`, in `dir`. When `search` is given, a directory is first tried by
// opening its property file, which answers for both; and false is returned for one of which nobody
// can tell whether it is there, since another lock would not keep the others out.
bool choose_lock_dir(const char *obj_path, char *dir, LockSearch *search) {
  for (size_t at = next_instance_number(obj_path, 0); at != kNone;
       at = next_instance_number(obj_path, at + 1)) {
    template_dir(obj_path, at, dir);
    if ((search != nullptr && open_property_of(dir, obj_path, *search)) || isDirExist(dir) == 1) {
      ZRCFG_TRACE("getLockPath() path=%s exist!\n", dir);
      return true;
    }
    if (search != nullptr && !means_absent(errno)) {
      return false;
    }
  }
  memcpy(dir, obj_path, strlen(obj_path) + 1);
  return true;
}

// The lock file of `obj_path`; `search` as in choose_lock_dir.
bool find_lock_file(const char *obj_path, char *file, LockSearch *search) {
  ZRCFG_TRACE("getLockFile() objPath=%s!\n", obj_path);
  char dir[kFilePathSize];
  if (strlen(obj_path) <= kMaxObjectPath && choose_lock_dir(obj_path, dir, search)) {
    const bool opened =
        search != nullptr && (search->opened.fd != -1 || open_property_of(dir, obj_path, *search));
    (void)join_path(file, kFilePathSize, dir, kPropertyFileName);  // Fits: asserted above.
    if (opened || ACCESS(file, F_OK) == 0 || getPropertyFile(obj_path, file) == ZRCFG_OK) {
      return true;
    }
  }
  ZRCFG_TRACE("getLockFile() can not found file!\n");
  return false;
}

}  // namespace

bool still_names(LockFile &lock, int fd) {
  if (lock.wait == Wait::kUnknown) {
    struct stat status = {};
    (void)fstat(fd, &status);  // Without an answer the path is asked.
    lock.wait = status.st_nlink != 0 ? Wait::kNone : Wait::kSome;
  }
  return lock.wait == Wait::kNone;
}

bool open_lock_file(const char *obj_path, LockFile &lock) {
  LockSearch search = {lock, {}};
  const bool found = find_lock_file(obj_path, lock.path, &search);
  lock.file.close();
  lock.file = search.opened;
  return found;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int getLockPath(const char *objPath, char *lockDir) {
  if (objPath == nullptr || lockDir == nullptr) {
    return 0;
  }
  const size_t length = strlen(objPath);
  if (length > kMaxObjectPath) {
    memmove(lockDir, objPath, kMaxObjectPath);
    lockDir[kMaxObjectPath] = '\0';
    return 0;
  }
  char path[kMaxObjectPath + 1];  // The output may be the input's buffer.
  memcpy(path, objPath, length + 1);
  (void)choose_lock_dir(path, lockDir, nullptr);  // Always true without a search.
  return 0;
}

ZRCFG_EXPORT int getLockFile(const char *objPath, char *lockFile) {
  if (objPath == nullptr || lockFile == nullptr) {
    return -1;
  }
  return find_lock_file(objPath, lockFile, nullptr) ? 0 : -1;
}

}  // extern "C"
