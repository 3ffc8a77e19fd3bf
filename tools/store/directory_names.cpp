// The entries of a directory in their order, in bounded memory however many there are.
#include "tools/store/directory_names.h"

#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zrcfg_store {
namespace {

constexpr size_t kBatch = 4096;
constexpr size_t kFirstCapacity = 32;
constexpr char kDigits[] = "0123456789";

EntryKind kind_of(int dir_fd, const dirent &entry) {
  switch (entry.d_type) {
    case DT_DIR:
      return EntryKind::kDirectory;
    case DT_REG:
      return EntryKind::kFile;
    case DT_LNK:
      return EntryKind::kLink;
    case DT_UNKNOWN:
      break;
    default:
      return EntryKind::kOther;
  }
  struct stat status;
  if (fstatat(dir_fd, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return EntryKind::kOther;
  }
  return S_ISDIR(status.st_mode)   ? EntryKind::kDirectory
         : S_ISREG(status.st_mode) ? EntryKind::kFile
         : S_ISLNK(status.st_mode) ? EntryKind::kLink
                                   : EntryKind::kOther;
}

// Digits without the zeros that they begin with.
const char *significant(const char *digits) {
  const char *const text = digits + strspn(digits, "0");
  return *text == '\0' && text > digits ? text - 1 : text;
}

}  // namespace

bool is_instance_name(const char *name) {
  return name[0] != '\0' && name[strspn(name, kDigits)] == '\0';
}

int compare_names(const char *left, const char *right) {
  const bool left_number = is_instance_name(left);
  const bool right_number = is_instance_name(right);
  if (left_number != right_number) {
    return left_number ? -1 : 1;
  }
  if (!left_number) {
    return strcmp(left, right);
  }
  const char *const a = significant(left);
  const char *const b = significant(right);
  const size_t a_length = strlen(a);
  const size_t b_length = strlen(b);
  if (a_length != b_length) {
    return a_length < b_length ? -1 : 1;
  }
  const int order = strcmp(a, b);
  return order != 0 ? order : strcmp(left, right);  // 01 and 1 are different names.
}

DirectoryNames::DirectoryNames(int dir_fd, const char *path) {
  const char *const name = path[0] != '\0' ? path : ".";
  do {
    fd_ = openat(dir_fd, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
  } while (fd_ == -1 && errno == EINTR);
  if (fd_ == -1) {
    error_ = errno;
    more_ = false;
  }
}

DirectoryNames::~DirectoryNames() {
  clear();
  free(entries_);
  free(last_);
  if (fd_ != -1) {
    (void)close(fd_);  // Only read.
  }
}

void DirectoryNames::clear() {
  for (size_t i = 0; i < count_; ++i) {
    free(entries_[i].name);
  }
  count_ = 0;
  next_ = 0;
}

// Room for one more entry; of a full batch the last is given up.
bool DirectoryNames::make_room() {
  if (count_ == kBatch) {
    free(entries_[--count_].name);
    more_ = true;
    return true;
  }
  if (count_ < capacity_) {
    return true;
  }
  const size_t capacity = capacity_ == 0 ? kFirstCapacity : 2 * capacity_;
  Entry *const grown = static_cast<Entry *>(realloc(entries_, capacity * sizeof(Entry)));
  if (grown == nullptr) {
    return false;
  }
  entries_ = grown;
  capacity_ = capacity;
  return true;
}

// Where the name belongs among the entries.
size_t DirectoryNames::place_of(const char *name) const {
  size_t begin = 0;
  size_t end = count_;
  while (begin < end) {
    const size_t middle = begin + (end - begin) / 2;
    if (compare_names(name, entries_[middle].name) < 0) {
      end = middle;
    } else {
      begin = middle + 1;
    }
  }
  return begin;
}

// Keeps the name if it is among the first behind those that were yielded.
bool DirectoryNames::take(const char *name, EntryKind kind) {
  if (last_ != nullptr && compare_names(name, last_) <= 0) {
    return true;
  }
  if (count_ == kBatch && compare_names(name, entries_[count_ - 1].name) > 0) {
    more_ = true;
    return true;
  }
  char *const copy = strdup(name);
  if (copy == nullptr || !make_room()) {
    free(copy);
    error_ = ENOMEM;
    return false;
  }
  const size_t place = place_of(copy);
  memmove(entries_ + place + 1, entries_ + place, (count_ - place) * sizeof(Entry));
  entries_[place] = {copy, kind};
  ++count_;
  return true;
}

bool DirectoryNames::refill() {
  if (count_ > 0) {
    free(last_);
    last_ = entries_[count_ - 1].name;
    entries_[--count_].name = nullptr;
  }
  clear();
  more_ = false;
  const int scan_fd = openat(fd_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  DIR *const stream = scan_fd != -1 ? fdopendir(scan_fd) : nullptr;
  if (stream == nullptr) {
    error_ = errno;
    if (scan_fd != -1) {
      (void)close(scan_fd);
    }
    return false;
  }
  bool ok = true;
  errno = 0;
  for (const dirent *entry = readdir(stream); ok && entry != nullptr; entry = readdir(stream)) {
    if (strcmp(entry->d_name, ".") != 0 && strcmp(entry->d_name, "..") != 0) {
      ok = take(entry->d_name, kind_of(fd_, *entry));
    }
    errno = 0;
  }
  if (ok && errno != 0) {
    error_ = errno;
    ok = false;
  }
  (void)closedir(stream);  // Only read.
  return ok;
}

const Entry *DirectoryNames::next() {
  if (next_ == count_ && (!more_ || !refill())) {
    more_ = false;
    return nullptr;
  }
  return next_ < count_ ? &entries_[next_++] : nullptr;
}

}  // namespace zrcfg_store
