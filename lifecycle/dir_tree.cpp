// Testing, making, copying and removing files and directory trees of the store.
#include "lifecycle/dir_tree.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/export.h"
#include "core/object_path.h"
#include "core/store_file.h"
#include "core/trace.h"

namespace zrcfg {
namespace {

constexpr size_t kBlockSize = 4096;
constexpr mode_t kDirMode = 0755;
// The longest path, without the root, that open_create does not cut.
constexpr size_t kMaxCreatedPath = 255 - (sizeof(kStoreRoot) - 1);

// Each message on standard output has its function's name and a fixed number.
constexpr int kStatMessage = 95;
constexpr int kMakeMessage = 191;
constexpr int kOpenMessage = 273;

// A path below a directory while a tree is walked. The bound of its length bounds the recursion.
struct ChildPath {
  char text[kFilePathSize];
  bool fits;

  ChildPath(const char *dir, const char *separator, const char *name) {
    const int length = snprintf(text, sizeof text, "%s%s%s", dir, separator, name);
    fits = length >= 0 && static_cast<size_t>(length) < sizeof text;
  }
};

const char *separator_behind(const char *path) {
  const size_t length = strlen(path);
  return length > 0 && path[length - 1] == '/' ? "" : "/";
}

bool is_dot_entry(const char *name) {
  return strcmp(name, ".") == 0 || strcmp(name, "..") == 0;
}

// Opens the destination of a copy; refuses what would be created under a cut name.
int create_file(const char *path) {
  if (strlen(path) > kMaxCreatedPath) {
    errno = ENAMETOOLONG;
    return -1;
  }
  int fd;
  do {
    fd = open_create(path, O_WRONLY | O_CREAT | O_CLOEXEC);
  } while (fd == -1 && errno == EINTR);
  return fd;
}

int copy_bytes(int from, int to) {
  char block[kBlockSize];
  bool all_written = true;
  off_t at = 0;
  for (;;) {
    const ssize_t got = read_at(from, block, sizeof block, at);
    if (got == -1) {
      return -1;
    }
    if (got == 0) {
      break;
    }
    all_written = write_all_at(to, block, static_cast<size_t>(got), at) && all_written;
    at += got;
  }
  if (!all_written) {
    // The result of the copy stays as it is for callers that go by it.
    ZRCFG_TRACE("file not copied completely!\n");
  }
  return 0;
}

// The place of a copy of `src` within the directory `dst`.
ChildPath place_within(const char *src, const char *dst) {
  const char *const slash = strrchr(src, '/');
  return {dst, separator_behind(dst), slash != nullptr ? slash : src};
}

// Opens the destination of a copy of `src`, which lies within `dst` when that is a directory; one
// that opens for writing is none.
int create_copy(const char *src, const char *dst) {
  const int fd = create_file(dst);
  if (fd != -1 || ACCESS(dst, F_OK) != 0 || isDir(dst) != 1) {
    return fd;
  }
  const ChildPath within = place_within(src, dst);
  return within.fits ? create_file(within.text) : -1;
}

// Makes the directory's ancestors and then itself, one by one.
int make_each(char *path) {
  for (char *at = path; *at != '\0'; ++at) {
    if (*at != '/') {
      continue;
    }
    *at = '\0';
    if (ACCESS(path, F_OK) != 0 && MKDIR(path, kDirMode) == -1) {
      printf("%s:%d call mkdir failed.\n", "createDir", kMakeMessage);
      return -1;
    }
    *at = '/';
  }
  return 0;
}

// What an entry is, as isDir has it; asked for only where its directory does not say it.
int entry_kind(const char *path, unsigned char type) {
  if (type == DT_DIR || type == DT_REG) {
    return type == DT_DIR ? 1 : 0;
  }
  return isDir(path);
}

// Copies an entry of the type `type`. One level of the recursion.
void copy_entry(const ChildPath &src, const ChildPath &dst, unsigned char type, bool &all_fitted);

void copy_children(DIR *stream, const char *src, const char *dst, bool &all_fitted) {
  const char *const src_separator = separator_behind(src);
  const char *const dst_separator = separator_behind(dst);
  for (const dirent *entry = readdir(stream); entry != nullptr; entry = readdir(stream)) {
    if (is_dot_entry(entry->d_name)) {
      continue;
    }
    copy_entry({src, src_separator, entry->d_name}, {dst, dst_separator, entry->d_name},
               entry->d_type, all_fitted);
  }
}

void copy_directory(const char *src, const char *dst, bool &all_fitted) {
  DIR *const stream = OPENDIR(src);
  if (createDir(dst) != 0) {
    ZRCFG_TRACE("%s not created!\n", dst);
  }
  if (stream == nullptr) {
    ZRCFG_TRACE("%s not readable, not copied!\n", src);
    return;
  }
  copy_children(stream, src, dst, all_fitted);
  (void)closedir(stream);  // Only read.
}

bool copy_file(const char *src, const char *dst) {
  const bool fits = strlen(dst) <= kMaxCreatedPath;
  if (fileCopy(src, dst) != 0) {
    ZRCFG_TRACE("%s not copied to %s!\n", src, dst);
  }
  return fits;
}

void copy_entry(const ChildPath &src, const ChildPath &dst, unsigned char type, bool &all_fitted) {
  if (!src.fits || !dst.fits) {
    all_fitted = false;
    return;
  }
  const int directory = entry_kind(src.text, type);
  if (directory == 1) {
    copy_directory(src.text, dst.text, all_fitted);
  } else if (directory == 0) {
    all_fitted = copy_file(src.text, dst.text) && all_fitted;
  }
}

// Empties and removes the directory that `stream` reads, and closes the stream.
void remove_directory(DIR *stream, const char *path) {
  for (const dirent *entry = readdir(stream); entry != nullptr; entry = readdir(stream)) {
    if (is_dot_entry(entry->d_name)) {
      continue;
    }
    const ChildPath child(path, "/", entry->d_name);
    if (!child.fits) {
      continue;
    }
    DIR *const child_stream = entry->d_type != DT_REG ? OPENDIR(child.text) : nullptr;
    if (child_stream != nullptr) {
      remove_directory(child_stream, child.text);
    } else {
      (void)REMOVE(child.text);  // Removing goes on whatever becomes of one entry.
    }
  }
  (void)closedir(stream);
  if (RMDIR(path) != 0) {
    ZRCFG_TRACE("%s not removed!\n", path);
  }
}

}  // namespace

int copy_tree(const char *src, const char *dst, bool &all_fitted) {
  all_fitted = true;
  const int directory = isDir(src);
  if (directory == 1) {
    copy_directory(src, dst, all_fitted);
  } else if (directory == 0) {
    all_fitted = copy_file(src, dst);
  }
  return directory == -1 ? -1 : 0;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int isDir(const char *path) {
  struct stat status;
  if (STAT(path, &status) != 0) {
    printf("%s:%d call stat failed!", "isDir", kStatMessage);
    return -1;
  }
  return S_ISDIR(status.st_mode) ? 1 : 0;
}

ZRCFG_EXPORT int fileCopy(const char *src, const char *dst) {
  if (src == nullptr || dst == nullptr) {
    return -1;
  }
  const int from = open_store_file(src, O_RDONLY);
  if (from == -1) {
    return -1;
  }
  const int to = create_copy(src, dst);
  if (to == -1) {
    (void)close(from);
    return -1;
  }
  const int result = copy_bytes(from, to);
  (void)close(from);
  (void)close(to);  // The store never relies on what a close may still report.
  return result;
}

ZRCFG_EXPORT int createDir(const char *path) {
  if (path == nullptr) {
    return -1;
  }
  ChildPath directory(path, separator_behind(path), "");
  if (!directory.fits) {
    return -1;
  }
  // Mostly there is nothing but the last directory to make. A link to nowhere is in its way.
  if (MKDIR(directory.text, kDirMode) == 0 ||
      (errno == EEXIST && ACCESS(directory.text, F_OK) == 0)) {
    return 0;
  }
  return make_each(directory.text);
}

ZRCFG_EXPORT int dirCopy(const char *src, const char *dst) {
  bool all_fitted;
  return src == nullptr || dst == nullptr ? -1 : copy_tree(src, dst, all_fitted);
}

ZRCFG_EXPORT int dirDel(const char *path) {
  DIR *const stream = OPENDIR(path);
  if (stream == nullptr) {
    printf("%s:%d open failed.\n", "dirDel", kOpenMessage);
    return -1;
  }
  remove_directory(stream, path);
  return 0;
}

}  // extern "C"
