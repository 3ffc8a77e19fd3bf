// How many system calls the attribute calls make, and in which order.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string.h>
#include <sys/file.h>

#include "tests/faults/attr_operations.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/lock_holder.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"

namespace zrcfg_test {
namespace {

// Of an object that is its own lock file two fewer.
constexpr unsigned kQueryBudget = 7;
constexpr unsigned kQueryBudgetOnTheLockFile = 5;
constexpr unsigned kUpdateBudget = 8;
constexpr unsigned kUpdateBudgetOnTheLockFile = 6;
// It opens for reading, and for writing only when it knows that there is a parameter.
constexpr unsigned kSetAllBudget = 11;
constexpr unsigned kSetAllBudgetOnTheLockFile = 9;
constexpr unsigned kStepBudget = 5;

size_t first_of(const std::vector<CallRecord> &calls, Call call, int flags = -1) {
  size_t i = 0;
  while (i < calls.size() && (calls[i].call != call || (flags != -1 && calls[i].flags != flags))) {
    ++i;
  }
  return i;
}

size_t last_of(const std::vector<CallRecord> &calls, Call call) {
  size_t last = calls.size();
  for (size_t i = 0; i < calls.size(); ++i) {
    last = calls[i].call == call ? i : last;
  }
  return last;
}

unsigned writable_opens(const CallWatch &watch) {
  unsigned count = 0;
  for (const CallRecord &record : watch.records()) {
    const bool opening = record.call == Call::kOpen;
    count += opening && (record.flags & O_ACCMODE) != O_RDONLY ? 1 : 0;
  }
  return count;
}

class AttrSyscallCountTest : public StoreTest, public ::testing::WithParamInterface<AttrOperation> {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (!HasFatalFailure()) {
      write_attr_store();
    }
  }

  // The list has two parameters that are no neighbours; no record between them is written.
  static unsigned writes() {
    const bool list = strncmp(GetParam().name, "SetMulti", strlen("SetMulti")) == 0;
    return GetParam().writes ? (list ? 2 : 1) : 0;
  }

  static uint32_t run(const char *url = kAttrUrl, ZrcfgObject *image = nullptr) {
    std::string output;
    return GetParam().run(url, image, output);
  }
};

using AttrCallCountTest = AttrSyscallCountTest;

TEST_P(AttrCallCountTest, StaysInItsBudget) {
  for (const char *url : {"A.B.3.", "A.", "A.B.0."}) {
    CallWatch watch;
    EXPECT_EQ(run(url), 0u);
    watch.stop();
    const bool own_lock = strcmp(url, "A.B.3.") != 0;
    const unsigned query = own_lock ? kQueryBudgetOnTheLockFile : kQueryBudget;
    const bool all = strcmp(GetParam().name, "SetAll") == 0;
    const unsigned update = own_lock
                                ? (all ? kSetAllBudgetOnTheLockFile : kUpdateBudgetOnTheLockFile)
                                : (all ? kSetAllBudget : kUpdateBudget);
    EXPECT_LE(watch.system_calls(), GetParam().writes ? update - 1 + writes() : query)
        << watch.describe();
    EXPECT_EQ(watch.count(Call::kFopen), 0u) << "no standard I/O";
    EXPECT_EQ(watch.count(Call::kTruncate) + watch.count(Call::kOther), 0u);
    EXPECT_EQ(watch.count(Call::kWrite), writes()) << watch.describe();
    EXPECT_EQ(watch.count(Call::kOpen), watch.count(Call::kClose));
  }
}

TEST_P(AttrCallCountTest, CountDoesNotDependOnTheSizeOfTheTree) {
  CallWatch small;
  EXPECT_EQ(run(), 0u);
  small.stop();
  for (int i = 4; i < 100; ++i) {
    make_store_dir("A/B/" + std::to_string(i) + "/C/0/");
  }
  CallWatch large;
  EXPECT_EQ(run(), 0u);
  large.stop();
  EXPECT_EQ(large.system_calls(), small.system_calls());
}

TEST_P(AttrCallCountTest, IsLockThenReadThenWriteThenUnlock) {
  for (const char *url : {"A.", "A.B.3."}) {
    CallWatch watch;
    ASSERT_EQ(run(url), 0u);
    watch.stop();
    const std::vector<CallRecord> calls = watch.records();
    const bool shared = !GetParam().writes || strcmp(GetParam().name, "SetAll") == 0;
    const size_t lock = first_of(calls, Call::kLock, (shared ? LOCK_SH : LOCK_EX) | LOCK_NB);
    const size_t unlock = first_of(calls, Call::kLock, LOCK_UN);
    ASSERT_LT(lock, calls.size()) << watch.describe();
    ASSERT_LT(unlock, calls.size()) << watch.describe();
    EXPECT_EQ(watch.count(Call::kLock), 2u) << "no second lock";
    EXPECT_EQ(calls[lock].fd, calls[unlock].fd);
    EXPECT_LT(lock, first_of(calls, Call::kRead));
    EXPECT_LT(last_of(calls, Call::kRead), unlock);
    if (GetParam().writes) {
      EXPECT_LT(last_of(calls, Call::kRead), first_of(calls, Call::kWrite));
      EXPECT_LT(last_of(calls, Call::kWrite), unlock);
    }
  }
}

TEST_P(AttrCallCountTest, QueriesDoNotAskForWriteAccess) {
  CallWatch watch;
  EXPECT_EQ(run(), 0u);
  watch.stop();
  EXPECT_EQ(writable_opens(watch), GetParam().writes ? 1u : 0u) << watch.describe();
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kOpen) {
      EXPECT_NE(record.flags & O_CLOEXEC, 0) << record.path;
    }
  }
}

TEST_P(AttrCallCountTest, RefusedUrlsTouchNothing) {
  const std::string url(256, 'u');
  CallWatch watch;
  EXPECT_EQ(run(url.c_str()), 1u);
  EXPECT_EQ(run(nullptr), 10u);
  watch.stop();
  EXPECT_EQ(watch.system_calls(), 0u) << watch.describe();
}

std::vector<AttrOperation> operations_that(bool are_steps) {
  std::vector<AttrOperation> chosen;
  for (const AttrOperation &operation : attr_operations()) {
    if (operation.is_step == are_steps) {
      chosen.push_back(operation);
    }
  }
  return chosen;
}

INSTANTIATE_TEST_SUITE_P(Calls, AttrCallCountTest, ::testing::ValuesIn(operations_that(false)),
                         [](const auto &row) { return std::string(row.param.name); });

using AttrStepCountTest = AttrSyscallCountTest;

TEST_P(AttrStepCountTest, QueriesTouchNoFileAndUpdatesStayInTheirBudget) {
  const AttrImage image;
  CallWatch watch;
  EXPECT_EQ(run(kAttrUrl, image.get()), 0u);
  watch.stop();
  EXPECT_LE(watch.system_calls(), GetParam().writes ? kStepBudget - 1 + writes() : 0u)
      << watch.describe();
  EXPECT_EQ(watch.count(Call::kWrite), writes());
  EXPECT_EQ(watch.count(Call::kLock), 0u) << "a file in its place is not locked";
}

INSTANTIATE_TEST_SUITE_P(Steps, AttrStepCountTest, ::testing::ValuesIn(operations_that(true)),
                         [](const auto &row) { return std::string(row.param.name); });

class AttrSetAllCountTest : public StoreTest {};

TEST_F(AttrSetAllCountTest, ObjectWithoutParametersIsNotOpenedForWriting) {
  write_property(kAttrDir, PropertyFile());
  ParamAttrChange change = {};
  change.noti_change = 1;
  CallWatch watch;
  EXPECT_EQ(zrcfg_setallParamattr(kAttrUrl, &change, 0), 16u);
  watch.stop();
  EXPECT_EQ(writable_opens(watch), 0u) << watch.describe();
}

TEST_F(AttrSetAllCountTest, NothingToChangeAsksForNoWrite) {
  write_attr_store();
  const ParamAttrChange change = {};
  CallWatch watch;
  EXPECT_EQ(zrcfg_setallParamattr(kAttrUrl, &change, 0), 0u);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kWrite), 0u);
}

TEST_F(AttrSetAllCountTest, LimitsOfTheWanIndexWait5Seconds) {
  const std::string dir = "InternetGatewayDevice/WANDevice/1/WANConnectionDevice/";
  write_property(dir, PropertyFile());
  const LockHolder holder(dir + "property.conf", Held::kExclusive);
  uint32_t limit = 77;
  CallWatch watch({}, true);
  EXPECT_EQ(zrcfg_GetMaxWanNum(&limit), 9u);
  watch.stop();
  EXPECT_EQ(limit, 77u);
  EXPECT_EQ(watch.count(Call::kSleep), 500u) << "10 ms each";
}

}  // namespace
}  // namespace zrcfg_test
