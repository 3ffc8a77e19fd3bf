// Tests of callers that may not read or not write a property file; root is never refused, so these
// cases step down to an ordinary user.
#include <gtest/gtest.h>
#include <sys/types.h>

#include <optional>
#include <string>

#include "core/single_value.h"
#include "tests/core/core_support.h"
#include "tests/support/user_rights.h"

namespace zrcfg_test {
namespace {

constexpr char kCannotOpen[] = "unable to open Gateway/Device/property.conf file\n";

class FileRightsTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    write_property(kDir, property_file({"A", "B"}, {"one", "two"}));
    before_ = read_property(kDir);
  }

  void TearDown() override {
    user_.reset();
    StoreTest::TearDown();
  }

  void allow(mode_t mode) { user_.emplace(kFile, mode); }

  std::string before_;
  std::optional<UserWithMode> user_;
};

TEST_F(FileRightsTest, FileThatMayOnlyBeReadIsRead) {
  allow(0444);
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "B", value.data(), 0), 0u);
  EXPECT_EQ(value.text(), "two");
}

TEST_F(FileRightsTest, SameValueNeedsNoRightToWrite) {
  allow(0444);
  uint8_t changed = 77;
  EXPECT_EQ(zrcfg_setsingleparamval_ext(kUrl, "B", "two", 0, &changed), 0u);
  EXPECT_EQ(changed, 0);
}

TEST_F(FileRightsTest, UnknownNameNeedsNoRightToWrite) {
  allow(0444);
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "C", "x", 0), 5u);
}

TEST_F(FileRightsTest, OtherValueGives7AndChanged1) {
  allow(0444);
  uint8_t changed = 77;
  EXPECT_EQ(zrcfg_setsingleparamval_ext(kUrl, "B", "2", 0, &changed), 7u);
  EXPECT_EQ(changed, 1);
  EXPECT_TRUE(log_has_in_order({"Find the param! param name=B! pRead=two value_struct=2\n",
                                "read finish!\n", kCannotOpen,
                                "setSingleParamValueByParamName() fail ret=7!\n"}));
  GuardedBuffer old;
  EXPECT_EQ(zrcfg_setsingleparamval_ext_get_old_value(kUrl, "A", "1", 0, &changed, old.data()), 7u);
  EXPECT_EQ(old.text(), "one");
  EXPECT_EQ(read_property(kDir), before_);
}

TEST_F(FileRightsTest, UnreadableFileGives9WithALock) {
  allow(0);
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "B", value.data(), 0), 9u);
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "B", "2", 0), 9u);
  EXPECT_EQ(log_count(kCannotOpen), 2u) << "said by the lock request";
  EXPECT_TRUE(value.untouched());
}

TEST_F(FileRightsTest, UnreadableFileGives8WithoutALock) {
  allow(0);
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "B", value.data(), ZRCFG_NO_LOCK), 8u);
  EXPECT_TRUE(log_has_in_order({"property_file=Gateway/Device/property.conf exist!",
                                "property_file = Gateway/Device/property.conf\n", kCannotOpen,
                                "createObjByPath() fail ret=8!\n"}));
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "B", "2", ZRCFG_NO_LOCK), 8u);
  EXPECT_EQ(log_count("createObjByPath() fail ret=8!\n"), 2u);
}

TEST_F(FileRightsTest, FileThatMayOnlyBeWrittenIsNotWritten) {
  allow(0222);
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "B", "2", ZRCFG_NO_LOCK), 8u);
}

TEST_F(FileRightsTest, WorkStepsOnAnOpenImageGive7) {
  const OpenedImage image;
  allow(0);
  GuardedBuffer value;
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "B", value.data()), 7u);
  EXPECT_TRUE(value.untouched());
  uint8_t changed = 77;
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "B", "2", &changed), 7u);
  EXPECT_EQ(changed, 1);
}

TEST_F(FileRightsTest, WorkStepsDoNotNeedTheRightToWriteForTheSameValue) {
  const OpenedImage image;
  allow(0444);
  uint8_t changed = 77;
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "B", "two", &changed), 0u);
  EXPECT_EQ(changed, 0);
  EXPECT_EQ(setSingleParamValueByParamName(image.get(), "B", "2", &changed), 7u);
  EXPECT_EQ(changed, 1);
  EXPECT_EQ(log_count(kCannotOpen), 1u);
}

}  // namespace
}  // namespace zrcfg_test
