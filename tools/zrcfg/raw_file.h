// The fields of a raw property file, well formed or not.
#ifndef ZRCFG_TOOLS_ZRCFG_RAW_FILE_H_
#define ZRCFG_TOOLS_ZRCFG_RAW_FILE_H_

#include <stddef.h>
#include <stdint.h>

namespace zrcfg_tool {

// A field of the file as dump shows it.
struct RawField {
  size_t offset;
  size_t size;       // Bytes of it that the file has.
  const char *name;  // Such as "header.rw" or "record 3.name".
  const char *text;  // Its value in words.
};

// Takes a file's bytes apart and calls `visit` for each field in the order of their offsets. A file
// that ends early yields the fields that it has.
void visit_raw_fields(const uint8_t *bytes, size_t size, void (*visit)(const RawField &, void *),
                      void *context);

// What is wrong with the file, in words; null when it is well formed.
const char *raw_file_damage(const uint8_t *bytes, size_t size);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_RAW_FILE_H_
