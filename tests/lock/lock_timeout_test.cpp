// How often a lock request tries and how long it pauses, for every kind of time-out.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <limits.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>

#include "lock/object_lock.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr char kFile[] = "A/property.conf";
constexpr long long kPause = 10000;

struct Attempt {
  uint32_t result;
  int fd;
  unsigned tries;
  unsigned pauses;
  bool tries_are_non_blocking;
  bool pauses_are_10_ms;
};

class LockTimeoutTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    write_property("A/", property_file({"Name"}, {"value"}));
  }

  // Requests an exclusive lock without really sleeping.
  static Attempt request(int timeout, std::vector<Fault> faults = {}) {
    Attempt attempt = {0, -7, 0, 0, true, true};
    CallWatch watch(std::move(faults), true);
    attempt.result = cfgGetLock(kFile, &attempt.fd, timeout, 1);
    watch.stop();
    attempt.tries = watch.count(Call::kLock);
    attempt.pauses = watch.count(Call::kSleep);
    for (const CallRecord &record : watch.records()) {
      if (record.call == Call::kLock && record.flags != (LOCK_EX | LOCK_NB)) {
        attempt.tries_are_non_blocking = false;
      }
      if (record.call == Call::kSleep && record.amount != kPause) {
        attempt.pauses_are_10_ms = false;
      }
    }
    return attempt;
  }
};

// A lock on a descriptor of our own stands in the way as another process's would.
class OwnLock {
 public:
  explicit OwnLock(int operation) : fd_(open(store_path(kFile).c_str(), O_RDONLY | O_CLOEXEC)) {
    EXPECT_EQ(flock(fd_, operation), 0);
  }
  ~OwnLock() { close(fd_); }
  OwnLock(const OwnLock &) = delete;
  OwnLock &operator=(const OwnLock &) = delete;

 private:
  int fd_;
};

struct FreeFileRow {
  int timeout;
  bool tried;
};

// Without it the bytes are printed, the padding among them.
void PrintTo(const FreeFileRow &row, std::ostream *out) {
  *out << row.timeout;
}

class FreeFileTimeoutTest : public LockTimeoutTest,
                            public ::testing::WithParamInterface<FreeFileRow> {};

TEST_P(FreeFileTimeoutTest, FreeFileIsLockedWithTheFirstTryOrWithoutATryNotAtAll) {
  const Attempt attempt = request(GetParam().timeout);
  EXPECT_EQ(attempt.tries, GetParam().tried ? 1u : 0u);
  EXPECT_EQ(attempt.pauses, 0u);
  EXPECT_TRUE(attempt.tries_are_non_blocking);
  if (GetParam().tried) {
    EXPECT_EQ(attempt.result, 0u);
    ASSERT_GE(attempt.fd, 0);
    EXPECT_EQ(releaseLock(attempt.fd), 0);
    return;
  }
  EXPECT_EQ(attempt.result, 9u);
  EXPECT_EQ(attempt.fd, -1);
  EXPECT_EQ(log_count("A/property.conf file was not locked.\n"), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FreeFileTimeoutTest,
    ::testing::Values(FreeFileRow{0, true}, FreeFileRow{1, false}, FreeFileRow{5, false},
                      FreeFileRow{9, false}, FreeFileRow{10, true}, FreeFileRow{100, true},
                      FreeFileRow{INT_MAX, true}, FreeFileRow{-3, false}, FreeFileRow{-5, false},
                      FreeFileRow{-9, false}, FreeFileRow{-10, true}, FreeFileRow{-11, true},
                      FreeFileRow{INT_MIN, true}),
    [](const auto &row) {
      const int timeout = row.param.timeout;
      return (timeout < 0 ? "Minus" : "Plus") + std::to_string(std::abs(int64_t{timeout}));
    });

struct HeldFileRow {
  int timeout;
  unsigned tries;
  unsigned pauses;
};

void PrintTo(const HeldFileRow &row, std::ostream *out) {
  *out << row.timeout;
}

class HeldFileTimeoutTest : public LockTimeoutTest,
                            public ::testing::WithParamInterface<HeldFileRow> {};

TEST_P(HeldFileTimeoutTest, HeldFileIsTriedATenthOfTheTimeOutTimes) {
  const OwnLock held(LOCK_SH);
  const Attempt attempt = request(GetParam().timeout);
  EXPECT_EQ(attempt.result, 9u);
  EXPECT_EQ(attempt.fd, -1);
  EXPECT_EQ(attempt.tries, GetParam().tries);
  EXPECT_EQ(attempt.pauses, GetParam().pauses);
  EXPECT_TRUE(attempt.tries_are_non_blocking);
  EXPECT_TRUE(attempt.pauses_are_10_ms);
  EXPECT_EQ(log_count("A/property.conf file was not locked.\n"), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, HeldFileTimeoutTest,
    ::testing::Values(HeldFileRow{0, 1, 0}, HeldFileRow{1, 0, 0}, HeldFileRow{9, 0, 0},
                      HeldFileRow{10, 1, 1}, HeldFileRow{19, 1, 1}, HeldFileRow{20, 2, 2},
                      HeldFileRow{100, 10, 10}, HeldFileRow{105, 10, 10}, HeldFileRow{109, 10, 10},
                      HeldFileRow{110, 11, 11}, HeldFileRow{12345, 1234, 1234},
                      HeldFileRow{-3, 0, 0}, HeldFileRow{-4, 0, 0}, HeldFileRow{-9, 0, 0}),
    [](const auto &row) {
      const int timeout = row.param.timeout;
      return (timeout < 0 ? "Minus" : "Plus") + std::to_string(std::abs(timeout));
    });

class EndlessTimeoutTest : public LockTimeoutTest, public ::testing::WithParamInterface<int> {};

TEST_P(EndlessTimeoutTest, RetriesUntilTheLockIsFree) {
  const Attempt attempt = request(GetParam(), {fail_times(Call::kLock, 1, 5000, EWOULDBLOCK)});
  EXPECT_EQ(attempt.result, 0u);
  EXPECT_EQ(attempt.tries, 5001u);
  EXPECT_EQ(attempt.pauses, 5000u);
  EXPECT_TRUE(attempt.tries_are_non_blocking);
  EXPECT_TRUE(attempt.pauses_are_10_ms);
  ASSERT_GE(attempt.fd, 0);
  EXPECT_EQ(releaseLock(attempt.fd), 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, EndlessTimeoutTest,
                         ::testing::Values(-10, -11, -19, -1000, INT_MIN + 1, INT_MIN, INT_MAX));

TEST_F(LockTimeoutTest, LockThatBecomesFreeIsTakenWithTheNextTry) {
  const Attempt attempt = request(100, {fail_times(Call::kLock, 1, 3, EWOULDBLOCK)});
  EXPECT_EQ(attempt.result, 0u);
  EXPECT_EQ(attempt.tries, 4u);
  EXPECT_EQ(attempt.pauses, 3u);
  EXPECT_EQ(releaseLock(attempt.fd), 0);
}

TEST_F(LockTimeoutTest, LockThatBecomesFreeBehindTheLastTryIsNotTaken) {
  const Attempt attempt = request(100, {fail_times(Call::kLock, 1, 10, EWOULDBLOCK)});
  EXPECT_EQ(attempt.result, 9u);
  EXPECT_EQ(attempt.tries, 10u);
  EXPECT_EQ(attempt.pauses, 10u);
}

TEST_F(LockTimeoutTest, HundredMillisecondsTakeAboutHundredMilliseconds) {
  const OwnLock held(LOCK_EX);
  const auto start = std::chrono::steady_clock::now();
  int fd = -7;
  EXPECT_EQ(cfgGetLock(kFile, &fd, 100, 0), 9u);
  const auto taken = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(fd, -1);
  EXPECT_GE(taken, std::chrono::milliseconds(100));
  EXPECT_LT(taken, std::chrono::seconds(5));
}

TEST_F(LockTimeoutTest, WaitWithoutLimitIsOneBlockingRequest) {
  CallWatch watch;
  int shared = -7;
  EXPECT_EQ(cfgGetLock(kFile, &shared, -1, 0), 0u);
  watch.stop();
  ASSERT_EQ(watch.count(Call::kLock), 1u) << watch.describe();
  EXPECT_EQ(watch.count(Call::kSleep), 0u);
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kLock) {
      EXPECT_EQ(record.flags, LOCK_SH);
    }
  }
  EXPECT_EQ(releaseLock(shared), 0);
}

TEST_F(LockTimeoutTest, WaitWithoutLimitBeginsAgainAfterSignals) {
  const Attempt attempt = request(-1, {fail_times(Call::kLock, 1, 5, EINTR)});
  EXPECT_EQ(attempt.result, 0u);
  EXPECT_EQ(attempt.tries, 6u);
  EXPECT_EQ(attempt.pauses, 0u);
  EXPECT_EQ(releaseLock(attempt.fd), 0);
}

TEST_F(LockTimeoutTest, WaitWithoutLimitFailsOnARealError) {
  const Attempt attempt = request(-1, {fail_for_ever(Call::kLock, 1, ENOLCK)});
  EXPECT_EQ(attempt.result, 9u);
  EXPECT_EQ(attempt.fd, -1);
  EXPECT_EQ(attempt.tries, 1u);
  EXPECT_EQ(log_count("A/property.conf file was not locked.\n"), 1u);
}

TEST_F(LockTimeoutTest, MinusTwoOpensTheFileAndLocksNothing) {
  const OwnLock held(LOCK_EX);
  const Attempt attempt = request(-2);
  EXPECT_EQ(attempt.result, 0u);
  EXPECT_EQ(attempt.tries, 0u);
  EXPECT_EQ(attempt.pauses, 0u);
  ASSERT_GE(attempt.fd, 0);
  EXPECT_EQ(open_descriptors()[attempt.fd], store_path(kFile));
  EXPECT_EQ(close(attempt.fd), 0);
}

TEST_F(LockTimeoutTest, SharedRequestsUseASharedOperation) {
  const OwnLock held(LOCK_EX);
  CallWatch watch({}, true);
  int fd = -7;
  EXPECT_EQ(cfgGetLock(kFile, &fd, 50, 0), 9u);
  watch.stop();
  EXPECT_EQ(watch.count(Call::kLock), 5u);
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kLock) {
      EXPECT_EQ(record.flags, LOCK_SH | LOCK_NB);
    }
  }
}

TEST_F(LockTimeoutTest, TemplateTypeIsAnExclusiveRequest) {
  const OwnLock held(LOCK_SH);
  CallWatch watch({}, true);
  int fd = -7;
  EXPECT_EQ(cfgGetLock(kFile, &fd, 0, 2), 9u);
  watch.stop();
  ASSERT_EQ(watch.count(Call::kLock), 1u);
  for (const CallRecord &record : watch.records()) {
    if (record.call == Call::kLock) {
      EXPECT_EQ(record.flags, LOCK_EX | LOCK_NB);
    }
  }
}

TEST_F(LockTimeoutTest, SameTableHoldsThroughTheExportedCalls) {
  const OwnLock held(LOCK_EX);
  const struct {
    int timeout;
    unsigned tries;
  } rows[] = {{0, 1}, {5, 0}, {105, 10}, {-5, 0}};
  for (const auto &row : rows) {
    CallWatch watch({}, true);
    int fd = -7;
    EXPECT_EQ(zrcfg_lockurl("A.", &fd, row.timeout, 0), 0xFFFFFFFFu);
    EXPECT_EQ(watch.count(Call::kLock), row.tries) << row.timeout;
    EXPECT_EQ(fd, -1);
    watch.stop();

    CallWatch read_watch({}, true);
    char value[256] = "untouched";
    EXPECT_EQ(zrcfg_getsingleparamval("A.", "Name", value, row.timeout), 9u);
    EXPECT_EQ(read_watch.count(Call::kLock), row.tries) << row.timeout;
    EXPECT_STREQ(value, "untouched");
    read_watch.stop();
  }
}

}  // namespace
}  // namespace zrcfg_test
