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
#include "lifecycle/dir_reader.h"

namespace zrcfg {
namespace {

constexpr size_t kBlockSize = 4096;
constexpr mode_t kDirMode = 0755;
constexpr mode_t kFileMode = 0666;
constexpr int kCreateFlags = O_WRONLY | O_CREAT | O_CLOEXEC;
// The longest path, without the root, that open_create does not cut.
constexpr size_t kMaxCreatedPath = 255 - (sizeof(kStoreRoot) - 1);

// Each message on standard output has its function's name and a fixed number.
constexpr int kStatMessage = 95;
constexpr int kMakeMessage = 191;
constexpr int kOpenMessage = 273;

const char *separator_behind(const char *path) {
  const size_t length = strlen(path);
  return length > 0 && path[length - 1] == '/' ? "" : "/";
}

// Room for every path that the calls of the file system accept.
constexpr size_t kWalkPathSize = 320;

// The path of what a walk through a tree is at. The bound of its length bounds the recursion.
struct WalkPath {
  char text[kWalkPathSize];
  size_t length;
  bool fits;

  explicit WalkPath(const char *path) : length(strlen(path)), fits(length < sizeof text) {
    length = fits ? length : 0;
    memcpy(text, path, length);
    text[length] = '\0';
  }
  void append(const char *separator, const char *name) {
    fits = fits && length + strlen(separator) + strlen(name) < kFilePathSize;
    if (fits) {
      length = static_cast<size_t>(stpcpy(stpcpy(text + length, separator), name) - text);
    }
  }
  void step_to(const char *name) { append(separator_behind(text), name); }
  void step_back(size_t to) {
    text[to] = '\0';
    length = to;
    fits = true;
  }
};

// Opens the destination of a copy; refuses what would be created under a cut name.
int create_file(const char *path) {
  if (strlen(path) > kMaxCreatedPath) {
    errno = ENAMETOOLONG;
    return -1;
  }
  int fd;
  do {
    fd = open_create(path, kCreateFlags);
  } while (fd == -1 && errno == EINTR);
  return fd;
}

// Its block must not become part of the frames of a walk, of which there is one a level.
[[gnu::noinline]] int copy_bytes(int from, int to) {
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

// Copies one open file to another and closes both. What a close may still report nobody relies on.
int copy_and_close(int from, int to) {
  const int result = copy_bytes(from, to);
  (void)close(from);
  (void)close(to);
  return result;
}

// Opens the destination of a copy of `src`, which lies within `dst` when that is a directory; one
// that opens for writing is none.
int create_copy(const char *src, const char *dst) {
  const int fd = create_file(dst);
  if (fd != -1 || ACCESS(dst, F_OK) != 0 || isDir(dst) != 1) {
    return fd;
  }
  const char *const slash = strrchr(src, '/');
  WalkPath within(dst);
  within.step_to(slash != nullptr ? slash : src);
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

// A copy that is under way.
struct TreeCopy {
  WalkPath src;
  WalkPath dst;
  bool all_fitted = true;
  // The copy's own directory, once it is made: what lies below is made relative to it, which saves
  // the system the way there. -1 when it cannot be opened.
  int top = -1;
  size_t top_length = 0;
  bool top_made = false;

  const char *below_top() const {
    const char *const below = dst.text + top_length;
    return *below == '/' ? below + 1 : below;
  }
};

void make_directory(TreeCopy &copy) {
  if (copy.top != -1 && mkdirat(copy.top, copy.below_top(), kDirMode) == 0) {
    return;
  }
  if (createDir(copy.dst.text) != 0) {
    ZRCFG_TRACE("%s not created!\n", copy.dst.text);
  }
  if (!copy.top_made) {
    copy.top = open_store_file(copy.dst.text, kDirFlags);
    copy.top_length = copy.dst.length;
    copy.top_made = true;
  }
}

void note_file_copy(int result, const char *src, const char *dst, bool &all_fitted) {
  all_fitted = all_fitted && strlen(dst) <= kMaxCreatedPath;
  if (result != 0) {
    ZRCFG_TRACE("%s not copied to %s!\n", src, dst);
  }
}

// fileCopy for the entry `name` of an open directory. Source and destination that open at once
// answer every question about them.
int copy_file_at(int src_dir, const char *name, const TreeCopy &copy) {
  const int from = openat(src_dir, name, O_RDONLY | O_CLOEXEC);
  if (from == -1) {
    return fileCopy(copy.src.text, copy.dst.text);
  }
  const int to = copy.top != -1 && copy.dst.length <= kMaxCreatedPath
                     ? openat(copy.top, copy.below_top(), kCreateFlags, kFileMode)
                     : -1;
  if (to == -1) {
    (void)close(from);
    return fileCopy(copy.src.text, copy.dst.text);
  }
  return copy_and_close(from, to);
}

// One level of the recursion. `fd` reads the source, or is -1; it is closed.
void copy_directory(int fd, TreeCopy &copy);

// Copies the entry that the copy's paths are at as what it is. Its kind is asked for only where its
// directory does not say it.
void copy_entry(int src_dir, const DirEntry &entry, TreeCopy &copy) {
  const int directory = entry.type == DT_DIR ? 1 : entry.type == DT_REG ? 0 : isDir(copy.src.text);
  if (directory == 1) {
    copy_directory(openat(src_dir, entry.name, kDirFlags | O_CLOEXEC), copy);
  } else if (directory == 0) {
    const int result = copy_file_at(src_dir, entry.name, copy);
    note_file_copy(result, copy.src.text, copy.dst.text, copy.all_fitted);
  }
}

void copy_directory(int fd, TreeCopy &copy) {
  make_directory(copy);
  if (fd == -1) {
    ZRCFG_TRACE("%s not readable, not copied!\n", copy.src.text);
    return;
  }
  const size_t src_length = copy.src.length;
  const size_t dst_length = copy.dst.length;
  DirReader reader(fd);
  for (const DirEntry *entry = reader.next(); entry != nullptr; entry = reader.next()) {
    copy.src.step_to(entry->name);
    copy.dst.step_to(entry->name);
    if (copy.src.fits && copy.dst.fits) {
      copy_entry(fd, *entry, copy);
    } else {
      copy.all_fitted = false;
    }
    copy.src.step_back(src_length);
    copy.dst.step_back(dst_length);
  }
  (void)close(fd);  // Only read.
}

void report_removal(int result, const WalkPath &path) {
  if (result != 0) {
    ZRCFG_TRACE("%s not removed!\n", path.text);
  }
}

// Empties the directory at `path`, reading it through `fd`, which is closed. Removing goes on
// whatever becomes of one entry.
void empty_directory(int fd, WalkPath &path) {
  const size_t length = path.length;
  DirReader reader(fd);
  for (const DirEntry *entry = reader.next(); entry != nullptr; entry = reader.next()) {
    path.append("/", entry->name);
    const int child =
        path.fits && entry->type != DT_REG ? openat(fd, entry->name, kDirFlags | O_CLOEXEC) : -1;
    if (child != -1) {
      empty_directory(child, path);
      report_removal(unlinkat(fd, entry->name, AT_REMOVEDIR), path);
    } else if (path.fits && entry->type == DT_REG) {
      (void)unlinkat(fd, entry->name, 0);
    } else if (path.fits) {
      (void)REMOVE(path.text);
    }
    path.step_back(length);
  }
  (void)close(fd);  // Only read.
}

}  // namespace

int copy_tree(const char *src, const char *dst, bool &all_fitted) {
  TreeCopy copy = {WalkPath(src), WalkPath(dst)};
  all_fitted = copy.dst.fits;
  const int fd = all_fitted ? open_store_file(src, kDirFlags) : -1;
  const int directory = fd != -1 ? 1 : isDir(src);
  if (directory == 0) {
    note_file_copy(fileCopy(src, dst), src, dst, all_fitted);
  } else if (directory == 1 && !all_fitted) {
    ZRCFG_TRACE("%s not created!\n", dst);
  } else if (directory == 1) {
    copy_directory(fd, copy);
    if (copy.top != -1) {
      (void)close(copy.top);
    }
    all_fitted = copy.all_fitted;
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
  return copy_and_close(from, to);
}

ZRCFG_EXPORT int createDir(const char *path) {
  if (path == nullptr) {
    return -1;
  }
  WalkPath directory(path);
  directory.step_to("");
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
  const int fd = open_store_file(path, kDirFlags);
  if (fd == -1) {
    printf("%s:%d open failed.\n", "dirDel", kOpenMessage);
    return -1;
  }
  WalkPath walk(path);  // Fits: it could be opened.
  empty_directory(fd, walk);
  report_removal(RMDIR(path), walk);
  return 0;
}

}  // extern "C"
