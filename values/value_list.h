// The list of all visible values of an object.
#ifndef ZRCFG_VALUES_VALUE_LIST_H_
#define ZRCFG_VALUES_VALUE_LIST_H_

#include "zrcfg.h"

// Builds the list from the image and its property file, read afresh. 0; 1 object hidden; 7 file not
// readable; 10 null `objUrl` or `image`, malformed file; 15 no memory, or fewer values than
// records. `head` and `tail` may be null and are written on success only.
extern "C" int constructParamValueList(const char *objUrl, ZrcfgObject *image,
                                       ParamValueListNode **head, ParamValueListNode **tail);

#endif  // ZRCFG_VALUES_VALUE_LIST_H_
