// The calls that are put under faults, run on one known store, and what may be seen afterwards.
#ifndef ZRCFG_TESTS_FAULTS_FAULT_OPERATIONS_H_
#define ZRCFG_TESTS_FAULTS_FAULT_OPERATIONS_H_

#include <stdint.h>

#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "tests/support/libc_hooks.h"

namespace zrcfg_test {

// What a call has left behind.
struct Outcome {
  uint32_t result = 0;
  std::string output;      // The output text, or kUntouched.
  int changed = -1;        // -1: not written.
  int lock_fd = -1;        // After a failure.
  bool image_kept = true;  // After a failure: the caller's image pointer is as before.
  unsigned hits = 0;       // Faults that were applied.
  std::string calls;       // For messages.
};

inline constexpr char kUntouched[] = "untouched";

struct Operation {
  const char *name;
  std::set<uint32_t> failures;      // The codes that it may fail with.
  std::set<uint32_t> memory_codes;  // Those for a failed allocation; empty: it allocates nothing.
  std::string expected_output;      // After success; kUntouched where there is none.
  bool raw_output_on_failure;       // The output may hold the text even when the call fails.
  bool has_changed_flag;
  std::string new_values;  // The value section after success.
  Outcome (*run)(const std::vector<Fault> &faults);
};

// For the names of test cases; without it the bytes are printed, the padding among them.
inline void PrintTo(const Operation &operation, std::ostream *out) {
  *out << operation.name;
}

const std::vector<Operation> &operations();

// The store: object A/B/3/ with three values, under the lock of A/B/0/.
inline constexpr char kObjectDir[] = "A/B/3/";
inline constexpr char kTemplateDir[] = "A/B/0/";
void write_fault_store();
std::string old_file_bytes();
std::string old_values();

// Checks everything that holds after any fault: code, values, outputs, lock, descriptors.
void expect_sound(const Operation &operation, const Outcome &outcome);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_FAULTS_FAULT_OPERATIONS_H_
