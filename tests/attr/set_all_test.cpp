// Tests of one change applied to all parameters of an object, as a call and as its building block.
#include <cstring>
#include <string>

#include "attr/attr_requests.h"
#include "tests/attr/attr_support.h"
#include "tests/support/lock_holder.h"

namespace zrcfg_test {
namespace {

constexpr char kNoParams[] = "this node has no params,do nothing!!\n";

enum class Way { kCall, kStep };

ParamAttrChange change_of(uint32_t noti_change, uint32_t noti, uint32_t list_change,
                          const std::string &list) {
  ParamAttrChange change;
  memset(static_cast<void *>(&change), 0xee, sizeof change);
  change.noti_change = noti_change;
  change.noti = noti;
  change.access_list_change = list_change;
  memcpy(change.accesslist, list.data(), sizeof change.accesslist);
  return change;
}

const std::string &any_list() {
  static const std::string list("ab\0d efgh ijkl!!", 16);
  return list;
}

class SetAllTest : public AttrTest, public ::testing::WithParamInterface<Way> {
 protected:
  static uint32_t set(const ParamAttrChange &change) {
    clear_log();
    if (GetParam() == Way::kCall) {
      return zrcfg_setallParamattr(kUrl, &change, 0);
    }
    const OpenedImage image;
    return setAllParamAttr(image.get(), &change, 4711);
  }

  // What the change makes of `count` records.
  std::string changed(const ParamAttrChange &change, size_t count) const {
    std::string expected = before_;
    for (size_t i = 0; i < count; ++i) {
      if (change.noti_change != 0) {
        model_noti(expected, record_at(i), change.noti);
      }
      if (change.access_list_change != 0) {
        model_accesslist(expected, record_at(i), std::string(change.accesslist, 16));
      }
    }
    return expected;
  }
};

TEST_P(SetAllTest, EveryRecordIsChangedInWhatTheFlagsSay) {
  for (const Fill fill : kFills) {
    for (const uint32_t noti_change : {0u, 1u, 2u, 0x80000000u, 0xffffff00u}) {
      for (const uint32_t list_change : {0u, 1u, 0x100u, 0xffffffffu}) {
        for (const uint32_t noti : {0u, 7u, 15u, 16u, 58u, 0xffffffffu}) {
          store(filled_file({"A", "B", "C", "D"}, fill, 100));
          const ParamAttrChange change = change_of(noti_change, noti, list_change, any_list());
          ASSERT_EQ(set(change), 0u);
          expect_file(changed(change, 4), std::to_string(noti_change) + " " +
                                              std::to_string(list_change) + " " +
                                              std::to_string(noti));
        }
      }
    }
  }
}

TEST_P(SetAllTest, BothFlagsZeroWriteNothing) {
  store(filled_file({"A", "B"}, Fill::kRandom));
  EXPECT_EQ(set(change_of(0, 5, 0, any_list())), 0u);
  expect_untouched();
  EXPECT_TRUE(log_contains("param->name = B, noti_change=0, access_list_change=0\n"));
}

TEST_P(SetAllTest, HiddenRecordsAndHiddenObjectsAreChangedToo) {
  PropertyFile file = property_file({"A", "B"}, {"a", "b"});
  file.header.hide = 1;
  file.params[0].hide = 1;
  file.params[1].device_type = 0x40;
  store(file);
  EXPECT_EQ(set(change_of(1, 3, 0, any_list())), 0u);
  file.params[0].noti = file.params[1].noti = 3;
  expect_file(file.bytes());
}

TEST_P(SetAllTest, LogTellsPreparationAndEachRecord) {
  store(filled_file({"A", "B"}, Fill::kRandom));
  EXPECT_EQ(set(change_of(1, 3, 2, any_list())), 0u);
  EXPECT_EQ(attr_log(), (std::vector<std::string>{
                            "setAllParamAttr!\n", kExists,
                            "setAllParamAttr. property_file=Gateway/Device/property.conf\n",
                            "param->name = A, noti_change=1, access_list_change=2\n",
                            "param->name = B, noti_change=1, access_list_change=2\n"}));
}

TEST_P(SetAllTest, ExactlyTheCountedRecordsAreChanged) {
  for (const size_t count : {1u, 254u, 255u, 257u, 300u}) {
    store(filled_file(std::vector<std::string>(count, "A"), Fill::kRandom, 101));
    const ParamAttrChange change = change_of(1, 6, 1, any_list());
    EXPECT_EQ(set(change), 0u);
    expect_file(changed(change, count % 256), std::to_string(count));
  }
}

TEST_P(SetAllTest, ObjectWithoutServedRecordsIsNotWritten) {
  for (const size_t count : {0u, 256u, 512u}) {
    store(filled_file(std::vector<std::string>(count, "A"), Fill::kRandom, 102));
    const bool call = GetParam() == Way::kCall;
    EXPECT_EQ(set(change_of(1, 6, 1, any_list())), call ? 16u : 0u);
    EXPECT_EQ(log_count(kNoParams), call ? 1u : 0u);
    expect_untouched();
  }
}

INSTANTIATE_TEST_SUITE_P(Ways, SetAllTest, ::testing::Values(Way::kCall, Way::kStep),
                         [](const auto &row) { return row.param == Way::kCall ? "Call" : "Step"; });

class SetAllCallTest : public AttrTest {
 protected:
  void SetUp() override {
    AttrTest::SetUp();
    if (!HasFatalFailure()) {
      store(filled_file({"A", "B"}, Fill::kZeros));
    }
  }

  static uint32_t set(int timeout) {
    const ParamAttrChange change = change_of(1, 6, 0, any_list());
    clear_log();
    return zrcfg_setallParamattr(kUrl, &change, timeout);
  }

  void expect_set() {
    std::string expected = before_;
    model_noti(expected, record_at(0), 6);
    model_noti(expected, record_at(1), 6);
    expect_file(expected);
  }
};

TEST_F(SetAllCallTest, ReaderElsewhereDoesNotKeepItOut) {
  const LockHolder holder(kFile, Held::kShared);
  EXPECT_EQ(set(0), 0u);
  expect_set();
}

TEST_F(SetAllCallTest, WriterElsewhereKeepsItOut) {
  const LockHolder holder(kFile, Held::kExclusive);
  EXPECT_EQ(set(0), 9u);
  EXPECT_EQ(set(30), 9u);
  EXPECT_EQ(attr_log().back(), "createObjByPath() fail ret=9!\n");
  expect_untouched();
  EXPECT_EQ(set(ZRCFG_NO_LOCK), 0u);
  expect_set();
}

TEST_F(SetAllCallTest, FileThatMayOnlyBeReadGives8ButNotWithoutParameters) {
  {
    const UserWithMode reader(kFile, 0444);
    EXPECT_EQ(set(0), 8u);
  }
  EXPECT_TRUE(
      log_has_in_order({kExists, "setAllParamAttr. property_file=Gateway/Device/property.conf\n",
                        kUnable, "createObjByPath() fail ret=8!\n"}));
  expect_untouched();
  store(filled_file({}, Fill::kZeros));
  const UserWithMode reader(kFile, 0444);
  EXPECT_EQ(set(0), 16u);
  EXPECT_FALSE(log_contains(kUnable));
}

TEST_F(SetAllCallTest, NullGives10) {
  const ParamAttrChange change = change_of(1, 6, 0, any_list());
  EXPECT_EQ(zrcfg_setallParamattr(nullptr, &change, 0), 10u);
  EXPECT_EQ(zrcfg_setallParamattr(kUrl, nullptr, 0), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(2, kNullText));
  const OpenedImage image;
  EXPECT_EQ(setAllParamAttr(nullptr, &change, 0), 10u);
  EXPECT_EQ(setAllParamAttr(image.get(), nullptr, 0), 10u);
  expect_untouched();
}

TEST_F(SetAllCallTest, RequestIsNotChangedAndItsNameNotRead) {
  ParamAttrChange change = change_of(1, 6, 0, any_list());
  memset(change.name, 'A', sizeof change.name);
  const std::string bytes(reinterpret_cast<const char *>(&change), sizeof change);
  EXPECT_EQ(zrcfg_setallParamattr(kUrl, &change, 0), 0u);
  EXPECT_EQ(std::string(reinterpret_cast<const char *>(&change), sizeof change), bytes);
  expect_set();
}

}  // namespace
}  // namespace zrcfg_test
