// Tests of applying a request list to a value table, called directly; no file is written.
#include <gmock/gmock.h>
#include <unistd.h>

#include <string>

#include "tests/values/values_support.h"
#include "values/bulk_values.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class BulkWriteStepTest : public ValuesTest {
 protected:
  void SetUp() override {
    ValuesTest::SetUp();
    if (!HasFatalFailure()) {
      store_section("one\n\r\nthree\n");
    }
  }
};

TEST_F(BulkWriteStepTest, ListIsAppliedToTheTableAlone) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("B", "2").set("None", "x").set("C", "").set("A", "one");
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 0);
  EXPECT_THAT(table.slots(3), ElementsAre("one", "2", ""));
  EXPECT_EQ(requests.old_value(0), "");
  EXPECT_EQ(requests.old_value(2), "three");
  EXPECT_EQ(requests.node(0).changed, 1u);
  EXPECT_TRUE(requests.outputs_untouched(1));
  EXPECT_EQ(requests.node(2).changed, 1u);
  EXPECT_EQ(requests.node(3).changed, 0u);
  EXPECT_THAT(value_log(),
              ElementsAreArray(joined({applied_log("B", "2", false), applied_log("C", "", false),
                                       applied_log("A", "one", true)})));
  expect_untouched();
}

TEST_F(BulkWriteStepTest, TableAndFileAreNotReadAgain) {
  const OpenedImage image;
  ValueTable table(image);
  table.put(0, "put there by the caller");
  ASSERT_EQ(unlink(property_path(kDir).c_str()), 0);
  Requests requests;
  requests.set("A", "1");
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 0);
  EXPECT_EQ(requests.old_value(0), "put there by the caller");
  EXPECT_EQ(table.slot(0), "1");
}

TEST_F(BulkWriteStepTest, OverlongValueIsLoggedOnceAndSkipped) {
  const OpenedImage image;
  const ValueTable table(image);
  for (const char *name : {"A", "C", "None"}) {
    clear_log();
    Requests requests;
    requests.set(name, std::string(256, 'x'));
    EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 0);
    EXPECT_THAT(value_log(), ElementsAre("param(" + std::string(name) +
                                         ") value lenth(256) is out of range, not set to mem!\n"));
    EXPECT_TRUE(requests.outputs_untouched(0));
  }
  EXPECT_THAT(table.slots(3), ElementsAre("one", "", "three"));
}

TEST_F(BulkWriteStepTest, NullGives10WithItsText) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("A", "1").set("B", "2");
  EXPECT_EQ(modiMultiParamValues(nullptr, table.get(), requests.list()), 10);
  EXPECT_EQ(modiMultiParamValues(image.get(), nullptr, requests.list()), 10);
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), nullptr), 10);
  EXPECT_EQ(value_log(), std::vector<std::string>(3, "Input parameters can't be NULL!\n"));
  requests.node(1).value = nullptr;
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 10);
  EXPECT_TRUE(requests.all_outputs_untouched());
  EXPECT_THAT(table.slots(3), ElementsAre("one", "", "three"));
}

TEST_F(BulkWriteStepTest, LineFeedGives7BeforeAnythingIsApplied) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("A", "1").set("B", "2").set("None", "x\ny");
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 7);
  EXPECT_TRUE(requests.all_outputs_untouched());
  EXPECT_THAT(table.slots(3), ElementsAre("one", "", "three"));
}

TEST_F(BulkWriteStepTest, OldValueOf255CharactersIsHandedOutWhole) {
  const OpenedImage image;
  ValueTable table(image);
  const std::string longest(255, 'x');
  table.put(1, longest);
  Requests requests;
  requests.set("B", "2");
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 0);
  EXPECT_EQ(requests.old_value(0).substr(0, 255), longest);
  const char last = requests.node(0).old_value[255];
  EXPECT_TRUE(last == '\0' || last == Requests::kMark) << "at most 255 characters are copied";
}

TEST_F(BulkWriteStepTest, ValueOf255CharactersFillsItsSlotAlone) {
  const OpenedImage image;
  const ValueTable table(image);
  const std::string longest(255, 'x');
  Requests requests;
  requests.set("B", longest);
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 0);
  EXPECT_THAT(table.slots(3), ElementsAre("one", longest, "three"));
}

TEST_F(BulkWriteStepTest, FirstRecordOfANameIsServed) {
  store(property_file({"A", "B", "A"}, {"first", "second", "third"}));
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("A", "new");
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 0);
  EXPECT_THAT(table.slots(3), ElementsAre("new", "second", "third"));
}

TEST_F(BulkWriteStepTest, NamesOfFullWidthAreTold) {
  const std::string longest(63, 'n');
  const std::string unterminated(64, 'n');
  store(property_file({longest, unterminated, "C"}, {"63", "64", "c"}));
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set(unterminated, "new 64").set(longest, "new 63");
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 0);
  EXPECT_THAT(table.slots(3), ElementsAre("new 63", "new 64", "c"));
}

TEST_F(BulkWriteStepTest, FaultPointersPlayNoPart) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("A", "1").set("B", "2");
  requests.node(0).fault = nullptr;
  requests.fault(1) = 9003;
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 0);
  EXPECT_THAT(table.slots(3), ElementsAre("1", "2", "three"));
  EXPECT_EQ(requests.fault(1), 9003u);
}

}  // namespace
}  // namespace zrcfg_test
