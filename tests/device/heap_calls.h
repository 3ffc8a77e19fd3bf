// The calls whose heap is measured, one of each kind, and the store that they work on.
#ifndef ZRCFG_TESTS_DEVICE_HEAP_CALLS_H_
#define ZRCFG_TESTS_DEVICE_HEAP_CALLS_H_

#include <vector>

namespace zrcfg_test {

struct HeapCall {
  const char *name;
  long long (*run)();  // 0 when the call did what it should.
};

// An object of 255 parameters with values of 255 characters, tables of such objects, and filters.
void make_full_store();

// Frees what the last call handed out.
void release_results();

const std::vector<HeapCall> &heap_calls();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_DEVICE_HEAP_CALLS_H_
