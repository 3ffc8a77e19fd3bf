// The entries of a directory in their order, in bounded memory however many there are.
#ifndef ZRCFG_TOOLS_STORE_DIRECTORY_NAMES_H_
#define ZRCFG_TOOLS_STORE_DIRECTORY_NAMES_H_

#include <stddef.h>
#include <stdint.h>

namespace zrcfg_store {

enum class EntryKind { kDirectory, kFile, kLink, kOther };

struct Entry {
  char *name;
  EntryKind kind;
};

// Whether the name is that of an instance: digits only.
bool is_instance_name(const char *name);

// Numbers first and by value, then the other names byte by byte; never 0 for different names.
int compare_names(const char *left, const char *right);

// Yields the entries but "." and "..", sorted. It reads the directory once for every 4096 of them;
// what appears or vanishes meanwhile may be missing.
class DirectoryNames {
 public:
  // `path` is relative to the directory `dir_fd` (or AT_FDCWD), "" that directory itself. A link in
  // place of its last component is not followed unless it ends in a slash.
  DirectoryNames(int dir_fd, const char *path);
  ~DirectoryNames();
  DirectoryNames(const DirectoryNames &) = delete;
  DirectoryNames &operator=(const DirectoryNames &) = delete;

  // The next entry, valid until the next call; null at the end or when the directory cannot be
  // read.
  const Entry *next();
  // Why it cannot be read, an errno; 0 as long as it can.
  int error() const { return error_; }

 private:
  bool refill();
  bool take(const char *name, EntryKind kind);
  bool make_room();
  size_t place_of(const char *name) const;
  void clear();

  int fd_;
  int error_ = 0;
  Entry *entries_ = nullptr;
  size_t count_ = 0;
  size_t capacity_ = 0;
  size_t next_ = 0;
  bool more_ = true;      // The directory may have names behind the last one here.
  char *last_ = nullptr;  // The last name that was yielded from an earlier batch.
};

}  // namespace zrcfg_store

#endif  // ZRCFG_TOOLS_STORE_DIRECTORY_NAMES_H_
