// Runs a changing call in a process that is killed, and names the moments as docs/crash.md does.
#ifndef ZRCFG_TESTS_CRASH_INTERRUPTION_H_
#define ZRCFG_TESTS_CRASH_INTERRUPTION_H_

#include <functional>
#include <string>
#include <vector>

#include "tests/crash/changing_calls.h"
#include "tests/crash/crash_state.h"
#include "tests/support/libc_hooks.h"

namespace zrcfg_test {

// Runs the call in a child under the faults. Whether the child was killed; a child that ends by
// itself must have succeeded.
bool run_and_kill(const ChangingCall &call, const std::vector<Fault> &faults);

// The store in front of each of the call's changes, and at its end. `set_up` makes the store anew.
std::vector<Tree> stages_of(const ChangingCall &call, const std::function<void()> &set_up);

// What happened from one stage to the next, as docs/crash.md calls the moment in front of it.
class Moments {
 public:
  Moments(const ChangingCall &call, const Tree &first) : call_(call), first_(first) {}
  // To be asked stage by stage.
  std::string name(const Tree &before, const Tree &after);

 private:
  std::string of_counter(const std::string &before, const std::string &after);

  const ChangingCall &call_;
  const Tree &first_;
  unsigned counter_writes_ = 0;
};

inline constexpr char kMomentWithin[] = "in the middle of a write of more than one page";
inline constexpr char kMomentLater[] = "later";
// How much of a writing call's bytes lies in front of the first and the last page border that it
// crosses.
std::vector<size_t> page_borders_within(const ChangingCall &call, const Tree &before,
                                        const Tree &after);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_CRASH_INTERRUPTION_H_
