// The parent's counter of a table's instances.
#ifndef ZRCFG_LIFECYCLE_ENTRY_COUNTER_H_
#define ZRCFG_LIFECYCLE_ENTRY_COUNTER_H_

#include <stdint.h>

// Adds one to the counter, or with `isDel` takes one from it (0 stays 0). `objPath` is the table's
// directory path; the counter's parameter name is what follows the last "/" of `pnoe`. Takes the
// parent's exclusive lock. 0; 1 path too long; 10 null; 13 empty path; 5 no such parameter; others
// from createObjByPath and the value write.
extern "C" uint32_t modifyParentNodeNumOfEntry(const char *objPath, const char *pnoe, int isDel,
                                               int timeout);

#endif  // ZRCFG_LIFECYCLE_ENTRY_COUNTER_H_
