// Every changing call killed in front of, in the middle of and behind each of its changes.
#include <gtest/gtest.h>

#include <map>

#include "tests/crash/crash_document.h"
#include "tests/crash/interruption.h"
#include "tests/crash/power_loss.h"
#include "tests/crash/state_checks.h"

namespace zrcfg_test {
namespace {

class KilledTest : public CrashTest, public ::testing::WithParamInterface<ChangingCall> {
 protected:
  void start() {
    set_up(GetParam().counter);
    before_ = tree_;
  }
  std::string state(const Tree &found) const {
    return state_of(GetParam(), before_, after_, found);
  }
  // Moments and states, and for each state the store that it was found in.
  struct Findings {
    MomentStates moments;
    std::map<std::string, Tree> states;
    void add(const std::string &moment, const std::string &state, const Tree &tree) {
      moments.emplace(moment, state);
      states.emplace(state, tree);
    }
  };
  Findings find() {
    Findings found;
    const std::vector<Tree> stages = stages_of(GetParam(), [this] { start(); });
    after_ = stages.back();
    Moments moments(GetParam(), before_);
    for (size_t i = 0; i + 1 < stages.size(); ++i) {
      // A refused removal or making changes nothing: it is part of the moment that follows.
      if (stages[i] != stages[i + 1]) {
        found.add(moments.name(stages[i], stages[i + 1]), state(stages[i]), stages[i]);
      }
    }
    found.add(kMomentLater, state(after_), after_);
    for (const size_t bytes : page_borders_within(GetParam(), before_, after_)) {
      start();
      EXPECT_TRUE(run_and_kill(GetParam(), {kill_within(Call::kWrite, 1, bytes)}));
      const Tree torn = tree_without_slots();
      found.add(kMomentWithin, state(torn), torn);
    }
    return found;
  }

  Tree before_;
  Tree after_;
};

TEST_P(KilledTest, LeavesWhatTheDocumentSaysAndIsMendedAsItSays) {
  const Findings found = find();
  EXPECT_EQ(found.moments, documented_moments(GetParam().group));
  for (const auto &[state, tree] : found.states) {
    SCOPED_TRACE(state);
    write_tree(tree);
    expect_readers_see(GetParam(), state, before_, after_);
    expect_others_unhurt();
    write_tree(tree);
    expect_mended(GetParam(), state, documented_mender(state), after_);
    if (HasFailure()) {
      return;
    }
  }
}

class KilledWithinWriteTest : public KilledTest {};

// Some bytes of any write, whatever the kernel would do: never anything but the known states.
TEST_P(KilledWithinWriteTest, LeavesKnownStates) {
  constexpr unsigned kMostWrites = 100;
  constexpr size_t kSomeBytes = 40;
  start();
  (void)run_and_kill(GetParam(), {});
  after_ = tree_without_slots();
  bool killed = true;
  for (unsigned nth = 1; killed && nth < kMostWrites; ++nth) {
    start();
    killed = run_and_kill(GetParam(), {kill_within(Call::kWrite, nth, kSomeBytes)});
    EXPECT_NE(state(tree_without_slots()), kUnknownState) << nth;
  }
  EXPECT_FALSE(killed);
}

INSTANTIATE_TEST_SUITE_P(Calls, KilledTest, ::testing::ValuesIn(changing_calls()),
                         [](const auto &row) { return case_name(row.param.name); });
INSTANTIATE_TEST_SUITE_P(Groups, KilledWithinWriteTest, ::testing::ValuesIn(one_call_a_group()),
                         [](const auto &row) { return case_name(row.param.group); });

}  // namespace
}  // namespace zrcfg_test
