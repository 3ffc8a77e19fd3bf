// A growing block of bytes.
#ifndef ZRCFG_TOOLS_ZRCFG_BYTES_H_
#define ZRCFG_TOOLS_ZRCFG_BYTES_H_

#include <stddef.h>
#include <stdio.h>

namespace zrcfg_tool {

struct Bytes {
  char *at = nullptr;
  size_t size = 0;

  Bytes() = default;
  ~Bytes();
  Bytes(const Bytes &) = delete;
  Bytes &operator=(const Bytes &) = delete;

  // Room for `capacity` bytes in all. Reports and returns false without memory.
  bool reserve(size_t capacity);
  // Appends bytes; false likewise.
  bool append(const char *bytes, size_t length);
  bool append(const char *text);
  bool append(char c) { return append(&c, 1); }

  // Writes all to a stream; false when it does not take it.
  bool write_to(FILE *stream) const;

  // Reads a stream to its end, and terminates it. Reports and returns false when it cannot be read,
  // or is longer than `limit`; `name` is what it is called.
  bool read_all(FILE *stream, const char *name, size_t limit);

 private:
  size_t capacity_ = 0;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_BYTES_H_
