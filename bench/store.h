// The small interface behind which every store is measured.
#ifndef ZRCFG_BENCH_STORE_H_
#define ZRCFG_BENCH_STORE_H_

#include <stdint.h>

#include "bench/tree.h"
#include "zrcfg.h"

namespace bench {

// Receives one object or parameter of a listing, or one parameter with its value.
using Visit = void (*)(void *context, const char *name, unsigned rw, const char *value);

// Every call returns whether it succeeded. Values are at most 255 characters, buffers 256 bytes.
// Request lists are those of the library, so that no store pays for another one's form.
struct Store {
  const char *name;
  // Fills the store from the tree; once, before anything else. `dir` is an empty directory.
  bool (*create)(const Tree &tree, const char *dir);
  // Makes the store usable in this process, and ends that.
  bool (*open)();
  void (*close)();

  bool (*read)(const char *url, const char *name, char *value);
  bool (*write)(const char *url, const char *name, const char *value);
  bool (*read_many)(const char *url, ParamValueEntry *list);
  bool (*write_many)(const char *url, ParamValueEntry *list);
  bool (*list_values)(const char *url, Visit visit, void *context);
  bool (*enumerate)(const char *url, Visit visit, void *context);
  // Adds the instance with the lowest free number as a copy of the template, all below it
  // included, and counts it in the parent; removes it again.
  bool (*add)(const char *table, uint32_t *index);
  bool (*remove)(const char *table, uint32_t index);
};

extern const Store kZrcfgStore;
extern const Store kFloorStore;
extern const Store kFloorMergedStore;
extern const Store kSqliteWalStore;
extern const Store kSqliteJournalStore;
extern const Store kTdbStore;
extern const Store kLmdbStore;
extern const Store kJsonStore;

}  // namespace bench

#endif  // ZRCFG_BENCH_STORE_H_
