// Making and removing whole instances, each in one step as others see it.
#include "tools/zrcfg/snapshot/instance_files.h"

#include <errno.h>
#include <fcntl.h>
#include <ftw.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/property_file.h"
#include "core/store_file.h"
#include "tools/store/directory_names.h"
#include "tools/store/object_place.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

constexpr char kNewSuffix[] = ".restored";
constexpr char kOldSuffix[] = ".replaced";
constexpr mode_t kDirMode = 0755;  // As the library makes directories and files.
constexpr mode_t kFileMode = 0666;
constexpr int kOpenDirectories = 8;  // That a removal keeps open at a time.

// A path with the store's root in front, and room for a suffix and a file's name.
struct FullPath {
  char text[sizeof zrcfg::kStoreRoot + ZRCFG_URL_SIZE + sizeof kNewSuffix +
            sizeof zrcfg::kPropertyFileName];

  // The instance's directory with a suffix to its name.
  FullPath(const ObjectUrl &url, const char *suffix) {
    zrcfg_store::ObjectPlace place;
    (void)place.set_url(url.text);  // Fits, it is one.
    (void)snprintf(text, sizeof text, "%s%.*s%s", zrcfg::kStoreRoot,
                   static_cast<int>(place.length) - 1, place.path, suffix);
  }
};

bool failed(const ObjectUrl &url) {
  complain("%s: cannot be replaced: %s", url.text, strerror(errno));
  return false;
}

int remove_entry(const char *path, const struct stat *, int, FTW *) {
  return remove(path);
}

// What is missing already is removed.
bool remove_tree(const char *path) {
  return nftw(path, remove_entry, kOpenDirectories, FTW_DEPTH | FTW_PHYS) == 0 || errno == ENOENT;
}

// Makes the directories from the instance's own, of `length` characters, down to a file's.
bool make_directories(FullPath &path, size_t length) {
  for (char *slash = path.text + length; slash != nullptr; slash = strchr(slash + 1, '/')) {
    *slash = '\0';
    const bool made = mkdir(path.text, kDirMode) == 0 || errno == EEXIST;
    *slash = '/';
    if (!made) {
      return false;
    }
  }
  return true;
}

// Writes a property file below the directory that stands for the instance.
bool write_new_file(const FullPath &instance, const char *path_below, const char *bytes,
                    size_t size) {
  FullPath path = instance;
  const size_t length = strlen(path.text);
  (void)snprintf(path.text + length, sizeof path.text - length, "/%s%s", path_below,  // Fits.
                 zrcfg::kPropertyFileName);
  if (!make_directories(path, length)) {
    return false;
  }
  const int fd = open(path.text, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode);
  if (fd == -1) {
    return false;
  }
  const bool written = zrcfg::write_all_at(fd, bytes, size, 0);
  return close(fd) == 0 && written;
}

bool build(const FullPath &built, const ObjectUrl &url, const ObjectSet &objects,
           const ObjectRange &range) {
  const size_t length = strlen(url.text);
  for (size_t i = range.first; i < range.end; ++i) {
    zrcfg_store::ObjectPlace place;
    (void)place.set_url(objects.url(i));  // Checked with its snapshot.
    if (!write_new_file(built, place.path + length, objects.bytes(i), objects.size(i))) {
      return false;
    }
  }
  return true;
}

// The lock that creating and deleting instances takes: the template's, of a fixed table the
// table's own.
bool lock_table(const ObjectUrl &url, int timeout, int &fd) {
  InstanceName instance;
  (void)split_instance(url, instance);  // It is one.
  const char *const table = instance.table.text;
  char first[ZRCFG_URL_SIZE + 2];
  (void)snprintf(first, sizeof first, "%s0.", table);  // Fits.
  ObjAttr attributes = {};
  const bool dynamic = zrcfg_isobjectexist(first) == 1 &&
                       zrcfg_getobjattr(table, &attributes, ZRCFG_NO_LOCK) == ZRCFG_OK &&
                       attributes.rw != 0;
  const uint32_t result =
      zrcfg_lockurl(dynamic ? first : table, &fd, timeout, ZRCFG_LOCK_EXCLUSIVE);
  if (result != ZRCFG_OK) {
    report_refusal(url.text, "", ZRCFG_E_LOCK);
  }
  return result == ZRCFG_OK;
}

// Moves the instance out of its place, if it is there, and the new one in, if there is one.
bool exchange(const ObjectUrl &url, const FullPath *built, int timeout) {
  const FullPath place(url, "");
  const FullPath aside(url, kOldSuffix);
  int lock_fd = -1;
  if (!lock_table(url, timeout, lock_fd)) {
    return false;
  }
  bool done = rename(place.text, aside.text) == 0 || errno == ENOENT;
  if (done && built != nullptr && rename(built->text, place.text) != 0) {
    const int error = errno;
    (void)rename(aside.text, place.text);  // The failure before it is what matters.
    errno = error;
    done = false;
  }
  const int error = errno;
  (void)zrcfg_releaselock(lock_fd);
  errno = error;
  return done || failed(url);
}

}  // namespace

bool put_instance(const ObjectUrl &url, const ObjectSet &objects, const ObjectRange &range,
                  int timeout) {
  const FullPath built(url, kNewSuffix);
  const FullPath aside(url, kOldSuffix);
  if (!remove_tree(built.text) || !remove_tree(aside.text)) {
    return failed(url);
  }
  if (!build(built, url, objects, range)) {
    (void)failed(url);
    (void)remove_tree(built.text);  // The failure before it is what matters.
    return false;
  }
  if (!exchange(url, &built, timeout)) {
    (void)remove_tree(built.text);  // Likewise.
    return false;
  }
  return remove_tree(aside.text) || failed(url);
}

bool take_away_instance(const ObjectUrl &url, int timeout) {
  const FullPath aside(url, kOldSuffix);
  if (!remove_tree(aside.text)) {
    return failed(url);
  }
  return exchange(url, nullptr, timeout) && (remove_tree(aside.text) || failed(url));
}

void remove_if_leftover(const char *path) {
  const char *const slash = strrchr(path, '/');
  const char *const name = slash != nullptr ? slash + 1 : path;
  const size_t digits = strspn(name, "0123456789");
  if (slash == nullptr || digits == 0 ||
      (strcmp(name + digits, kNewSuffix) != 0 && strcmp(name + digits, kOldSuffix) != 0)) {
    return;
  }
  char full[sizeof zrcfg::kStoreRoot + size_t{2} * ZRCFG_URL_SIZE];
  (void)snprintf(full, sizeof full, "%s%s", zrcfg::kStoreRoot, path);  // Fits: 255 bytes a name.
  (void)remove_tree(full);  // What stays is no object and does no harm.
}

}  // namespace zrcfg_tool
