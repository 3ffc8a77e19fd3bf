// Tests of the update of one attribute by number and text: every number, every kind of text, and
// the whole file compared with a model.
#include <gmock/gmock.h>

#include <string>

#include "attr/attr_update.h"
#include "tests/attr/attr_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr char kWritten[] = "param's attr has write to file. wcount=1\n";

// One way to change the attribute of parameter B of the stored object.
struct TextWriter {
  const char *name;
  uint32_t (*set)(const char *param, int number, const char *text);
};

uint32_t set_by_call(const char *param, int number, const char *text) {
  return zrcfg_setsingleparamattr_ext(kUrl, param, number, text, 0);
}

uint32_t set_by_path(const char *param, int number, const char *text) {
  const std::string path = std::string(kUrl) + param;
  return static_cast<uint32_t>(zrcfg_singleparamattr_set_ext(path.c_str(), number, text, 0));
}

uint32_t set_by_step(const char *param, int number, const char *text) {
  const OpenedImage image;
  return setSingleParamAttrByParamName_ext(image.get(), param, number, text);
}

class TextUpdateTest : public AttrTest, public ::testing::WithParamInterface<TextWriter> {
 protected:
  static uint32_t set(const char *param, int number, const char *text) {
    clear_log();
    return GetParam().set(param, number, text);
  }
};

TEST_P(TextUpdateTest, EveryNumberWithEveryTextChangesItsFieldOnly) {
  for (const Fill fill : kFills) {
    for (const int number : attr_numbers()) {
      for (const NumberText &text : number_texts()) {
        store(filled_file({"A", "B", "C"}, fill, 40));
        std::string expected = before_;
        model_text(expected, record_at(1), number, text.text, text.value);
        ASSERT_EQ(set("B", number, text.text), 0u);
        expect_file(expected, std::to_string(number) + " set to \"" + text.text + "\"");
        if (HasFailure()) {
          return;
        }
      }
    }
  }
}

TEST_P(TextUpdateTest, EveryPlaceInTheFileIsServed) {
  const std::vector<std::string> names = {"First", "Second", "Third", "Fourth", "Fifth"};
  for (size_t i = 0; i < names.size(); ++i) {
    store(filled_file(names, Fill::kRandom, 41));
    std::string expected = before_;
    model_text(expected, record_at(i), 3, "58", 58);
    EXPECT_EQ(set(names[i].c_str(), 3, "58"), 0u);
    expect_file(expected, names[i]);
  }
}

TEST_P(TextUpdateTest, NumbersWithoutFieldRewriteTheRecordUnchanged) {
  for (const int number : {14, 17, 18, 1000, -1, -14}) {
    store(filled_file({"A", "B"}, Fill::kOnes));
    EXPECT_EQ(set("B", number, "0"), 0u);
    expect_file(before_, std::to_string(number));
    EXPECT_FALSE(is_aged(kFile)) << "the record is written back";
    EXPECT_TRUE(log_contains(kWritten));
  }
}

TEST_P(TextUpdateTest, EqualValueIsWrittenToo) {
  store(filled_file({"A", "B"}, Fill::kOnes));
  EXPECT_EQ(set("A", 1, "1"), 0u);
  expect_file(before_);
  EXPECT_FALSE(is_aged(kFile));
}

TEST_P(TextUpdateTest, TextsAreCutToTheirFieldsAndTerminated) {
  store(filled_file({"A"}, Fill::kOnes));
  const std::string twenty = "abcdefghijklmnopqrst";
  EXPECT_EQ(set("A", 10, twenty.c_str()), 0u);
  EXPECT_EQ(read_property(kDir).substr(record_at(0) + 72, 17),
            twenty.substr(0, 15) + std::string(1, '\0') + "\xff");
  const std::string forty = twenty + twenty;
  EXPECT_EQ(set("A", 11, forty.c_str()), 0u);
  EXPECT_EQ(read_property(kDir).substr(record_at(0) + 88, 29),
            forty.substr(0, 27) + std::string(1, '\0') + "\xff");
}

TEST_P(TextUpdateTest, FilterMinus1SetsAllItsBits) {
  store(filled_file({"A"}, Fill::kZeros));
  EXPECT_EQ(set("A", 16, "-1"), 0u);
  EXPECT_EQ(word_at(read_property(kDir), record_at(0) + 116), 0xffffffffu);
}

TEST_P(TextUpdateTest, UnknownNameGives12AndLeavesTheFile) {
  store(filled_file({"A", "B"}, Fill::kRandom));
  for (const char *name : {"C", "a", "AB", ""}) {
    const uint32_t result = set(name, 3, "1");
    EXPECT_EQ(result, std::string(GetParam().name) == "Path" ? kFailed : 12u) << name;
    EXPECT_EQ(log_count("setSingleParamAttrByParamName_ext() fail ret=12!\n"),
              std::string(GetParam().name) == "Step" ? 0u : 1u);
    expect_untouched();
  }
}

TEST_P(TextUpdateTest, FirstOfTwoRecordsOfOneNameIsChanged) {
  store(filled_file({"A", "B", "B"}, Fill::kZeros));
  std::string expected = before_;
  model_text(expected, record_at(1), 9, "200", 200);
  EXPECT_EQ(set("B", 9, "200"), 0u);
  expect_file(expected);
}

TEST_P(TextUpdateTest, LogTellsPreparationAndWrite) {
  store(filled_file({"A", "B"}, Fill::kZeros));
  EXPECT_EQ(set("B", 9, "1"), 0u);
  EXPECT_TRUE(log_has_in_order({kExists, kWritten}));
  EXPECT_EQ(log_count(kWritten), 1u);
  EXPECT_EQ(attr_log().back(), kWritten);
}

TEST_P(TextUpdateTest, LastRecordOf255IsChanged) {
  std::vector<std::string> names;
  for (size_t i = 0; i < 255; ++i) {
    names.push_back("P" + std::to_string(i));
  }
  store(filled_file(names, Fill::kRandom, 51));
  std::string expected = before_;
  model_text(expected, record_at(254), 11, "an area", 0);
  EXPECT_EQ(set("P254", 11, "an area"), 0u);
  expect_file(expected);
}

TEST_P(TextUpdateTest, RecordsBeyondTheCountAreUnknown) {
  std::vector<std::string> names;
  for (size_t i = 0; i < 256; ++i) {
    names.push_back("P" + std::to_string(i));
  }
  const uint32_t unknown = std::string(GetParam().name) == "Path" ? kFailed : 12u;
  store(filled_file(names, Fill::kRandom, 52));
  EXPECT_EQ(set("P0", 3, "1"), unknown);
  EXPECT_EQ(set("P255", 3, "1"), unknown);
  expect_untouched();
  names.push_back("P256");
  store(filled_file(names, Fill::kRandom, 52));
  EXPECT_EQ(set("P1", 3, "1"), unknown);
  expect_untouched();
  std::string expected = before_;
  model_text(expected, record_at(0), 3, "1", 1);
  EXPECT_EQ(set("P0", 3, "1"), 0u);
  expect_file(expected);
}

TEST_P(TextUpdateTest, ValueSectionOfAnyKindIsKept) {
  for (const char *section : {"", "\n\n", "no line feed at the end", "one\n\r\nthree\nfour\n"}) {
    store(filled_file({"A"}, Fill::kRandom, 53).substr(0, record_at(1)) + section);
    std::string expected = before_;
    model_text(expected, record_at(0), 6, "5", 5);
    EXPECT_EQ(set("A", 6, "5"), 0u);
    expect_file(expected, section);
  }
}

INSTANTIATE_TEST_SUITE_P(Writers, TextUpdateTest,
                         ::testing::Values(TextWriter{"Call", set_by_call},
                                           TextWriter{"Path", set_by_path},
                                           TextWriter{"Step", set_by_step}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(ParamAttrCommonTest, ChangesItsFieldOfARecordInMemoryOnly) {
  for (const Fill fill : kFills) {
    for (const int number : attr_numbers()) {
      for (const NumberText &text : number_texts()) {
        std::string record = filled_record("A", fill, 60);
        std::string expected = record;
        model_text(expected, 0, number, text.text, text.value);
        ASSERT_EQ(setParamAttrCommonFunc(record.data(), number, text.text), 0u);
        expect_bytes(record, expected, std::to_string(number) + " set to " + text.text);
      }
    }
  }
}

TEST(ParamAttrCommonTest, NullGives10WithItsTextAlone) {
  std::string record = filled_record("A", Fill::kOnes);
  const std::string before = record;
  clear_log();
  EXPECT_EQ(setParamAttrCommonFunc(nullptr, 1, "1"), 10u);
  EXPECT_EQ(setParamAttrCommonFunc(record.data(), 1, nullptr), 10u);
  EXPECT_EQ(setParamAttrCommonFunc(record.data(), 14, nullptr), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(3, "Input parameters can't be NULL!\n"));
  EXPECT_EQ(record, before);
}

class TextUpdateNullTest : public AttrTest {
 protected:
  void SetUp() override {
    AttrTest::SetUp();
    if (!HasFatalFailure()) {
      store(filled_file({"A", "B"}, Fill::kRandom));
    }
  }
};

TEST_F(TextUpdateNullTest, CallGives10WithItsText) {
  EXPECT_EQ(zrcfg_setsingleparamattr_ext(nullptr, "A", 3, "1", 0), 10u);
  EXPECT_EQ(zrcfg_setsingleparamattr_ext(kUrl, nullptr, 3, "1", 0), 10u);
  EXPECT_EQ(zrcfg_setsingleparamattr_ext(kUrl, "A", 3, nullptr, 0), 10u);
  EXPECT_EQ(zrcfg_setsingleparamattr_ext(kUrl, "A", 14, nullptr, 0), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(4, kNullText));
  expect_untouched();
}

TEST_F(TextUpdateNullTest, StepGives10) {
  const OpenedImage image;
  EXPECT_EQ(setSingleParamAttrByParamName_ext(nullptr, "A", 3, "1"), 10u);
  EXPECT_EQ(setSingleParamAttrByParamName_ext(image.get(), nullptr, 3, "1"), 10u);
  EXPECT_EQ(setSingleParamAttrByParamName_ext(image.get(), "A", 3, nullptr), 10u);
  expect_untouched();
}

TEST_F(TextUpdateNullTest, PathGivesMinus1) {
  EXPECT_EQ(zrcfg_singleparamattr_set_ext(nullptr, 3, "1", 0), -1);
  EXPECT_EQ(log_texts().back(), "input param is null!\n");
  clear_log();
  EXPECT_EQ(zrcfg_singleparamattr_set_ext("Gateway.Device.A", 3, nullptr, 0), -1);
  EXPECT_TRUE(log_has_in_order({"objUrl =  Gateway.Device., param name = A\n", kNullText,
                                "zrcfg_setsingleparamattr_ext return =10!\n"}));
  expect_untouched();
}

using TextUpdatePathTest = TextUpdateNullTest;

TEST_F(TextUpdatePathTest, LogTellsSplitThenUpdate) {
  EXPECT_EQ(zrcfg_singleparamattr_set_ext("Gateway.Device.A", 3, "1", 0), 0);
  EXPECT_THAT(attr_log(),
              ElementsAre("path=Gateway.Device.A\n", "objUrl =  Gateway.Device., param name = A\n",
                          kExists, kWritten));
}

TEST_F(TextUpdatePathTest, EveryFailureGivesMinus1WithTheCodeLogged) {
  EXPECT_EQ(zrcfg_singleparamattr_set_ext("Gateway.Device.C", 3, "1", 0), -1);
  EXPECT_EQ(attr_log().back(), "zrcfg_setsingleparamattr_ext return =12!\n");
  EXPECT_EQ(zrcfg_singleparamattr_set_ext("Gateway.None.A", 3, "1", 0), -1);
  EXPECT_EQ(attr_log().back(), "zrcfg_setsingleparamattr_ext return =9!\n");
  EXPECT_EQ(zrcfg_singleparamattr_set_ext("Gateway.None.A", 3, "1", ZRCFG_NO_LOCK), -1);
  EXPECT_EQ(attr_log().back(), "zrcfg_setsingleparamattr_ext return =8!\n");
  expect_untouched();
}

TEST_F(TextUpdatePathTest, PathThatCannotBeSplitGivesMinus1AndNothingElseIsDone) {
  for (const std::string &path : {std::string(), std::string("NoDot"), kUrl + std::string(64, 'n'),
                                  std::string(255, 'u') + ".A", std::string(5000, 'u')}) {
    clear_log();
    EXPECT_EQ(zrcfg_singleparamattr_set_ext(path.c_str(), 3, "1", 0), -1) << path;
    EXPECT_EQ(log_texts().front(), "path=" + path + "\n");
    EXPECT_EQ(log_texts().size(), 2u);
  }
  expect_untouched();
}

}  // namespace
}  // namespace zrcfg_test
