// The attributes of a parameter: from its record, from text, from the caller's record.
#ifndef ZRCFG_ATTR_PARAM_ATTR_H_
#define ZRCFG_ATTR_PARAM_ATTR_H_

#include <stdint.h>

#include "core/property_file.h"
#include "zrcfg.h"

// Sets one attribute of a 124-byte record in memory from text. 0, or 10 for null.
extern "C" uint32_t setParamAttrCommonFunc(void *record, int attrId, const char *text);

namespace zrcfg {

// Which fields a ParamAttr gives to a record. The two writers differ, and callers rely on it.
enum class AttrScope {
  kSingleUpdate,  // Not device_type and area.
  kMultiUpdate,   // Not param_check.
};

// Fills everything but the reserved byte.
void read_attributes(const ParamRecord &record, ParamAttr &attr);
// The same, with a log line for each field.
void read_and_trace(const ParamRecord &record, ParamAttr &attr);
void write_attributes(ParamRecord &record, const ParamAttr &attr, AttrScope scope);

}  // namespace zrcfg

#endif  // ZRCFG_ATTR_PARAM_ATTR_H_
