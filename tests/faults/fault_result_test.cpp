// The exact code and log line that certain failures are documented to give.
#include <errno.h>
#include <gtest/gtest.h>
#include <string.h>

#include "core/single_value.h"
#include "lock/object_lock.h"
#include "tests/faults/fault_operations.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr char kUnableToOpen[] = "unable to open A/B/3/property.conf file\n";
constexpr char kUnableToOpenLock[] = "unable to open A/B/0/property.conf file\n";

class FaultResultTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    write_fault_store();
  }

  static uint32_t get(int timeout, const std::vector<Fault> &faults) {
    char value[256] = "untouched";
    CallWatch watch(faults, true);
    const uint32_t result = zrcfg_getsingleparamval("A.B.3.", "First", value, timeout);
    watch.stop();
    EXPECT_GT(watch.faults_hit(), 0u) << watch.describe();
    EXPECT_EQ(strcmp(value, "untouched") == 0, result != 0) << value;
    return result;
  }
};

// An open object without a lock.
class Image {
 public:
  Image() { EXPECT_EQ(createObjByPath(&image_, "A/B/3/", &fd_, 0, -2), 0u); }
  ~Image() { destroyObj(image_, fd_); }
  Image(const Image &) = delete;
  Image &operator=(const Image &) = delete;
  ZrcfgObject *get() const { return image_; }

 private:
  ZrcfgObject *image_ = nullptr;
  int fd_ = -1;
};

TEST_F(FaultResultTest, ReadWithoutDescriptorsReturns9WithALockAnd8Without) {
  EXPECT_EQ(get(0, {fail_for_ever(Call::kOpen, 1, EMFILE)}), 9u);
  EXPECT_TRUE(log_contains("getLock fail!\n"));
  EXPECT_TRUE(log_contains("createObjByPath() fail ret=9!\n"));
  clear_log();
  EXPECT_EQ(get(-2, {fail_for_ever(Call::kOpen, 1, EMFILE)}), 8u);
  EXPECT_TRUE(log_contains(kUnableToOpen));
  EXPECT_TRUE(log_contains("createObjByPath() fail ret=8!\n"));
}

TEST_F(FaultResultTest, ReadWithoutALockReturns9) {
  for (const int timeout : {-1, 0, 20}) {
    EXPECT_EQ(get(timeout, {fail_for_ever(Call::kLock, 1, ENOLCK)}), 9u) << timeout;
  }
}

TEST_F(FaultResultTest, ReadThatWaitsWithoutLimitSurvivesSignals) {
  for (const unsigned times : {1u, 5u}) {
    EXPECT_EQ(get(-1, {fail_times(Call::kLock, 1, times, EINTR)}), 0u);
    EXPECT_EQ(get(-1, {fail_times(Call::kRead, 1, times, EINTR)}), 0u);
  }
}

TEST_F(FaultResultTest, ReadErrorReturns7Or10) {
  const uint32_t result = get(0, {fail_for_ever(Call::kRead, 1, EIO)});
  EXPECT_TRUE(result == 7 || result == 10) << result;
}

TEST_F(FaultResultTest, FailedUnlockAndCloseDoNotSpoilARead) {
  EXPECT_EQ(get(0, {fail_for_ever(Call::kLock, 2, EIO)}), 0u);
  EXPECT_EQ(get(0, {fail_for_ever(Call::kClose, 1, EIO)}), 0u);
}

TEST_F(FaultResultTest, PropertyFileThatCannotBeOpenedReturns8AndReleasesTheLock) {
  int sentinel = 0;
  ZrcfgObject *image = &sentinel;
  int fd = -1;
  CallWatch watch({fail_for_ever(Call::kOpen, 2, EACCES)});
  EXPECT_EQ(createObjByPath(&image, "A/B/3/", &fd, 1, 0), 8u);
  watch.stop();
  EXPECT_EQ(image, &sentinel);
  EXPECT_TRUE(log_has_in_order({"property_file=A/B/3/property.conf exist!",
                                "property_file = A/B/3/property.conf\n", kUnableToOpen}));
  EXPECT_EQ(locked_property_files(), std::vector<std::string>());
}

// Whoever cannot see whether the template is there must not take a lock that keeps nobody out.
TEST_F(FaultResultTest, TemplateThatCannotBeOpenedForAPassingReasonGives9AndLocksNothingElse) {
  for (const int error : {EMFILE, ENFILE, ENOMEM, EIO}) {
    int fd = -7;
    clear_log();
    {
      CallWatch watch({fail_times(Call::kOpen, 1, 2, error)});
      EXPECT_EQ(getLock("A/B/3/", &fd, 0, 1), -1);
      EXPECT_EQ(watch.count(Call::kLock), 0u);
    }
    EXPECT_EQ(fd, -1);
    EXPECT_EQ(log_texts(), (std::vector<std::string>{"getLockFile() objPath=A/B/3/!\n",
                                                     "getLockFile() can not found file!\n",
                                                     "objPath=A/B/3/ getLockFile fail.\n"}));
    CallWatch watch({fail_times(Call::kOpen, 1, 2, error)});
    EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "First", "new", 0), 9u) << error;
  }
}

TEST_F(FaultResultTest, LockFileThatCannotBeOpenedGives8Inside9AndMinusOneOutside) {
  const std::vector<Fault> faults = {fail_for_ever(Call::kOpen, 1, EACCES)};
  int fd = -7;
  {
    CallWatch watch(faults);
    EXPECT_EQ(cfgGetLock("A/B/0/property.conf", &fd, 0, 0), 8u);
  }
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(log_count(kUnableToOpenLock), 1u);
  fd = -7;
  clear_log();
  // The second opening asks whether the template's directory is there.
  const std::vector<Fault> file_faults = {fail_once(Call::kOpen, 1, EACCES),
                                          fail_for_ever(Call::kOpen, 3, EACCES)};
  {
    CallWatch watch(file_faults);
    EXPECT_EQ(zrcfg_lockurl("A.B.3.", &fd, 0, 0), 0xFFFFFFFFu);
  }
  EXPECT_EQ(fd, -1);
  EXPECT_TRUE(
      log_has_in_order({"getLockPath() path=A/B/0/ exist!\n", kUnableToOpenLock,
                        "objPath=A/B/3/ lockfile=A/B/0/property.conf, rwType=0 ,lock fail.\n"}));
  ZrcfgObject *image = nullptr;
  fd = -1;
  CallWatch watch(faults);
  EXPECT_EQ(createObjByPath(&image, "A/B/3/", &fd, 0, 0), 9u);
}

TEST_F(FaultResultTest, WorkersReturn7WhenTheFileCannotBeOpened) {
  const Image image;
  char value[256] = "untouched";
  uint8_t changed = 7;
  const std::vector<Fault> faults = {fail_for_ever(Call::kOpen, 1, EMFILE)};
  {
    CallWatch watch(faults);
    EXPECT_EQ(getSingleParamValueByParamName(image.get(), "First", value), 7u);
    EXPECT_EQ(setSingleParamValueByParamName(image.get(), "First", "x", &changed), 7u);
  }
  EXPECT_STREQ(value, "untouched");
  EXPECT_EQ(changed, 1);
  EXPECT_EQ(log_count(kUnableToOpen), 2u);
  changed = 7;
  CallWatch watch(faults);
  EXPECT_EQ(set_single_param_value_by_param_name(image.get(), "First", "x", &changed, value), 7u);
  EXPECT_STREQ(value, "untouched");
  EXPECT_EQ(changed, 1);
}

TEST_F(FaultResultTest, UnchangedWriteServesAFileThatMayOnlyBeRead) {
  for (const int error : {EROFS, EACCES}) {
    uint8_t changed = 7;
    CallWatch watch({fail_writable_opens(error)});
    EXPECT_EQ(zrcfg_setsingleparamval_ext("A.B.3.", "First", "the first value", 0, &changed), 0u);
    EXPECT_EQ(changed, 0);
    EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "None", "x", 0), 5u);
  }
}

TEST_F(FaultResultTest, ReadsDoNotAskForWriteAccess) {
  char value[256] = "";
  CallWatch watch({fail_writable_opens(EROFS)});
  EXPECT_EQ(zrcfg_getsingleparamval("A.B.3.", "First", value, 0), 0u);
  EXPECT_EQ(watch.faults_hit(), 0u);
}

TEST_F(FaultResultTest, FailedAllocationOfTheReadBufferReturns10) {
  const Image image;
  char value[256] = "untouched";
  CallWatch watch({fail_once(Call::kAllocate, 1, ENOMEM)});
  EXPECT_EQ(getSingleParamValueByParamName(image.get(), "First", value), 10u);
  watch.stop();
  EXPECT_STREQ(value, "untouched");
  EXPECT_EQ(log_count("pBuf malloc failed!\n"), 1u);
}

// The last allocation of a write is the buffer for the new section.
TEST_F(FaultResultTest, FailedAllocationOfTheWriteBufferReturns15) {
  unsigned allocations = 0;
  {
    CallWatch watch;
    ASSERT_EQ(zrcfg_setsingleparamval("A.B.3.", "First", "x", 0), 0u);
    watch.stop();
    allocations = watch.count(Call::kAllocate);
  }
  write_fault_store();
  clear_log();
  CallWatch watch({fail_once(Call::kAllocate, allocations, ENOMEM)});
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "First", "x", 0), 15u);
  watch.stop();
  EXPECT_TRUE(log_has_in_order(
      {"pWriteBuf malloc failed!\n", "setSingleParamValueByParamName() fail ret=15!\n"}));
  EXPECT_EQ(read_property(kObjectDir), old_file_bytes());
}

}  // namespace
}  // namespace zrcfg_test
