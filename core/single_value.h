// Reading and writing the value of one parameter by its name.
#ifndef ZRCFG_CORE_SINGLE_VALUE_H_
#define ZRCFG_CORE_SINGLE_VALUE_H_

#include <stdint.h>

#include "core/object_image.h"
#include "zrcfg.h"

// The work steps of the exported single-value calls, on an image from createObjByPath. Each reads
// the value section afresh. A null pointer other than `changed` gives 10.
extern "C" {
// 0, also when there is no such parameter (`value` is then untouched); 7 file not readable; 10
// malformed file or fewer lines than records. `value` holds 256 bytes.
uint32_t getSingleParamValueByParamName(ZrcfgObject *image, const char *name, char *value);

// 0 written or equal; 5 no such parameter; 7 file not readable or writable, or a line feed in
// `value`; 10 no record, no line, malformed file, or a file of more than 255 records; 15 no memory
// or no room, or a value of 256 characters or more.
uint32_t setSingleParamValueByParamName(ZrcfgObject *image, const char *name, const char *value,
                                        uint8_t *changed);

// The same; `oldValue` receives the stored line, at most 255 characters, zero-padded to 255.
uint32_t set_single_param_value_by_param_name(ZrcfgObject *image, const char *name,
                                              const char *value, uint8_t *changed, char *oldValue);
}

namespace zrcfg {

// What a single write is to store, and where it reports.
struct ValueWrite {
  const char *name;
  const char *value;
  uint8_t *changed;  // May be null.
  char *old_value;   // May be null.
};

// The same two steps on an object that was just read.
uint32_t read_value(OpenObject &object, const char *name, char *value);
uint32_t write_value(OpenObject &object, const ValueWrite &write);

// What no writer may store: 15 for a value of 256 characters or more, 7 for one with a line feed.
uint32_t check_storable(const ValueWrite &write);

// The rule of every single write: logs and returns false for a value of 256 characters or more,
// which is then ignored.
bool value_length_ok(const char *name, const char *value);

}  // namespace zrcfg

#endif  // ZRCFG_CORE_SINGLE_VALUE_H_
