// Every exported call that changes the store, with one use of it, and the store that it is used on.
#ifndef ZRCFG_TESTS_CRASH_CHANGING_CALLS_H_
#define ZRCFG_TESTS_CRASH_CHANGING_CALLS_H_

#include <stdint.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {

// Calls of one group leave the same states behind; docs/crash.md names them like this.
namespace group {
inline constexpr char kValues[] = "set values";  // The section becomes shorter.
inline constexpr char kLongerValues[] = "set longer values";
inline constexpr char kAttributes[] = "set attributes";
inline constexpr char kListedAttributes[] = "set attributes of a list";
inline constexpr char kObjectAttribute[] = "set an attribute of an object";
inline constexpr char kCounter[] = "step a counter";
inline constexpr char kAdd[] = "add an instance";
inline constexpr char kAddStatic[] = "add a static instance";
inline constexpr char kDelete[] = "delete an instance";
inline constexpr char kDeleteStatic[] = "delete a static instance";
inline constexpr char kReplace[] = "replace an instance";
inline constexpr char kTree[] = "copy or remove files and directories";
inline constexpr char kEntry[] = "make or remove one entry";
}  // namespace group

struct ChangingCall {
  const char *name;      // As exported; "of" something where one call is in two groups.
  const char *group;     // Of namespace group.
  std::string file;      // The property file that it changes in place, or "".
  std::string instance;  // The directory that it makes or removes, or "".
  long long write_at;    // Where in the file its write begins.
  const char *counter;   // What the counter of the dynamic table stands at before.
  uint32_t (*run)();     // 0 after success.
};

inline bool sets_attributes(const ChangingCall &call) {
  return call.group == group::kAttributes || call.group == group::kListedAttributes;
}

void PrintTo(const ChangingCall &call, std::ostream *out);

const std::vector<ChangingCall> &changing_calls();
// One call of each group: the others make the same changes.
std::vector<ChangingCall> one_call_a_group();

// A text as the name of a test case.
std::string case_name(std::string text);

// An object whose records and whose values span several pages.
inline constexpr char kBigDir[] = "Gateway/Big/";
inline constexpr char kBigUrl[] = "Gateway.Big.";
inline constexpr unsigned kBigParams = 140;
inline constexpr size_t kPage = 4096;
inline constexpr size_t kBigSection = 4 + kHeadBytes + kBigParams * kParamBytes;
// The parameter whose access list lies across a page border.
inline constexpr unsigned kBorderParam = 130;
inline constexpr size_t kBorderRecord = 4 + kHeadBytes + kBorderParam * kParamBytes;
static_assert((kBorderRecord + 72) / kPage != (kBorderRecord + 87) / kPage);
std::string big_name(unsigned position);
PropertyFile big_file();

// The gateway with its tables and with the big object; the template's file is as big.
class CrashTest : public LifecycleTest {
 protected:
  void SetUp() override;
  // The same again, with another count of instances.
  void set_up(const std::string &counter);
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_CRASH_CHANGING_CALLS_H_
