// Tests of the largest objects and lists, and of files with more records than a byte counts.
#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

#include "tests/values/bulk_calls.h"
#include "tests/values/values_support.h"
#include "values/bulk_values.h"
#include "values/value_list.h"
#include "values/value_table.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr size_t kMostRecords = 255;
constexpr size_t kMostCharacters = 255;
constexpr uint32_t kSomeFault = 9003;

std::string longest_value(size_t i, char fill) {
  const std::string number = std::to_string(i) + ":";
  return number + std::string(kMostCharacters - number.size(), fill);
}

std::string longest_section(char fill) {
  std::string section;
  for (size_t i = 0; i < kMostRecords; ++i) {
    section += longest_value(i, fill) + "\n";
  }
  return section;
}

// An object of 255 parameters with values of 255 characters, each with a filter that takes them.
class LargestObjectTest : public ValuesTest {
 protected:
  void SetUp() override {
    ValuesTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    PropertyFile file = numbered_file(kMostRecords, kMostCharacters);
    for (ParamFields &param : file.params) {
      param.param_check = 1;
    }
    write_patterns({{1, "^[0-9]+:[v-z]{251,253}$"}});
    store(file);
  }

  // A node for every parameter, last one first.
  static void set_all(Requests &requests, char fill) {
    for (size_t i = kMostRecords; i-- > 0;) {
      requests.set(numbered_name(i), longest_value(i, fill));
    }
  }
};

TEST_F(LargestObjectTest, BulkReadGivesEveryValue) {
  Requests requests;
  for (size_t i = kMostRecords; i-- > 0;) {
    requests.get(numbered_name(i));
  }
  EXPECT_EQ(zrcfg_getmultiparamval(kUrl, requests.list(), 0), 0);
  for (size_t i = 0; i < kMostRecords; ++i) {
    EXPECT_EQ(requests.got(kMostRecords - 1 - i), longest_value(i, 'v')) << i;
    EXPECT_TRUE(requests.buffer(i).untouched_from(256)) << i;
  }
  expect_untouched();
}

TEST_F(LargestObjectTest, BulkWritesAndRollBackReplaceEveryValue) {
  Requests requests;
  set_all(requests, 'w');
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  expect_section(longest_section('w'));
  for (size_t i = 0; i < kMostRecords; ++i) {
    requests.fault(i) = kSomeFault;
    EXPECT_EQ(requests.node(i).changed, 1u);
  }
  EXPECT_EQ(zrcfg_setmultiparamval_ext(kUrl, requests.list(), 0), 0);
  expect_same_bytes();
  Requests checked;
  set_all(checked, 'x');
  EXPECT_EQ(zrcfg_setmultiparamval_check(kUrl, checked.list(), 0), 0);
  expect_section(longest_section('x'));
}

TEST_F(LargestObjectTest, EveryValueCanBeEmptiedAndFilledAgain) {
  Requests empty;
  for (size_t i = 0; i < kMostRecords; ++i) {
    empty.set(numbered_name(i), "");
  }
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, empty.list(), 0), 0);
  std::string section;
  for (size_t i = 0; i < kMostRecords; ++i) {
    section += "\r\n";
  }
  expect_section(section);
  Requests requests;
  set_all(requests, 'v');
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  expect_same_bytes();
}

TEST_F(LargestObjectTest, LastValueRefusedLeavesAll) {
  Requests requests;
  set_all(requests, 'w');
  requests.set(numbered_name(0), longest_value(0, 'a'));
  EXPECT_EQ(zrcfg_setmultiparamval_check(kUrl, requests.list(), 0), 7);
  EXPECT_EQ(requests.fault(kMostRecords), 9007u);
  EXPECT_TRUE(requests.all_outputs_untouched());
  expect_untouched();
}

TEST_F(LargestObjectTest, ListingGivesEveryValue) {
  ParamValueListNode *head = nullptr;
  ParamValueListNode *tail = nullptr;
  ASSERT_EQ(zrcfg_getallparamval(kUrl, &head, &tail, 0), 0);
  size_t i = 0;
  while (head != nullptr) {
    EXPECT_EQ(head->url, kUrl + numbered_name(i));
    EXPECT_EQ(head->value, longest_value(i, 'v'));
    EXPECT_EQ(head->next == nullptr, head == tail);
    ParamValueListNode *const next = head->next;
    free(head);
    head = next;
    ++i;
  }
  EXPECT_EQ(i, kMostRecords);
}

TEST_F(LargestObjectTest, CheckedSingleWriteAndCheckServeTheLastParameter) {
  const std::string last = numbered_name(kMostRecords - 1);
  const std::string value = longest_value(kMostRecords - 1, 'w');
  EXPECT_EQ(zrcfg_paramvalue_check(kUrl, last.c_str(), value.c_str(), 0), 0);
  char changed = 77;
  GuardedBuffer old;
  EXPECT_EQ(zrcfg_setsingleparamval_ext_get_old_value_check(kUrl, last.c_str(), value.c_str(), 0,
                                                            &changed, old.data()),
            0);
  EXPECT_EQ(std::string(old.data(), 255), longest_value(kMostRecords - 1, 'v'));
  std::string section = longest_section('v');
  section.replace(section.size() - value.size() - 1, value.size(), value);
  expect_section(section);
}

TEST_F(LargestObjectTest, StepsWorkOnTheWholeTable) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  set_all(requests, 'w');
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), requests.list()), 0);
  EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 0);
  expect_section(longest_section('w'));
  const ValueTable again(image);
  EXPECT_EQ(again.slots(kMostRecords), table.slots(kMostRecords));
}

class LongListTest : public ValuesTest {
 protected:
  void SetUp() override {
    ValuesTest::SetUp();
    if (!HasFatalFailure()) {
      store(numbered_file(kMostRecords, 10));
    }
  }

  static void gets(Requests &requests, size_t count) {
    for (size_t i = 0; i < count; ++i) {
      requests.get(numbered_name(i % kMostRecords));
    }
  }
  static void sets(Requests &requests, size_t count) {
    for (size_t i = 0; i < count; ++i) {
      requests.set(numbered_name(i % kMostRecords), "value " + std::to_string(i));
    }
  }
  // What is stored when the first 1001 nodes of `sets` are applied.
  static std::string set_value(size_t record) {
    size_t last = record;
    while (last + kMostRecords < kMostRequests) {
      last += kMostRecords;
    }
    return "value " + std::to_string(last);
  }
};

TEST_F(LongListTest, ReadServes1001NodesAndGives14ForMore) {
  for (const size_t count : {kMostRequests, kMostRequests + 1, kMostRequests + 40}) {
    Requests requests;
    gets(requests, count);
    EXPECT_EQ(zrcfg_getmultiparamval(kUrl, requests.list(), 0), count == kMostRequests ? 0 : 14);
    for (size_t i = 0; i < count; ++i) {
      const bool served = i < kMostRequests;
      EXPECT_EQ(requests.got(i), served ? file_.params[i % kMostRecords].value : "untouched") << i;
    }
  }
  EXPECT_EQ(value_log().back(), "getParamValues() fail ret=14!\n");
  expect_untouched();
}

TEST_F(LongListTest, WriteOf1001NodesIsStored) {
  for (const auto call : {zrcfg_setmultiparamval, zrcfg_setmultiparamval_check}) {
    store(numbered_file(kMostRecords, 10));
    Requests requests;
    sets(requests, kMostRequests);
    EXPECT_EQ(call(kUrl, requests.list(), 0), 0);
    std::string section;
    for (size_t i = 0; i < kMostRecords; ++i) {
      section += set_value(i) + "\n";
    }
    expect_section(section);
    EXPECT_EQ(requests.old_value(255), "value 0");
    EXPECT_EQ(requests.old_value(1000), "value 745");
  }
}

TEST_F(LongListTest, WriteOf1002NodesGives14AndLeavesTheFile) {
  Requests requests;
  sets(requests, kMostRequests + 1);
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 14);
  EXPECT_EQ(value_log().back(), "modiMultiParamValues() fail ret=14!\n");
  EXPECT_TRUE(requests.outputs_untouched(kMostRequests));
  EXPECT_EQ(requests.node(0).changed, 1u);
  EXPECT_EQ(requests.node(1000).changed, 1u);
  expect_untouched();
}

TEST_F(LongListTest, CheckedWriteOf1002NodesGives14AndAppliesNothing) {
  Requests requests;
  sets(requests, kMostRequests + 1);
  EXPECT_EQ(zrcfg_setmultiparamval_check(kUrl, requests.list(), 0), 14);
  EXPECT_EQ(value_log().back(), "modi_multi_param_values_check() fail ret=14!\n");
  EXPECT_TRUE(requests.all_outputs_untouched());
  expect_untouched();
}

TEST_F(LongListTest, CheckGoesInListOrderUpTo1001) {
  file_.params[1].param_check = 1;
  write_patterns({{1, "^never$"}});
  store(file_);
  Requests requests;
  for (size_t i = 0; i < kMostRequests; ++i) {
    requests.set("P0", "x");
  }
  requests.set("P1", "refused");
  EXPECT_EQ(zrcfg_setmultiparamval_check(kUrl, requests.list(), 0), 14);
  EXPECT_EQ(requests.fault(kMostRequests), kNoFault);
  Requests earlier;
  for (size_t i = 0; i < kMostRequests - 1; ++i) {
    earlier.set("P0", "x");
  }
  earlier.set("P1", "refused").set("P0", "x");
  EXPECT_EQ(zrcfg_setmultiparamval_check(kUrl, earlier.list(), 0), 7);
  EXPECT_EQ(earlier.fault(kMostRequests - 1), 9007u);
  expect_untouched();
}

TEST_F(LongListTest, LineFeedIsSoughtInTheFirst1001Nodes) {
  for (const auto call : {zrcfg_setmultiparamval, zrcfg_setmultiparamval_check}) {
    for (const size_t at : {kMostRequests - 1, kMostRequests}) {
      Requests requests;
      for (size_t i = 0; i <= kMostRequests; ++i) {
        requests.set("P0", i == at ? "x\ny" : "x");
      }
      EXPECT_EQ(call(kUrl, requests.list(), 0), at == kMostRequests ? 14 : 7);
      expect_untouched();
    }
  }
}

TEST_F(LongListTest, RollBackServes1001NodesAndGives14ForMore) {
  for (const size_t count : {kMostRequests, kMostRequests + 1}) {
    store(numbered_file(kMostRecords, 10));
    Requests requests;
    for (size_t i = 0; i < count; ++i) {
      requests.filled(numbered_name(i % kMostRecords), "value " + std::to_string(i), 1, kSomeFault);
    }
    if (count > kMostRequests) {
      EXPECT_EQ(zrcfg_setmultiparamval_ext(kUrl, requests.list(), 0), 14);
      EXPECT_EQ(value_log().back(), "modi_multi_param_values_ext() fail ret=14!\n");
      expect_untouched();
      continue;
    }
    EXPECT_EQ(zrcfg_setmultiparamval_ext(kUrl, requests.list(), 0), 0);
    std::string section;
    for (size_t i = 0; i < kMostRecords; ++i) {
      section += set_value(i) + "\n";
    }
    expect_section(section);
  }
}

TEST_F(LongListTest, StepsGive14BehindTheFirst1001Nodes) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests reads;
  gets(reads, kMostRequests + 1);
  EXPECT_EQ(outputToMultiParamValueList(image.get(), table.get(), reads.list()), 14);
  EXPECT_EQ(reads.got(kMostRequests - 1), file_.params[(kMostRequests - 1) % kMostRecords].value);
  EXPECT_EQ(reads.got(kMostRequests), "untouched");
  Requests checked;
  sets(checked, kMostRequests + 1);
  const std::vector<std::string> before = table.slots(kMostRecords);
  EXPECT_EQ(modi_multi_param_values_check(image.get(), table.get(), checked.list()), 14);
  EXPECT_EQ(table.slots(kMostRecords), before);
  Requests writes;
  sets(writes, kMostRequests + 1);
  EXPECT_EQ(modiMultiParamValues(image.get(), table.get(), writes.list()), 14);
  for (size_t i = 0; i < kMostRecords; ++i) {
    EXPECT_EQ(table.slot(i), set_value(i)) << "the nodes before it stay applied";
  }
}

TEST_F(LongListTest, UnknownNamesCountToo) {
  Requests requests;
  for (size_t i = 0; i <= kMostRequests; ++i) {
    requests.get("None");
  }
  EXPECT_EQ(zrcfg_getmultiparamval(kUrl, requests.list(), 0), 14);
  requests.node(kMostRequests - 1).next = nullptr;
}

class ManyRecordsTest : public ValuesTest {};

TEST_F(ManyRecordsTest, LowByteOfTheCountIsServedByReads) {
  for (const size_t count : {256u, 257u, 300u, 511u, 512u}) {
    store(numbered_file(count, 10));
    const size_t served = count & 0xff;
    Requests requests;
    for (const size_t i : {size_t{0}, served, count - 1}) {
      requests.get(numbered_name(i));
    }
    EXPECT_EQ(zrcfg_getmultiparamval(kUrl, requests.list(), 0), 0);
    EXPECT_EQ(requests.got(0), served > 0 ? file_.params[0].value : "untouched") << count;
    EXPECT_EQ(requests.got(1), "untouched") << count;
    EXPECT_EQ(requests.got(2), "untouched") << count;
  }
}

TEST_F(ManyRecordsTest, LowByteOfTheCountIsListed) {
  store(numbered_file(258, 10));
  ParamValueListNode *head = nullptr;
  ParamValueListNode *tail = nullptr;
  ASSERT_EQ(zrcfg_getallparamval(kUrl, &head, &tail, 0), 0);
  ASSERT_NE(head, nullptr);
  EXPECT_STREQ(head->url, "Gateway.Device.P0");
  ASSERT_EQ(head->next, tail);
  EXPECT_STREQ(tail->value, file_.params[1].value.c_str());
  free(head);
  free(tail);
}

TEST_F(ManyRecordsTest, WritesAreRefusedWith10AndLeaveTheFile) {
  for (const size_t count : {256u, 257u, 300u, 512u}) {
    PropertyFile file = numbered_file(count, 10);
    file.params[0].name = "A";
    store(file);
    for (const BulkCall &call : writing_calls()) {
      const std::string name = call.name;
      const bool none_served = count % 256 == 0;
      const int result = call.run(kUrl, 0).result;
      // With no record served the name is unknown, which the other writes tell first.
      if (none_served && name == "SetSingleCheck") {
        EXPECT_EQ(result, 7);
      } else if (none_served && name == "SetMultiCheck") {
        EXPECT_TRUE(result == 5 || result == 10) << result;
      } else if (none_served && name == "RollBack") {
        EXPECT_TRUE(result == 0 || result == 10) << result;
      } else {
        EXPECT_EQ(result, 10) << name << " " << count;
      }
      expect_untouched();
    }
  }
}

TEST_F(ManyRecordsTest, WriteStepRefusesWith10) {
  for (const size_t count : {256u, 257u, 511u}) {
    store(numbered_file(count, 10));
    const OpenedImage image;
    const ValueTable table(image);
    EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 10) << count;
    expect_untouched();
  }
}

TEST_F(ManyRecordsTest, TableHasTheServedSlots) {
  store(numbered_file(259, 10));
  const OpenedImage image;
  const ValueTable table(image);
  EXPECT_THAT(table.slots(3), ElementsAre("0:vvvvvvvv", "1:vvvvvvvv", "2:vvvvvvvv"));
}

}  // namespace
}  // namespace zrcfg_test
