// Object URLs, object directories and the property file of a directory.
#include "core/object_path.h"

#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include "core/checked_url.h"
#include "core/export.h"
#include "core/property_file.h"
#include "core/store_file.h"
#include "core/trace.h"
#include "zrcfg.h"

namespace zrcfg {

bool join_path(char *out, size_t size, const char *dir, const char *suffix) {
  const size_t dir_length = strlen(dir);
  const size_t suffix_length = strlen(suffix);
  if (dir_length + suffix_length >= size) {
    return false;
  }
  memcpy(out, dir, dir_length);
  memcpy(out + dir_length, suffix, suffix_length + 1);
  return true;
}

void url_to_dir_path(const char *url, DirPath &path) {
  memcpy(path.text, url, strlen(url) + 1);
  ChangeUrlWithDirFormat(path.text);
}

bool url_length_ok(const char *url) {
  const size_t length = strlen(url);
  if (length < kUrlSize) {
    return true;
  }
  ZRCFG_TRACE("pObjUrl len=%d out of range!\n", static_cast<int>(length));
  return false;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT void ChangeUrlWithDirFormat(char *path) {
  if (path == nullptr) {
    return;
  }
  for (; *path != '\0'; ++path) {
    if (*path == '.') {
      *path = '/';
    }
  }
}

ZRCFG_EXPORT int isDirExist(const char *path) {
  const int fd = open_store_file(path, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
  if (fd == -1) {
    return 0;
  }
  (void)close(fd);  // Only the opening answers the question.
  return 1;
}

ZRCFG_EXPORT uint32_t getPropertyFile(const char *dir, char *out) {
  if (dir == nullptr || out == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  if (!join_path(out, kFilePathSize, dir, kPropertyFileName)) {
    return ZRCFG_E_ARGUMENT;
  }
  if (ACCESS(out, F_OK) != 0) {
    return ZRCFG_E_NO_FILE;
  }
  ZRCFG_TRACE("property_file=%s exist!", out);
  return ZRCFG_OK;
}

ZRCFG_EXPORT uint32_t CheckObjExist(const char *url) {
  if (url == nullptr) {
    ZRCFG_TRACE("pObjUrl can't be NULL!\n");
    return ZRCFG_E_ARGUMENT;
  }
  if (check_url_length(url) != ZRCFG_OK) {
    return ZRCFG_E_NOT_FOUND;
  }
  DirPath path;
  url_to_dir_path(url, path);
  if (ACCESS(path.text, F_OK) != 0) {
    ZRCFG_TRACE("obj_path=%s not exist!\n", path.text);
    return ZRCFG_E_NOT_FOUND;
  }
  return ZRCFG_OK;
}

}  // extern "C"
