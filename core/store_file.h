// The only door to the file system: system calls on paths relative to the store root "/var/".
#ifndef ZRCFG_CORE_STORE_FILE_H_
#define ZRCFG_CORE_STORE_FILE_H_

#include <dirent.h>
#include <stddef.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/types.h>

// Each call puts the root in front of `path`, passes the other arguments through and returns what
// the system call returns, errno included. A null path fails with EFAULT; a path that is longer
// than anything the library builds fails with ENAMETOOLONG.
extern "C" {
FILE *FOPEN(const char *path, const char *mode);
DIR *OPENDIR(const char *path);
int OPEN(const char *path, int flags);
// Creates with mode 0666. The joined path is cut to 255 characters, so callers refuse longer ones.
int open_create(const char *path, int flags);
int ACCESS(const char *path, int mode);
int LSTAT(const char *path, struct stat *status);
int STAT(const char *path, struct stat *status);
int MKDIR(const char *path, mode_t mode);
int REMOVE(const char *path);
int RMDIR(const char *path);
}

namespace zrcfg {

inline constexpr char kStoreRoot[] = "/var/";

// Whether `error`, of an opening that failed, says that there is nothing to open. Others, such as a
// full table of descriptors, say nothing about that.
bool means_absent(int error);

// Opens with close-on-exec and begins again when a signal interrupts the opening.
int open_store_file(const char *path, int flags);

// Reads up to `size` bytes from `offset` with one call that is not interrupted by signals.
// Returns the bytes read, 0 at the end of the file, -1 with errno.
ssize_t read_at(int fd, void *buffer, size_t size, off_t offset);

// Writes all of `size` bytes at `offset`, in as many calls as it takes. Returns whether all is
// written.
bool write_all_at(int fd, const void *bytes, size_t size, off_t offset);

// Sets the file's size. Returns whether it did.
bool truncate_to(int fd, off_t size);

}  // namespace zrcfg

#endif  // ZRCFG_CORE_STORE_FILE_H_
