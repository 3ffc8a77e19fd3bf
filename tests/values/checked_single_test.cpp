// Tests of the single write with a check in front of it, as a call and as its work step.
#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/values/values_support.h"
#include "values/checked_single_value.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr char kStepFailed[] = "set_single_param_value_by_param_name() fail ret=7!\n";
constexpr char kLookUp[] = "zrfile_uci_get_config filepath=/var/regex_file key=filter1";
constexpr char kUnchangedFlag = 77;

class CheckedSingleTest : public ValuesTest {
 protected:
  void SetUp() override {
    ValuesTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    file_with("anything\n42\nlost\n");
    write_patterns({{1, "^[0-9]+$"}});
    files_ = store_files();
  }

  void file_with(const std::string &values) {
    PropertyFile file = property_file({"Free", "Number", "Lost"}, {"", "", ""});
    file.params[1].param_check = 1;
    file.params[2].param_check = 2;
    file.values = values;
    store(file);
  }

  int set(const char *name, const std::string &value, int timeout = 0) {
    reset();
    return zrcfg_setsingleparamval_ext_get_old_value_check(kUrl, name, value.c_str(), timeout,
                                                           &changed_, old_.data());
  }

  int set_on(const OpenedImage &image, const char *name, const std::string &value) {
    reset();
    return set_single_param_value_by_param_name_check(image.get(), name, value.c_str(), &changed_,
                                                      old_.data());
  }

  void reset() {
    changed_ = kUnchangedFlag;
    old_ = GuardedBuffer();
    clear_log();
  }

  void expect_nothing_reported() {
    EXPECT_EQ(changed_, kUnchangedFlag);
    EXPECT_TRUE(old_.untouched());
  }

  char changed_ = kUnchangedFlag;
  GuardedBuffer old_;
};

TEST_F(CheckedSingleTest, PassingValueIsWrittenAndTheOldOneHandedOut) {
  EXPECT_EQ(set("Number", "7"), 0);
  EXPECT_EQ(changed_, 1);
  EXPECT_EQ(std::string(old_.data(), 255), "42" + std::string(253, '\0'));
  EXPECT_TRUE(old_.untouched_from(255));
  expect_section("anything\n7\nlost\n");
  EXPECT_EQ(set("Free", "a longer text than it was"), 0);
  expect_section("a longer text than it was\n7\nlost\n");
  EXPECT_EQ(set("Free", ""), 0);
  expect_section("\r\n7\nlost\n");
}

TEST_F(CheckedSingleTest, EqualValueIsNotWritten) {
  EXPECT_EQ(set("Number", "42"), 0);
  EXPECT_EQ(changed_, 0);
  EXPECT_EQ(std::string(old_.data(), 3), std::string("42\0", 3));
  expect_untouched();
  EXPECT_EQ(value_log().back(), "Same value,don't write!\n");
}

TEST_F(CheckedSingleTest, RefusedValueGives7AndTouchesNothing) {
  for (const char *name : {"Number", "Lost"}) {
    EXPECT_EQ(set(name, "x"), 7);
    EXPECT_EQ(value_log().back(), kStepFailed);
    expect_nothing_reported();
    expect_untouched();
  }
}

TEST_F(CheckedSingleTest, UnknownNameGives7WithoutACheck) {
  EXPECT_EQ(set("None", "7"), 7);
  EXPECT_THAT(value_log(), ElementsAre("read finish param is not exist!\n", kStepFailed));
  expect_nothing_reported();
  expect_untouched();
}

TEST_F(CheckedSingleTest, LogOfAWriteIsTheCheckThenTheWrite) {
  EXPECT_EQ(set("Number", "7"), 0);
  EXPECT_THAT(value_log(),
              ElementsAre("Find the param! param name=Number! filter_id=1 value_struct=7\n",
                          kLookUp, "1 7 matches ^[0-9]+$.\n",
                          "Find the param! param name=Number! pRead=42 value_struct=7\n",
                          "read finish!\n"));
  EXPECT_EQ(set("Lost", "7"), 7);
  EXPECT_THAT(value_log(),
              ElementsAre("Find the param! param name=Lost! filter_id=2 value_struct=7\n",
                          "zrfile_uci_get_config filepath=/var/regex_file key=filter2",
                          "get filter2 from /var/regex_file failed.\n", kStepFailed));
  EXPECT_EQ(set("Free", "x"), 0);
  EXPECT_EQ(value_log().at(1), "no need check param value,\n");
}

TEST_F(CheckedSingleTest, WithoutThePatternFileEveryValuePasses) {
  std::filesystem::remove(store_path(kPatternFile));
  files_ = store_files();
  EXPECT_EQ(set("Number", "x"), 0);
  expect_section("anything\nx\nlost\n");
  EXPECT_EQ(set("None", "x"), 7);
}

TEST_F(CheckedSingleTest, OverlongValueIsIgnoredWith0) {
  EXPECT_EQ(set("Number", std::string(256, '1')), 0);
  EXPECT_EQ(log_texts(),
            std::vector<std::string>(
                1, "param(Number) value lenth(256) is out of range, not set to mem!\n"));
  expect_nothing_reported();
  expect_untouched();
  EXPECT_EQ(zrcfg_setsingleparamval_ext_get_old_value_check(std::string(256, 'u').c_str(), "Number",
                                                            std::string(256, '1').c_str(), 0,
                                                            &changed_, old_.data()),
            0)
      << "before the length of the URL is looked at";
  EXPECT_EQ(set("Number", std::string(255, '1')), 0);
  expect_section("anything\n" + std::string(255, '1') + "\nlost\n");
}

TEST_F(CheckedSingleTest, OldValueIsTheStoredLineAsItStands) {
  file_with("\r\n" + std::string(255, '4') + "\nlost\n");
  EXPECT_EQ(set("Free", "x"), 0);
  EXPECT_EQ(std::string(old_.data(), 3), std::string("\r\0\0", 3));
  EXPECT_EQ(set("Number", "1"), 0);
  EXPECT_EQ(std::string(old_.data(), 255), std::string(255, '4'));
  EXPECT_TRUE(old_.untouched_from(255));
  EXPECT_EQ(set("Free", ""), 0);
  EXPECT_EQ(changed_, 1);
  EXPECT_EQ(set("Free", ""), 0);
  EXPECT_EQ(changed_, 1) << "the stored mark never equals the empty value";
}

TEST_F(CheckedSingleTest, LineFeedGives7) {
  EXPECT_EQ(set("Free", "x\ny"), 7);
  EXPECT_TRUE(old_.untouched());
  expect_untouched();
  EXPECT_EQ(zrcfg_setsingleparamval_ext_get_old_value_check(std::string(256, 'u').c_str(), "Free",
                                                            "x\ny", 0, &changed_, old_.data()),
            1);
}

TEST_F(CheckedSingleTest, NullIsRefusedWith10AndItsTextAlone) {
  const auto call = zrcfg_setsingleparamval_ext_get_old_value_check;
  EXPECT_EQ(call(nullptr, "Free", "x", 0, &changed_, old_.data()), 10);
  EXPECT_EQ(call(kUrl, nullptr, "x", 0, &changed_, old_.data()), 10);
  EXPECT_EQ(call(kUrl, "Free", nullptr, 0, &changed_, old_.data()), 10);
  EXPECT_EQ(call(kUrl, "Free", "x", 0, nullptr, old_.data()), 10);
  EXPECT_EQ(call(kUrl, "Free", "x", 0, &changed_, nullptr), 10);
  EXPECT_EQ(log_texts(), std::vector<std::string>(5, "Input parameters can't be NULL!\n"));
  expect_nothing_reported();
  expect_untouched();
}

TEST_F(CheckedSingleTest, LinesThatRunOutBeforeTheParameterGive5) {
  file_with("anything\n42\n");
  EXPECT_EQ(set("Lost", "x"), 7) << "the check comes first";
  write_patterns({{1, "."}, {2, "."}});
  files_ = store_files();
  EXPECT_EQ(set("Lost", "x"), 5);
  const std::vector<std::string> lines = value_log();
  EXPECT_THAT(
      std::vector<std::string>(lines.end() - 2, lines.end()),
      ElementsAre("read finish!\n", "set_single_param_value_by_param_name() fail ret=5!\n"));
  EXPECT_EQ(changed_, 1);
  EXPECT_TRUE(old_.untouched());
  expect_untouched();
  EXPECT_EQ(set("Number", "43"), 0);
}

TEST_F(CheckedSingleTest, SectionWithoutALineGives10) {
  file_with("");
  EXPECT_EQ(set("Free", "x"), 10);
  EXPECT_EQ(changed_, 1);
  expect_untouched();
}

TEST_F(CheckedSingleTest, FileOf257RecordsIsNotWritten) {
  store(numbered_file(257, 8));
  EXPECT_EQ(set("P0", "x"), 10);
  expect_untouched();
  EXPECT_EQ(set("P1", "x"), 7) << "only one record is served";
  store(numbered_file(256, 8));
  EXPECT_EQ(set("P0", "x"), 7) << "no record is served";
  expect_untouched();
}

class CheckedSingleStepTest : public CheckedSingleTest {};

TEST_F(CheckedSingleStepTest, PassingValueIsWritten) {
  const OpenedImage image;
  EXPECT_EQ(set_on(image, "Number", "7"), 0);
  EXPECT_EQ(changed_, 1);
  EXPECT_EQ(std::string(old_.data(), 3), std::string("42\0", 3));
  expect_section("anything\n7\nlost\n");
  EXPECT_EQ(set_on(image, "Number", "7"), 0);
  EXPECT_EQ(changed_, 0);
}

TEST_F(CheckedSingleStepTest, RefusalComesBeforeTheFileIsOpened) {
  const OpenedImage image;
  ASSERT_EQ(unlink(property_path(kDir).c_str()), 0);
  EXPECT_EQ(set_on(image, "Number", "x"), 7);
  EXPECT_FALSE(log_contains("unable to open Gateway/Device/property.conf file\n"));
  expect_nothing_reported();
  EXPECT_EQ(set_on(image, "None", "x"), 7);
  EXPECT_THAT(value_log(), ElementsAre("read finish param is not exist!\n"));
  expect_nothing_reported();
  EXPECT_EQ(set_on(image, "Number", "7"), 7);
  EXPECT_EQ(value_log().back(), "unable to open Gateway/Device/property.conf file\n");
  EXPECT_EQ(changed_, 1);
}

TEST_F(CheckedSingleStepTest, OverlongAndBrokenValuesAreRefused) {
  const OpenedImage image;
  EXPECT_EQ(set_on(image, "Free", std::string(256, 'x')), 15);
  EXPECT_EQ(set_on(image, "Free", "x\ny"), 7);
  expect_untouched();
  EXPECT_EQ(set_on(image, "Free", std::string(255, 'x')), 0);
}

TEST_F(CheckedSingleStepTest, NullGives10) {
  const OpenedImage image;
  const auto step = set_single_param_value_by_param_name_check;
  EXPECT_EQ(step(nullptr, "Free", "x", &changed_, old_.data()), 10);
  EXPECT_EQ(step(image.get(), nullptr, "x", &changed_, old_.data()), 10);
  EXPECT_EQ(step(image.get(), "Free", nullptr, &changed_, old_.data()), 10);
  EXPECT_EQ(step(image.get(), "Free", "x", &changed_, nullptr), 10);
  EXPECT_TRUE(old_.untouched());
  expect_untouched();
}

}  // namespace
}  // namespace zrcfg_test
