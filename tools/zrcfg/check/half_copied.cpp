// Instances whose creation was interrupted: some of the template's files, none of them changed.
#include "tools/zrcfg/check/half_copied.h"

#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/store_file.h"
#include "tools/store/directory_names.h"

namespace zrcfg_tool {

using zrcfg_store::DirectoryNames;
using zrcfg_store::Entry;
using zrcfg_store::EntryKind;

namespace {

constexpr size_t kBlock = 4096;
constexpr size_t kPathSize = zrcfg::kFilePathSize;

enum class Comparison { kSame, kUnfinished, kDifferent };

// An open file, for comparing.
class ComparedFile {
 public:
  ComparedFile(int root_fd, const char *path)
      : fd_(openat(root_fd, path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK)) {
    struct stat status;
    if (fd_ != -1 && fstat(fd_, &status) == 0 && S_ISREG(status.st_mode)) {
      size_ = status.st_size;
    }
  }
  ~ComparedFile() {
    if (fd_ != -1) {
      (void)close(fd_);  // Only read.
    }
  }
  ComparedFile(const ComparedFile &) = delete;
  ComparedFile &operator=(const ComparedFile &) = delete;

  int fd() const { return fd_; }
  off_t size() const { return size_; }  // -1 when it cannot be read.

 private:
  int fd_;
  off_t size_ = -1;
};

// Whether a page is as in the source, or, behind a power failure, has never reached the medium.
bool is_copied_or_zero(const char *copied, const char *wanted, size_t size, bool &unfinished) {
  if (memcmp(copied, wanted, size) == 0) {
    return true;
  }
  unfinished = true;
  return copied[0] == '\0' && memcmp(copied, copied + 1, size - 1) == 0;
}

Comparison compare_files(int root_fd, const char *copy_path, const char *source_path) {
  const ComparedFile copy(root_fd, copy_path);
  const ComparedFile source(root_fd, source_path);
  if (copy.size() < 0 || source.size() < 0 || copy.size() > source.size()) {
    return Comparison::kDifferent;
  }
  bool unfinished = copy.size() < source.size();
  char copied[kBlock];
  char wanted[kBlock];
  for (off_t at = 0; at < copy.size();) {
    const off_t left = copy.size() - at;
    const size_t size = left < static_cast<off_t>(kBlock) ? static_cast<size_t>(left) : kBlock;
    const ssize_t got = zrcfg::read_at(copy.fd(), copied, size, at);
    if (got <= 0 || zrcfg::read_at(source.fd(), wanted, static_cast<size_t>(got), at) != got ||
        !is_copied_or_zero(copied, wanted, static_cast<size_t>(got), unfinished)) {
      return Comparison::kDifferent;
    }
    at += got;
  }
  return unfinished ? Comparison::kUnfinished : Comparison::kSame;
}

bool join(char *out, const char *dir, const char *name, const char *tail) {
  const int length = snprintf(out, kPathSize, "%s%s%s", dir, name, tail);
  return length >= 0 && static_cast<size_t>(length) < kPathSize;
}

bool exists(int root_fd, const char *path) {
  struct stat status;
  return fstatat(root_fd, path, &status, AT_SYMLINK_NOFOLLOW) == 0;
}

Comparison compare_trees(int root_fd, const char *copy, const char *source);

Comparison compare_entries(int root_fd, const char *copy, const char *source, const Entry &entry) {
  const bool directory = entry.kind == EntryKind::kDirectory;
  char copy_path[kPathSize];
  char source_path[kPathSize];
  if (!join(copy_path, copy, entry.name, directory ? "/" : "") ||
      !join(source_path, source, entry.name, directory ? "/" : "")) {
    return Comparison::kDifferent;
  }
  if (directory) {
    return compare_trees(root_fd, copy_path, source_path);
  }
  return entry.kind == EntryKind::kFile ? compare_files(root_fd, copy_path, source_path)
                                        : Comparison::kDifferent;
}

// Whether the copy lacks an entry of the source.
bool lacks_entry(int root_fd, const char *copy, const char *source) {
  DirectoryNames names(root_fd, source);
  for (const Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    char path[kPathSize];
    if (join(path, copy, entry->name, "") && !exists(root_fd, path)) {
      return true;
    }
  }
  return false;
}

// Directories, with a slash behind. The length of a path bounds the recursion.
Comparison compare_trees(int root_fd, const char *copy, const char *source) {
  DirectoryNames names(root_fd, copy);
  Comparison result = Comparison::kSame;
  for (const Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    const Comparison one = compare_entries(root_fd, copy, source, *entry);
    if (one == Comparison::kDifferent) {
      return one;
    }
    result = one == Comparison::kUnfinished ? one : result;
  }
  if (names.error() != 0 || !exists(root_fd, source)) {
    return Comparison::kDifferent;
  }
  return lacks_entry(root_fd, copy, source) ? Comparison::kUnfinished : result;
}

}  // namespace

bool is_half_copied(int root_fd, const zrcfg_store::ObjectPlace &instance,
                    const zrcfg_store::ObjectPlace &template_place) {
  return compare_trees(root_fd, instance.path, template_place.path) == Comparison::kUnfinished;
}

}  // namespace zrcfg_tool
