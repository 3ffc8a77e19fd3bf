// Files below the store's root, written and compared with few system calls.
#include "fuzz/store_file.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "fuzz/check.h"

namespace zrcfg_fuzz {
namespace {

namespace fs = std::filesystem;

constexpr char kRoot[] = "/var/";

}  // namespace

void require_private_store() {
  for (const char *path : {"/var/lib", "/var/cache", "/var/log", "/var/spool"}) {
    if (access(path, F_OK) == 0) {
      fputs("/var is the machine's own; run this through scripts/with-store --temp\n", stderr);
      exit(2);
    }
  }
}

StoreFile::StoreFile(const std::string &dir, const std::string &name) : path_(kRoot + dir + name) {
  make_dirs(dir);
  reopen();
}

StoreFile::~StoreFile() {
  close(fd_);
}

void StoreFile::reopen() {
  if (fd_ != -1) {
    close(fd_);
  }
  fd_ = open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  require(fd_ != -1, "a file of the store cannot be made");
}

void StoreFile::write(const std::string &bytes) {
  struct stat status = {};
  if (fstat(fd_, &status) != 0 || status.st_nlink == 0) {
    reopen();
    status.st_size = 0;
  }
  const auto size = static_cast<off_t>(bytes.size());
  require(pwrite(fd_, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(size),
          "a file of the store cannot be written");
  if (status.st_size > size) {
    require(ftruncate(fd_, size) == 0, "a file of the store cannot be cut");
  }
}

bool StoreFile::holds(const std::string &bytes) {
  struct stat status = {};
  if (fstat(fd_, &status) != 0 || static_cast<size_t>(status.st_size) != bytes.size()) {
    return false;
  }
  std::string now(bytes.size(), '\0');
  return pread(fd_, now.data(), now.size(), 0) == static_cast<ssize_t>(now.size()) && now == bytes;
}

bool StoreFile::is_free() const {
  const int fd = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  const bool free = fd != -1 && flock(fd, LOCK_EX | LOCK_NB) == 0;
  close(fd);
  return free;
}

void make_dirs(const std::string &dir) {
  fs::create_directories(kRoot + dir);
}

void remove_flat_dir(const std::string &dir) {
  const std::string path = kRoot + dir;
  if (access(path.c_str(), F_OK) == 0) {
    fs::remove_all(path);
  }
}

void empty_store() {
  for (const fs::directory_entry &entry : fs::directory_iterator(kRoot)) {
    fs::remove_all(entry.path());
  }
}

int lowest_free_descriptor() {
  const int fd = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(fd);
  return fd;
}

}  // namespace zrcfg_fuzz
