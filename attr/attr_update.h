// The work steps of the updates of one parameter's attributes.
#ifndef ZRCFG_ATTR_ATTR_UPDATE_H_
#define ZRCFG_ATTR_ATTR_UPDATE_H_

#include <stdint.h>

#include "attr/param_attr.h"
#include "core/property_file.h"
#include "zrcfg.h"

// Change the record of the first parameter of that name, in the image and in its property file. 0;
// 8 file missing, locked by another or not to be opened; 9 lock not obtained; 10 null; 12 no such
// parameter.
extern "C" {
uint32_t setSingleParamAttrByParamName(ZrcfgObject *image, const char *name, const void *input,
                                       int mode);
uint32_t setSingleParamAttrByParamName_ext(ZrcfgObject *image, const char *name, int attrId,
                                           const char *text);
}

namespace zrcfg {

// What a mode's input does to a record. ZRCFG_ATTR_SET_CHANGE is a mode of the single update only.
void apply_mode(ParamRecord &record, const void *input, int mode, AttrScope scope);

// Applies a change request. Whether there was anything to change.
bool apply_change(ParamRecord &record, const ParamAttrChange &change);

}  // namespace zrcfg

#endif  // ZRCFG_ATTR_ATTR_UPDATE_H_
