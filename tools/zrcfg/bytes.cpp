// A growing block of bytes.
#include "tools/zrcfg/bytes.h"

#include <errno.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/report.h"
#include "tools/zrcfg/standard_input.h"

namespace zrcfg_tool {
namespace {

constexpr size_t kFirstCapacity = 4096;

}  // namespace

Bytes::~Bytes() {
  free(at);
}

bool Bytes::reserve(size_t capacity) {
  if (capacity <= capacity_) {
    return true;
  }
  size_t grown = capacity_ == 0 ? kFirstCapacity : capacity_;
  while (grown < capacity) {
    grown *= 2;
  }
  char *const block = static_cast<char *>(realloc(at, grown));
  if (block == nullptr) {
    complain("out of memory");
    return false;
  }
  at = block;
  capacity_ = grown;
  return true;
}

bool Bytes::append(const char *bytes, size_t length) {
  if (!reserve(size + length)) {
    return false;
  }
  if (length > 0) {
    memcpy(at + size, bytes, length);
    size += length;
  }
  return true;
}

bool Bytes::append(const char *text) {
  return append(text, strlen(text));
}

bool Bytes::write_to(FILE *stream) const {
  return size == 0 || fwrite(at, 1, size, stream) == size;
}

bool Bytes::read_all(FILE *stream, const char *name, size_t limit) {
  if (stream == stdin && standard_input_reserved()) {
    complain("%s: is where the commands come from", name);
    return false;
  }
  size_t got = 1;
  while (got > 0) {
    if (!reserve(size + kFirstCapacity)) {
      return false;
    }
    got = fread(at + size, 1, capacity_ - size - 1, stream);
    size += got;
    if (size > limit) {
      complain("%s: longer than %zu bytes", name, limit);
      return false;
    }
  }
  if (ferror(stream) != 0) {
    complain("%s: cannot be read: %s", name, strerror(errno));
    return false;
  }
  at[size] = '\0';
  return true;
}

}  // namespace zrcfg_tool
