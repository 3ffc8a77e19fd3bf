// Opening an object under its lock and closing it again.
#include "core/object_image.h"

#include <string.h>

#include "core/export.h"
#include "core/trace.h"

namespace zrcfg {
namespace {

// Takes the lock that `rw_type` asks for; `lock` receives the locked file's path.
bool lock_object(OpenObject &object, const char *dir_path, uint32_t rw_type, int timeout,
                 LockFile &lock) {
  if (timeout == ZRCFG_NO_LOCK) {
    ZRCFG_TRACE("no need to be locked.\n");
    return true;
  }
  char lock_path[kFilePathSize];
  const char *const suffix = rw_type == ZRCFG_LOCK_TEMPLATE ? "0/" : "";
  if (join_path(lock_path, sizeof lock_path, dir_path, suffix) &&
      take_object_lock(lock_path, lock, &object.lock_fd, timeout, rw_type) == 0) {
    return true;
  }
  ZRCFG_TRACE("getLock fail!\n");
  return false;
}

// Reads the property file of `dir_path`. A file that opens at once exists; otherwise the existence
// test and the opening are made one by one for the sake of their results and texts.
uint32_t open_and_load(OpenObject &object, const char *dir_path, Access access, LockFile &lock) {
  char path[kFilePathSize];
  if (!join_path(path, sizeof path, dir_path, kPropertyFileName)) {
    ZRCFG_TRACE("getPropertyFile() fail!\n");
    return ZRCFG_E_NO_FILE;
  }
  // Where the lock file is the property file itself, the lock's descriptor serves.
  const bool through_lock = strcmp(path, lock.path) == 0 &&
                            (access == Access::kRead || lock.writable) &&
                            still_names(lock, object.lock_fd);
  if (through_lock) {
    object.file = {object.lock_fd, lock.writable, true};
  }
  if (through_lock || object.file.open(path, access)) {
    ZRCFG_TRACE("property_file=%s exist!", path);
    ZRCFG_TRACE("property_file = %s\n", path);
  } else {
    if (getPropertyFile(dir_path, path) != ZRCFG_OK) {
      ZRCFG_TRACE("getPropertyFile() fail!\n");
      return ZRCFG_E_NO_FILE;
    }
    ZRCFG_TRACE("property_file = %s\n", path);
    if (!object.file.open(path, access)) {
      ZRCFG_TRACE("unable to open %s file\n", path);
      return ZRCFG_E_NO_FILE;
    }
  }
  uint32_t result = load_object(object.file.fd, dir_path, object.loaded);
  if (result == ZRCFG_E_MEMORY) {
    ZRCFG_TRACE("pBuf malloc failed!\n");
    result = ZRCFG_E_ARGUMENT;
  }
  if (access == Access::kRead || result != ZRCFG_OK) {
    object.file.close();
  }
  return result;
}

uint32_t open_under_lock(OpenObject &object, const char *dir_path, uint32_t rw_type, int timeout,
                         Access access, LockFile &lock) {
  lock.access = access;
  uint32_t result = ZRCFG_E_LOCK;
  if (lock_object(object, dir_path, rw_type, timeout, lock)) {
    result = open_and_load(object, dir_path, access, lock);
  }
  if (result != ZRCFG_OK) {
    (void)releaseLock(object.lock_fd);  // The failure that led here is what the caller learns.
    object.lock_fd = -1;
  }
  return result;
}

}  // namespace

uint32_t open_object(OpenObject &object, const char *dir_path, uint32_t rw_type, int timeout,
                     Access access) {
  LockFile lock;
  return open_under_lock(object, dir_path, rw_type, timeout, access, lock);
}

void close_object(OpenObject &object) {
  object.file.close();
  (void)destroyObj(object.loaded.image, object.lock_fd);  // Always 0.
}

uint32_t open_object_to_lock_again(OpenObject &object, const char *dir_path, uint32_t rw_type,
                                   int timeout, LockFile &lock) {
  return open_under_lock(object, dir_path, rw_type, timeout, Access::kRead, lock);
}

void close_object_to_lock_again(OpenObject &object, LockFile &lock) {
  if (lock.wait == Wait::kSome) {
    (void)destroyObj(object.loaded.image, object.lock_fd);  // Always 0.
    return;
  }
  free_image(object.loaded.image);
  keep_lock_file(object.lock_fd, lock);
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t createObjByPath(ZrcfgObject **image, const char *dirPath, int *lockFd,
                                      uint32_t rwType, int timeout) {
  if (dirPath == nullptr) {
    ZRCFG_TRACE("object can't be NULL!\n");
    return ZRCFG_E_LOCK_TYPE;
  }
  if (image == nullptr || lockFd == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  OpenObject object;
  const uint32_t result = open_object(object, dirPath, rwType, timeout, Access::kRead);
  if (timeout != ZRCFG_NO_LOCK) {
    *lockFd = object.lock_fd;
  }
  if (result == ZRCFG_OK) {
    *image = object.loaded.image;
  }
  return result;
}

ZRCFG_EXPORT uint32_t destroyObj(ZrcfgObject *image, int lockFd) {
  free_image(static_cast<ObjectImage *>(image));
  (void)releaseLock(lockFd);  // The object is closed whatever the unlocking says.
  return ZRCFG_OK;
}

}  // extern "C"
