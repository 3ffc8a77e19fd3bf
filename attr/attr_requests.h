// The work steps of the attribute calls on several parameters.
#ifndef ZRCFG_ATTR_ATTR_REQUESTS_H_
#define ZRCFG_ATTR_ATTR_REQUESTS_H_

#include <stdint.h>

#include "zrcfg.h"

// Null pointers, and a null `pAttr` in a node whose mode needs one, give 10 before anything is
// done; more than 1001 nodes give 14 behind the first 1001.
extern "C" {
// Fills the nodes as the mode says. 0, 10, 14.
uint32_t outputToMultiParamAttrList(ZrcfgObject *image, MultiAttrNode *list, int mode);

// Changes and writes the records of the nodes. 0, 8 file missing or not to be opened, 10, 14.
uint32_t modiMultiParamAttr(ZrcfgObject *image, MultiAttrNode *list, int mode, int timeout);

// Applies a change to all records and writes them. 0, 8, 10.
uint32_t setAllParamAttr(ZrcfgObject *image, const ParamAttrChange *change, int timeout);

// Builds the list of all visible parameters' attributes. 0; 1 object hidden; 10 null `url` or
// `image`; 15 no memory. `head` and `tail` may be null and are written on success only.
uint32_t constructParamAttrList(const char *url, ZrcfgObject *image, ParamAttrNode **head,
                                ParamAttrNode **tail);
}

namespace zrcfg {

// Whether one of the nodes that would be served has no buffer.
bool any_without_buffer(MultiAttrNode *list);

}  // namespace zrcfg

#endif  // ZRCFG_ATTR_ATTR_REQUESTS_H_
