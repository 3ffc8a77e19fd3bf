// Tests of the rotation: when the file is moved, by which commands, and what is left.
#include <gmock/gmock.h>

#include <filesystem>
#include <ostream>
#include <string>

#include "log/zrcfg_log.h"
#include "tests/log/log_support.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kLine[] = "Thu Jan  1 00:00:00 1970,w[1]: m\n";

class LogRotationTest : public LogTest {
 protected:
  void SetUp() override {
    LogTest::SetUp();
    if (!HasFatalFailure()) {
      set_zone("UTC");
      stop_clock(0);
      switch_on();
      ASSERT_EQ(init_zrcfg_logger(), 0);
      clear_shell_commands();
    }
  }

  static int log_once() { return zrcfg_logger(0, "w", 1, "m\n"); }
  static std::string text_of(size_t size) {
    std::string text = "first line\n" + std::string(size, 'x');
    text.resize(size);
    return text;
  }
  static void expect_rotated(const std::string &old_text) {
    EXPECT_THAT(shell_commands(), ElementsAre(kMove, kTouchAgain));
    EXPECT_EQ(read_store_file(kBackup), old_text);
    EXPECT_EQ(log_text(), kLine) << "the fresh file holds the new line alone";
  }
  static void expect_kept(const std::string &old_text) {
    EXPECT_THAT(shell_commands(), IsEmpty());
    EXPECT_FALSE(store_entry_exists(kBackup));
    EXPECT_EQ(log_text(), old_text + kLine);
  }
};

struct Threshold {
  int setting;
  size_t size;
  bool rotated;
};

void PrintTo(const Threshold &row, std::ostream *out) {
  *out << row.setting << " KiB, " << row.size << " bytes";
}

class ThresholdTest : public LogRotationTest, public ::testing::WithParamInterface<Threshold> {};

TEST_P(ThresholdTest, FileIsMovedWhenItIsLarger) {
  zrcfg_log_size = GetParam().setting;
  const std::string old_text = text_of(GetParam().size);
  write_store_file(kLog, old_text);
  EXPECT_EQ(log_once(), 0);
  if (GetParam().rotated) {
    expect_rotated(old_text);
  } else {
    expect_kept(old_text);
  }
}

INSTANTIATE_TEST_SUITE_P(Default, ThresholdTest,
                         ::testing::Values(Threshold{2000, 2048000, false},
                                           Threshold{2000, 2048001, true},
                                           Threshold{2000, 3000000, true}));
INSTANTIATE_TEST_SUITE_P(Set, ThresholdTest,
                         ::testing::Values(Threshold{1, 1023, false}, Threshold{1, 1024, false},
                                           Threshold{1, 1025, true}, Threshold{0, 0, false},
                                           Threshold{0, 1, true},
                                           Threshold{2097151, 2048001, false},
                                           Threshold{3, 3072, false}, Threshold{3, 3073, true}));
// The comparison has a sign: below zero every file is larger.
INSTANTIATE_TEST_SUITE_P(Negative, ThresholdTest,
                         ::testing::Values(Threshold{-1, 0, true}, Threshold{-1, 100, true}));

TEST_F(LogRotationTest, SizeOfTheNewLineDoesNotCount) {
  zrcfg_log_size = 1;
  write_store_file(kLog, text_of(1020));
  EXPECT_EQ(log_once(), 0);
  expect_kept(text_of(1020));
  EXPECT_EQ(log_once(), 0);
  expect_rotated(text_of(1020) + kLine);
}

TEST_F(LogRotationTest, PreviousBackupIsOverwritten) {
  zrcfg_log_size = 0;
  for (int generation = 1; generation <= 3; ++generation) {
    write_store_file(kLog, "generation " + std::to_string(generation));
    EXPECT_EQ(log_once(), 0);
    EXPECT_EQ(read_store_file(kBackup), "generation " + std::to_string(generation));
    EXPECT_EQ(log_text(), kLine);
  }
  EXPECT_FALSE(store_entry_exists("zrcfg.log.bak.bak"));
  EXPECT_FALSE(store_entry_exists("zrcfg.log.bak1"));
}

TEST_F(LogRotationTest, EveryModeRotates) {
  zrcfg_log_size = 0;
  for (const int mode : {0, 1, 2, 3}) {
    zrcfg_log_out_mode = mode;
    write_store_file(kLog, "older");
    clear_shell_commands();
    StreamCapture error(stderr);
    EXPECT_EQ(log_once(), 0);
    EXPECT_EQ(error.end(), mode == 0 || mode == 2 ? kLine : "");
    EXPECT_THAT(shell_commands(), ElementsAre(kMove, kTouchAgain));
    EXPECT_EQ(read_store_file(kBackup), "older");
    EXPECT_EQ(log_text(), mode == 1 || mode == 2 ? kLine : "");
  }
}

TEST_F(LogRotationTest, SwitchedOffLoggerDoesNotRotate) {
  switch_off();
  write_store_file(kLog, text_of(2048001));
  EXPECT_EQ(log_once(), 0);
  EXPECT_THAT(shell_commands(), IsEmpty());
  EXPECT_EQ(log_text(), text_of(2048001));
}

TEST_F(LogRotationTest, CommandsKeepTheirPathsWhenTheSettingIsChanged) {
  zrcfg_log_size = 1;
  write_store_file(kLog, "the usual file");
  write_store_file("other.log", text_of(1025));
  set_log_path("/var/other.log");
  EXPECT_EQ(log_once(), 0);
  EXPECT_THAT(shell_commands(), ElementsAre(kMove, kTouchAgain));
  EXPECT_EQ(read_store_file(kBackup), "the usual file");
  EXPECT_EQ(log_text(), "") << "made anew, but the lines go elsewhere";
  EXPECT_EQ(read_store_file("other.log"), text_of(1025) + kLine) << "the measured file only grows";
  EXPECT_FALSE(store_entry_exists("other.log.bak"));
}

TEST_F(LogRotationTest, TheMeasuredFileIsTheOneThatIsSet) {
  zrcfg_log_size = 1;
  write_store_file(kLog, text_of(5000));
  write_store_file("other.log", "short\n");
  set_log_path("/var/other.log");
  EXPECT_EQ(log_once(), 0);
  EXPECT_THAT(shell_commands(), IsEmpty());
  EXPECT_EQ(log_text(), text_of(5000));
}

TEST_F(LogRotationTest, FailedCommandsAreNotDetectedAndTheLineIsAppended) {
  zrcfg_log_size = 0;
  write_store_file(kLog, "older\n");
  const std::string path = getenv("PATH");
  setenv("PATH", "/nowhere", 1);
  int result;
  {
    const StreamCapture shells_complaint(stderr);
    result = log_once();
  }
  setenv("PATH", path.c_str(), 1);
  EXPECT_EQ(result, 0);
  EXPECT_THAT(shell_commands(), ElementsAre(kMove, kTouchAgain));
  EXPECT_EQ(log_text(), std::string("older\n") + kLine);
  EXPECT_FALSE(store_entry_exists(kBackup));
}

TEST_F(LogRotationTest, StampIsOlderThanTheRotation) {
  zrcfg_log_size = 0;
  write_store_file(kLog, "older\n");
  watch_shell([](const std::string &) { stop_clock(1000000000); });
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(log_text(), kLine) << "the time is taken first";
}

}  // namespace
}  // namespace zrcfg_test
