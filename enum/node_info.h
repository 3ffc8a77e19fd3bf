// Objects and parameters with their access rights.
#ifndef ZRCFG_ENUM_NODE_INFO_H_
#define ZRCFG_ENUM_NODE_INFO_H_

#include <stdint.h>

#include "zrcfg.h"

extern "C" {
// Lists the image's object and its visible parameters. 0; 1 object hidden; 10 null `objUrl` or
// `image`; 15 no memory. `ppHead` and `ppTail` may be null and are written on success only.
uint32_t constructNodeInfoList(const char *objUrl, ZrcfgObject *image, NODE_INFO **ppHead,
                               NODE_INFO **ppTail);

// Appends the object of a URL and all below it to the list between `*ppHead` and `*ppTail`. Null
// pointers do nothing. A list whose tail is not its end is freed, and `*ppHead` set to null.
void list_all_node_info(const char *objUrl, NODE_INFO **ppHead, NODE_INFO **ppTail, int timeout);
}

#endif  // ZRCFG_ENUM_NODE_INFO_H_
