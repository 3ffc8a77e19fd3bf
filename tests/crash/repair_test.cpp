// `zrcfg check` on every stage of an interrupted change: what it reports, and what --repair leaves.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <filesystem>
#include <map>

#include "tests/crash/crash_document.h"
#include "tests/crash/interruption.h"
#include "tests/crash/power_loss.h"

namespace zrcfg_test {
namespace {

namespace fs = std::filesystem;

constexpr int kClean = 0;
constexpr int kProblems = 1;
constexpr int kRepaired = 3;
constexpr char kInstances[] = "2";

// The result of `zrcfg check`; its output is in the test's.
int check(const char *option) {
  const std::string command = std::string(ZRCFG_TOOL_COMMAND) + " check " + option;
  const int status = system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class RepairTest : public CrashTest, public ::testing::WithParamInterface<ChangingCall> {
 protected:
  // A store in which nothing is to be found: all instances are copies of the template.
  void start() {
    set_up(kInstances);
    for (const char *stray : {"blocks", "nothing", "Sub/Bare"}) {
      fs::remove_all(std::string("/var/Gateway/Table/0/") + stray);
    }
    for (const char *number : {"1", "3"}) {
      const fs::path instance = fs::path("/var/Gateway/Table") / number;
      fs::remove_all(instance);
      fs::copy("/var/Gateway/Table/0", instance, fs::copy_options::recursive);
    }
    remember();
    before_ = tree_;
  }
  std::string state(const Tree &tree) const { return state_of(GetParam(), before_, after_, tree); }

  // Puts a stage of the change into the store, and repairs it.
  void expect_repaired(const Tree &tree) {
    const std::string found = state(tree);
    SCOPED_TRACE(found);
    write_tree(tree);
    const bool clean = found == "old" || found == "new";
    EXPECT_EQ(check(""), clean ? kClean : kProblems);
    EXPECT_EQ(tree_without_slots(), tree) << "a check changes nothing";
    const bool left = documented_mender(found) == "delete the instance once more";
    EXPECT_EQ(check("--repair"), clean ? kClean : left ? kProblems : kRepaired);
    if (left) {
      EXPECT_EQ(GetParam().run(), 0u);
    }
    // A part is removed, everything else is completed.
    EXPECT_EQ(tree_without_slots(), found == "part" || found == "old" ? before_ : after_);
    EXPECT_EQ(check(""), kClean);
  }

  Tree before_;
  Tree after_;
};

TEST_P(RepairTest, LeavesAStoreInWhichNothingIsToBeFound) {
  const std::vector<Tree> stages = stages_of(GetParam(), [this] { start(); });
  after_ = stages.back();
  for (size_t i = 0; i < stages.size() && !HasFailure(); ++i) {
    expect_repaired(stages[i]);
  }
}

// The same for some of the stores that a power failure leaves.
TEST_P(RepairTest, CountsOrRemovesWhatAPowerFailureLeft) {
  constexpr size_t kMostTrees = 12;
  std::vector<Tree> stages = stages_of(GetParam(), [this] { start(); });
  after_ = stages.back();
  std::map<std::string, std::vector<Tree>> losses;
  for (const Tree &tree : possible_losses(GetParam(), stages)) {
    const std::string found = state(tree);
    if (found == "part" || found == "uncounted" || found == "overcounted") {
      losses[found].push_back(tree);
    }
  }
  for (const auto &[found, trees] : losses) {
    SCOPED_TRACE(found);
    for (size_t i = 0; i < trees.size() && !HasFailure(); i += trees.size() / kMostTrees + 1) {
      write_tree(trees[i]);
      EXPECT_EQ(check(""), kProblems);
      EXPECT_EQ(check("--repair"), kRepaired);
      EXPECT_EQ(check(""), kClean);
      const Tree repaired = tree_without_slots();
      EXPECT_TRUE(repaired == before_ || repaired == after_);
    }
  }
  EXPECT_EQ(losses.size(), GetParam().group == group::kValues ? 0u : 3u);
}

std::vector<ChangingCall> repairable_calls() {
  std::vector<ChangingCall> calls;
  for (const ChangingCall &call : one_call_a_group()) {
    for (const char *wanted : {group::kValues, group::kAdd, group::kDelete}) {
      if (call.group == wanted) {
        calls.push_back(call);
      }
    }
  }
  return calls;
}

INSTANTIATE_TEST_SUITE_P(Groups, RepairTest, ::testing::ValuesIn(repairable_calls()),
                         [](const auto &row) { return case_name(row.param.group); });

}  // namespace
}  // namespace zrcfg_test
