// Tests of the logger's lines: the time stamp, the prefix, the message, where they go.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <ostream>
#include <string>

#include "log/zrcfg_log.h"
#include "tests/log/log_support.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

using ::testing::MatchesRegex;

constexpr char kEpochLine[] = "Thu Jan  1 00:00:00 1970,parser[42]: text";

class LogLineTest : public LogTest {
 protected:
  void SetUp() override {
    LogTest::SetUp();
    if (!HasFatalFailure()) {
      switch_on();
      set_zone("UTC");
      stop_clock(0);
    }
  }
};

TEST_F(LogLineTest, LineIsStampPrefixAndMessageAndNothingElse) {
  EXPECT_EQ(zrcfg_logger(0, "parser", 42, "text"), 0);
  EXPECT_EQ(log_text(), kEpochLine);
}

TEST_F(LogLineTest, LineFeedIsTheCallers) {
  EXPECT_EQ(zrcfg_logger(0, "parser", 42, "text\n"), 0);
  EXPECT_EQ(zrcfg_logger(0, "parser", 42, "text\n"), 0);
  EXPECT_EQ(log_text(), std::string(kEpochLine) + "\n" + kEpochLine + "\n");
}

TEST_F(LogLineTest, StampOfTheRunningClockHasItsForm) {
  run_clock();
  EXPECT_EQ(zrcfg_logger(0, "parser", 42, "text\n"), 0);
  EXPECT_THAT(log_text(),
              MatchesRegex("(Mon|Tue|Wed|Thu|Fri|Sat|Sun) "
                           "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) [ 123][0-9] "
                           "[012][0-9]:[0-5][0-9]:[0-6][0-9] [0-9][0-9][0-9][0-9],"
                           "parser\\[42\\]: text\n"));
}

struct Moment {
  time_t seconds;
  const char *zone;
  const char *stamp;
};

void PrintTo(const Moment &row, std::ostream *out) {
  *out << row.stamp;
}

class StampTest : public LogLineTest, public ::testing::WithParamInterface<Moment> {};

TEST_P(StampTest, IsTheLocalTimeIn24Characters) {
  set_zone(GetParam().zone);
  stop_clock(GetParam().seconds);
  EXPECT_EQ(zrcfg_logger(0, "w", 1, "m"), 0);
  EXPECT_EQ(log_text(), std::string(GetParam().stamp) + ",w[1]: m");
}

INSTANTIATE_TEST_SUITE_P(Moments, StampTest,
                         ::testing::Values(Moment{0, "UTC", "Thu Jan  1 00:00:00 1970"},
                                           Moment{0, "XXX-2", "Thu Jan  1 02:00:00 1970"},
                                           Moment{0, "XXX5", "Wed Dec 31 19:00:00 1969"},
                                           Moment{951782400, "UTC", "Tue Feb 29 00:00:00 2000"},
                                           Moment{1000000000, "UTC", "Sun Sep  9 01:46:40 2001"},
                                           Moment{2147483647, "UTC", "Tue Jan 19 03:14:07 2038"}));

TEST_F(LogLineTest, ChangedTimeZoneCountsFromTheNextLine) {
  EXPECT_EQ(zrcfg_logger(0, "w", 1, "m\n"), 0);
  setenv("TZ", "XXX-1", 1);
  EXPECT_EQ(zrcfg_logger(0, "w", 1, "m\n"), 0);
  EXPECT_EQ(log_text(), "Thu Jan  1 00:00:00 1970,w[1]: m\nThu Jan  1 01:00:00 1970,w[1]: m\n");
}

TEST_F(LogLineTest, FirstArgumentIsNotUsed) {
  for (const int level : {-1, 0, 7, 2147483647}) {
    EXPECT_EQ(zrcfg_logger(level, "parser", 42, "text"), 0);
  }
  EXPECT_EQ(log_text(), std::string(kEpochLine) + kEpochLine + kEpochLine + kEpochLine);
}

TEST_F(LogLineTest, MessageIsFormattedAndThePlaceIsNot) {
  EXPECT_EQ(zrcfg_logger(0, "50%s%n", -7, "%s=%d %5.2f %c %% %lld\n", "name", 42, 1.5, 'x',
                         1234567890123LL),
            0);
  EXPECT_EQ(log_text(), "Thu Jan  1 00:00:00 1970,50%s%n[-7]: name=42  1.50 x % 1234567890123\n");
}

TEST_F(LogLineTest, EmptyTextsLeaveThePrefix) {
  EXPECT_EQ(zrcfg_logger(0, "", 0, "%s", ""), 0);
  EXPECT_EQ(log_text(), "Thu Jan  1 00:00:00 1970,[0]: ");
}

TEST_F(LogLineTest, LongPlacesAndMessagesAreWhole) {
  const std::string where(300, 'w');
  const std::string message(100000, 'm');
  EXPECT_EQ(zrcfg_logger(0, where.c_str(), 2147483647, "%s\n", message.c_str()), 0);
  EXPECT_EQ(log_text(), "Thu Jan  1 00:00:00 1970," + where + "[2147483647]: " + message + "\n");
}

TEST_F(LogLineTest, NullTextsDoNotCrash) {
  EXPECT_EQ(zrcfg_logger(0, nullptr, 42, "text\n"), 0);
  EXPECT_THAT(log_text(), MatchesRegex("Thu Jan  1 00:00:00 1970,.*\\[42\\]: text\n"));
  const char *volatile none = nullptr;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  const int result = zrcfg_logger(0, "parser", 42, none);
#pragma GCC diagnostic pop
  EXPECT_TRUE(result == 0 || result == -1) << result;
  EXPECT_EQ(zrcfg_logger(0, "parser", 42, "still\n"), 0) << "the mutex is free";
}

TEST_F(LogLineTest, WhatTheFileHoldsIsKept) {
  write_store_file(kLog, "older text without end");
  EXPECT_EQ(zrcfg_logger(0, "parser", 42, "text"), 0);
  EXPECT_EQ(log_text(), std::string("older text without end") + kEpochLine);
}

struct Mode {
  int mode;
  bool to_error;
  bool to_file;
};

void PrintTo(const Mode &row, std::ostream *out) {
  *out << row.mode;
}

class ModeTest : public LogLineTest, public ::testing::WithParamInterface<Mode> {};

TEST_P(ModeTest, DecidesWhereTheLineGoes) {
  write_store_file(kLog, "older\n");
  zrcfg_log_out_mode = GetParam().mode;
  StreamCapture error(stderr);
  StreamCapture output(stdout);
  const int result = zrcfg_logger(0, "parser", 42, "%s\n", "text");
  EXPECT_EQ(output.end(), "");
  const std::string line = std::string(kEpochLine) + "\n";
  EXPECT_EQ(error.end(), GetParam().to_error ? line : "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(log_text(), "older\n" + (GetParam().to_file ? line : ""));
}

TEST_P(ModeTest, OpensTheFileInEveryCase) {
  zrcfg_log_out_mode = GetParam().mode;
  ASSERT_EQ(init_zrcfg_logger(), 0);
  std::filesystem::remove("/var/zrcfg.log");
  StreamCapture error(stderr);
  StreamCapture output(stdout);
  const int result = zrcfg_logger(0, "parser", 42, "text");
  EXPECT_EQ(output.end(), "zrcfg_log_file_path = /var/zrcfg.log\n");
  EXPECT_EQ(error.end(), GetParam().to_error ? kEpochLine : "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(log_text(), GetParam().to_file ? kEpochLine : "");
}

INSTANTIATE_TEST_SUITE_P(Modes, ModeTest,
                         ::testing::Values(Mode{0, true, false}, Mode{1, false, true},
                                           Mode{2, true, true}, Mode{3, false, false},
                                           Mode{-1, false, false}, Mode{100, false, false}));

TEST_F(LogLineTest, ModeIsReadAtEveryCall) {
  StreamCapture error(stderr);
  for (const int mode : {1, 0, 2, 5, 1}) {
    zrcfg_log_out_mode = mode;
    EXPECT_EQ(zrcfg_logger(0, "w", mode, "m\n"), 0);
  }
  const std::string stamp = "Thu Jan  1 00:00:00 1970,";
  EXPECT_EQ(error.end(), stamp + "w[0]: m\n" + stamp + "w[2]: m\n");
  EXPECT_EQ(log_text(), stamp + "w[1]: m\n" + stamp + "w[2]: m\n" + stamp + "w[1]: m\n");
}

TEST_F(LogLineTest, LibraryItselfNeverLogsHere) {
  write_property("A/", property_file({"P"}, {"v"}));
  char value[256] = "";
  EXPECT_EQ(zrcfg_getsingleparamval("A.", "P", value, 0), 0u);
  EXPECT_EQ(zrcfg_setsingleparamval("A.", "P", "w", 0), 0u);
  NODE_INFO *list = nullptr;
  EXPECT_EQ(zrcfg_allnode_get("A.", 1, &list, 0), 0);
  EXPECT_EQ(zrcfg_allnode_free(list), 0u);
  EXPECT_FALSE(store_entry_exists(kLog));
  EXPECT_EQ(zrcfg_log_is_inited, 0);
}

}  // namespace
}  // namespace zrcfg_test
