// Every call with every system call failing in turn: documented codes, whole values, no leftovers.
#include <errno.h>
#include <gtest/gtest.h>
#include <string.h>

#include "tests/faults/fault_operations.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"

namespace zrcfg_test {
namespace {

constexpr unsigned kMostCalls = 60;

constexpr Call kFailingCalls[] = {Call::kOpen,    Call::kClose,    Call::kRead,  Call::kWrite,
                                  Call::kSeek,    Call::kTruncate, Call::kLock,  Call::kAccess,
                                  Call::kStat,    Call::kOpenDir,  Call::kFopen, Call::kOther,
                                  Call::kCloseDir};
constexpr int kErrors[] = {EIO, ENOSPC, EDQUOT, EROFS, EMFILE, EACCES};

class FaultTest : public StoreTest, public ::testing::WithParamInterface<Operation> {
 protected:
  // Runs the operation on a fresh store and checks what must hold whatever failed.
  static Outcome run_once(const std::vector<Fault> &faults, const std::string &what) {
    SCOPED_TRACE(what);
    write_fault_store();
    clear_log();
    const std::map<int, std::string> before = open_descriptors();
    const Outcome outcome = GetParam().run(faults);
    expect_sound(GetParam(), outcome);
    EXPECT_EQ(open_descriptors(), before);
    if (HasFailure()) {
      ADD_FAILURE() << "after " << what << ", result " << outcome.result << ":\n" << outcome.calls;
    }
    return outcome;
  }

  // Puts the fault at the first, second, … call of its family until none is left to hit.
  // Returns how many places there were; the pass without a hit must succeed.
  template <typename MakeFault>
  static unsigned sweep(const std::string &what, MakeFault make_fault) {
    for (unsigned nth = 1; nth < kMostCalls && !HasFailure(); ++nth) {
      const Outcome outcome = run_once({make_fault(nth)}, what + " at " + std::to_string(nth));
      if (outcome.hits == 0) {
        EXPECT_EQ(outcome.result, 0u) << what;
        return nth - 1;
      }
    }
    EXPECT_TRUE(HasFailure()) << what << " never ends";
    return 0;
  }
};

TEST_P(FaultTest, SucceedsWithoutFaults) {
  EXPECT_EQ(run_once({}, "no fault").result, 0u);
}

TEST_P(FaultTest, SingleFailuresGiveDocumentedResults) {
  unsigned places = 0;
  for (const Call call : kFailingCalls) {
    for (const int error : kErrors) {
      places += sweep(std::string(call_name(call)) + " once " + strerror(error),
                      [&](unsigned nth) { return fail_once(call, nth, error); });
    }
  }
  EXPECT_GT(places, 0u);
}

TEST_P(FaultTest, LastingFailuresGiveDocumentedResults) {
  unsigned places = 0;
  for (const Call call : kFailingCalls) {
    for (const int error : kErrors) {
      places += sweep(std::string(call_name(call)) + " for ever " + strerror(error),
                      [&](unsigned nth) { return fail_for_ever(call, nth, error); });
    }
  }
  EXPECT_GT(places, 0u);
}

TEST_P(FaultTest, InterruptionsAreHarmless) {
  for (const unsigned times : {1u, 5u}) {
    for (const Call call : kFailingCalls) {
      sweep(std::string(call_name(call)) + " interrupted " + std::to_string(times) + " times",
            [&](unsigned nth) { return fail_times(call, nth, times, EINTR); });
    }
  }
}

TEST_P(FaultTest, InterruptedReadsAndWritesBeginAgain) {
  for (const unsigned times : {1u, 5u}) {
    for (const Call call : {Call::kRead, Call::kWrite}) {
      for (unsigned nth = 1; nth < kMostCalls; ++nth) {
        const Outcome outcome = run_once({fail_times(call, nth, times, EINTR)}, call_name(call));
        EXPECT_EQ(outcome.result, 0u) << call_name(call) << " at " << nth << "\n" << outcome.calls;
        if (outcome.hits == 0) {
          break;
        }
      }
    }
  }
}

TEST_P(FaultTest, ShortReadsNeverGiveCutOrShiftedValues) {
  for (const size_t limit : {size_t{0}, size_t{1}, size_t{3}, size_t{100}, size_t{400}, size_t{565},
                             size_t{570}, size_t{590}}) {
    for (const unsigned times : {1u, 2u, kForEver}) {
      const std::string what =
          "reads of " + std::to_string(limit) + " bytes, " + std::to_string(times) + " times";
      sweep(what, [&](unsigned nth) { return cut_short(Call::kRead, nth, times, limit); });
    }
  }
}

TEST_P(FaultTest, ShortWritesLeaveOldOrNewValues) {
  for (const size_t limit : {size_t{0}, size_t{1}, size_t{10}, size_t{40}}) {
    for (const unsigned times : {1u, 2u, kForEver}) {
      const std::string what =
          "writes of " + std::to_string(limit) + " bytes, " + std::to_string(times) + " times";
      sweep(what, [&](unsigned nth) { return cut_short(Call::kWrite, nth, times, limit); });
    }
  }
}

TEST_P(FaultTest, FailedAllocationsGiveDocumentedResults) {
  unsigned places = 0;
  for (const unsigned times : {1u, kForEver}) {
    for (unsigned nth = 1; nth < kMostCalls; ++nth) {
      const Outcome outcome = run_once({fail_times(Call::kAllocate, nth, times, ENOMEM)},
                                       "allocation " + std::to_string(nth));
      if (outcome.hits == 0) {
        EXPECT_EQ(outcome.result, 0u);
        break;
      }
      ++places;
      EXPECT_EQ(GetParam().memory_codes.count(outcome.result), 1u) << outcome.result;
    }
  }
  EXPECT_EQ(places > 0, !GetParam().memory_codes.empty());
}

INSTANTIATE_TEST_SUITE_P(Calls, FaultTest, ::testing::ValuesIn(operations()),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test
