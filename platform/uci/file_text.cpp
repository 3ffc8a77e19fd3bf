// Reading a configuration file in one go.
#include "file_text.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "uci.h"

namespace zrcfg_uci {

namespace {

// Far above any configuration; keeps a damaged file system from taking the machine's memory.
constexpr size_t kLargestFile = 16u << 20;

int open_error() {
  switch (errno) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
    case ENAMETOOLONG:
      return UCI_ERR_NOTFOUND;
    case ENOMEM:
      return UCI_ERR_MEM;
    default:
      return UCI_ERR_IO;
  }
}

// A file may grow or shrink while it is read; what counts is what the reads return.
int read_all(int fd, size_t expected, FileText *text) {
  size_t capacity = expected + 1;
  text->size = 0;
  for (;;) {
    const ssize_t got = read(fd, text->bytes + text->size, capacity - text->size);
    if (got < 0 && errno == EINTR) {
      continue;
    }
    if (got < 0) {
      return UCI_ERR_IO;
    }
    text->size += static_cast<size_t>(got);
    // The size that was announced and not a byte more: no further read is needed to see the end.
    if (got == 0 || text->size == expected) {
      return UCI_OK;
    }
    if (text->size > kLargestFile) {
      return UCI_ERR_MEM;
    }
    if (text->size == capacity) {
      char *grown = static_cast<char *>(realloc(text->bytes, 2 * capacity + 1));
      if (grown == nullptr) {
        return UCI_ERR_MEM;
      }
      text->bytes = grown;
      capacity *= 2;
    }
  }
}

int read_descriptor(int fd, FileText *text) {
  struct stat status = {};
  if (fstat(fd, &status) != 0) {
    return UCI_ERR_IO;
  }
  if (!S_ISREG(status.st_mode)) {
    return UCI_ERR_NOTFOUND;
  }
  if (status.st_size > static_cast<off_t>(kLargestFile)) {
    return UCI_ERR_MEM;
  }
  const size_t expected = static_cast<size_t>(status.st_size);
  // One byte to notice that the file has grown, one behind the text.
  text->bytes = static_cast<char *>(malloc(expected + 2));
  if (text->bytes == nullptr) {
    return UCI_ERR_MEM;
  }
  const int result = read_all(fd, expected, text);
  if (result != UCI_OK) {
    free(text->bytes);
    text->bytes = nullptr;
  }
  return result;
}

}  // namespace

int read_file_text(const char *path, FileText *text) {
  int fd = -1;
  do {
    // Without O_NONBLOCK the opening of a pipe would wait for a writer.
    fd = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  } while (fd < 0 && errno == EINTR);
  if (fd < 0) {
    return open_error();
  }
  const int result = read_descriptor(fd, text);
  (void)close(fd);  // Nothing was written.
  return result;
}

}  // namespace zrcfg_uci
