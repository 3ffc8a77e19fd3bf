// The attribute calls as one table, for the rules that all of them follow.
#ifndef ZRCFG_TESTS_ATTR_ATTR_CALLS_H_
#define ZRCFG_TESTS_ATTR_ATTR_CALLS_H_

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace zrcfg_test {

// A call's result, and whether it left every output of the caller's alone.
struct AttrOutcome {
  uint32_t result;
  bool untouched;
};

enum class CallLock { kShared, kExclusive };

// One call made with everything it needs on parameter A of an object: a query asks for all, a
// writer sets `noti` of A, or `level3` of the object, to 9.
struct AttrCall {
  const char *name;
  bool writes;
  CallLock lock;
  bool of_object;  // Serves objects without records.
  AttrOutcome (*run)(const char *url, int timeout);
  // Logged of the URL, "URL" standing for it; empty where nothing is promised.
  const char *url_line;
  uint32_t without_records;  // The result for an object without parameters.
};

void PrintTo(const AttrCall &call, std::ostream *out);
const std::vector<AttrCall> &attr_calls();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_ATTR_ATTR_CALLS_H_
