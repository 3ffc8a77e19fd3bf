// Two locks after each other: the template's is free before the parent's is asked for.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <exception>
#include <memory>
#include <thread>

#include "support/lock_holder.h"
#include "tests/lifecycle/instance_calls.h"

namespace zrcfg_test {
namespace {

using Clock = std::chrono::steady_clock;

// Waits for a condition; false when it does not come true within 20 seconds.
bool wait_for(const std::function<bool()> &condition) {
  const Clock::time_point deadline = Clock::now() + std::chrono::seconds(20);
  while (!condition()) {
    if (Clock::now() > deadline) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

// The call in a process of its own.
class CallProcess {
 public:
  CallProcess(const InstanceCall &call, int timeout) : child_(fork()) {
    if (child_ == 0) {
      // A lock holder ends when the last copy of its pipe is closed.
      for (const auto &[fd, target] : open_descriptors()) {
        if (fd > STDERR_FILENO) {
          close(fd);
        }
      }
      Outputs outputs;
      _exit(static_cast<int>(call.run(table_url(call), 2, timeout, outputs)));
    }
  }
  ~CallProcess() {
    if (child_ > 0) {
      kill_now();
      result();
    }
  }
  CallProcess(const CallProcess &) = delete;
  CallProcess &operator=(const CallProcess &) = delete;

  bool running() const {
    siginfo_t ended = {};
    return waitid(P_PID, static_cast<id_t>(child_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == 0;
  }
  // Blocks; the call's result, or -1 when the process was killed.
  int result() {
    if (child_ > 0) {
      int status = -1;
      waitpid(child_, &status, 0);
      result_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      child_ = -1;
    }
    return result_;
  }
  void kill_now() const { kill(child_, SIGKILL); }

 private:
  pid_t child_;
  int result_ = -1;
};

// Whether the store is as expected. While a call is at work, files may go under the reader's hands.
bool store_is(const Tree &expected) {
  try {
    return store_tree() == expected;
  } catch (const std::exception &) {
    return false;
  }
}

class InstanceLockTest : public InstanceCallTest {
 protected:
  // The work on the directory is done and the counter is not yet changed.
  Tree between() const {
    return GetParam().creates ? with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2")
                              : without(tree_, "Gateway/Table/2");
  }
};

TEST_P(InstanceLockTest, TemplateIsFreeWhileTheCallWaitsForTheParent) {
  auto holder = std::make_unique<LockHolder>(kParentLock, Held::kExclusive);
  CallProcess call(GetParam(), ZRCFG_WAIT_FOREVER);
  // The lock is free at first, too; so the work is awaited before the lock is looked at.
  ASSERT_TRUE(wait_for([this] { return store_is(between()); }));
  EXPECT_TRUE(wait_for([] { return exclusively_lockable(kTemplateLock); }));
  EXPECT_TRUE(call.running());
  // Others go on with the table meanwhile.
  char value[256] = "";
  EXPECT_EQ(zrcfg_getsingleparamval("Gateway.Table.1.", "A", value, 0), 0u);
  EXPECT_EQ(zrcfg_setsingleparamval("Gateway.Table.1.", "A", "one", 0), 0u);
  expect_tree(between());
  holder->release();
  EXPECT_EQ(call.result(), 0);
  expect_tree(done());
}

TEST_P(InstanceLockTest, ParentIsFreeWhileTheCallWaitsForTheTemplate) {
  auto holder = std::make_unique<LockHolder>(kTemplateLock, Held::kExclusive);
  CallProcess call(GetParam(), ZRCFG_WAIT_FOREVER);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_TRUE(call.running());
  EXPECT_TRUE(exclusively_lockable(kParentLock));
  expect_unchanged();
  holder->release();
  EXPECT_EQ(call.result(), 0);
  expect_tree(done());
}

TEST_P(InstanceLockTest, CallThatWaitsForALockIsKilledWithoutATrace) {
  {
    const LockHolder holder(kTemplateLock, Held::kExclusive);
    CallProcess call(GetParam(), ZRCFG_WAIT_FOREVER);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    call.kill_now();
    EXPECT_EQ(call.result(), -1);
  }
  expect_unchanged();
  EXPECT_EQ(run(0), 0u);
  expect_tree(done());
}

TEST_P(InstanceLockTest, CallKilledBeforeItsCounterLeavesTheCounterBehind) {
  {
    const LockHolder holder(kParentLock, Held::kExclusive);
    CallProcess call(GetParam(), ZRCFG_WAIT_FOREVER);
    ASSERT_TRUE(wait_for([this] { return store_is(between()); }));
    ASSERT_TRUE(wait_for([] { return exclusively_lockable(kTemplateLock); }));
    call.kill_now();
    EXPECT_EQ(call.result(), -1);
  }
  expect_tree(between());
  EXPECT_TRUE(exclusively_lockable(kParentLock));
}

TEST_P(InstanceLockTest, SomeoneWhoHoldsTheParentFirstIsNoDeadlock) {
  int fd = -1;
  ASSERT_EQ(zrcfg_lockurl("Gateway.", &fd, 0, 1), 0u);
  CallProcess call(GetParam(), ZRCFG_WAIT_FOREVER);
  ASSERT_TRUE(wait_for([this] { return store_is(between()); }));
  EXPECT_EQ(zrcfg_setsingleparamval("Gateway.Table.1.", "A", "held", 20000), 0u);
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
  EXPECT_EQ(call.result(), 0);
}

INSTANTIATE_TEST_SUITE_P(Calls, InstanceLockTest, ::testing::ValuesIn(dynamic_calls()),
                         [](const auto &row) { return std::string(row.param.name); });

class FixedLockTest : public InstanceCallTest {};

TEST_P(FixedLockTest, ParentAndTemplateAreNotLocked) {
  write_property("Gateway/Fixed/0/", property_file({"T"}, {"template"}));
  remember();
  const LockHolder parent(kParentLock, Held::kExclusive);
  const LockHolder zero("Gateway/Fixed/0/property.conf", Held::kExclusive);
  EXPECT_EQ(run(0), 0u);
  expect_tree(done());
}

INSTANTIATE_TEST_SUITE_P(Calls, FixedLockTest, ::testing::ValuesIn(fixed_calls()),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test
