// The sub-objects of an object: its subdirectories in their fixed order.
#ifndef ZRCFG_ENUM_SUB_OBJECTS_H_
#define ZRCFG_ENUM_SUB_OBJECTS_H_

#include <dirent.h>
#include <stdint.h>

#include "zrcfg.h"

extern "C" {
// Whether the text consists of decimal digits only, which holds for the empty text: 1 or 0.
int is_digit(const char *text);

// The order of entries, for scandir: numbers by value, else names by byte.
int objsort(const struct dirent **a, const struct dirent **b);

// Frees the `n` entries of a scandir result and the array.
void free_nlist(struct dirent **list, int n);

// Lists the names of the subdirectories of a directory, without ".", ".." and the template "0". 0;
// 1 directory not readable; 10 null `dirPath`; 15 no memory. `ppList` may be null.
uint32_t constructObjList(const char *dirPath, SubObjName **ppList);
}

namespace zrcfg {

struct LockFile;

// zrcfg_getallsubobj. A descriptor that `lock` keeps saves the opening of the lock file.
uint32_t list_sub_object_names(const char *url, SubObjName **list, LockFile &lock);

}  // namespace zrcfg

#endif  // ZRCFG_ENUM_SUB_OBJECTS_H_
