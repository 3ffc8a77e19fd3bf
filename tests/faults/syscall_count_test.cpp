// How many system calls a single read and a single write make, and in which order.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "tests/support/libc_hooks.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr unsigned kReadBudget = 7;
constexpr unsigned kReadBudgetOnTheLockFile = 5;
constexpr unsigned kWriteBudget = 9;
constexpr unsigned kWriteBudgetOnTheLockFile = 7;

class SyscallCountTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    const PropertyFile file = property_file({"First", "Second"}, {"one", "two"});
    write_property("A/", file);
    write_property("A/B/0/", file);
    write_property("A/B/3/", file);
  }
};

PropertyFile file_of(int records, size_t value_length) {
  PropertyFile file;
  for (int i = 0; i < records; ++i) {
    file.add("Name" + std::to_string(i), std::string(value_length, 'v'));
  }
  return file;
}

size_t index_of(const std::vector<CallRecord> &calls, Call call, int flags = -1) {
  for (size_t i = 0; i < calls.size(); ++i) {
    if (calls[i].call == call && (flags == -1 || calls[i].flags == flags)) {
      return i;
    }
  }
  return calls.size();
}

size_t last_of(const std::vector<CallRecord> &calls, Call call) {
  size_t last = calls.size();
  for (size_t i = 0; i < calls.size(); ++i) {
    last = calls[i].call == call ? i : last;
  }
  return last;
}

unsigned read_calls(const char *url, const char *name, const std::string &expected) {
  char value[256] = "";
  CallWatch watch;
  EXPECT_EQ(zrcfg_getsingleparamval(url, name, value, 0), 0u);
  watch.stop();
  EXPECT_EQ(value, expected);
  EXPECT_GT(watch.count(Call::kRead), 0u);
  EXPECT_GT(watch.count(Call::kLock), 0u);
  EXPECT_EQ(watch.count(Call::kFopen), 0u) << "no standard I/O";
  return watch.system_calls();
}

unsigned write_calls(const char *url, const char *name, const char *value) {
  CallWatch watch;
  EXPECT_EQ(zrcfg_setsingleparamval(url, name, value, 0), 0u);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kWrite), 1u) << watch.describe();
  EXPECT_EQ(watch.count(Call::kFopen), 0u) << "no standard I/O";
  return watch.system_calls();
}

TEST_F(SyscallCountTest, ReadOfAnInstanceStaysInItsBudget) {
  EXPECT_LE(read_calls("A.B.3.", "Second", "two"), kReadBudget);
}

TEST_F(SyscallCountTest, ReadOfAnObjectThatIsItsOwnLockFileStaysInItsBudget) {
  EXPECT_LE(read_calls("A.", "Second", "two"), kReadBudgetOnTheLockFile);
  EXPECT_LE(read_calls("A.B.0.", "Second", "two"), kReadBudgetOnTheLockFile);
}

TEST_F(SyscallCountTest, WriteStaysInItsBudget) {
  EXPECT_LE(write_calls("A.B.3.", "First", "a longer value than before"), kWriteBudget);
  EXPECT_LE(write_calls("A.B.3.", "First", "s"), kWriteBudget) << "with a truncation";
  EXPECT_LE(write_calls("A.", "First", "a longer value than before"), kWriteBudgetOnTheLockFile);
  EXPECT_LE(write_calls("A.", "First", "s"), kWriteBudgetOnTheLockFile) << "with a truncation";
}

TEST_F(SyscallCountTest, CountsDoNotDependOnTheSizeOfTheTree) {
  const unsigned reads = read_calls("A.B.3.", "First", "one");
  const unsigned writes = write_calls("A.B.3.", "First", "longer");
  const std::string value(20, 'v');
  for (int i = 4; i < 200; ++i) {
    make_store_dir("A/B/" + std::to_string(i) + "/C/0/");
  }
  write_property("A/B/0/", file_of(255, 200));
  write_property("A/B/3/", file_of(100, value.size()));
  EXPECT_EQ(read_calls("A.B.3.", "Name99", value), reads);
  EXPECT_EQ(write_calls("A.B.3.", "Name50", "a value that is longer than the one before"), writes);
  write_property("A/B/3/C/1/D/2/E/5/", file_of(100, value.size()));
  EXPECT_EQ(read_calls("A.B.3.C.1.D.2.E.5.", "Name0", value), reads);
}

TEST_F(SyscallCountTest, LargestObjectsCostFurtherReadsOnly) {
  CallWatch small;
  ASSERT_EQ(zrcfg_setsingleparamval("A.B.3.", "First", "two", 0), 0u);
  small.stop();
  const unsigned others = small.system_calls() - small.count(Call::kRead);
  write_property("A/B/3/", file_of(255, 254));
  CallWatch large;
  ASSERT_EQ(zrcfg_setsingleparamval("A.B.3.", "Name127", std::string(255, 'x').c_str(), 0), 0u);
  large.stop();
  EXPECT_EQ(large.system_calls() - large.count(Call::kRead), others) << large.describe();
  EXPECT_EQ(large.count(Call::kWrite), 1u);
}

TEST_F(SyscallCountTest, ReadIsLockThenReadThenUnlock) {
  for (const char *url : {"A.", "A.B.3."}) {
    char value[256] = "";
    CallWatch watch;
    ASSERT_EQ(zrcfg_getsingleparamval(url, "First", value, 0), 0u);
    watch.stop();
    const std::vector<CallRecord> calls = watch.records();
    const size_t lock = index_of(calls, Call::kLock, LOCK_SH | LOCK_NB);
    const size_t unlock = index_of(calls, Call::kLock, LOCK_UN);
    ASSERT_LT(lock, calls.size()) << watch.describe();
    ASSERT_LT(unlock, calls.size()) << watch.describe();
    EXPECT_EQ(calls[lock].fd, calls[unlock].fd);
    EXPECT_EQ(watch.count(Call::kLock), 2u);
    EXPECT_LT(lock, index_of(calls, Call::kRead)) << watch.describe();
    EXPECT_LT(last_of(calls, Call::kRead), unlock) << watch.describe();
    EXPECT_EQ(watch.count(Call::kWrite) + watch.count(Call::kTruncate), 0u);
    EXPECT_EQ(watch.count(Call::kOpen), watch.count(Call::kClose));
  }
}

TEST_F(SyscallCountTest, WriteIsLockThenReadThenWriteThenUnlock) {
  for (const char *url : {"A.", "A.B.3."}) {
    CallWatch watch;
    ASSERT_EQ(zrcfg_setsingleparamval(url, "First", "x", -1), 0u);
    watch.stop();
    const std::vector<CallRecord> calls = watch.records();
    const size_t lock = index_of(calls, Call::kLock, LOCK_EX);
    const size_t unlock = index_of(calls, Call::kLock, LOCK_UN);
    ASSERT_LT(lock, calls.size()) << watch.describe();
    ASSERT_LT(unlock, calls.size()) << watch.describe();
    EXPECT_EQ(calls[lock].fd, calls[unlock].fd);
    EXPECT_LT(lock, index_of(calls, Call::kRead)) << watch.describe();
    EXPECT_LT(last_of(calls, Call::kRead), index_of(calls, Call::kWrite)) << watch.describe();
    EXPECT_LT(last_of(calls, Call::kWrite), last_of(calls, Call::kTruncate)) << watch.describe();
    EXPECT_LT(last_of(calls, Call::kTruncate), unlock) << watch.describe();
    EXPECT_EQ(watch.count(Call::kWrite), 1u);
    EXPECT_EQ(watch.count(Call::kTruncate), 1u);
    EXPECT_EQ(watch.count(Call::kOpen), watch.count(Call::kClose));
  }
}

TEST_F(SyscallCountTest, LongerOrEqualSectionIsNotTruncated) {
  for (const char *value : {"six", "longer"}) {
    CallWatch watch;
    ASSERT_EQ(zrcfg_setsingleparamval("A.B.3.", "First", value, 0), 0u);
    watch.stop();
    EXPECT_EQ(watch.count(Call::kTruncate), 0u) << watch.describe();
  }
}

TEST_F(SyscallCountTest, HeaderAndRecordsAreNotWrittenAgain) {
  CallWatch watch;
  ASSERT_EQ(zrcfg_setsingleparamval("A.B.3.", "First", "longer", 0), 0u);
  watch.stop();
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kWrite) {
      EXPECT_EQ(record.amount, static_cast<long long>(sizeof "longer\ntwo\n" - 1));
    }
  }
}

TEST_F(SyscallCountTest, UnchangedWriteWritesNothing) {
  struct stat before = {};
  struct stat after = {};
  ASSERT_EQ(stat(property_path("A/B/3/").c_str(), &before), 0);
  uint8_t changed = 7;
  CallWatch watch;
  ASSERT_EQ(zrcfg_setsingleparamval_ext("A.B.3.", "First", "one", 0, &changed), 0u);
  watch.stop();
  EXPECT_EQ(changed, 0);
  EXPECT_EQ(watch.count(Call::kWrite), 0u);
  EXPECT_EQ(watch.count(Call::kTruncate), 0u);
  EXPECT_EQ(watch.count(Call::kOther), 0u);
  EXPECT_LE(watch.system_calls(), kWriteBudget);
  ASSERT_EQ(stat(property_path("A/B/3/").c_str(), &after), 0);
  EXPECT_EQ(before.st_mtim.tv_sec, after.st_mtim.tv_sec);
  EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
}

TEST_F(SyscallCountTest, UnknownParameterWritesNothing) {
  CallWatch watch;
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "None", "one", 0), 5u);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kWrite) + watch.count(Call::kTruncate), 0u);
}

TEST_F(SyscallCountTest, NoLockMeansNoLockCall) {
  char value[256] = "";
  CallWatch watch;
  EXPECT_EQ(zrcfg_getsingleparamval("A.B.3.", "First", value, -2), 0u);
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "First", "x", -2), 0u);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kLock), 0u) << watch.describe();
}

TEST_F(SyscallCountTest, RefusedArgumentsTouchNothing) {
  const std::string long_url(256, 'u');
  const std::string long_value(256, 'v');
  char value[256] = "";
  CallWatch watch;
  EXPECT_EQ(zrcfg_getsingleparamval(long_url.c_str(), "First", value, 0), 1u);
  EXPECT_EQ(zrcfg_getsingleparamval(nullptr, "First", value, 0), 10u);
  EXPECT_EQ(zrcfg_setsingleparamval(long_url.c_str(), "First", "x", 0), 1u);
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "First", long_value.c_str(), 0), 0u);
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", nullptr, "x", 0), 10u);
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "First", "line\nfeed", 0), 7u);
  watch.stop();
  EXPECT_EQ(watch.system_calls(), 0u) << watch.describe();
}

TEST_F(SyscallCountTest, EveryDescriptorClosesOnExec) {
  char value[256] = "";
  uint8_t changed = 0;
  CallWatch watch;
  EXPECT_EQ(zrcfg_getsingleparamval("A.B.3.", "First", value, 0), 0u);
  EXPECT_EQ(zrcfg_setsingleparamval_ext("A.B.3.", "First", "x", 0, &changed), 0u);
  EXPECT_EQ(zrcfg_islock("A.B.3."), 0u);
  watch.stop();
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kOpen) {
      EXPECT_NE(record.flags & O_CLOEXEC, 0) << record.function << " " << record.path;
    }
  }
}

}  // namespace
}  // namespace zrcfg_test
