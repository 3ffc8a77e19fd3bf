// Files below the store's root, written and compared with few system calls.
#ifndef ZRCFG_FUZZ_STORE_FILE_H_
#define ZRCFG_FUZZ_STORE_FILE_H_

#include <stddef.h>
#include <stdint.h>

#include <string>

namespace zrcfg_fuzz {

// Ends the program when /var is the machine's own.
void require_private_store();

// A file that is written again and again. Its directory is made at the first time; the file is
// never replaced, only rewritten, unless somebody has removed it.
class StoreFile {
 public:
  // `dir` is relative to the store's root and ends in "/".
  explicit StoreFile(const std::string &dir, const std::string &name = "property.conf");
  ~StoreFile();
  StoreFile(const StoreFile &) = delete;
  StoreFile &operator=(const StoreFile &) = delete;

  void write(const std::string &bytes);
  bool holds(const std::string &bytes);
  // Whether nobody holds a lock on it.
  bool is_free() const;

 private:
  void reopen();

  std::string path_;
  int fd_ = -1;
};

// Makes a directory of the store with its parents.
void make_dirs(const std::string &dir);

// Removes a directory that holds files only; nothing happens when it is not there.
void remove_flat_dir(const std::string &dir);

// Removes everything below the root.
void empty_store();

// The lowest descriptor that is free; it stays the same when none was left open.
int lowest_free_descriptor();

}  // namespace zrcfg_fuzz

#endif  // ZRCFG_FUZZ_STORE_FILE_H_
