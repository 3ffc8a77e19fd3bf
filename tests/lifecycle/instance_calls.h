// The calls on instances in one table, for the rules that they share.
#ifndef ZRCFG_TESTS_LIFECYCLE_INSTANCE_CALLS_H_
#define ZRCFG_TESTS_LIFECYCLE_INSTANCE_CALLS_H_

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {

inline constexpr uint32_t kUnwritten = 0x5a5a5a5a;

// What a call handed out beside its result.
struct Outputs {
  uint32_t index = kUnwritten;  // Where the call has one; and the flag of an export.
  uint8_t flag = 0x5a;
  bool untouched() const { return index == kUnwritten && flag == 0x5a; }
};

// One call on instance 2 of the dynamic table, or of the fixed one. Creations create it, deletions
// delete it.
struct InstanceCall {
  const char *name;
  bool creates;
  bool fixed;    // Works on the fixed table.
  bool exports;  // Takes the URL of the instance.
  // `url` is that of the table (null stands for null).
  uint32_t (*run)(const char *url, int index, int timeout, Outputs &outputs);
  // The text of the first line before and behind the URL; with `index` behind.
  const char *url_line;
  const char *lock;  // The lock file.
};

inline void PrintTo(const InstanceCall &call, std::ostream *out) {
  *out << call.name;
}

const std::vector<InstanceCall> &instance_calls();
std::vector<InstanceCall> dynamic_calls();
std::vector<InstanceCall> fixed_calls();

const char *table_url(const InstanceCall &call);
std::string table_dir(const InstanceCall &call);
// The lines that a call begins with for this table URL and index.
Lines opening_lines(const InstanceCall &call, const std::string &url, int index);
// Those that follow when the table was opened and its `rw` and key examined.
Lines rw_lines(const InstanceCall &call, unsigned rw);

Lines operator+(const Lines &left, const Lines &right);

// The dynamic table's counter update, as logged.
inline constexpr char kCounterLine[] = "obj_path=Gateway/ pnoe = TableNumberOfEntries\n";

// The fixture with instance 2 there for deletions, and not for creations.
class InstanceCallTest : public LifecycleTest, public ::testing::WithParamInterface<InstanceCall> {
 protected:
  void SetUp() override;
  uint32_t run(int timeout = 0);
  uint32_t run_on(const char *url, int timeout);
  // The tree after success.
  Tree done() const;

  Outputs outputs_;
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_LIFECYCLE_INSTANCE_CALLS_H_
