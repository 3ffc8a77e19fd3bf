// Tests of writing several values of one object with one call.
#include <gmock/gmock.h>

#include <string>

#include "tests/values/values_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr char kUrlLine[] = "objUrl = Gateway.Device.\n";

// The call with and without the check; without a pattern file they differ in their texts alone.
struct WriteCall {
  const char *name;
  int (*run)(const char *url, ParamValueEntry *list, int timeout);
  const char *step;
};

void PrintTo(const WriteCall &call, std::ostream *out) {
  *out << call.name;
}

class BulkWriteTest : public ValuesTest, public ::testing::WithParamInterface<WriteCall> {
 protected:
  static int write(Requests &requests, int timeout = 0) {
    clear_log();
    return GetParam().run(kUrl, requests.list(), timeout);
  }

  // The text after the table's lines, of which the check may put its own in between.
  static void expect_has_in_order(const std::vector<std::string> &texts) {
    EXPECT_TRUE(log_has_in_order(texts)) << ::testing::PrintToString(value_log());
  }
};

TEST_P(BulkWriteTest, ValuesAreReplacedAndTheOldOnesHandedOut) {
  store_section("one\n\r\nthree\n");
  Requests requests;
  requests.set("C", "3").set("B", "now with a value").set("A", "");
  EXPECT_EQ(write(requests), 0);
  expect_section("\r\nnow with a value\n3\n");
  EXPECT_EQ(requests.old_value(0), "three");
  EXPECT_EQ(requests.old_value(1), "");
  EXPECT_EQ(requests.old_value(2), "one");
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(requests.node(i).changed, 1u) << i;
  }
  EXPECT_TRUE(requests.inputs_kept());
  EXPECT_EQ(requests.fault(0), kNoFault);
}

TEST_P(BulkWriteTest, EqualValuesAreChanged0AndTheFileIsWrittenAllTheSame) {
  store_section("one\n\r\nthree\n");
  Requests requests;
  requests.set("A", "one").set("B", "").set("C", "three");
  EXPECT_EQ(write(requests), 0);
  expect_same_bytes();
  EXPECT_FALSE(is_aged(kFile)) << "the file was not written";
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(requests.node(i).changed, 0u) << i;
  }
  EXPECT_EQ(requests.old_value(0), "one");
  EXPECT_EQ(requests.old_value(1), "");
  EXPECT_EQ(requests.old_value(2), "three");
  EXPECT_EQ(log_count("Same value,don't write!Multi\n"), 3u);
}

TEST_P(BulkWriteTest, FileShrinksAndGrowsWithItsSection) {
  struct Row {
    const char *value;
    const char *section;
  };
  const Row rows[] = {
      {"a value that is longer than it was", "one\na value that is longer than it was\nthree\n"},
      {"t", "one\nt\nthree\n"},
      {"", "one\n\r\nthree\n"},
      {"two", "one\ntwo\nthree\n"},
      {"six", "one\nsix\nthree\n"},
  };
  store_section("one\ntwo\nthree\n");
  for (const Row &row : rows) {
    Requests requests;
    requests.set("B", row.value);
    EXPECT_EQ(write(requests), 0);
    expect_section(row.section);
  }
}

TEST_P(BulkWriteTest, NodesOfOneNameAreAppliedInListOrder) {
  store_section("one\ntwo\nthree\n");
  Requests requests;
  requests.set("B", "first").set("B", "second").set("B", "second").set("B", "two");
  EXPECT_EQ(write(requests), 0);
  expect_section("one\ntwo\nthree\n");
  const char *const old_values[] = {"two", "first", "second", "second"};
  const uint32_t changed[] = {1, 1, 0, 1};
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(requests.old_value(i), old_values[i]) << i;
    EXPECT_EQ(requests.node(i).changed, changed[i]) << i;
  }
}

TEST_P(BulkWriteTest, ValueOf255CharactersIsStoredAndOneOf256Skipped) {
  store_section("one\ntwo\nthree\n");
  const std::string longest(255, 'x');
  Requests requests;
  requests.set("A", longest).set("B", longest + "x").set("C", std::string(1000, 'y'));
  EXPECT_EQ(write(requests), 0);
  expect_section(longest + "\ntwo\nthree\n");
  EXPECT_EQ(requests.node(0).changed, 1u);
  EXPECT_TRUE(requests.outputs_untouched(1));
  EXPECT_TRUE(requests.outputs_untouched(2));
  EXPECT_TRUE(log_contains("param(B) value lenth(256) is out of range, not set to mem!\n"));
  EXPECT_TRUE(log_contains("param(C) value lenth(1000) is out of range, not set to mem!\n"));
}

TEST_P(BulkWriteTest, OverlongValueMayHoldALineFeedForItIsSkipped) {
  store_section("one\ntwo\nthree\n");
  Requests requests;
  requests.set("A", "\n" + std::string(255, 'x')).set("B", "2");
  EXPECT_EQ(write(requests), 0);
  expect_section("one\n2\nthree\n");
}

TEST_P(BulkWriteTest, LineFeedInAnyValueRefusesTheWholeListWith7) {
  for (const char *value : {"\n", "x\n", "x\ny"}) {
    for (size_t at = 0; at < 3; ++at) {
      store_section("one\ntwo\nthree\n");
      Requests requests;
      const char *const names[] = {"A", "B", "C"};
      for (size_t i = 0; i < 3; ++i) {
        requests.set(names[i], i == at ? value : "new");
      }
      EXPECT_EQ(write(requests), 7);
      EXPECT_TRUE(requests.all_outputs_untouched());
      EXPECT_GT(log_texts().size(), 1u) << "a refusal is logged behind the URL's line";
      expect_untouched();
    }
  }
}

TEST_P(BulkWriteTest, LineFeedIsTestedBeforeTheObjectIsOpened) {
  Requests requests;
  requests.set("A", "x\ny");
  EXPECT_EQ(write(requests), 7) << "no such object";
  EXPECT_FALSE(log_contains("createObjByPath() fail ret=9!\n"));
  EXPECT_EQ(GetParam().run(std::string(256, 'u').c_str(), requests.list(), 0), 1);
}

TEST_P(BulkWriteTest, ValuesMayHoldAnyOtherByte) {
  store_section("one\ntwo\nthree\n");
  std::string bytes;
  for (int c = 1; c < 255; ++c) {
    bytes += c == '\n' ? "" : std::string(1, static_cast<char>(c));
  }
  Requests requests;
  requests.set("A", bytes).set("B", "\rstarts with a return").set("C", "%s%n%d");
  EXPECT_EQ(write(requests), 0);
  expect_section(bytes + "\n\rstarts with a return\n%s%n%d\n");
}

TEST_P(BulkWriteTest, CarriageReturnReplacesTheEmptyValue) {
  store_section("\r\ntwo\nthree\n");
  Requests requests;
  requests.set("A", "\r");
  EXPECT_EQ(write(requests), 0);
  expect_same_bytes();
  EXPECT_EQ(requests.node(0).changed, 1u) << "the slot holds the empty text";
  EXPECT_EQ(requests.old_value(0), "");
}

TEST_P(BulkWriteTest, AttributesComeWithEveryFoundNode) {
  struct Row {
    uint8_t noti, flash_rw, namechange, inform_tr069, inform_dbus;
    const char *flags_and_dbus;
  };
  const Row rows[] = {
      {0, 0, 0, 0, 0, "\x00\x00"}, {15, 0, 0, 0, 0, "\xf0\x00"},  {0, 1, 0, 0, 0, "\x08\x00"},
      {0, 0, 1, 0, 0, "\x04\x00"}, {0, 0, 0, 1, 0, "\x02\x00"},   {0, 0, 0, 0, 0xa6, "\x00\xa6"},
      {9, 1, 0, 1, 1, "\x9a\x01"}, {6, 0, 1, 0, 255, "\x64\xff"}, {15, 1, 1, 1, 255, "\xfe\xff"},
  };
  for (const Row &row : rows) {
    PropertyFile file = property_file({"A", "B"}, {"one", "two"});
    for (ParamFields &param : file.params) {
      param.noti = row.noti;
      param.flash_rw = row.flash_rw;
      param.namechange = row.namechange;
      param.inform_tr069 = row.inform_tr069;
      param.inform_dbus = row.inform_dbus;
    }
    store(file);
    Requests requests;
    requests.set("A", "one").set("B", "new");
    for (size_t i = 0; i < 2; ++i) {
      requests.node(i).spare_flag = 0;
      requests.node(i).spare[0] = requests.node(i).spare[1] = 0;
    }
    EXPECT_EQ(write(requests), 0);
    const std::string expected = std::string(row.flags_and_dbus, 2) + std::string(2, '\0');
    EXPECT_EQ(requests.attribute_bytes(0), expected) << "of the unchanged node";
    EXPECT_EQ(requests.attribute_bytes(1), expected) << "of the changed node";
    expect_has_in_order({"pList's flash_rw= " + std::to_string(row.flash_rw) + "\n",
                         "pList's noti= " + std::to_string(row.noti) + "\n",
                         "pList's inform_dbus= " + std::to_string(row.inform_dbus) + "\n",
                         "pList's namechange= " + std::to_string(row.namechange) + "\n",
                         "pList's inform_tr069= " + std::to_string(row.inform_tr069) + "\n"});
  }
}

TEST_P(BulkWriteTest, OtherAttributesOfTheRecordDoNotShow) {
  PropertyFile file = property_file({"A"}, {"one"});
  ParamFields &param = file.params[0];
  param.type = param.device_type = param.reserved_3 = param.reserved_7 = 0xff;
  param.rw = param.encryt = 3;
  param.key = 15;
  param.hide = param.noti_rw = param.flash_encryt = param.reserved_6_high = 1;
  param.reserved_6_low = 31;
  store(file);
  Requests requests;
  requests.set("A", "1");
  EXPECT_EQ(write(requests), 0);
  const std::string bytes = requests.attribute_bytes(0);
  EXPECT_EQ(bytes[0] & '\xfe', 0);
  EXPECT_EQ(bytes[1], 0);
  expect_section("1\n");
}

TEST_P(BulkWriteTest, MissingLinesAreFilledWithEmptyOnesAndSurplusOnesDropped) {
  store_section("one\n");
  Requests requests;
  requests.set("C", "3");
  EXPECT_EQ(write(requests), 0);
  expect_section("one\n\r\n3\n");
  EXPECT_EQ(requests.old_value(0), "");
  store_section("one\n\n\ntwo\nthree\nfour\nfive");
  EXPECT_EQ(write(requests), 0);
  expect_section("one\ntwo\n3\n");
}

TEST_P(BulkWriteTest, EmptySectionGives7) {
  store_section("");
  Requests requests;
  requests.set("A", "1");
  EXPECT_EQ(write(requests), 7);
  EXPECT_THAT(value_log(),
              ElementsAre(kUrlLine, "pValue is error\n", "constructParamValues() fail ret=7!\n"));
  EXPECT_TRUE(requests.all_outputs_untouched());
  expect_untouched();
}

TEST_P(BulkWriteTest, NullIsRefusedWith10AndItsTextAlone) {
  store_section("one\ntwo\nthree\n");
  Requests requests;
  requests.set("A", "1");
  EXPECT_EQ(GetParam().run(nullptr, requests.list(), 0), 10);
  EXPECT_EQ(GetParam().run(kUrl, nullptr, 0), 10);
  EXPECT_EQ(GetParam().run(nullptr, nullptr, 0), 10);
  EXPECT_EQ(GetParam().run(std::string(256, 'u').c_str(), nullptr, 0), 10);
  EXPECT_EQ(log_texts(), std::vector<std::string>(4, "Input parameters can't be NULL!\n"));
  expect_untouched();
}

TEST_P(BulkWriteTest, NullValueInANodeGives10BeforeAnythingIsDone) {
  store_section("one\ntwo\nthree\n");
  for (size_t i = 0; i < 3; ++i) {
    Requests requests;
    requests.set("A", "1").set("B", "2").set("C", "3");
    requests.node(i).value = nullptr;
    EXPECT_EQ(write(requests), 10);
    EXPECT_TRUE(requests.all_outputs_untouched());
    expect_untouched();
  }
}

TEST_P(BulkWriteTest, LogIsUrlThenTableThenNodes) {
  store_section("one\n\r\nthree\n");
  Requests requests;
  requests.set("C", "3").set("A", "one");
  EXPECT_EQ(write(requests), 0);
  expect_has_in_order(joined({{kUrlLine},
                              table_log({"one", "\r", "three"}),
                              applied_log("C", "3", false),
                              applied_log("A", "one", true)}));
}

TEST_P(BulkWriteTest, ObjectWithoutRecordsIsWrittenWithoutValues) {
  PropertyFile file;
  file.values = "stray\n";
  store(file);
  Requests requests;
  requests.set("A", std::string(300, 'x'));
  const int result = write(requests);
  // A checked list may refuse the unknown name: no record is there at which to measure the value.
  if (result == 5) {
    EXPECT_STREQ(GetParam().name, "Checked");
    expect_untouched();
  } else {
    EXPECT_EQ(result, 0);
    expect_section("");
  }
  EXPECT_TRUE(requests.all_outputs_untouched());
}

INSTANTIATE_TEST_SUITE_P(Calls, BulkWriteTest,
                         ::testing::Values(WriteCall{"Plain", zrcfg_setmultiparamval,
                                                     "modiMultiParamValues"},
                                           WriteCall{"Checked", zrcfg_setmultiparamval_check,
                                                     "modi_multi_param_values_check"}),
                         [](const auto &row) { return std::string(row.param.name); });

class PlainBulkWriteTest : public ValuesTest {};

TEST_F(PlainBulkWriteTest, WholeLogIsUrlThenTableThenNodes) {
  store_section("one\n\r\nthree\n");
  Requests requests;
  requests.set("C", "3").set("None", "x").set("A", "one").set("B", std::string(256, 'x'));
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  EXPECT_THAT(
      value_log(),
      ElementsAreArray(joined({{kUrlLine},
                               table_log({"one", "\r", "three"}),
                               applied_log("C", "3", false),
                               applied_log("A", "one", true),
                               {"param(B) value lenth(256) is out of range, not set to mem!\n"}})));
}

TEST_F(PlainBulkWriteTest, UnknownNamesAreSkippedSilently) {
  store_section("one\ntwo\nthree\n");
  Requests requests;
  requests.set("None", "x").set("", "x").set("a", "x").set("B ", "x").set("B", "2");
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  expect_section("one\n2\nthree\n");
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_TRUE(requests.outputs_untouched(i)) << i;
  }
}

TEST_F(PlainBulkWriteTest, ListOfUnknownNamesStillWritesTheFile) {
  store_section("one\ntwo\nthree\n");
  Requests requests;
  requests.set("None", "x");
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  expect_same_bytes();
  EXPECT_FALSE(is_aged(kFile));
}

TEST_F(PlainBulkWriteTest, FiltersPlayNoPart) {
  PropertyFile file = property_file({"A"}, {"one"});
  file.params[0].param_check = 1;
  write_store_file(kPatternFile, "config filter 'filter1'\n\toption value '^[0-9]+$'\n");
  store(file);
  Requests requests;
  requests.set("A", "no number");
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  expect_section("no number\n");
}

}  // namespace
}  // namespace zrcfg_test
