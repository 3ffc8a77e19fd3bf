// The enumeration under failing system calls and allocations: documented codes, lists that are
// never wrong, nothing left behind.
#include <errno.h>
#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <string>

#include "tests/faults/enum_fault_calls.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/log_capture.h"
#include "tests/support/scan_hook.h"
#include "tests/support/store_fixture.h"

namespace zrcfg_test {
namespace {

constexpr unsigned kMostPlaces = 200;

class EnumFaultTest : public StoreTest, public ::testing::WithParamInterface<ListCall> {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (!HasFatalFailure()) {
      write_list_tree();
    }
  }

  static Given run(const std::vector<Fault> &faults, unsigned &hits) {
    const std::map<int, std::string> before = open_descriptors();
    clear_log();
    CallWatch watch(faults, true);
    const Given given = GetParam().run();
    watch.stop();
    hits = watch.faults_hit();
    EXPECT_EQ(open_descriptors(), before) << watch.describe();
    EXPECT_EQ(locked_property_files(), std::vector<std::string>()) << watch.describe();
    expect_sound(given, hits);
    return given;
  }

  static void expect_sound(const Given &given, unsigned hits) {
    const ListCall &call = GetParam();
    if (hits == 0) {
      EXPECT_EQ(given.result, 0u);
      EXPECT_EQ(given.nodes, call.full);
    }
    if (given.result != 0) {
      EXPECT_EQ(call.failures.count(given.result), 1u) << given.result;
      EXPECT_FALSE(given.written) << "nothing is stored on a failure";
      return;
    }
    EXPECT_TRUE(given.written);
    EXPECT_TRUE(is_part_of(given.nodes, call.full)) << ::testing::PrintToString(given.nodes);
  }

  // At the first, second, … call of a family until there is none left to hit.
  template <typename MakeFault>
  static unsigned sweep(MakeFault make_fault) {
    for (unsigned nth = 1; nth < kMostPlaces && !HasFailure(); ++nth) {
      unsigned hits = 0;
      (void)run({make_fault(nth)}, hits);
      if (hits == 0) {
        return nth - 1;
      }
    }
    EXPECT_TRUE(HasFailure()) << "never ends";
    return 0;
  }
};

TEST_P(EnumFaultTest, FailingCallsNeverGiveAWrongList) {
  for (const Call call : {Call::kOpen, Call::kClose, Call::kRead, Call::kSeek, Call::kLock,
                          Call::kAccess, Call::kStat, Call::kOpenDir, Call::kCloseDir}) {
    for (const int error : {EIO, EMFILE, EACCES, EINTR}) {
      SCOPED_TRACE(std::string(call_name(call)) + " " + strerror(error));
      sweep([&](unsigned nth) { return fail_once(call, nth, error); });
      // What signals interrupt may begin again without end.
      if (error != EINTR) {
        sweep([&](unsigned nth) { return fail_for_ever(call, nth, error); });
      }
    }
  }
}

TEST_P(EnumFaultTest, FailingAllocationsNeverGiveAWrongList) {
  const unsigned once = sweep([](unsigned nth) { return fail_once(Call::kAllocate, nth, ENOMEM); });
  EXPECT_GE(once, GetParam().full.size()) << "a block for each node at least";
  sweep([](unsigned nth) { return fail_for_ever(Call::kAllocate, nth, ENOMEM); });
}

TEST_P(EnumFaultTest, FailingScansNeverGiveAWrongList) {
  for (const int error : {EMFILE, EACCES, ENOMEM, ENOENT}) {
    unsigned scans = 1;
    for (unsigned nth = 1; nth <= scans; ++nth) {
      ScanHooks hooks;
      unsigned number = 0;
      hooks.before = [&](const std::string &) { return ++number == nth ? error : 0; };
      const ScanHook hook(hooks);
      unsigned hits = 0;
      CallWatch watch;
      const Given given = GetParam().run();
      watch.stop();
      hits = number >= nth ? 1 : 0;
      expect_sound(given, hits);
      scans = std::max(scans, hook.count());
    }
  }
}

TEST_P(EnumFaultTest, InterruptedReadsBeginAgain) {
  for (unsigned nth = 1; nth < kMostPlaces; ++nth) {
    unsigned hits = 0;
    const Given given = run({fail_times(Call::kRead, nth, 3, EINTR)}, hits);
    EXPECT_EQ(given.result, 0u);
    EXPECT_EQ(given.nodes, GetParam().full);
    if (hits == 0) {
      break;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, EnumFaultTest,
                         ::testing::Values(ListCall{"Names", run_names, {1, 9, 15}, kNames},
                                           ListCall{"Construct", run_construct, {1, 15}, kNames},
                                           ListCall{"Children", run_children, {1}, kChildren},
                                           ListCall{"Object", run_object, {8, 9, 10, 15}, kObject},
                                           ListCall{"Flat", run_flat, {kListFailed}, kFlat},
                                           ListCall{"Walk", run_walk, {kListFailed}, kWalk}),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test
