// The single write with the value checked first.
#ifndef ZRCFG_VALUES_CHECKED_SINGLE_VALUE_H_
#define ZRCFG_VALUES_CHECKED_SINGLE_VALUE_H_

#include "zrcfg.h"

// The work step of zrcfg_setsingleparamval_ext_get_old_value_check, on an image from
// createObjByPath. 7 value refused or no such parameter, before the file is opened and with
// `*changed` untouched; else as set_single_param_value_by_param_name.
extern "C" int set_single_param_value_by_param_name_check(ZrcfgObject *image, const char *paramName,
                                                          const char *value, char *changed,
                                                          char *oldValue);

#endif  // ZRCFG_VALUES_CHECKED_SINGLE_VALUE_H_
