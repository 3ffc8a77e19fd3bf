// All parameters of an object, hidden ones included, read through its image.
#ifndef ZRCFG_TOOLS_ZRCFG_OBJECT_READER_H_
#define ZRCFG_TOOLS_ZRCFG_OBJECT_READER_H_

#include <stdint.h>

#include "zrcfg.h"

namespace zrcfg_tool {

inline constexpr int kMaxParameters = 255;

struct ParameterRow {
  char name[ZRCFG_NAME_SIZE];
  uint8_t key;
  char value[ZRCFG_VALUE_SIZE];
};

// An object's parameters in file order.
struct ObjectRows {
  int count = 0;
  ParameterRow rows[kMaxParameters];

  // The row of that name; null for none.
  const ParameterRow *find(const char *name) const;
};

enum class RowContent { kNames, kValues };

// Reads an object under its shared lock; with kNames the values stay undefined. A result code of
// the library.
uint32_t read_object_rows(const char *url, int timeout, RowContent content, ObjectRows &object);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_OBJECT_READER_H_
