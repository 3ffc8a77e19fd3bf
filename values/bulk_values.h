// The work steps of the bulk calls: what a request list does to a value table.
#ifndef ZRCFG_VALUES_BULK_VALUES_H_
#define ZRCFG_VALUES_BULK_VALUES_H_

#include <stdint.h>

#include "core/object_image.h"
#include "zrcfg.h"

// Each works on an image and the value table made from it. A null pointer, and a null `value` in a
// node that needs one, gives 10 before anything is done; more than 1001 nodes give 14 behind the
// first 1001; a line feed in a value to be set gives 7 before anything is done.
extern "C" {
// Copies slots into the nodes' buffers. 0, 10, 14.
int outputToMultiParamValueList(ZrcfgObject *image, char *pValue, ParamValueEntry *list);

// Sets slots from the nodes and fills the nodes' results. 0, 7, 10, 14.
int modiMultiParamValues(ZrcfgObject *image, char *pValue, ParamValueEntry *list);

// Puts the old values of failed nodes back; `*restored` is set to 1 when there was one. 0, 7, 10,
// 14.
int modi_multi_param_values_ext(ZrcfgObject *image, char *pValue, ParamValueEntry *list,
                                unsigned char *restored);

// Checks all values, then does what modiMultiParamValues does. 0, 5 unknown name, 7 value refused,
// 10, 14.
int modi_multi_param_values_check(ZrcfgObject *image, char *pValue, ParamValueEntry *list);
}

namespace zrcfg {

// The same steps on a list that has passed check_requests.
uint32_t output_values(ObjectImage &image, const char *table, ParamValueEntry *list);
uint32_t apply_values(ObjectImage &image, char *table, ParamValueEntry *list);
uint32_t restore_values(ObjectImage &image, char *table, ParamValueEntry *list, bool &restored);
uint32_t apply_checked_values(ObjectImage &image, char *table, ParamValueEntry *list);

// Copies a record's attributes into the node that has set its value, and logs them.
void report_attributes(const ParamRecord &record, ParamValueEntry &node);

}  // namespace zrcfg

#endif  // ZRCFG_VALUES_BULK_VALUES_H_
