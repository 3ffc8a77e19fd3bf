// The value table: all values of an object in slots of 256 bytes, on which the bulk calls work.
#ifndef ZRCFG_VALUES_VALUE_TABLE_H_
#define ZRCFG_VALUES_VALUE_TABLE_H_

#include <stdint.h>
#include <string.h>

#include "core/object_image.h"
#include "zrcfg.h"

// Both read the property file of the image afresh. Null pointers give 10.
extern "C" {
// Allocates the table of the image's values, `param_num` slots, in `*pValue`; freed by the caller.
// 0; 7 file not readable, or no value in it; 10 malformed file; 15 no memory.
int constructParamValues(ZrcfgObject *image, char **pValue);

// Rewrites the value section from the table: a line for every slot. 0; 7 file not readable or
// writable, or a line feed in a slot; 10 malformed file, or one of more than 255 records; 15 no
// memory.
int setParamValuesToMem(ZrcfgObject *image, char *pValue);
}

namespace zrcfg {

// Copies a value between a slot and a caller's buffer, both of 256 bytes: at most 255 characters,
// and the terminator.
inline void copy_slot(char *out, const char *value) {
  const size_t length = strnlen(value, kMaxValueLength);
  memcpy(out, value, length);
  out[length] = '\0';
}

// The same two steps on an object that was just read.
uint32_t build_value_table(OpenObject &object, char **table);
uint32_t store_value_table(OpenObject &object, const char *table);

}  // namespace zrcfg

#endif  // ZRCFG_VALUES_VALUE_TABLE_H_
