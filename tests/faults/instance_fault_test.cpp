// Every call on instances with every system call failing in turn, or with the process killed there:
// documented codes, whole templates, a counter that tells what was done, and nothing left locked.
#include <errno.h>
#include <gtest/gtest.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

#include "tests/faults/instance_fault_operations.h"
#include "tests/lifecycle/lifecycle_support.h"
#include "tests/support/libc_hooks.h"

namespace zrcfg_test {
namespace {

constexpr unsigned kMostCalls = 150;
constexpr Call kCalls[] = {Call::kOpen, Call::kClose,    Call::kRead,  Call::kWrite,
                           Call::kSeek, Call::kTruncate, Call::kLock,  Call::kAccess,
                           Call::kStat, Call::kOpenDir,  Call::kOther, Call::kCloseDir};
// The calls that change what others see; being killed in front of another one is the same as being
// killed in front of the next of these.
constexpr Call kChangingCalls[] = {Call::kOpen,     Call::kClose, Call::kWrite,
                                   Call::kTruncate, Call::kLock,  Call::kOther};
constexpr int kErrors[] = {EIO, ENOSPC, EMFILE};

class InstanceFaultTest : public LifecycleTest,
                          public ::testing::WithParamInterface<InstanceOperation> {
 protected:
  void SetUp() override {
    LifecycleTest::SetUp();
    std::filesystem::remove_all("/var/Gateway/Table/3");
    set_counter("2");
  }
  // The counter after the whole work.
  std::string new_counter() const {
    const InstanceOperation &operation = GetParam();
    if (!operation.counts || operation.effect == Effect::kReplaces) {
      return "2";
    }
    return operation.effect == Effect::kDeletes ? "1" : "3";
  }
  std::string source() const { return GetParam().counts ? "Gateway/Table/0" : "Gateway/Fixed/1"; }
  Tree done() const {
    const InstanceOperation &operation = GetParam();
    Tree tree = with_counter(tree_, new_counter());
    if (operation.effect != Effect::kCreates && !operation.instance.empty()) {
      tree = without(tree, operation.instance);
    }
    if (operation.effect == Effect::kCreates || operation.effect == Effect::kReplaces) {
      tree = with_copy(tree, source(), operation.instance);
    }
    return tree;
  }
  // Whatever happened: other objects are whole, and the instance is a part of what it was or of
  // what it was to be. Returns the counter, or "" when the parent's file is neither.
  std::string expect_sound(const Tree &found) const {
    const InstanceOperation &operation = GetParam();
    return expect_sound_but(found, operation.instance);
  }
  // The same with another directory than the operation's own.
  std::string expect_sound_but(const Tree &found, const std::string &instance) const {
    std::string counter;
    for (const char *value : {"1", "2", "3"}) {
      Tree tree = with_counter(tree_, value);
      if (found.at(kParentLock) == tree.at(kParentLock)) {
        counter = value;
      }
    }
    Tree rest = found;
    rest.erase(kParentLock);
    Tree expected = tree_;
    expected.erase(kParentLock);
    if (instance.empty()) {
      EXPECT_EQ(rest, expected);
      return counter;
    }
    EXPECT_EQ(without(rest, instance), without(expected, instance));
    const Tree whole = with_copy(tree_, source(), instance);
    for (const auto &[path, entry] : subtree(found, instance)) {
      const auto old = tree_.find(path);
      EXPECT_TRUE((old != tree_.end() && old->second == entry) || is_part(whole, path, entry))
          << path;
    }
    return counter;
  }
  // Whether the entry is as in the whole tree, or a beginning or a copy with gaps of its file.
  static bool is_part(const Tree &whole, const std::string &path, const std::string &entry) {
    const auto found = whole.find(path);
    if (found == whole.end() || entry.size() > found->second.size()) {
      return false;
    }
    for (size_t i = 0; i < entry.size(); ++i) {
      if (entry[i] != found->second[i] && entry[i] != '\0') {
        return false;
      }
    }
    return true;
  }

  // The instance that a call under these faults works on: a number that cannot be asked for is not
  // free, so that the next one may be taken.
  static std::string touched(const std::vector<Fault> &faults, const Tree &found) {
    const bool blind =
        !faults.empty() && (faults[0].call == Call::kOpenDir || faults[0].call == Call::kOpen);
    const bool other =
        blind && GetParam().name == std::string("Add") && found.count("Gateway/Table/3") == 1;
    return other ? "Gateway/Table/3" : GetParam().instance;
  }

  void run_once(const std::vector<Fault> &faults, const std::string &what, bool loses_data) {
    SCOPED_TRACE(what);
    SetUp();
    const std::map<int, std::string> before = open_descriptors();
    uint32_t result = 0;
    std::string calls;
    const std::string output = printed([&] {
      CallWatch watch(faults, true);
      result = GetParam().run();
      watch.stop();
      hits_ = watch.faults_hit();
      calls = watch.describe();
    });
    EXPECT_EQ(open_descriptors(), before);
    EXPECT_EQ(locked_property_files(), std::vector<std::string>());
    EXPECT_TRUE(result == 0 || GetParam().failures.count(result) == 1) << result;
    const Tree found = store_tree();
    const std::string counter = expect_sound_but(found, touched(faults, found));
    EXPECT_TRUE(counter == "2" || counter == new_counter() ||
                GetParam().effect == Effect::kReplaces)
        << counter;
    if (result == 0 && GetParam().effect != Effect::kReplaces) {
      EXPECT_EQ(counter, new_counter());
    }
    if (result == 0) {
      EXPECT_TRUE(loses_data || hits_ != 0 || found == done());
    }
    if (result != 0 && GetParam().effect == Effect::kCreates && result != 17 && !loses_data) {
      EXPECT_EQ(counter, "2");
    }
    if (HasFailure()) {
      ADD_FAILURE() << "after " << what << ", result " << result << ":\n" << output << calls;
    }
  }

  template <typename MakeFault>
  unsigned sweep(const std::string &what, bool loses_data, MakeFault make_fault) {
    for (unsigned nth = 1; nth < kMostCalls && !HasFailure(); ++nth) {
      run_once({make_fault(nth)}, what + " at " + std::to_string(nth), loses_data);
      if (hits_ == 0) {
        return nth - 1;
      }
    }
    EXPECT_TRUE(HasFailure()) << what << " never ends";
    return 0;
  }

  unsigned hits_ = 0;
};

TEST_P(InstanceFaultTest, SucceedsWithoutFaults) {
  EXPECT_EQ(GetParam().run(), 0u);
  expect_tree(done());
}

TEST_P(InstanceFaultTest, SingleFailuresGiveDocumentedResults) {
  unsigned places = 0;
  for (const Call call : kCalls) {
    for (const int error : kErrors) {
      places += sweep(std::string(call_name(call)) + " once " + strerror(error), true,
                      [&](unsigned nth) { return fail_once(call, nth, error); });
    }
  }
  EXPECT_GT(places, 0u);
}

TEST_P(InstanceFaultTest, LastingFailuresGiveDocumentedResults) {
  unsigned places = 0;
  for (const Call call : kCalls) {
    places += sweep(std::string(call_name(call)) + " for ever", true,
                    [&](unsigned nth) { return fail_for_ever(call, nth, EIO); });
  }
  EXPECT_GT(places, 0u);
}

TEST_P(InstanceFaultTest, FailedAllocationsGiveDocumentedResults) {
  for (const unsigned times : {1u, kForEver}) {
    sweep("allocation", true,
          [&](unsigned nth) { return fail_times(Call::kAllocate, nth, times, ENOMEM); });
  }
}

TEST_P(InstanceFaultTest, InterruptedAndShortTransfersAreHarmless) {
  for (const Call call : {Call::kRead, Call::kWrite}) {
    for (unsigned nth = 1; nth < kMostCalls; ++nth) {
      run_once({fail_times(call, nth, 3, EINTR)}, "interruption", false);
      EXPECT_EQ(store_tree(), done()) << nth;
      if (hits_ == 0) {
        break;
      }
    }
    sweep("short transfers", true,
          [&](unsigned nth) { return cut_short(call, nth, kForEver, 50); });
  }
}

// A process that is killed leaves its locks free; what it has done by then is all in order: the
// counter is changed only when the instance is whole, or gone.
TEST_P(InstanceFaultTest, KilledInFrontOfAnyCallItBlocksNobody) {
  for (const Call call : kChangingCalls) {
    for (unsigned nth = 1; nth < kMostCalls; ++nth) {
      SCOPED_TRACE(std::string(call_name(call)) + " " + std::to_string(nth));
      SetUp();
      const pid_t child = fork();
      if (child == 0) {
        CallWatch watch({kill_at(call, nth)}, true);
        _exit(GetParam().run() == 0 ? 0 : 1);
      }
      int status = -1;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      EXPECT_EQ(locked_property_files(), std::vector<std::string>());
      const Tree found = store_tree();
      if (WIFEXITED(status)) {
        EXPECT_EQ(WEXITSTATUS(status), 0);
        EXPECT_EQ(found, done());
        break;
      }
      const std::string counter = expect_sound(found);
      if (counter == new_counter() && GetParam().counts && GetParam().effect != Effect::kReplaces) {
        EXPECT_EQ(found, done());
      }
      uint32_t index = 0;
      EXPECT_EQ(zrcfg_addobject("Gateway.Table.", &index, 0), 0u);
      EXPECT_EQ(zrcfg_delobject("Gateway.Table.", static_cast<int>(index), 0), 0u);
      if (HasFailure()) {
        return;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, InstanceFaultTest, ::testing::ValuesIn(instance_operations()),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test
