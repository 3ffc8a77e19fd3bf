// Locks between processes: who waits for whom, signals while waiting, and holders that are killed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "lock/object_lock.h"
#include "tests/support/lock_holder.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr char kLockFile[] = "A/B/0/property.conf";

class LockProcessTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    write_property("A/B/0/", property_file({"Name"}, {"template"}));
    write_property("A/B/3/", property_file({"Name"}, {"three"}));
  }
};

// The library's answers while another process holds a lock of one kind.
struct SharingRow {
  Held held;
  uint32_t type;
  bool granted;
};

// Without it the bytes are printed, the padding among them.
void PrintTo(const SharingRow &row, std::ostream *out) {
  *out << (row.held == Held::kShared ? "held shared" : "held exclusively") << ", type " << row.type;
}

class LockSharingTest : public LockProcessTest, public ::testing::WithParamInterface<SharingRow> {};

TEST_P(LockSharingTest, ReadersShareAndWritersExclude) {
  const LockHolder holder(kLockFile, GetParam().held);
  for (const int timeout : {0, 10, 30}) {
    int fd = -7;
    EXPECT_EQ(zrcfg_lockurl("A.B.3.", &fd, timeout, GetParam().type),
              GetParam().granted ? 0u : 0xFFFFFFFFu);
    EXPECT_EQ(fd >= 0, GetParam().granted);
    zrcfg_releaselock(fd);
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, LockSharingTest,
                         ::testing::Values(SharingRow{Held::kShared, 0, true},
                                           SharingRow{Held::kShared, 1, false},
                                           SharingRow{Held::kShared, 2, false},
                                           SharingRow{Held::kExclusive, 0, false},
                                           SharingRow{Held::kExclusive, 1, false},
                                           SharingRow{Held::kExclusive, 2, false}));

TEST_F(LockProcessTest, ReadsPassASharedLockAndWritesDoNot) {
  const LockHolder holder(kLockFile, Held::kShared);
  char value[256] = "";
  EXPECT_EQ(zrcfg_getsingleparamval("A.B.3.", "Name", value, 0), 0u);
  EXPECT_STREQ(value, "three");
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "Name", "new", 20), 9u);
  EXPECT_EQ(value_section(read_property("A/B/3/")), "three\n");
}

TEST_F(LockProcessTest, LockOnTheInstancesOwnFileDoesNotCount) {
  const LockHolder holder("A/B/3/property.conf", Held::kExclusive);
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "Name", "new", 0), 0u);
  EXPECT_EQ(value_section(read_property("A/B/3/")), "new\n");
}

TEST_F(LockProcessTest, KilledHolderFreesItsLock) {
  LockHolder holder(kLockFile, Held::kExclusive);
  int fd = -7;
  ASSERT_EQ(zrcfg_lockurl("A.B.3.", &fd, 0, 0), 0xFFFFFFFFu);
  holder.kill_child();
  ASSERT_EQ(zrcfg_lockurl("A.B.3.", &fd, 0, 1), 0u);
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

TEST_F(LockProcessTest, WaitingRequestGetsTheLockOfAKilledHolder) {
  LockHolder holder(kLockFile, Held::kExclusive);
  std::thread killer([&] {
    std::this_thread::sleep_for(milliseconds(100));
    holder.kill_child();
  });
  int fd = -7;
  EXPECT_EQ(zrcfg_lockurl("A.B.3.", &fd, -1, 1), 0u);
  killer.join();
  ASSERT_GE(fd, 0);
  EXPECT_FALSE(shared_lockable(kLockFile));
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

TEST_F(LockProcessTest, RequestWithATimeOutWaitsForTheRelease) {
  LockHolder holder(kLockFile, Held::kExclusive);
  const Clock::time_point start = Clock::now();
  std::thread releaser([&] {
    std::this_thread::sleep_for(milliseconds(100));
    holder.release();
  });
  EXPECT_EQ(zrcfg_setsingleparamval("A.B.3.", "Name", "new", 20000), 0u);
  EXPECT_GE(Clock::now() - start, milliseconds(100));
  releaser.join();
  EXPECT_EQ(value_section(read_property("A/B/3/")), "new\n");
}

TEST_F(LockProcessTest, NegativeTimeOutRetriesUntilTheRelease) {
  LockHolder holder(kLockFile, Held::kShared);
  std::thread releaser([&] {
    std::this_thread::sleep_for(milliseconds(100));
    holder.release();
  });
  int fd = -7;
  EXPECT_EQ(zrcfg_lockurl("A.B.3.", &fd, -10, 1), 0u);
  releaser.join();
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

std::atomic<int> signals_seen{0};

void count_signal(int) {
  ++signals_seen;
}

class Interrupted {
 public:
  // A handler without SA_RESTART: a blocking call that a signal meets ends with EINTR.
  Interrupted() {
    signals_seen = 0;
    struct sigaction action = {};
    action.sa_handler = count_signal;
    sigemptyset(&action.sa_mask);
    sigaction(SIGUSR1, &action, &before_);
  }
  ~Interrupted() { sigaction(SIGUSR1, &before_, nullptr); }
  Interrupted(const Interrupted &) = delete;
  Interrupted &operator=(const Interrupted &) = delete;

 private:
  struct sigaction before_ = {};
};

TEST_F(LockProcessTest, WaitWithoutLimitSurvivesSignals) {
  const Interrupted handler;
  LockHolder holder(kLockFile, Held::kExclusive);
  const pthread_t waiting = pthread_self();
  std::atomic<bool> released{false};
  std::thread disturber([&] {
    for (int i = 0; i < 10; ++i) {
      std::this_thread::sleep_for(milliseconds(20));
      pthread_kill(waiting, SIGUSR1);
    }
    released = true;
    holder.release();
  });
  int fd = -7;
  const uint32_t result = zrcfg_lockurl("A.B.3.", &fd, -1, 1);
  EXPECT_TRUE(released) << "the request came back while the lock was held";
  disturber.join();
  EXPECT_EQ(result, 0u);
  EXPECT_GE(signals_seen, 1);
  ASSERT_GE(fd, 0);
  EXPECT_FALSE(shared_lockable(kLockFile));
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

TEST_F(LockProcessTest, DescriptorOfALockDoesNotOutliveExec) {
  int fd = -7;
  ASSERT_EQ(zrcfg_lockurl("A.B.3.", &fd, 0, 1), 0u);
  int ready[2];
  ASSERT_EQ(pipe2(ready, O_CLOEXEC), 0);
  const pid_t child = fork();
  if (child == 0) {
    execlp("sleep", "sleep", "30", static_cast<char *>(nullptr));
    _exit(127);
  }
  close(ready[1]);
  char ignored;
  EXPECT_EQ(read(ready[0], &ignored, 1), 0) << "the child has not changed its program";
  close(ready[0]);
  EXPECT_EQ(close(fd), 0);  // Without unlocking: a copy in the child would keep the lock.
  EXPECT_TRUE(exclusively_lockable(kLockFile));
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status)) << "the program could not be run";
}

// Each of several processes adds one to a number, many times; no addition may be lost.
TEST_F(LockProcessTest, IncrementsUnderTheLockAreNeverLost) {
  constexpr int kProcesses = 4;
  constexpr int kRounds = 25;
  write_property("A/B/3/", property_file({"Name", "Count"}, {"three", "0"}));
  pid_t children[kProcesses];
  for (pid_t &child : children) {
    child = fork();
    if (child != 0) {
      continue;
    }
    for (int i = 0; i < kRounds; ++i) {
      int fd = -1;
      char value[256] = "";
      if (zrcfg_lockurl("A.B.3.", &fd, -1, 1) != 0 ||
          zrcfg_getsingleparamval("A.B.3.", "Count", value, -2) != 0) {
        _exit(1);
      }
      const std::string next = std::to_string(atoi(value) + 1);
      if (zrcfg_setsingleparamval("A.B.3.", "Count", next.c_str(), -2) != 0 ||
          zrcfg_releaselock(fd) != 0) {
        _exit(2);
      }
    }
    _exit(0);
  }
  for (const pid_t child : children) {
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(value_section(read_property("A/B/3/")),
            "three\n" + std::to_string(kProcesses * kRounds) + "\n");
}

// Writes two values of different length in turn until it is killed.
[[noreturn]] void write_for_ever(const std::string &one, const std::string &other) {
  for (;;) {
    for (const std::string &value : {one, other}) {
      if (zrcfg_setsingleparamval("A.B.3.", "First", value.c_str(), -1) != 0) {
        _exit(1);
      }
    }
  }
}

// Readers see a whole old or a whole new section while another process writes.
TEST_F(LockProcessTest, ReadersNeverSeeHalfAWrite) {
  const std::string longer(250, 'l');
  write_property("A/B/3/", property_file({"First", "Second"}, {"s", "fixed"}));
  const pid_t writer = fork();
  if (writer == 0) {
    write_for_ever(longer, "s");
  }
  const Clock::time_point deadline = Clock::now() + std::chrono::seconds(60);
  std::string last = "s";
  int changes = 0;
  while (changes < 20 && Clock::now() < deadline && !HasFailure()) {
    char first[256] = "";
    char second[256] = "";
    EXPECT_EQ(zrcfg_getsingleparamval("A.B.3.", "First", first, -1), 0u);
    EXPECT_EQ(zrcfg_getsingleparamval("A.B.3.", "Second", second, -1), 0u);
    EXPECT_TRUE(first == longer || first == std::string("s")) << first;
    EXPECT_STREQ(second, "fixed");
    changes += first != last ? 1 : 0;
    last = first;
  }
  kill(writer, SIGKILL);
  int status = -1;
  ASSERT_EQ(waitpid(writer, &status, 0), writer);
  EXPECT_TRUE(WIFSIGNALED(status)) << "the writer failed";
  EXPECT_EQ(changes, 20) << "the two hardly met";
}

}  // namespace
}  // namespace zrcfg_test
