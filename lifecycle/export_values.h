// The work steps of the exports of values.
#ifndef ZRCFG_LIFECYCLE_EXPORT_VALUES_H_
#define ZRCFG_LIFECYCLE_EXPORT_VALUES_H_

#include <stdint.h>

#include "zrcfg.h"

extern "C" {
// Sets one value on an image when `mode` selects it; `*pWriteFlag` (may be null) tells whether. 0,
// also for an unknown name; 10 null; others from setSingleParamValueByParamName.
uint32_t export_SetParamVal(ZrcfgObject *image, const char *paramName, const char *value, int mode,
                            uint8_t *pWriteFlag);

// Sets the slots of the nodes that `mode` selects. 0; 7 a line feed in a value; 10 null; 14 list
// too long.
uint32_t export_modiMultiParamValues(ZrcfgObject *image, char *valueTable, ParamValueEntry *list,
                                     int mode);
}

#endif  // ZRCFG_LIFECYCLE_EXPORT_VALUES_H_
