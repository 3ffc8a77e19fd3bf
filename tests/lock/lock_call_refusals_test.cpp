// What the lock calls refuse before they lock anything, and with which code in which layer.
#include <gtest/gtest.h>

#include "lock/object_lock.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

using Names = std::vector<std::string>;
constexpr uint32_t kMinusOne = 0xFFFFFFFFu;

class LockCallRefusalsTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    write_property("A/", property_file({"Name"}, {"value"}));
  }
};

class LockTypeRefusalTest : public LockCallRefusalsTest,
                            public ::testing::WithParamInterface<uint32_t> {};

TEST_P(LockTypeRefusalTest, EveryLayerHasItsOwnCode) {
  for (const int timeout : {-2, -1, 0, 5, 100}) {
    int fd = -7;
    EXPECT_EQ(cfgGetLock("A/property.conf", &fd, timeout, GetParam()), 11u) << timeout;
    EXPECT_EQ(fd, -1);
    fd = -7;
    EXPECT_EQ(getLock("A/", &fd, timeout, GetParam()), -1) << timeout;
    EXPECT_EQ(fd, -1);
    fd = -7;
    EXPECT_EQ(zrcfg_lockurl("A.", &fd, timeout, GetParam()), kMinusOne) << timeout;
    EXPECT_EQ(fd, -1);
  }
  for (const int timeout : {-1, 0, 5, 100}) {
    int sentinel = 0;
    ZrcfgObject *image = &sentinel;
    int fd = -1;
    EXPECT_EQ(createObjByPath(&image, "A/", &fd, GetParam(), timeout), 9u) << timeout;
    EXPECT_EQ(fd, -1);
    EXPECT_EQ(image, &sentinel);
  }
}

INSTANTIATE_TEST_SUITE_P(Types, LockTypeRefusalTest, ::testing::Values(3u, 4u, 256u, 0xFFFFFFFFu));

TEST_F(LockCallRefusalsTest, LockTypeIsTestedBeforeTheFileIsOpened) {
  CallWatch watch;
  int fd = -7;
  EXPECT_EQ(cfgGetLock("A/none", &fd, 0, 3), 11u);
  watch.stop();
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(watch.system_calls(), 0u) << watch.describe();
  EXPECT_EQ(log_texts(), Names{});
}

TEST_F(LockCallRefusalsTest, LockTypeRefusalIsLoggedByGetLock) {
  int fd = -7;
  EXPECT_EQ(getLock("A/", &fd, 0, 3), -1);
  EXPECT_EQ(log_texts(), (Names{"getLockFile() objPath=A/!\n",
                                "objPath=A/ lockfile=A/property.conf, rwType=3 ,lock fail.\n"}));
}

TEST_F(LockCallRefusalsTest, CfgGetLockReturns8ForAFileThatCannotBeOpened) {
  for (const int timeout : {-2, -1, 0, 5, -5, 100}) {
    clear_log();
    int fd = -7;
    EXPECT_EQ(cfgGetLock("A/none", &fd, timeout, 0), 8u) << timeout;
    EXPECT_EQ(fd, -1);
    EXPECT_EQ(log_texts(), Names{"unable to open A/none file\n"});
  }
}

TEST_F(LockCallRefusalsTest, LockUrlReturnsMinusOneForAMissingObject) {
  for (const int timeout : {-2, -1, 0, 5, 100}) {
    int fd = -7;
    EXPECT_EQ(zrcfg_lockurl("No.Such.", &fd, timeout, 0), kMinusOne) << timeout;
    EXPECT_EQ(fd, -1);
  }
}

TEST_F(LockCallRefusalsTest, UrlWithoutItsFinalDotHasNoLockFile) {
  int fd = -7;
  EXPECT_EQ(zrcfg_lockurl("A", &fd, 0, 0), kMinusOne);
  EXPECT_EQ(fd, -1);
}

TEST_F(LockCallRefusalsTest, NullDescriptorIsRefusedInEveryLayer) {
  EXPECT_EQ(cfgGetLock("A/property.conf", nullptr, 0, 0), 10u);
  EXPECT_EQ(getLock("A/", nullptr, 0, 0), -1);
  EXPECT_EQ(zrcfg_lockurl("A.", nullptr, 0, 0), kMinusOne);
  EXPECT_EQ(zrcfg_lockurl(std::string(256, 'u').c_str(), nullptr, 0, 0), 1u);
}

TEST_F(LockCallRefusalsTest, NullPathsAreRefused) {
  int fd = -7;
  EXPECT_EQ(cfgGetLock(nullptr, &fd, 0, 0), 10u);
  EXPECT_EQ(fd, -1);
  fd = -7;
  EXPECT_EQ(getLock(nullptr, &fd, 0, 0), -1);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(isLocked(nullptr), 1);
}

TEST_F(LockCallRefusalsTest, NullUrlReturns10) {
  CallWatch watch;
  int fd = -1;
  EXPECT_EQ(zrcfg_lockurl(nullptr, &fd, 0, 0), 10u);
  EXPECT_EQ(fd, -1);
  EXPECT_EQ(zrcfg_lockurl(nullptr, nullptr, 0, 0), 10u);
  EXPECT_EQ(zrcfg_islock(nullptr), 10u);
  watch.stop();
  EXPECT_EQ(watch.system_calls(), 0u) << watch.describe();
  const std::string text = "Input parameters can't be NULL!\n";
  EXPECT_EQ(log_texts(), (Names{text, text, text}));
}

TEST_F(LockCallRefusalsTest, UrlOf256CharactersReturns1WithoutFileAccess) {
  for (const size_t length : {size_t{256}, size_t{257}, size_t{5000}}) {
    clear_log();
    const std::string url(length, 'u');
    const std::string text = "pObjUrl len=" + std::to_string(length) + " out of range!\n";
    CallWatch watch;
    int fd = -7;
    EXPECT_EQ(zrcfg_lockurl(url.c_str(), &fd, 0, 0), 1u);
    EXPECT_EQ(fd, -1);
    EXPECT_EQ(zrcfg_islock(url.c_str()), 1u);
    watch.stop();
    EXPECT_EQ(watch.system_calls(), 0u) << watch.describe();
    EXPECT_EQ(log_count(text), 2u);
  }
}

TEST_F(LockCallRefusalsTest, UrlOf255CharactersIsServed) {
  const std::string dir = std::string(200, 'x') + "/" + std::string(53, 'y') + "/";
  std::string url = dir;
  for (char &c : url) {
    c = c == '/' ? '.' : c;
  }
  ASSERT_EQ(url.size(), 255u);
  write_property(dir, property_file({"Name"}, {"value"}));
  const std::string before = url;
  int fd = -7;
  EXPECT_EQ(zrcfg_lockurl(url.c_str(), &fd, 0, 1), 0u);
  EXPECT_EQ(url, before);
  EXPECT_EQ(zrcfg_islock(url.c_str()), 0u);
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

TEST_F(LockCallRefusalsTest, OperationsReportARefusedLockAs9) {
  make_store_dir("Empty/");
  char value[256] = "untouched";
  EXPECT_EQ(zrcfg_getsingleparamval("Empty.", "Name", value, 0), 9u);
  EXPECT_EQ(zrcfg_getsingleparamval("Empty.", "Name", value, -2), 8u);
  EXPECT_EQ(zrcfg_setsingleparamval("Empty.", "Name", "x", 0), 9u);
  EXPECT_EQ(zrcfg_setsingleparamval("Empty.", "Name", "x", -2), 8u);
  EXPECT_STREQ(value, "untouched");
}

}  // namespace
}  // namespace zrcfg_test
