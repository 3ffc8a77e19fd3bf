// Tests of checking a value for a parameter of an object without writing it.
#include <gmock/gmock.h>

#include <filesystem>
#include <string>

#include "tests/values/values_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

class ValueCheckTest : public ValuesTest {
 protected:
  void SetUp() override {
    ValuesTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    PropertyFile file = property_file({"Free", "Number", "Lost"}, {"anything", "42", "lost"});
    file.params[1].param_check = 1;
    file.params[2].param_check = 2;
    write_patterns({{1, "^[0-9]+$"}});
    store(file);
  }

  static int check(const char *name, const std::string &value, int timeout = 0) {
    clear_log();
    return zrcfg_paramvalue_check(kUrl, name, value.c_str(), timeout);
  }
};

TEST_F(ValueCheckTest, ResultTellsWhetherTheValuePasses) {
  EXPECT_EQ(check("Number", "7"), 0);
  EXPECT_EQ(check("Number", "x"), 7);
  EXPECT_EQ(check("Number", ""), 7);
  EXPECT_EQ(check("Free", ""), 0);
  EXPECT_EQ(check("Free", "x"), 0);
  EXPECT_EQ(check("Lost", "lost"), 7) << "its filter has no section";
  expect_untouched();
}

TEST_F(ValueCheckTest, UnknownParameterGives7) {
  for (const char *name : {"None", "", "number", "Number "}) {
    EXPECT_EQ(check(name, "7"), 7) << name;
  }
  EXPECT_EQ(check("Free", "7"), 0);
}

TEST_F(ValueCheckTest, LogIsUrlAndNameThenNameThenTheCheck) {
  EXPECT_EQ(check("Number", "7"), 0);
  EXPECT_THAT(value_log(), ElementsAre("objUrl =  Gateway.Device., param name = Number\n",
                                       "param name = Number\n",
                                       "zrfile_uci_get_config filepath=/var/regex_file key=filter1",
                                       "1 7 matches ^[0-9]+$.\n"));
  EXPECT_EQ(check("None", "7"), 7);
  EXPECT_THAT(value_log(),
              ElementsAre("objUrl =  Gateway.Device., param name = None\n", "param name = None\n"));
  EXPECT_EQ(check("Free", "7"), 0);
  EXPECT_EQ(value_log().back(), "no need check param value,\n");
}

TEST_F(ValueCheckTest, WithoutThePatternFileEveryKnownNamePasses) {
  std::filesystem::remove(store_path(kPatternFile));
  EXPECT_EQ(check("Number", "x"), 0);
  EXPECT_EQ(check("Lost", "x"), 0);
  EXPECT_EQ(check("None", "x"), 7);
}

TEST_F(ValueCheckTest, OverlongValueIsTakenWithoutOpeningTheObject) {
  const std::string overlong(300, 'x');
  EXPECT_EQ(check("Number", overlong), 0);
  EXPECT_EQ(log_texts(),
            std::vector<std::string>(1, "Input value length 300 is over, do not check.\n"));
  EXPECT_EQ(zrcfg_paramvalue_check("No.Such.Object.", "Number", overlong.c_str(), 0), 0);
  EXPECT_EQ(zrcfg_paramvalue_check(std::string(256, 'u').c_str(), "Number", overlong.c_str(), 0),
            0);
  EXPECT_EQ(check("Number", std::string(256, 'x')), 0);
  EXPECT_EQ(check("Number", std::string(255, '1')), 0);
  EXPECT_EQ(check("Number", std::string(255, 'x')), 7);
}

TEST_F(ValueCheckTest, NullIsRefusedWith10AndItsTextAlone) {
  EXPECT_EQ(zrcfg_paramvalue_check(nullptr, "Number", "7", 0), 10);
  EXPECT_EQ(zrcfg_paramvalue_check(kUrl, nullptr, "7", 0), 10);
  EXPECT_EQ(zrcfg_paramvalue_check(kUrl, "Number", nullptr, 0), 10);
  EXPECT_EQ(log_texts(), std::vector<std::string>(3, "Input parameters can't be NULL\n"));
}

TEST_F(ValueCheckTest, FirstRecordOfANameCounts) {
  PropertyFile file = property_file({"A", "A"}, {"one", "two"});
  file.params[0].param_check = 1;
  store(file);
  EXPECT_EQ(check("A", "x"), 7);
  EXPECT_EQ(check("A", "1"), 0);
}

TEST_F(ValueCheckTest, StoredValuesPlayNoPart) {
  file_.values = "";
  store(file_);
  EXPECT_EQ(check("Number", "7"), 0);
  EXPECT_EQ(check("Number", "x"), 7);
  write_property(kDir, file_.head_bytes().substr(0, 188 + 2 * 124));
  EXPECT_EQ(check("Number", "7"), 0);
}

TEST_F(ValueCheckTest, HiddenParametersAreChecked) {
  file_.header.hide = 1;
  file_.params[1].hide = 1;
  store(file_);
  EXPECT_EQ(check("Number", "7"), 0);
  EXPECT_EQ(check("Number", "x"), 7);
}

TEST_F(ValueCheckTest, ObjectWithoutServedRecordsGives7) {
  store(PropertyFile{});
  EXPECT_EQ(check("Number", "7"), 7);
  store(numbered_file(256, 8));
  EXPECT_EQ(check("P0", "7"), 7);
}

TEST_F(ValueCheckTest, NamesOfFullWidthAreTold) {
  const std::string longest(63, 'n');
  const std::string unterminated(64, 'n');
  PropertyFile file = property_file({longest, unterminated}, {"63", "64"});
  file.params[0].param_check = 1;
  store(file);
  EXPECT_EQ(check(longest.c_str(), "x"), 7);
  EXPECT_EQ(check(unterminated.c_str(), "x"), 0);
  EXPECT_EQ(check(std::string(65, 'n').c_str(), "x"), 7) << "unknown";
}

}  // namespace
}  // namespace zrcfg_test
