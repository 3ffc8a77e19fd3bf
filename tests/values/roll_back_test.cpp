// Tests of putting the old values of failed nodes back, as a call and as its step on a table.
#include <gmock/gmock.h>

#include <string>

#include "tests/values/values_support.h"
#include "values/bulk_values.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr char kNothingToRestore[] = "all error params are not changed.\n";
constexpr uint32_t kSomeFault = 9003;

std::vector<std::string> restored_log(const std::string &name, const std::string &old_value) {
  return {"param->name = " + name + " old_value = " + old_value + "\n", "value is changed.\n"};
}

class RollBackTest : public ValuesTest {
 protected:
  void SetUp() override {
    ValuesTest::SetUp();
    if (!HasFatalFailure()) {
      store_section("new\nnew\nnew\n");
    }
  }

  static int roll_back(Requests &requests, int timeout = 0) {
    clear_log();
    return zrcfg_setmultiparamval_ext(kUrl, requests.list(), timeout);
  }
};

TEST_F(RollBackTest, WriteThenFaultThenRollBackRestoresTheFailedNodesAlone) {
  store_section("one\n\r\nthree\n");
  Requests requests;
  requests.set("A", "1").set("B", "2").set("C", "3");
  ASSERT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  requests.fault(1) = kSomeFault;
  requests.fault(2) = 1;
  EXPECT_EQ(roll_back(requests), 0);
  expect_section("1\n\r\nthree\n");
  EXPECT_TRUE(requests.inputs_kept());
  EXPECT_EQ(requests.fault(1), kSomeFault);
  EXPECT_EQ(requests.node(1).changed, 1u);
  EXPECT_EQ(requests.old_value(2), "three");
}

TEST_F(RollBackTest, RollBackOfEveryNodeGivesTheOldFile) {
  store(numbered_file(40, 30));
  Requests requests;
  for (size_t i = 0; i < 40; ++i) {
    requests.set(numbered_name(39 - i), std::string(i * 6, 'n'));
  }
  ASSERT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  for (size_t i = 0; i < 40; ++i) {
    requests.fault(i) = kSomeFault;
  }
  EXPECT_EQ(roll_back(requests), 0);
  expect_same_bytes();
}

TEST_F(RollBackTest, LogTellsEachNode) {
  Requests requests;
  requests.filled("C", "three", 1, kSomeFault)
      .filled("A", "one", 1, kNoFault)
      .filled("None", "x", 1, kSomeFault)
      .filled("B", "two", 0, kSomeFault)
      .filled("A", "one", 1, kSomeFault);
  requests.node(4).fault = nullptr;
  EXPECT_EQ(roll_back(requests), 0);
  expect_section("new\nnew\nthree\n");
  EXPECT_THAT(value_log(), ElementsAreArray(joined({{"objUrl = Gateway.Device.\n"},
                                                    table_log({"new", "new", "new"}),
                                                    restored_log("C", "three"),
                                                    {"param(A) is not error.\n"},
                                                    {"param->name = B old_value = two\n"},
                                                    {"param(A) is not error.\n"}})));
}

TEST_F(RollBackTest, NothingToRestoreLeavesTheFile) {
  struct Row {
    const char *name;
    uint32_t changed;
    uint32_t fault;
  };
  const Row rows[] = {
      {"A", 1, kNoFault},     {"A", 0, kSomeFault},
      {"A", 2, kSomeFault},   {"A", 0x01000000, kSomeFault},
      {"A", ~0u, kSomeFault}, {"None", 1, kSomeFault},
      {"", 1, kSomeFault},
  };
  for (const Row &row : rows) {
    Requests requests;
    requests.filled(row.name, "old", row.changed, row.fault);
    EXPECT_EQ(roll_back(requests), 0);
    expect_untouched();
    EXPECT_EQ(value_log().back(), kNothingToRestore) << row.name << " " << row.changed;
  }
  Requests requests;
  requests.filled("A", "old", 1, kSomeFault);
  requests.node(0).fault = nullptr;
  EXPECT_EQ(roll_back(requests), 0);
  expect_untouched();
}

TEST_F(RollBackTest, EqualOldValueStillWritesTheFile) {
  Requests requests;
  requests.filled("A", "new", 1, kSomeFault);
  EXPECT_EQ(roll_back(requests), 0);
  expect_same_bytes();
  EXPECT_FALSE(is_aged(kFile));
}

TEST_F(RollBackTest, NodeWithAnOverlongValueIsSkipped) {
  Requests requests;
  requests.filled("A", "one", 1, kSomeFault);
  std::string overlong(256, 'x');
  requests.node(0).value = overlong.data();
  EXPECT_EQ(roll_back(requests), 0);
  expect_untouched();
  EXPECT_EQ(log_count("param(A) value lenth(256) is out of range, not set to mem!\n"), 1u);
  EXPECT_TRUE(log_contains(kNothingToRestore));
  overlong.pop_back();
  EXPECT_EQ(roll_back(requests), 0);
  expect_section("one\nnew\nnew\n");
}

TEST_F(RollBackTest, NodesOfOneNameAreServedInListOrder) {
  Requests requests;
  requests.filled("A", "first", 1, kSomeFault).filled("A", "second", 1, kSomeFault);
  EXPECT_EQ(roll_back(requests), 0);
  expect_section("second\nnew\nnew\n");
}

TEST_F(RollBackTest, OldValuesOf255CharactersComeBackWhole) {
  const std::string longest(255, 'x');
  store_section(longest + "\n" + longest + "\nthree\n");
  Requests requests;
  requests.set("A", "1").set("B", "2");
  ASSERT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  requests.fault(0) = requests.fault(1) = kSomeFault;
  EXPECT_EQ(roll_back(requests), 0);
  expect_same_bytes();
}

TEST_F(RollBackTest, OldValueWithoutTerminatorIsCutAt255) {
  Requests requests;
  requests.filled("B", std::string(256, 'u'), 1, kSomeFault);
  EXPECT_EQ(roll_back(requests), 0);
  expect_section("new\n" + std::string(255, 'u') + "\nnew\n");
}

TEST_F(RollBackTest, LineFeedIsSoughtInTheOldValueAndRefusedWith7) {
  Requests requests;
  requests.filled("A", "one", 1, kSomeFault).filled("B", "t\no", 1, kSomeFault);
  EXPECT_EQ(roll_back(requests), 7);
  expect_untouched();
}

TEST_F(RollBackTest, LineFeedInTheValueIsNoMatter) {
  Requests requests;
  requests.filled("A", "one", 1, kSomeFault);
  std::string value = "x\ny";
  requests.node(0).value = value.data();
  EXPECT_EQ(roll_back(requests), 0);
  expect_section("one\nnew\nnew\n");
}

TEST_F(RollBackTest, OnlyFailedNodesNeedAValue) {
  Requests requests;
  requests.filled("A", "one", 1, kNoFault).filled("B", "two", 1, kSomeFault);
  requests.node(0).value = nullptr;
  EXPECT_EQ(roll_back(requests), 0);
  expect_section("new\ntwo\nnew\n");
  store_section("new\nnew\nnew\n");
  requests.node(1).value = nullptr;
  EXPECT_EQ(roll_back(requests), 10);
  expect_untouched();
}

TEST_F(RollBackTest, NullIsRefusedWith10AndItsTextAlone) {
  Requests requests;
  requests.filled("A", "one", 1, kSomeFault);
  EXPECT_EQ(zrcfg_setmultiparamval_ext(nullptr, requests.list(), 0), 10);
  EXPECT_EQ(zrcfg_setmultiparamval_ext(kUrl, nullptr, 0), 10);
  EXPECT_EQ(log_texts(), std::vector<std::string>(2, "Input parameters can't be NULL!\n"));
  expect_untouched();
}

TEST_F(RollBackTest, EmptySectionGives7) {
  store_section("");
  Requests requests;
  requests.filled("A", "one", 1, kSomeFault);
  EXPECT_EQ(roll_back(requests), 7);
  EXPECT_THAT(value_log(), ElementsAre("objUrl = Gateway.Device.\n", "pValue is error\n",
                                       "constructParamValues() fail ret=7!\n"));
  expect_untouched();
}

class RollBackStepTest : public RollBackTest {};

TEST_F(RollBackStepTest, OldValuesGoIntoTheTableAndTheFlagIsSet) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.filled("B", "", 1, kSomeFault).filled("C", "three", 1, kSomeFault);
  unsigned char restored = 0;
  EXPECT_EQ(modi_multi_param_values_ext(image.get(), table.get(), requests.list(), &restored), 0);
  EXPECT_EQ(restored, 1);
  EXPECT_THAT(table.slots(3), ElementsAre("new", "", "three"));
  EXPECT_THAT(value_log(),
              ElementsAreArray(joined({restored_log("B", ""), restored_log("C", "three")})));
  expect_untouched();
}

TEST_F(RollBackStepTest, OldValueWithoutTerminatorIsCutToItsSlot) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.filled("B", std::string(256, 'u'), 1, kSomeFault);
  unsigned char restored = 0;
  EXPECT_EQ(modi_multi_param_values_ext(image.get(), table.get(), requests.list(), &restored), 0);
  EXPECT_THAT(table.slots(3), ElementsAre("new", std::string(255, 'u'), "new"));
}

TEST_F(RollBackStepTest, FlagIsOnlyEverSet) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.filled("A", "one", 0, kSomeFault).filled("B", "two", 1, kNoFault);
  for (const int before : {0, 1, 77}) {
    auto restored = static_cast<unsigned char>(before);
    EXPECT_EQ(modi_multi_param_values_ext(image.get(), table.get(), requests.list(), &restored), 0);
    EXPECT_EQ(restored, before);
  }
  EXPECT_THAT(table.slots(3), ElementsAre("new", "new", "new"));
}

TEST_F(RollBackStepTest, NullGives10WithItsText) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.filled("A", "one", 1, kSomeFault);
  ParamValueEntry *const list = requests.list();
  unsigned char restored = 0;
  EXPECT_EQ(modi_multi_param_values_ext(nullptr, table.get(), list, &restored), 10);
  EXPECT_EQ(modi_multi_param_values_ext(image.get(), nullptr, list, &restored), 10);
  EXPECT_EQ(modi_multi_param_values_ext(image.get(), table.get(), nullptr, &restored), 10);
  EXPECT_EQ(modi_multi_param_values_ext(image.get(), table.get(), list, nullptr), 10);
  EXPECT_EQ(value_log(), std::vector<std::string>(4, "Input parameters can't be NULL!\n"));
  list->value = nullptr;
  EXPECT_EQ(modi_multi_param_values_ext(image.get(), table.get(), list, &restored), 10);
  EXPECT_EQ(restored, 0);
  EXPECT_THAT(table.slots(3), ElementsAre("new", "new", "new"));
}

TEST_F(RollBackStepTest, LineFeedInAnOldValueGives7BeforeAnythingIsRestored) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.filled("A", "one", 1, kSomeFault).filled("B", "t\no", 1, kSomeFault);
  unsigned char restored = 0;
  EXPECT_EQ(modi_multi_param_values_ext(image.get(), table.get(), requests.list(), &restored), 7);
  EXPECT_EQ(restored, 0);
  EXPECT_THAT(table.slots(3), ElementsAre("new", "new", "new"));
}

}  // namespace
}  // namespace zrcfg_test
