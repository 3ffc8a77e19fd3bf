// The calls on several values as one table, for the rules that all of them follow.
#ifndef ZRCFG_TESTS_VALUES_BULK_CALLS_H_
#define ZRCFG_TESTS_VALUES_BULK_CALLS_H_

#include <ostream>
#include <string>
#include <vector>

namespace zrcfg_test {

// A call's result, and whether it left every output of the caller's alone.
struct BulkOutcome {
  int result;
  bool untouched;
};

// One call made with everything it needs on parameter A of an object: a read expects nothing, a
// write sets "written", a roll-back puts "written" back, a check asks for "written".
struct BulkCall {
  const char *name;
  bool writes;
  BulkOutcome (*run)(const char *url, int timeout);
  const char *null_text;
  // What is logged of the URL, "URL" standing for it; empty where it is not said.
  const char *url_line;
  // Result for a value section without a line.
  int empty_section;
};

inline constexpr char kWritten[] = "written";

void PrintTo(const BulkCall &call, std::ostream *out);
const std::vector<BulkCall> &bulk_calls();
std::vector<BulkCall> writing_calls();
std::vector<BulkCall> reading_calls();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_VALUES_BULK_CALLS_H_
