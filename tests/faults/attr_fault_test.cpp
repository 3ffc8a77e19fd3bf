// The attribute calls on the day that the system refuses: codes, texts, files, and nothing left
// over.
#include <errno.h>
#include <gtest/gtest.h>
#include <string.h>

#include <optional>

#include "tests/faults/attr_operations.h"
#include "tests/support/libc_hooks.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"

namespace zrcfg_test {
namespace {

constexpr unsigned kMostCalls = 40;
constexpr char kGot[] = "2an areaa list";
constexpr char kUntouched[] = "untouched";
constexpr char kFailedWrite[] = "fwrite failed!\n";
constexpr Call kFailingCalls[] = {Call::kOpen,     Call::kClose, Call::kRead,     Call::kSeek,
                                  Call::kLock,     Call::kStat,  Call::kAccess,   Call::kOpenDir,
                                  Call::kCloseDir, Call::kFopen, Call::kTruncate, Call::kOther};

struct AttrFaultOutcome {
  uint32_t result;
  std::string output;
  unsigned hits;
  std::string calls;
};

class AttrFaultTest : public StoreTest, public ::testing::WithParamInterface<AttrOperation> {
 protected:
  static AttrFaultOutcome run(const std::vector<Fault> &faults) {
    write_attr_store();
    std::optional<AttrImage> image;
    if (GetParam().is_step) {
      image.emplace();
    }
    clear_log();
    const std::map<int, std::string> before = open_descriptors();
    AttrFaultOutcome outcome = {};
    CallWatch watch(faults, true);
    outcome.result = GetParam().run(kAttrUrl, image ? image->get() : nullptr, outcome.output);
    watch.stop();
    outcome.hits = watch.faults_hit();
    outcome.calls = watch.describe();
    EXPECT_EQ(open_descriptors(), before) << outcome.calls;
    EXPECT_EQ(locked_property_files(), std::vector<std::string>()) << outcome.calls;
    return outcome;
  }

  static std::string file_now() { return without_slots(read_property(kAttrDir)); }
  static std::string file_before() { return without_slots(attr_file_bytes()); }
  static std::string file_after() { return without_slots(GetParam().after(attr_file_bytes())); }

  // What must hold after a fault that hit no write.
  static void expect_whole(const AttrFaultOutcome &outcome, const std::string &what) {
    SCOPED_TRACE(what + ", result " + std::to_string(outcome.result) + "\n" + outcome.calls);
    EXPECT_TRUE(outcome.result == 0 || outcome.result == 8 || outcome.result == 9 ||
                outcome.result == 10 || (outcome.result == 15 && GetParam().memory_gives_15));
    EXPECT_EQ(file_now() == file_after(), outcome.result == 0 || !GetParam().writes);
    if (outcome.result != 0) {
      EXPECT_EQ(file_now(), file_before());
    }
    if (!GetParam().writes) {
      EXPECT_EQ(outcome.output, outcome.result == 0 ? kGot : kUntouched);
    }
  }
};

TEST_P(AttrFaultTest, SucceedsWithoutFaults) {
  const AttrFaultOutcome outcome = run({});
  EXPECT_EQ(outcome.result, 0u);
  expect_whole(outcome, "no fault");
}

TEST_P(AttrFaultTest, FailuresGiveDocumentedResultsAndWholeFiles) {
  for (const Call call : kFailingCalls) {
    for (const int error : {EIO, EMFILE, EACCES, EROFS}) {
      for (const unsigned times : {1u, kForEver}) {
        for (unsigned nth = 1; nth < kMostCalls && !HasFailure(); ++nth) {
          const AttrFaultOutcome outcome = run({fail_times(call, nth, times, error)});
          expect_whole(outcome, std::string(call_name(call)) + " " + strerror(error) + " at " +
                                    std::to_string(nth));
          if (outcome.hits == 0) {
            EXPECT_EQ(outcome.result, 0u);
            break;
          }
        }
      }
    }
  }
}

TEST_P(AttrFaultTest, InterruptionsAndShortReadsAreMadeGood) {
  for (const unsigned times : {1u, 5u}) {
    for (const Call call : {Call::kRead, Call::kWrite}) {
      for (unsigned nth = 1; nth < 4; ++nth) {
        const AttrFaultOutcome outcome = run({fail_times(call, nth, times, EINTR)});
        EXPECT_EQ(outcome.result, 0u) << outcome.calls;
        expect_whole(outcome, "interrupted");
      }
    }
  }
  for (const size_t limit : {size_t{1}, size_t{3}, size_t{100}, size_t{190}, size_t{400}}) {
    const AttrFaultOutcome outcome = run({cut_short(Call::kRead, 1, kForEver, limit)});
    EXPECT_EQ(outcome.result, 0u) << outcome.calls;
    expect_whole(outcome, "short reads");
  }
}

TEST_P(AttrFaultTest, FailedAllocationsGiveDocumentedResultsAndLeaveNothing) {
  for (const unsigned times : {1u, kForEver}) {
    for (unsigned nth = 1; nth < kMostCalls; ++nth) {
      const AttrFaultOutcome outcome = run({fail_times(Call::kAllocate, nth, times, ENOMEM)});
      expect_whole(outcome, "allocation " + std::to_string(nth));
      if (outcome.hits == 0) {
        EXPECT_EQ(outcome.result, 0u);
        break;
      }
      EXPECT_TRUE(outcome.result == 10 || outcome.result == 15) << outcome.result;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, AttrFaultTest, ::testing::ValuesIn(attr_operations()),
                         [](const auto &row) { return std::string(row.param.name); });

// Every node of a listing is freed when one cannot be had; the leak check looks.
class AttrListFaultTest : public AttrFaultTest {};

TEST_P(AttrListFaultTest, NodeThatCannotBeHadGives15WithItsText) {
  unsigned told = 0;
  for (unsigned nth = 1; nth < kMostCalls; ++nth) {
    const AttrFaultOutcome outcome = run({fail_once(Call::kAllocate, nth, ENOMEM)});
    if (outcome.hits == 0) {
      break;
    }
    if (outcome.result == 15) {
      ++told;
      EXPECT_EQ(log_count("ptr is NULL\n"), 1u);
      EXPECT_EQ(log_count("getParamAttrList() fail ret=15!\n"), GetParam().is_step ? 0u : 1u);
      EXPECT_EQ(outcome.output, kUntouched);
    }
  }
  EXPECT_EQ(told, 3u) << "one for each node";
}

INSTANTIATE_TEST_SUITE_P(Operations, AttrListFaultTest,
                         ::testing::Values(attr_operations()[2], attr_operations()[5]),
                         [](const auto &row) { return std::string(row.param.name); });

class AttrWriteFaultTest : public AttrFaultTest {
 protected:
  // Every byte is the old one or the new one, and nothing lies behind the end.
  static void expect_old_or_new_bytes() {
    const std::string now = file_now();
    const std::string before = file_before();
    const std::string after = file_after();
    ASSERT_EQ(now.size(), before.size());
    for (size_t i = 0; i < now.size(); ++i) {
      EXPECT_TRUE(now[i] == before[i] || now[i] == after[i]) << "byte " << i;
    }
  }
  static bool changes_all() { return std::string(GetParam().name).compare(0, 6, "SetAll") == 0; }
};

TEST_P(AttrWriteFaultTest, FailedWriteIsNotReportedButLogged) {
  const AttrFaultOutcome good = run({});
  const size_t lines = log_texts().size();
  EXPECT_EQ(good.result, 0u);
  for (const int error : {EIO, ENOSPC, EDQUOT, EFBIG}) {
    const AttrFaultOutcome outcome = run({fail_for_ever(Call::kWrite, 1, error)});
    EXPECT_GT(outcome.hits, 0u);
    EXPECT_EQ(outcome.result, 0u);
    EXPECT_EQ(file_now(), file_before());
    EXPECT_GT(log_texts().size(), lines) << "a line tells";
    EXPECT_EQ(log_count(kFailedWrite), changes_all() ? 3u : log_count(kFailedWrite))
        << "one for each record";
  }
}

TEST_P(AttrWriteFaultTest, ShortWriteIsCompletedOrLogged) {
  run({});
  const size_t lines = log_texts().size();
  for (const size_t limit :
       {size_t{0}, size_t{1}, size_t{50}, size_t{123}, size_t{124}, size_t{130}, size_t{250}}) {
    for (const unsigned times : {1u, 2u, kForEver}) {
      const AttrFaultOutcome outcome = run({cut_short(Call::kWrite, 1, times, limit)});
      EXPECT_EQ(outcome.result, 0u);
      expect_old_or_new_bytes();
      EXPECT_TRUE(file_now() == file_after() || log_texts().size() > lines) << outcome.calls;
    }
    // Cut, and then the medium is full.
    const AttrFaultOutcome full =
        run({cut_short(Call::kWrite, 1, 1, limit), fail_for_ever(Call::kWrite, 2, ENOSPC)});
    EXPECT_EQ(full.result, 0u);
    expect_old_or_new_bytes();
    EXPECT_TRUE(file_now() == file_after() || log_texts().size() > lines) << full.calls;
  }
}

TEST_P(AttrWriteFaultTest, SingleFailedWriteLeavesOldOrNewRecords) {
  run({});
  const size_t lines = log_texts().size();
  for (unsigned nth = 1; nth < 6; ++nth) {
    const AttrFaultOutcome outcome = run({fail_once(Call::kWrite, nth, ENOSPC)});
    EXPECT_EQ(outcome.result, 0u);
    expect_old_or_new_bytes();
    EXPECT_TRUE(file_now() == file_after() || log_texts().size() > lines) << outcome.calls;
  }
}

TEST_P(AttrWriteFaultTest, TextUpdateTellsTheNumberOfRecordsWritten) {
  if (std::string(GetParam().name).compare(0, 7, "SetText") != 0) {
    run({});
    EXPECT_FALSE(log_contains("param's attr has write to file. wcount=1\n"));
    return;
  }
  run({fail_for_ever(Call::kWrite, 1, ENOSPC)});
  EXPECT_EQ(log_count("param's attr has write to file. wcount=0\n"), 1u);
  run({});
  EXPECT_EQ(log_count("param's attr has write to file. wcount=1\n"), 1u);
}

TEST_P(AttrWriteFaultTest, FileThatCannotBeOpenedForWritingGives8) {
  for (const int error : {EROFS, EACCES, EMFILE, ETXTBSY}) {
    const AttrFaultOutcome outcome = run({fail_writable_opens(error)});
    EXPECT_GT(outcome.hits, 0u);
    EXPECT_EQ(outcome.result, 8u) << strerror(error);
    EXPECT_EQ(log_count("unable to open A/B/3/property.conf file\n"), 1u);
    EXPECT_EQ(file_now(), file_before());
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, AttrWriteFaultTest, ::testing::ValuesIn(attr_writers()),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test
