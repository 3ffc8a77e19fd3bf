// Whether a store holds what it should, value by value, before anything is timed.
#ifndef ZRCFG_BENCH_VERIFY_H_
#define ZRCFG_BENCH_VERIFY_H_

#include "bench/store.h"
#include "bench/tree.h"

namespace bench {

// Compares every value and listing with the tree, then writes, adds and removes and compares
// again; the store ends as it began. Throws a text that names the store and the place.
void verify_store(const Store &store, const Tree &tree);

// Compares every value with the tree.
void verify_values(const Store &store, const Tree &tree);

}  // namespace bench

#endif  // ZRCFG_BENCH_VERIFY_H_
