// Every symbol of the committed list is used at least once, and none is missing from the tables.
#include "tests/package/every_call.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>

#include "tests/support/store_fixture.h"

namespace zrcfg_test {
namespace {

class EveryCallTest : public StoreTest, public ::testing::WithParamInterface<EveryCall> {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    write_every_call_store();
  }
};

TEST_P(EveryCallTest, IsThereAndWorks) {
  Things things;
  GetParam().use(things);
}

INSTANTIATE_TEST_SUITE_P(Symbols, EveryCallTest, ::testing::ValuesIn(every_call()),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(EverySymbolTest, TablesHoldTheCommittedListAndNothingElse) {
  std::ifstream list(ZRCFG_SYMBOL_LIST);
  std::vector<std::string> expected;
  for (std::string line; std::getline(list, line);) {
    expected.push_back(line);
  }
  ASSERT_GT(expected.size(), 100u) << ZRCFG_SYMBOL_LIST;
  std::vector<std::string> used;
  for (const EveryCall &call : every_call()) {
    used.emplace_back(call.name);
  }
  std::sort(expected.begin(), expected.end());
  std::sort(used.begin(), used.end());
  EXPECT_EQ(used, expected);
}

}  // namespace
}  // namespace zrcfg_test
