// The URL of one instance, split into table and number.
#ifndef ZRCFG_LIFECYCLE_INSTANCE_URL_H_
#define ZRCFG_LIFECYCLE_INSTANCE_URL_H_

#include <stddef.h>

// Splits an instance URL, with or without a final dot: `objUrlOut` (256 bytes) receives the table's
// URL with its final dot, `*pIndex` the number. 0, or -1 with both untouched: null or empty URL, no
// number behind the last dot or one that begins with 0, table URL of 256 characters or more.
extern "C" int exportGetObjUrlAndIndex(const char *url, char *objUrlOut, int *pIndex);

namespace zrcfg {

struct InstanceUrl {
  size_t table_length;  // Characters of the URL that are the table's.
  int index;
};

// The same without the bound. Logs the URL; false when it is none of an instance.
bool split_instance_url(const char *url, InstanceUrl &split);

}  // namespace zrcfg

#endif  // ZRCFG_LIFECYCLE_INSTANCE_URL_H_
