// The libc calls of the reader, failing when told to; the linker puts them in the place of the
// real.
#ifndef ZRCFG_TESTS_PLATFORM_UCI_FAILING_CALLS_H_
#define ZRCFG_TESTS_PLATFORM_UCI_FAILING_CALLS_H_

#include <cstddef>

namespace zrcfg_test {

// What is to go wrong; all of it off by default.
struct CallFaults {
  int failing_allocation = 0;  // The number, from 1, of the allocation that fails.
  int open_errno = 0;          // Of the next `opens` opens.
  int opens = 0;
  bool fstat_fails = false;
  long told_size = -1;  // What fstat tells instead of the file's size.
  int read_errno = 0;   // Of the next `reads` reads.
  int reads = 0;
  size_t read_limit = 0;  // The most bytes that a read gives, unless 0.
};

// From here on; counting begins anew.
void set_call_faults(const CallFaults &faults);
void clear_call_faults();

int allocations_made();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_PLATFORM_UCI_FAILING_CALLS_H_
