// Tests of the query of one parameter's attributes, by object and name and by path.
#include <gmock/gmock.h>

#include <string>

#include "tests/attr/attr_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr char kMarks[] = "\x5a";

class SingleQueryTest : public AttrTest {
 protected:
  void SetUp() override {
    AttrTest::SetUp();
    if (!HasFatalFailure()) {
      store(filled_file({"A", "B", "C"}, Fill::kRandom));
    }
  }

  // Queries into a record of marks.
  uint32_t query(const char *name, const char *url = kUrl) {
    attr_ = attr_of(std::string(sizeof attr_, kMarks[0]));
    clear_log();
    return zrcfg_getsingleparamattr(url, name, &attr_, 0);
  }
  uint32_t query_path(const char *path) {
    attr_ = attr_of(std::string(sizeof attr_, kMarks[0]));
    clear_log();
    return zrcfg_getsingleparamattr_ext(path, &attr_, 0);
  }
  bool untouched() const { return bytes_of(attr_) == std::string(sizeof attr_, kMarks[0]); }
  // The 64 bytes for the record at a position, the reserved byte as it was.
  std::string expected(size_t position) const {
    return model_attr(before_, record_at(position), std::string(sizeof attr_, kMarks[0]));
  }

  ParamAttr attr_ = {};
};

TEST_F(SingleQueryTest, FillsEveryFieldButTheReservedByte) {
  for (const Fill fill : kFills) {
    store(filled_file({"A", "B", "C"}, fill, 5));
    const char *const names[] = {"A", "B", "C"};
    for (size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(query(names[i]), 0u);
      expect_bytes(bytes_of(attr_), expected(i), names[i]);
      EXPECT_EQ(attr_.reserved, 0x5a);
    }
  }
  expect_untouched();
}

// Walks one bit through the record: it shows in its own field only, or nowhere.
TEST_F(SingleQueryTest, EachBitOfARecordShowsInItsFieldOnly) {
  const std::string plain = filled_file({"A", "B"}, Fill::kZeros);
  for (size_t bit = 0; bit < kParamBytes * 8; ++bit) {
    const size_t byte = bit / 8;
    if (byte >= 8 && byte < 72) {
      continue;  // The name.
    }
    std::string bytes = plain;
    char &changed = bytes[record_at(1) + byte];
    changed = static_cast<char>(changed ^ (1 << (bit % 8)));
    store(bytes);
    ASSERT_EQ(query("B"), 0u);
    expect_bytes(bytes_of(attr_), expected(1), "bit " + std::to_string(bit));
  }
}

TEST_F(SingleQueryTest, NamedFieldsHoldTheirValues) {
  PropertyFile file;
  ParamFields &param = file.add("A", "value");
  param.type = 0x91;
  param.inform_dbus = 0x82;
  param.device_type = 0x73;
  param.rw = 2;
  param.key = 9;
  param.encryt = 1;
  param.noti = 10;
  param.noti_rw = 1;
  param.flash_encryt = 1;
  param.accesslist = "sixteen letters!";
  param.area = "an area";
  param.param_check = 0x01020304;
  store(file);
  EXPECT_EQ(query("A"), 0u);
  EXPECT_EQ(attr_.type, 0x91);
  EXPECT_EQ(attr_.inform_dbus, 0x82);
  EXPECT_EQ(attr_.device_type, 0x73);
  EXPECT_EQ(attr_.rw, 2);
  EXPECT_EQ(attr_.key, 9);
  EXPECT_EQ(attr_.encryt, 1);
  EXPECT_EQ(attr_.noti, 10);
  EXPECT_EQ(attr_.noti_rw, 1);
  EXPECT_EQ(attr_.flash_encryt, 1);
  EXPECT_EQ(attr_.flash_rw + attr_.hide + attr_.namechange + attr_.inform_tr069, 0);
  EXPECT_EQ(std::string(attr_.accesslist, 16), "sixteen letters!");
  EXPECT_EQ(std::string(attr_.area, 28), "an area" + std::string(21, '\0'));
  EXPECT_EQ(attr_.param_check, 0x01020304u);
}

TEST_F(SingleQueryTest, LogHasOneLineForEachField) {
  PropertyFile file;
  ParamFields &param = file.add("A", "value");
  param.flash_rw = 1;
  param.param_check = 4000000000u;
  param.accesslist = "sixteen letters!";
  param.area = "eight and twenty characters!";
  store(file);
  EXPECT_EQ(query("A"), 0u);
  const std::vector<std::string> lines = attr_log();
  EXPECT_EQ(lines.front(), "param->ubv.boolval.flash_rw = 1\n");
  EXPECT_EQ(lines.back(), "param->param_check = 4000000000\n");
  EXPECT_EQ(lines.size(), 16u) << "thirteen numbers, two texts, the filter";
  for (const std::string &line : lines) {
    EXPECT_EQ(line.compare(0, 7, "param->"), 0) << line;
  }
}

TEST_F(SingleQueryTest, UnknownNameGives5AndFillsNothing) {
  for (const char *name : {"D", "a", "", "AA", "A ", "Gateway.Device.A"}) {
    EXPECT_EQ(query(name), 5u) << name;
    EXPECT_TRUE(untouched());
    EXPECT_EQ(attr_log(), std::vector<std::string>());
  }
  EXPECT_EQ(query(std::string(300, 'A').c_str()), 5u);
  expect_untouched();
}

TEST_F(SingleQueryTest, FirstOfTwoRecordsOfOneNameIsServed) {
  store(filled_file({"A", "B", "B"}, Fill::kRandom, 9));
  EXPECT_EQ(query("B"), 0u);
  expect_bytes(bytes_of(attr_), expected(1), "B");
}

TEST_F(SingleQueryTest, HiddenParameterAndHiddenObjectAreServed) {
  PropertyFile file = property_file({"A"}, {"value"});
  file.header.hide = 1;
  file.header.device_type = 0x40;
  file.params[0].hide = 1;
  file.params[0].device_type = 0x40;
  store(file);
  EXPECT_EQ(query("A"), 0u);
  EXPECT_EQ(attr_.hide, 1);
  EXPECT_EQ(attr_.device_type, 0x40);
}

TEST_F(SingleQueryTest, NamesOf63And64CharactersAreFound) {
  const std::string longest(63, 'n');
  const std::string whole(64, 'm');
  store(filled_file({longest, whole, "A"}, Fill::kRandom, 3));
  EXPECT_EQ(query(longest.c_str()), 0u);
  expect_bytes(bytes_of(attr_), expected(0), "63");
  EXPECT_EQ(query(whole.c_str()), 0u);
  expect_bytes(bytes_of(attr_), expected(1), "64");
  EXPECT_EQ(query(std::string(62, 'n').c_str()), 5u);
  EXPECT_EQ(query(std::string(65, 'm').c_str()), 5u);
}

TEST_F(SingleQueryTest, ObjectWithoutParametersGives5) {
  store(filled_file({}, Fill::kOnes));
  EXPECT_EQ(query("A"), 5u);
  EXPECT_TRUE(untouched());
  expect_untouched();
}

TEST_F(SingleQueryTest, NullGives10WithItsTextAlone) {
  const std::vector<std::string> text = {kNullText};
  EXPECT_EQ(query(nullptr), 10u);
  EXPECT_EQ(log_texts(), text);
  EXPECT_TRUE(untouched());
  EXPECT_EQ(query("A", nullptr), 10u);
  EXPECT_EQ(log_texts(), text);
  clear_log();
  EXPECT_EQ(zrcfg_getsingleparamattr(kUrl, "A", nullptr, 0), 10u);
  EXPECT_EQ(log_texts(), text);
  // Null comes before a URL that is too long.
  EXPECT_EQ(query(nullptr, std::string(300, 'u').c_str()), 10u);
}

TEST_F(SingleQueryTest, PathIsSplitBehindItsLastDot) {
  EXPECT_EQ(query_path("Gateway.Device.B"), 0u);
  expect_bytes(bytes_of(attr_), expected(1), "B");
  EXPECT_EQ(attr_log().front(), "path=Gateway.Device.B\n");
  EXPECT_EQ(query_path("Gateway.Device.D"), 5u);
  EXPECT_TRUE(untouched());
  EXPECT_EQ(query_path("Gateway.Device.B."), 9u) << "B is no object";
  EXPECT_EQ(query_path("Gateway.Device."), 5u) << "the empty name";
  EXPECT_TRUE(untouched());
  expect_untouched();
}

TEST_F(SingleQueryTest, PathThatCannotBeSplitGivesMinus1AndNothingElseIsDone) {
  EXPECT_EQ(query_path(""), kFailed);
  EXPECT_THAT(log_texts(), ElementsAre("path=\n", "tempLen=0 error!\n"));
  EXPECT_EQ(query_path("NoDotAtAll"), kFailed);
  EXPECT_THAT(log_texts(), ElementsAre("path=NoDotAtAll\n", "error,find no dot!\n"));
  EXPECT_EQ(query_path(nullptr), kFailed);
  EXPECT_EQ(log_texts().back(), "input param is null!\n");
  EXPECT_TRUE(untouched());
  expect_untouched();
}

TEST_F(SingleQueryTest, PathWithPartsTooLongForTheirBuffersGivesMinus1) {
  const std::string object = kUrl;
  EXPECT_EQ(query_path((object + std::string(63, 'n')).c_str()), 5u);
  EXPECT_EQ(query_path((object + std::string(64, 'n')).c_str()), kFailed);
  EXPECT_EQ(query_path((std::string(254, 'u') + ".A").c_str()), 9u);
  EXPECT_EQ(query_path((std::string(255, 'u') + ".A").c_str()), kFailed);
  EXPECT_EQ(query_path((std::string(5000, 'u') + "." + std::string(5000, 'n')).c_str()), kFailed);
  EXPECT_TRUE(untouched());
}

TEST_F(SingleQueryTest, LongestPathIsServed) {
  const std::string name(63, 'n');
  const std::string bytes = filled_file({"A", name}, Fill::kRandom, 4);
  write_property(long_path(255, '/'), bytes);
  EXPECT_EQ(query_path((long_path(255, '.') + name).c_str()), 0u);
  expect_bytes(bytes_of(attr_),
               model_attr(bytes, record_at(1), std::string(sizeof attr_, kMarks[0])), "longest");
}

TEST_F(SingleQueryTest, NullOutputOfAPathGives10) {
  EXPECT_EQ(zrcfg_getsingleparamattr_ext("Gateway.Device.A", nullptr, 0), 10u);
}

}  // namespace
}  // namespace zrcfg_test
