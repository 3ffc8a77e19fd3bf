// Tests of reading and writing one value by name, through the exported calls.
#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/core/core_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

// The fixed lines behind those of the opening.
std::vector<std::string> work_log() {
  std::vector<std::string> lines = fixed_log();
  const std::string last_of_opening = std::string("property_file = ") + kFile + "\n";
  const auto opened = std::find(lines.begin(), lines.end(), last_of_opening);
  if (opened != lines.end()) {
    lines.erase(lines.begin(), opened + 1);
  }
  return lines;
}

class SingleValueTest : public StoreTest {
 protected:
  // An object of parameters A, B, C with this value section.
  void store(const std::string &values) {
    file_ = property_file({"A", "B", "C"}, {"", "", ""});
    file_.values = values;
    write_property(kDir, file_);
    age_file(kFile);
    clear_log();
  }

  uint32_t set(const char *name, const std::string &value) {
    changed_ = 77;
    clear_log();
    return zrcfg_setsingleparamval_ext(kUrl, name, value.c_str(), 0, &changed_);
  }

  uint32_t set_and_get_old(const char *name, const std::string &value) {
    changed_ = 77;
    old_ = GuardedBuffer();
    return zrcfg_setsingleparamval_ext_get_old_value(kUrl, name, value.c_str(), 0, &changed_,
                                                     old_.data());
  }

  std::string get(const char *name) {
    GuardedBuffer value;
    EXPECT_EQ(zrcfg_getsingleparamval(kUrl, name, value.data(), 0), 0u);
    return value.untouched() ? "untouched" : value.text();
  }

  // The whole file is what was stored, with this value section.
  void expect_section(const std::string &values) {
    PropertyFile expected = file_;
    expected.values = values;
    EXPECT_EQ(read_property(kDir), expected.bytes());
  }

  void expect_untouched() {
    EXPECT_EQ(read_property(kDir), file_.bytes());
    EXPECT_TRUE(is_aged(kFile)) << "the modification time has changed";
  }

  PropertyFile file_;
  uint8_t changed_ = 77;
  GuardedBuffer old_;
};

TEST_F(SingleValueTest, ReadGivesTheLineOfTheRecord) {
  store("one\ntwo words\nthree\n");
  EXPECT_EQ(get("A"), "one");
  EXPECT_EQ(get("B"), "two words");
  EXPECT_EQ(get("C"), "three");
  expect_untouched();
}

TEST_F(SingleValueTest, ReadWritesNoByteBehindTheTerminator) {
  store("one\n\r\nthree\n");
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "A", value.data(), 0), 0u);
  EXPECT_EQ(value.text(), "one");
  EXPECT_TRUE(value.untouched_from(4));
  GuardedBuffer empty;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "B", empty.data(), 0), 0u);
  EXPECT_EQ(empty.text(), "");
  EXPECT_TRUE(empty.untouched_from(1));
}

TEST_F(SingleValueTest, ReadOf255CharactersFillsTheBufferExactly) {
  const std::string longest(255, 'x');
  store("a\n" + longest + "\nc\n");
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "B", value.data(), 0), 0u);
  EXPECT_EQ(value.text(), longest);
  EXPECT_TRUE(value.untouched_from(256));
}

TEST_F(SingleValueTest, ReadOfAnUnknownNameGives0AndLeavesTheBuffer) {
  store("a\nb\nc\n");
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "D", value.data(), 0), 0u);
  EXPECT_TRUE(value.untouched());
  EXPECT_THAT(work_log(), ElementsAre());
}

TEST_F(SingleValueTest, NamesAreComparedExactly) {
  store("a\nb\nc\n");
  for (const char *name : {"a", "", "AA", "A ", " A", "B\n"}) {
    EXPECT_EQ(get(name), "untouched") << name;
    EXPECT_EQ(set(name, "new"), 5u) << name;
  }
  expect_untouched();
}

TEST_F(SingleValueTest, LineThatBeginsWithACarriageReturnReadsAsEmpty) {
  store("\r\n\rrest\nc\rd\n");
  EXPECT_EQ(get("A"), "");
  EXPECT_EQ(get("B"), "");
  EXPECT_EQ(get("C"), "c\rd") << "only the first character counts";
}

TEST_F(SingleValueTest, EmptyLinesAreSkippedByReaders) {
  store("\n\na\n\n\nb\nc");
  EXPECT_EQ(get("A"), "a");
  EXPECT_EQ(get("B"), "b");
  EXPECT_EQ(get("C"), "c") << "the last line needs no end";
}

TEST_F(SingleValueTest, ReadFailsWith10WhereTheLinesEnd) {
  store("a\nb\n");
  EXPECT_EQ(get("B"), "b") << "found before the lines end";
  GuardedBuffer value;
  for (const char *name : {"C", "Unknown"}) {
    clear_log();
    EXPECT_EQ(zrcfg_getsingleparamval(kUrl, name, value.data(), 0), 10u) << name;
    EXPECT_THAT(work_log(),
                ElementsAre("i=2 err!\n", "getSingleParamValueByParamName() fail ret=10!\n"));
  }
  EXPECT_TRUE(value.untouched());
}

TEST_F(SingleValueTest, ReadOfAnEmptySectionFailsAtTheFirstRecord) {
  store("");
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "A", value.data(), 0), 10u);
  EXPECT_TRUE(log_contains("i=0 err!\n"));
  EXPECT_TRUE(value.untouched());
}

TEST_F(SingleValueTest, ReadIgnoresSurplusLines) {
  store("a\nb\nc\nd\ne\n");
  EXPECT_EQ(get("C"), "c");
  EXPECT_EQ(get("D"), "untouched");
}

TEST_F(SingleValueTest, FirstOfTwoRecordsOfOneNameIsRead) {
  write_property(kDir, property_file({"A", "A"}, {"first", "second"}));
  EXPECT_EQ(get("A"), "first");
}

TEST_F(SingleValueTest, ReadOfAnObjectWithoutParametersFindsNothing) {
  write_property(kDir, PropertyFile());
  EXPECT_EQ(get("A"), "untouched");
}

TEST_F(SingleValueTest, SetReplacesTheLineAndKeepsTheOthers) {
  store("one\ntwo\nthree\n");
  EXPECT_EQ(set("B", "longer than before"), 0u);
  EXPECT_EQ(changed_, 1);
  expect_section("one\nlonger than before\nthree\n");
  EXPECT_FALSE(is_aged(kFile));
  EXPECT_EQ(set("B", "s"), 0u);
  expect_section("one\ns\nthree\n");
  EXPECT_EQ(set("A", "1"), 0u);
  EXPECT_EQ(set("C", "333"), 0u);
  expect_section("1\ns\n333\n");
}

TEST_F(SingleValueTest, SetWithoutFlagStoresTheSame) {
  store("one\ntwo\nthree\n");
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "C", "3", 0), 0u);
  expect_section("one\ntwo\n3\n");
}

TEST_F(SingleValueTest, SetLogsTheStoredLineAndTheNewValue) {
  store("one\n\r\nthree\n");
  EXPECT_EQ(set("A", "new"), 0u);
  EXPECT_THAT(work_log(), ElementsAre("Find the param! param name=A! pRead=one value_struct=new\n",
                                      "read finish!\n"));
  EXPECT_EQ(set("B", "x"), 0u);
  EXPECT_THAT(work_log(), ElementsAre("Find the param! param name=B! pRead=\r value_struct=x\n",
                                      "read finish!\n"));
}

TEST_F(SingleValueTest, SetOfTheStoredValueWritesNothing) {
  store("one\ntwo\nthree\n");
  EXPECT_EQ(set("B", "two"), 0u);
  EXPECT_EQ(changed_, 0);
  EXPECT_THAT(work_log(), ElementsAre("Find the param! param name=B! pRead=two value_struct=two\n",
                                      "Same value,don't write!\n"));
  expect_untouched();
}

TEST_F(SingleValueTest, SameValueDoesNotEvenTidyTheSection) {
  store("\none\n\ntwo\nthree\nsurplus");
  EXPECT_EQ(set("B", "two"), 0u);
  EXPECT_EQ(changed_, 0);
  expect_untouched();
}

TEST_F(SingleValueTest, PrefixOfTheStoredValueIsNotTheSame) {
  store("one\ntwo\nthree\n");
  EXPECT_EQ(set("A", "on"), 0u);
  EXPECT_EQ(changed_, 1);
  EXPECT_EQ(set("B", "two2"), 0u);
  EXPECT_EQ(changed_, 1);
  expect_section("on\ntwo2\nthree\n");
}

TEST_F(SingleValueTest, EmptyValueIsStoredAsACarriageReturn) {
  store("one\ntwo\nthree\n");
  EXPECT_EQ(set("B", ""), 0u);
  EXPECT_EQ(changed_, 1);
  expect_section("one\n\r\nthree\n");
  EXPECT_EQ(get("B"), "");
}

TEST_F(SingleValueTest, EmptyValueOverAnEmptyValueIsWrittenAgain) {
  store("one\n\r\nthree\n");
  EXPECT_EQ(set("B", ""), 0u);
  EXPECT_EQ(changed_, 1);
  EXPECT_FALSE(is_aged(kFile));
  expect_section("one\n\r\nthree\n");
}

TEST_F(SingleValueTest, CarriageReturnOverAnEmptyValueIsTheSame) {
  store("one\n\r\nthree\n");
  EXPECT_EQ(set("B", "\r"), 0u);
  EXPECT_EQ(changed_, 0);
  expect_untouched();
}

TEST_F(SingleValueTest, SetOfAnUnknownNameGives5AndLeavesTheFile) {
  store("one\n\ntwo\nthree\nsurplus\n");
  EXPECT_EQ(set("D", "new"), 5u);
  EXPECT_EQ(changed_, 1);
  EXPECT_THAT(work_log(),
              ElementsAre("read finish!\n", "setSingleParamValueByParamName() fail ret=5!\n"));
  expect_untouched();
}

TEST_F(SingleValueTest, WriteDropsSurplusAndEmptyLinesAndEndsTheLast) {
  store("\na\n\nb\nc\nd\ne");
  EXPECT_EQ(set("A", "new"), 0u);
  expect_section("new\nb\nc\n");
  store("a\nb\nc");
  EXPECT_EQ(set("A", "A"), 0u);
  expect_section("A\nb\nc\n");
}

TEST_F(SingleValueTest, WriteOfAShortSectionKeepsTheLinesThatAreThere) {
  store("a\nb\n");
  EXPECT_EQ(set("A", "new"), 0u);
  EXPECT_THAT(work_log(), ElementsAre("Find the param! param name=A! pRead=a value_struct=new\n",
                                      "read finish!\n"));
  expect_section("new\nb\n");
}

TEST_F(SingleValueTest, WriteOfARecordBehindTheLastLineGives5) {
  store("a\nb\n");
  EXPECT_EQ(set("C", "new"), 5u);
  expect_untouched();
}

TEST_F(SingleValueTest, WriteOfAnEmptySectionGives10) {
  for (const char *values : {"", "\n\n\n"}) {
    store(values);
    EXPECT_EQ(set("A", "new"), 10u);
    EXPECT_EQ(changed_, 1);
    EXPECT_THAT(work_log(), ElementsAre("param=P pRead=0 err!\n",
                                        "setSingleParamValueByParamName() fail ret=10!\n"));
    expect_untouched();
  }
}

TEST_F(SingleValueTest, WriteOfAnObjectWithoutParametersGives10) {
  write_property(kDir, PropertyFile());
  EXPECT_EQ(set("A", "new"), 10u);
  EXPECT_EQ(changed_, 1);
  EXPECT_THAT(work_log(), ElementsAre("param=0 pRead=0 err!\n",
                                      "setSingleParamValueByParamName() fail ret=10!\n"));
  EXPECT_EQ(read_property(kDir), PropertyFile().bytes());
}

TEST_F(SingleValueTest, AllRecordsOfTheNameAreReplaced) {
  file_ = property_file({"A", "B", "A"}, {"1", "2", "3"});
  write_property(kDir, file_);
  EXPECT_EQ(set_and_get_old("A", "new"), 0u);
  expect_section("new\n2\nnew\n");
  EXPECT_EQ(old_.at(0), '3') << "the last one's old value stays";
}

TEST_F(SingleValueTest, AllRecordsOfTheNameTakeALongerValue) {
  const std::string longer(255, 'x');
  file_ = property_file({"A", "A", "A"}, {"1", "2", "3"});
  write_property(kDir, file_);
  EXPECT_EQ(set("A", longer), 0u);
  EXPECT_EQ(changed_, 1);
  expect_section(longer + "\n" + longer + "\n" + longer + "\n");
}

TEST_F(SingleValueTest, EqualLineOfALaterRecordOfTheNameStopsTheWrite) {
  file_ = property_file({"A", "B", "A"}, {"1", "2", "new"});
  write_property(kDir, file_);
  age_file(kFile);
  EXPECT_EQ(set("A", "new"), 0u);
  EXPECT_EQ(changed_, 0);
  expect_untouched();
}

TEST_F(SingleValueTest, ValuesAtTheirLongestFillTheSection) {
  const std::string x(255, 'x');
  store("a\nb\nc\n");
  EXPECT_EQ(set("A", x), 0u);
  EXPECT_EQ(set("B", x), 0u);
  EXPECT_EQ(set("C", x), 0u);
  expect_section(x + "\n" + x + "\n" + x + "\n");
  EXPECT_EQ(set("B", ""), 0u);
  expect_section(x + "\n\r\n" + x + "\n");
}

TEST_F(SingleValueTest, EveryByteButLineFeedAndZeroIsStored) {
  std::string value;
  for (int c = 1; c < 256; ++c) {
    if (c != '\n' && c != '\r') {
      value += static_cast<char>(c);
    }
  }
  store("a\nb\nc\n");
  EXPECT_EQ(set("B", value), 0u);
  expect_section("a\n" + value + "\nc\n");
  EXPECT_EQ(get("B"), value);
}

TEST_F(SingleValueTest, OldValueIsPaddedTo255AndNotTerminatedBeyond) {
  store("one\ntwo\nthree\n");
  EXPECT_EQ(set_and_get_old("B", "new"), 0u);
  EXPECT_EQ(changed_, 1);
  EXPECT_EQ(std::string(old_.data(), 255), "two" + std::string(252, '\0'));
  EXPECT_TRUE(old_.untouched_from(255));
  expect_section("one\nnew\nthree\n");
}

TEST_F(SingleValueTest, OldValueOf255CharactersArrivesUnterminated) {
  const std::string longest(255, 'x');
  store("a\n" + longest + "\nc\n");
  EXPECT_EQ(set_and_get_old("B", "new"), 0u);
  EXPECT_EQ(std::string(old_.data(), 255), longest);
  EXPECT_TRUE(old_.untouched_from(255));
}

TEST_F(SingleValueTest, OldEmptyValueArrivesRaw) {
  store("a\n\r\nc\n");
  EXPECT_EQ(set_and_get_old("B", "new"), 0u);
  EXPECT_EQ(old_.text(), "\r");
}

TEST_F(SingleValueTest, OldValueIsGivenForTheSameValueToo) {
  store("a\nb\nc\n");
  EXPECT_EQ(set_and_get_old("B", "b"), 0u);
  EXPECT_EQ(changed_, 0);
  EXPECT_EQ(old_.text(), "b");
  expect_untouched();
}

TEST_F(SingleValueTest, OldValueOfAnUnknownNameIsNotWritten) {
  store("a\nb\nc\n");
  EXPECT_EQ(set_and_get_old("D", "b"), 5u);
  EXPECT_EQ(changed_, 1);
  EXPECT_TRUE(old_.untouched());
  expect_untouched();
}

}  // namespace
}  // namespace zrcfg_test
