// The power failing in every kind of change: what may be left is what docs/crash.md says.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "tests/crash/crash_document.h"
#include "tests/crash/interruption.h"
#include "tests/crash/power_loss.h"
#include "tests/crash/state_checks.h"

namespace zrcfg_test {
namespace {

class PowerLossTest : public CrashTest, public ::testing::WithParamInterface<ChangingCall> {
 protected:
  std::vector<Tree> stages() {
    std::vector<Tree> all = stages_of(GetParam(), [this] { set_up(GetParam().counter); });
    all.insert(all.begin(), tree_);
    return all;
  }
};

std::set<std::string> documented_states(const std::string &group) {
  std::set<std::string> states;
  for (const auto &row : document_table("A power failure")) {
    for (size_t begin = 0; row[0] == group && begin < row[1].size();) {
      const size_t end = std::min(row[1].find(", ", begin), row[1].size());
      states.insert(row[1].substr(begin, end - begin));
      begin = end + 2;
    }
  }
  return states;
}

TEST_P(PowerLossTest, LeavesWhatTheDocumentSaysAndIsMendedAsItSays) {
  const std::vector<Tree> all = stages();
  const Tree &before = all.front();
  const Tree &after = all.back();
  // The first and the last tree of each state; many others differ from them in some bytes only.
  std::map<std::string, std::pair<Tree, Tree>> found;
  for (const Tree &loss : possible_losses(GetParam(), all)) {
    const std::string state = state_of(GetParam(), before, after, loss);
    found.emplace(state, std::make_pair(loss, loss)).first->second.second = loss;
  }
  std::set<std::string> states;
  for (const auto &[state, trees] : found) {
    SCOPED_TRACE(state);
    states.insert(state);
    for (const Tree &tree : {trees.first, trees.second}) {
      write_tree(tree);
      expect_readers_see(GetParam(), state, before, after);
      expect_others_unhurt();
      write_tree(tree);
      expect_mended(GetParam(), state, documented_mender(state), after);
    }
  }
  EXPECT_EQ(states, documented_states(GetParam().group));
}

INSTANTIATE_TEST_SUITE_P(Groups, PowerLossTest, ::testing::ValuesIn(one_call_a_group()),
                         [](const auto &row) { return case_name(row.param.group); });

}  // namespace
}  // namespace zrcfg_test
