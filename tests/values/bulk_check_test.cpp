// Tests of the checked bulk write: all values pass or nothing is changed.
#include <gmock/gmock.h>
#include <regex.h>

#include <filesystem>
#include <string>

#include "tests/values/values_support.h"
#include "values/bulk_values.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr char kNumber[] = "^[0-9]+$";
constexpr char kStepFailed[] = "modi_multi_param_values_check() fail ret=";

std::vector<std::string> lookup_log(unsigned filter) {
  return {"zrfile_uci_get_config filepath=/var/regex_file key=filter" + std::to_string(filter)};
}

std::string check_line(const char *name, unsigned filter, const char *value) {
  return std::string("param->name = ") + name + " param_check=" + std::to_string(filter) +
         " value = " + value + "\n";
}

// Parameter Free has no filter, Number filter 1, Word filter 2, Lost filter 3, which has no
// section, and Broken filter 4, which does not compile.
class BulkCheckTest : public ValuesTest {
 protected:
  void SetUp() override {
    ValuesTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    PropertyFile file = property_file({"Free", "Number", "Word", "Lost", "Broken"},
                                      {"anything", "42", "word", "lost", "broken"});
    for (size_t i = 0; i < file.params.size(); ++i) {
      file.params[i].param_check = static_cast<uint32_t>(i);
    }
    write_patterns({{1, kNumber}, {2, "^[a-z]*$"}, {4, "("}});
    store(file);
  }

  static int write(Requests &requests) {
    clear_log();
    return zrcfg_setmultiparamval_check(kUrl, requests.list(), 0);
  }

  void expect_refused(Requests &requests, int result) {
    EXPECT_EQ(write(requests), result);
    EXPECT_EQ(value_log().back(), kStepFailed + std::to_string(result) + "!\n");
    EXPECT_TRUE(requests.all_outputs_untouched());
    EXPECT_TRUE(requests.inputs_kept());
    expect_untouched();
  }
};

TEST_F(BulkCheckTest, ListWhoseValuesAllPassIsWritten) {
  Requests requests;
  requests.set("Word", "").set("Number", "007").set("Free", "7 %s").set("Number", "8");
  EXPECT_EQ(write(requests), 0);
  expect_section("7 %s\n8\n\r\nlost\nbroken\n");
  EXPECT_EQ(requests.old_value(0), "word");
  EXPECT_EQ(requests.old_value(1), "42");
  EXPECT_EQ(requests.old_value(3), "007");
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(requests.node(i).changed, 1u);
    EXPECT_EQ(requests.fault(i), kNoFault);
  }
}

TEST_F(BulkCheckTest, ThirdNodeRefusedLeavesEverything) {
  Requests requests;
  requests.set("Free", "new").set("Word", "new").set("Number", "4x").set("Word", "newer");
  expect_refused(requests, 7);
  EXPECT_EQ(requests.fault(2), 9007u);
  for (const size_t i : {0u, 1u, 3u}) {
    EXPECT_EQ(requests.fault(i), kNoFault) << i;
  }
}

TEST_F(BulkCheckTest, FirstRefusalEndsTheCheck) {
  Requests requests;
  requests.set("Number", "x").set("Number", "y").set("None", "z");
  expect_refused(requests, 7);
  EXPECT_EQ(requests.fault(0), 9007u);
  EXPECT_EQ(requests.fault(1), kNoFault);
}

TEST_F(BulkCheckTest, NullFaultPointerIsPassedOver) {
  Requests requests;
  requests.set("Word", "new").set("Number", "x");
  requests.node(0).fault = requests.node(1).fault = nullptr;
  EXPECT_EQ(write(requests), 7);
  expect_untouched();
  Requests good;
  good.set("Number", "1");
  good.node(0).fault = nullptr;
  EXPECT_EQ(write(good), 0);
}

TEST_F(BulkCheckTest, EarlierFaultCodesStay) {
  Requests requests;
  requests.set("Word", "new").set("Number", "1");
  requests.fault(0) = 9003;
  EXPECT_EQ(write(requests), 0);
  EXPECT_EQ(requests.fault(0), 9003u) << "an accepted node keeps what its pointer points to";
}

TEST_F(BulkCheckTest, UnknownNameGives5AndChangesNothing) {
  Requests requests;
  requests.set("Word", "new").set("None", "x").set("Number", "x");
  expect_refused(requests, 5);
  EXPECT_TRUE(log_contains("pList->name = None not exist.\n"));
  EXPECT_EQ(requests.fault(1), kNoFault);
}

TEST_F(BulkCheckTest, MissingOrBrokenPatternRefuses) {
  for (const char *name : {"Lost", "Broken"}) {
    Requests requests;
    requests.set("Free", "new").set(name, name);
    expect_refused(requests, 7);
    EXPECT_EQ(requests.fault(1), 9007u);
  }
}

TEST_F(BulkCheckTest, EqualValuesAreCheckedToo) {
  Requests requests;
  requests.set("Lost", "lost");
  expect_refused(requests, 7);
}

TEST_F(BulkCheckTest, WithoutThePatternFileEveryValuePasses) {
  std::filesystem::remove(store_path(kPatternFile));
  files_ = store_files();
  Requests requests;
  requests.set("Number", "x").set("Lost", "y").set("Broken", "z");
  EXPECT_EQ(write(requests), 0);
  expect_section("anything\nx\nword\ny\nz\n");
}

TEST_F(BulkCheckTest, OverlongValueIsPassedOverWhateverItsName) {
  Requests requests;
  const std::string overlong(256, 'x');
  requests.set("Number", overlong).set("None", overlong).set("Word", "new");
  EXPECT_EQ(write(requests), 0);
  expect_section("anything\n42\nnew\nlost\nbroken\n");
  EXPECT_TRUE(requests.outputs_untouched(0));
  EXPECT_TRUE(requests.outputs_untouched(1));
  EXPECT_EQ(log_count("param(Number) value lenth(256) is out of range, not set to mem!\n"), 2u)
      << "once in each pass";
  EXPECT_EQ(log_count("param(None) value lenth(256) is out of range, not set to mem!\n"), 2u);
}

TEST_F(BulkCheckTest, WholeLogIsTwoPasses) {
  Requests requests;
  requests.set("Number", "7").set("Free", "anything");
  EXPECT_EQ(write(requests), 0);
  EXPECT_THAT(
      value_log(),
      ElementsAreArray(joined({{"objUrl = Gateway.Device.\n"},
                               table_log({"anything", "42", "word", "lost", "broken"}),
                               {check_line("Number", 1, "7")},
                               lookup_log(1),
                               {"1 7 matches ^[0-9]+$.\n", check_line("Free", 0, "anything"),
                                "no need check param value,\n"},
                               applied_log("Number", "7", false),
                               applied_log("Free", "anything", true)})));
}

TEST_F(BulkCheckTest, WholeLogOfARefusal) {
  Requests requests;
  requests.set("Number", "x").set("Free", "1");
  EXPECT_EQ(write(requests), 7);
  char no_match[64] = "";
  regex_t pattern;
  ASSERT_EQ(regcomp(&pattern, kNumber, REG_EXTENDED | REG_NOSUB), 0);
  regerror(REG_NOMATCH, &pattern, no_match, sizeof no_match);
  regfree(&pattern);
  EXPECT_THAT(value_log(),
              ElementsAreArray(joined({{"objUrl = Gateway.Device.\n"},
                                       table_log({"anything", "42", "word", "lost", "broken"}),
                                       {check_line("Number", 1, "x")},
                                       lookup_log(1),
                                       {"regexec error " + std::string(no_match) + ".\n",
                                        "modi_multi_param_values_check() fail ret=7!\n"}})));
}

TEST_F(BulkCheckTest, PatternsAreReadAfresh) {
  Requests requests;
  requests.set("Number", "x");
  EXPECT_EQ(write(requests), 7);
  write_patterns({{1, "^x$"}});
  EXPECT_EQ(write(requests), 0);
  write_patterns({{1, "^y$"}});
  EXPECT_EQ(write(requests), 7);
}

TEST_F(BulkCheckTest, LargestFilterNumberIsServed) {
  PropertyFile file = property_file({"A"}, {"one"});
  file.params[0].param_check = 4294967295u;
  write_patterns({{4294967295u, "^o"}});
  store(file);
  Requests requests;
  requests.set("A", "other");
  EXPECT_EQ(write(requests), 0);
  expect_section("other\n");
  EXPECT_TRUE(log_contains("4294967295 other matches ^o.\n") ||
              log_contains("-1 other matches ^o.\n"));
}

class BulkCheckStepTest : public BulkCheckTest {};

TEST_F(BulkCheckStepTest, RefusalLeavesTheTable) {
  const OpenedImage image;
  const ValueTable table(image);
  const std::vector<std::string> before = table.slots(5);
  Requests requests;
  requests.set("Free", "new").set("Number", "x");
  EXPECT_EQ(modi_multi_param_values_check(image.get(), table.get(), requests.list()), 7);
  EXPECT_EQ(table.slots(5), before);
  EXPECT_EQ(requests.fault(1), 9007u);
  Requests unknown;
  unknown.set("Free", "new").set("None", "x");
  EXPECT_EQ(modi_multi_param_values_check(image.get(), table.get(), unknown.list()), 5);
  EXPECT_EQ(table.slots(5), before);
  EXPECT_TRUE(requests.all_outputs_untouched());
  EXPECT_TRUE(unknown.all_outputs_untouched());
}

TEST_F(BulkCheckStepTest, PassingListIsAppliedToTheTableAlone) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("Free", "new").set("Number", "1");
  EXPECT_EQ(modi_multi_param_values_check(image.get(), table.get(), requests.list()), 0);
  EXPECT_THAT(table.slots(5), ElementsAre("new", "1", "word", "lost", "broken"));
  EXPECT_EQ(requests.old_value(1), "42");
  expect_untouched();
}

TEST_F(BulkCheckStepTest, NullGives10AndLineFeed7) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("Free", "new").set("Word", "new");
  EXPECT_EQ(modi_multi_param_values_check(nullptr, table.get(), requests.list()), 10);
  EXPECT_EQ(modi_multi_param_values_check(image.get(), nullptr, requests.list()), 10);
  EXPECT_EQ(modi_multi_param_values_check(image.get(), table.get(), nullptr), 10);
  EXPECT_EQ(value_log(), std::vector<std::string>(3, "Input parameters can't be NULL!\n"));
  requests.node(1).value = nullptr;
  EXPECT_EQ(modi_multi_param_values_check(image.get(), table.get(), requests.list()), 10);
  Requests feed;
  feed.set("Word", "new").set("Free", "a\nb");
  EXPECT_EQ(modi_multi_param_values_check(image.get(), table.get(), feed.list()), 7);
  EXPECT_THAT(table.slots(5), ElementsAre("anything", "42", "word", "lost", "broken"));
  EXPECT_TRUE(requests.all_outputs_untouched());
  EXPECT_TRUE(feed.all_outputs_untouched());
}

}  // namespace
}  // namespace zrcfg_test
