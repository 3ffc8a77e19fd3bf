// Value writes that fail half way: the old values are put back and the call says so.
#include <errno.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <string.h>
#include <sys/resource.h>

#include <algorithm>

#include "tests/faults/fault_operations.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

std::vector<Operation> writing_operations() {
  std::vector<Operation> writing;
  for (const Operation &operation : operations()) {
    if (operation.new_values != old_values()) {
      writing.push_back(operation);
    }
  }
  return writing;
}

class FaultWriteTest : public StoreTest, public ::testing::WithParamInterface<Operation> {
 protected:
  static void expect_old_values_and_7(const std::vector<Fault> &faults) {
    write_fault_store();
    clear_log();
    const Outcome outcome = GetParam().run(faults);
    expect_sound(GetParam(), outcome);
    EXPECT_EQ(outcome.result, 7u) << outcome.calls;
    EXPECT_EQ(outcome.changed, GetParam().has_changed_flag ? 1 : -1);
    EXPECT_GT(outcome.hits, 0u) << "nothing failed";
  }

  static bool shrinks() { return GetParam().new_values.size() < old_values().size(); }
};

TEST_P(FaultWriteTest, FailedWriteReturns7) {
  for (const int error : {EIO, ENOSPC, EDQUOT, EROFS, EFBIG}) {
    expect_old_values_and_7({fail_once(Call::kWrite, 1, error)});
    expect_old_values_and_7({fail_for_ever(Call::kWrite, 1, error)});
  }
}

TEST_P(FaultWriteTest, WriteThatStopsShortPutsTheOldSectionBack) {
  const size_t most = GetParam().new_values.size();
  for (size_t written = 1; written < most; written += 3) {
    SCOPED_TRACE(written);
    expect_old_values_and_7(
        {cut_short(Call::kWrite, 1, 1, written), fail_once(Call::kWrite, 2, ENOSPC)});
  }
}

TEST_P(FaultWriteTest, WriteThatStopsShortInSeveralStepsPutsTheOldSectionBack) {
  expect_old_values_and_7({cut_short(Call::kWrite, 1, 3, 7), fail_once(Call::kWrite, 4, ENOSPC)});
}

TEST_P(FaultWriteTest, PuttingBackIsNotStoppedByShortWritesOrSignals) {
  expect_old_values_and_7({cut_short(Call::kWrite, 1, 1, 9), fail_once(Call::kWrite, 2, ENOSPC),
                           cut_short(Call::kWrite, 3, 4, 5)});
  expect_old_values_and_7({cut_short(Call::kWrite, 1, 1, 9), fail_once(Call::kWrite, 2, ENOSPC),
                           fail_times(Call::kWrite, 3, 2, EINTR)});
}

TEST_P(FaultWriteTest, FailedTruncationPutsTheOldSectionBack) {
  if (!shrinks()) {
    write_fault_store();
    const Outcome outcome = GetParam().run({fail_for_ever(Call::kTruncate, 1, EIO)});
    EXPECT_EQ(outcome.hits, 0u) << "a growing file is not truncated";
    expect_sound(GetParam(), outcome);
    return;
  }
  expect_old_values_and_7({fail_once(Call::kTruncate, 1, EIO)});
  expect_old_values_and_7({fail_for_ever(Call::kTruncate, 1, EIO)});
}

TEST_P(FaultWriteTest, FileThatCannotBeOpenedForWritingReturns7) {
  for (const int error : {EROFS, EACCES}) {
    expect_old_values_and_7({fail_writable_opens(error)});
    EXPECT_EQ(log_count("unable to open A/B/3/property.conf file\n"), 1u);
  }
}

TEST_P(FaultWriteTest, FailedWriteIsLogged) {
  write_fault_store();
  clear_log();
  ASSERT_EQ(GetParam().run({}).result, 0u);
  const std::vector<std::string> usual = log_texts();
  write_fault_store();
  clear_log();
  ASSERT_EQ(GetParam().run({fail_once(Call::kWrite, 1, ENOSPC)}).result, 7u);
  size_t about_the_write = 0;
  for (const std::string &text : log_texts()) {
    const bool frame = text.find("() fail ret=7!\n") != std::string::npos;
    about_the_write += !frame && std::find(usual.begin(), usual.end(), text) == usual.end() ? 1 : 0;
  }
  // Lines with a descriptor or an address may differ too, but not on the two runs of one program.
  EXPECT_GE(about_the_write, 1u);
}

// When putting the old section back fails as well, values may be lost; nothing else is.
TEST_P(FaultWriteTest, FailureOfThePuttingBackStillReturns7AndFreesTheObject) {
  write_fault_store();
  const std::map<int, std::string> before = open_descriptors();
  const std::string head = old_file_bytes().substr(0, value_offset(old_file_bytes()));
  const Outcome outcome =
      GetParam().run({cut_short(Call::kWrite, 1, 1, 9), fail_for_ever(Call::kWrite, 2, EIO)});
  EXPECT_EQ(outcome.result, 7u) << outcome.calls;
  EXPECT_EQ(open_descriptors(), before);
  EXPECT_EQ(locked_property_files(), std::vector<std::string>());
  EXPECT_EQ(read_property(kObjectDir).substr(0, head.size()), head);
}

INSTANTIATE_TEST_SUITE_P(Calls, FaultWriteTest, ::testing::ValuesIn(writing_operations()),
                         [](const auto &row) { return std::string(row.param.name); });

// A file system that is really full: the kernel takes what fits and refuses the rest.
class FullFileSystem {
 public:
  explicit FullFileSystem(size_t largest_file) {
    before_handler_ = signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    struct rlimit limit = before_;
    limit.rlim_cur = largest_file;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullFileSystem() {
    setrlimit(RLIMIT_FSIZE, &before_);
    signal(SIGXFSZ, before_handler_);
  }
  FullFileSystem(const FullFileSystem &) = delete;
  FullFileSystem &operator=(const FullFileSystem &) = delete;

 private:
  struct rlimit before_ = {};
  sighandler_t before_handler_;
};

class FullFileSystemTest : public StoreTest {};

TEST_F(FullFileSystemTest, LimitOnTheFileSizeLeavesTheOldValues) {
  for (const size_t room : {size_t{0}, size_t{1}, size_t{20}}) {
    write_fault_store();
    uint32_t result = 0;
    {
      const FullFileSystem full(old_file_bytes().size() + room);
      result = zrcfg_setsingleparamval("A.B.3.", "First", std::string(200, 'l').c_str(), 0);
    }
    EXPECT_EQ(result, 7u);
    EXPECT_EQ(read_property(kObjectDir), old_file_bytes());
  }
}

TEST_F(FullFileSystemTest, ShorterValueIsStoredAllTheSame) {
  write_fault_store();
  uint32_t result = 7;
  {
    const FullFileSystem full(old_file_bytes().size());
    result = zrcfg_setsingleparamval("A.B.3.", "First", "s", 0);
  }
  EXPECT_EQ(result, 0u);
  char value[256] = "";
  EXPECT_EQ(zrcfg_getsingleparamval("A.B.3.", "First", value, 0), 0u);
  EXPECT_STREQ(value, "s");
}

}  // namespace
}  // namespace zrcfg_test
