// Tests of reading several values of one object, as a call and as its step on a value table.
#include <gmock/gmock.h>

#include <algorithm>
#include <string>

#include "tests/values/values_support.h"
#include "values/bulk_values.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class BulkReadTest : public ValuesTest {
 protected:
  static int read(Requests &requests, int timeout = 0) {
    return zrcfg_getmultiparamval(kUrl, requests.list(), timeout);
  }
};

TEST_F(BulkReadTest, EachNodeReceivesItsValue) {
  store_section("one\n\r\nthree words here\n");
  Requests requests;
  requests.get("C").get("A").get("B");
  EXPECT_EQ(read(requests), 0);
  EXPECT_EQ(requests.got(0), "three words here");
  EXPECT_EQ(requests.got(1), "one");
  EXPECT_EQ(requests.got(2), "");
  EXPECT_TRUE(requests.all_outputs_untouched());
  EXPECT_TRUE(requests.inputs_kept());
  expect_untouched();
}

TEST_F(BulkReadTest, NothingIsWrittenBehindAValuesTerminator) {
  store_section("one\n\r\n" + std::string(255, 'x') + "\n");
  Requests requests;
  requests.get("A").get("B").get("C");
  EXPECT_EQ(read(requests), 0);
  EXPECT_TRUE(requests.buffer(0).untouched_from(4));
  EXPECT_TRUE(requests.buffer(1).untouched_from(1));
  EXPECT_EQ(requests.got(2), std::string(255, 'x'));
  EXPECT_TRUE(requests.buffer(2).untouched_from(256));
}

TEST_F(BulkReadTest, LogIsUrlThenTableThenNodes) {
  store_section("one\n\r\nthree\n");
  Requests requests;
  requests.get("C").get("None").get("A");
  EXPECT_EQ(read(requests), 0);
  EXPECT_THAT(value_log(), ElementsAreArray(joined({{"objUrl =  Gateway.Device.\n"},
                                                    table_log({"one", "\r", "three"}),
                                                    {"param=2 \n", "param->name = C\n",
                                                     "param=0 \n", "param->name = A\n"}})));
}

TEST_F(BulkReadTest, UnknownNameKeepsItsBufferAndIsNoError) {
  store_section("one\ntwo\nthree\n");
  Requests requests;
  requests.get("None").get("").get("a").get("AA").get("A ").get("B");
  EXPECT_EQ(read(requests), 0);
  for (size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(requests.got(i), "untouched") << i;
  }
  EXPECT_EQ(requests.got(5), "two");
}

TEST_F(BulkReadTest, TwoNodesOfOneNameBothReceiveTheValue) {
  store_section("one\ntwo\nthree\n");
  Requests requests;
  requests.get("B").get("A").get("B");
  EXPECT_EQ(read(requests), 0);
  EXPECT_EQ(requests.got(0), "two");
  EXPECT_EQ(requests.got(1), "one");
  EXPECT_EQ(requests.got(2), "two");
}

TEST_F(BulkReadTest, FirstRecordOfANameIsServed) {
  store(property_file({"A", "B", "B", "A"}, {"first", "second", "third", "fourth"}));
  Requests requests;
  requests.get("A").get("B");
  EXPECT_EQ(read(requests), 0);
  EXPECT_EQ(requests.got(0), "first");
  EXPECT_EQ(requests.got(1), "second");
}

TEST_F(BulkReadTest, HiddenObjectsAndParametersAreReadByName) {
  PropertyFile file = property_file({"A", "B"}, {"one", "two"});
  file.header.hide = 1;
  file.params[0].hide = 1;
  file.params[1].device_type = 0x40;
  store(file);
  Requests requests;
  requests.get("A").get("B");
  EXPECT_EQ(read(requests), 0);
  EXPECT_EQ(requests.got(0), "one");
  EXPECT_EQ(requests.got(1), "two");
}

TEST_F(BulkReadTest, NamesOfFullWidthAreTold) {
  const std::string longest(63, 'n');
  const std::string unterminated(64, 'n');
  store(property_file({longest, unterminated, longest.substr(1)}, {"63", "64", "62"}));
  Requests requests;
  requests.get(longest).get(unterminated).get(longest.substr(1)).get(std::string(61, 'n'));
  EXPECT_EQ(read(requests), 0);
  EXPECT_EQ(requests.got(0), "63");
  EXPECT_EQ(requests.got(1), "64");
  EXPECT_EQ(requests.got(2), "62");
  EXPECT_EQ(requests.got(3), "untouched");
}

// Names of every length, many that begin alike, and some that several records carry.
TEST_F(BulkReadTest, LongListsFindTheFirstRecordOfEachName) {
  PropertyFile file;
  for (size_t i = 0; i < 255; ++i) {
    const char last = static_cast<char>('a' + i % 3);
    const std::string name = std::string(i % 65, 'n');
    file.add(name.empty() ? name : name.substr(1) + last, std::to_string(i));
  }
  store(file);
  Requests requests;
  std::vector<std::string> expected;
  for (size_t i = 0; i < 1000; ++i) {
    const std::string name = std::string(i * 7 % 64, 'n') + static_cast<char>('a' + i % 4);
    requests.get(name);
    const auto found =
        std::find_if(file.params.begin(), file.params.end(),
                     [&name](const ParamFields &param) { return param.name == name; });
    expected.push_back(found == file.params.end() ? "untouched" : found->value);
  }
  requests.get("");
  expected.push_back("0");
  EXPECT_EQ(read(requests), 0);
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(requests.got(i), expected[i]) << i;
  }
}

TEST_F(BulkReadTest, MissingLinesReadAsEmpty) {
  store_section("one\n");
  Requests requests;
  requests.get("A").get("B").get("C");
  EXPECT_EQ(read(requests), 0);
  EXPECT_EQ(requests.got(0), "one");
  EXPECT_EQ(requests.got(1), "");
  EXPECT_EQ(requests.got(2), "");
}

TEST_F(BulkReadTest, EmptySectionGives7WithTheTextOfTheOpening) {
  for (const char *section : {"", "\n\n"}) {
    store_section(section);
    Requests requests;
    requests.get("A");
    EXPECT_EQ(read(requests), 7);
    EXPECT_THAT(value_log(), ElementsAre("objUrl =  Gateway.Device.\n", "pValue is error\n",
                                         "createObjByPath() fail ret=7!\n"));
    EXPECT_EQ(requests.got(0), "untouched");
    expect_untouched();
  }
}

TEST_F(BulkReadTest, NullListGives10BehindTheTable) {
  store_section("one\ntwo\nthree\n");
  EXPECT_EQ(zrcfg_getmultiparamval(kUrl, nullptr, 0), 10);
  EXPECT_THAT(value_log(), ElementsAreArray(joined({{"objUrl =  Gateway.Device.\n"},
                                                    table_log({"one", "two", "three"}),
                                                    {"getParamValues() fail ret=10!\n"}})));
}

TEST_F(BulkReadTest, NullValueInANodeGives10BeforeAnythingIsFilled) {
  store_section("one\ntwo\nthree\n");
  for (size_t i = 0; i < 3; ++i) {
    Requests requests;
    requests.get("A").get("B").get("C");
    requests.node(i).value = nullptr;
    EXPECT_EQ(read(requests), 10);
    for (size_t k = 0; k < 3; ++k) {
      EXPECT_EQ(requests.got(k), "untouched") << i << " " << k;
    }
  }
}

TEST_F(BulkReadTest, ReadIsFreshEveryTime) {
  store_section("one\ntwo\nthree\n");
  Requests requests;
  requests.get("B");
  EXPECT_EQ(read(requests), 0);
  store_section("1\n2\n3\n");
  EXPECT_EQ(read(requests), 0);
  EXPECT_EQ(requests.got(0), "2");
}

TEST_F(BulkReadTest, FaultPointersAndOldValuesPlayNoPart) {
  store_section("one\ntwo\nthree\n");
  Requests requests;
  requests.get("A").get("B");
  requests.node(0).fault = nullptr;
  requests.fault(1) = 1234;
  EXPECT_EQ(read(requests), 0);
  EXPECT_EQ(requests.got(0), "one");
  EXPECT_EQ(requests.got(1), "two");
  EXPECT_EQ(requests.fault(1), 1234u);
}

class BulkReadStepTest : public ValuesTest {};

TEST_F(BulkReadStepTest, SlotsAreCopiedToTheNodes) {
  store_section("one\n\r\nthree\n");
  const OpenedImage image;
  ValueTable table(image);
  table.put(0, "changed in the table");
  Requests requests;
  requests.get("B").get("A").get("None");
  EXPECT_EQ(outputToMultiParamValueList(image.get(), table.get(), requests.list()), 0);
  EXPECT_EQ(requests.got(0), "");
  EXPECT_EQ(requests.got(1), "changed in the table");
  EXPECT_EQ(requests.got(2), "untouched");
  EXPECT_THAT(value_log(),
              ElementsAre("param=1 \n", "param->name = B\n", "param=0 \n", "param->name = A\n"));
  EXPECT_TRUE(requests.all_outputs_untouched());
  expect_untouched();
}

TEST_F(BulkReadStepTest, NullGives10) {
  store_section("one\ntwo\nthree\n");
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.get("A").get("B");
  EXPECT_EQ(outputToMultiParamValueList(nullptr, table.get(), requests.list()), 10);
  EXPECT_EQ(outputToMultiParamValueList(image.get(), nullptr, requests.list()), 10);
  EXPECT_EQ(outputToMultiParamValueList(image.get(), table.get(), nullptr), 10);
  requests.node(1).value = nullptr;
  EXPECT_EQ(outputToMultiParamValueList(image.get(), table.get(), requests.list()), 10);
  EXPECT_EQ(requests.got(0), "untouched");
}

TEST_F(BulkReadStepTest, SlotWithoutTerminatorIsCopiedWithinItsWidth) {
  store_section("one\ntwo\nthree\n");
  const OpenedImage image;
  ValueTable table(image);
  table.put(2, std::string(256, 'u'));
  Requests requests;
  requests.get("C");
  EXPECT_EQ(outputToMultiParamValueList(image.get(), table.get(), requests.list()), 0);
  EXPECT_EQ(requests.got(0), std::string(255, 'u'));
  EXPECT_TRUE(requests.buffer(0).untouched_from(256));
}

}  // namespace
}  // namespace zrcfg_test
