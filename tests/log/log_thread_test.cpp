// Many writers at once: threads of one process never tear or lose a line, processes lose no byte.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "log/zrcfg_log.h"
#include "tests/log/log_support.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr int kThreads = 8;
constexpr int kLines = 60;
constexpr int kProcesses = 4;

class LogThreadTest : public LogTest {
 protected:
  void SetUp() override {
    LogTest::SetUp();
    if (!HasFatalFailure()) {
      set_zone("UTC");
      switch_on();
      ASSERT_EQ(init_zrcfg_logger(), 0);
      clear_shell_commands();
    }
  }

  // Every thread writes its lines, which are of different lengths.
  static void write_from_all_threads() {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([thread] {
        for (int line = 0; line < kLines; ++line) {
          const std::string filler(static_cast<size_t>((thread * 37 + line * 11) % 90), '.');
          EXPECT_EQ(zrcfg_logger(0, "thread", thread, "%d%s;\n", line, filler.c_str()), 0);
        }
      });
    }
    for (std::thread &thread : threads) {
      thread.join();
    }
  }

  // Each thread's lines are all there, whole, once and in its order.
  static void expect_all_lines(const std::string &text) {
    static const std::regex form(
        "[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]{2} [0-9:]{8} [0-9]{4},thread\\[([0-7])\\]: "
        "([0-9]+)(\\.*);\n");
    std::vector<int> next(kThreads, 0);
    for (const std::string &line : lines_of(text)) {
      std::smatch match;
      ASSERT_TRUE(std::regex_match(line, match, form)) << "torn: " << line;
      const int thread = std::stoi(match[1]);
      const int number = std::stoi(match[2]);
      ASSERT_EQ(number, next[static_cast<size_t>(thread)]++) << line;
      ASSERT_EQ(match[3].length(), (thread * 37 + number * 11) % 90) << "cut: " << line;
    }
    EXPECT_EQ(next, std::vector<int>(kThreads, kLines));
  }
};

TEST_F(LogThreadTest, LinesOfAllThreadsAreWhole) {
  write_from_all_threads();
  expect_all_lines(log_text());
  EXPECT_EQ(shell_commands(), std::vector<std::string>());
}

TEST_F(LogThreadTest, LinesOnBothWaysAreWholeAndInOneOrder) {
  zrcfg_log_out_mode = 2;
  StreamCapture error(stderr);
  write_from_all_threads();
  const std::string on_error = error.end();
  expect_all_lines(on_error);
  EXPECT_EQ(log_text(), on_error);
}

TEST_F(LogThreadTest, LinesOnStandardErrorAreWhole) {
  zrcfg_log_out_mode = 0;
  StreamCapture error(stderr);
  write_from_all_threads();
  expect_all_lines(error.end());
  EXPECT_EQ(log_text(), "");
}

// Only one generation is kept, so the test keeps the others: each as it is about to be moved.
TEST_F(LogThreadTest, RotationLosesAndTearsNoLine) {
  zrcfg_log_size = 4;
  std::string moved;
  unsigned rotations = 0;
  watch_shell([&](const std::string &command) {
    if (command == kMove) {
      moved += read_store_file(kLog);
      ++rotations;
    }
  });
  write_from_all_threads();
  EXPECT_GT(rotations, 5u);
  EXPECT_EQ(shell_commands().size(), 2 * rotations);
  expect_all_lines(moved + log_text());
  EXPECT_GT(read_store_file(kBackup).size(), 4096u);
}

TEST_F(LogThreadTest, ThreadsThatAreRefusedLeaveTheLoggerUsable) {
  set_log_path("/var/none/x.log");
  {
    const StreamCapture error(stderr);
    const StreamCapture output(stdout);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([] { EXPECT_EQ(zrcfg_logger(0, "w", 1, "m\n"), -1); });
    }
    for (std::thread &thread : threads) {
      thread.join();
    }
  }
  set_log_path("/var/zrcfg.log");
  write_from_all_threads();
  expect_all_lines(log_text());
}

// Each with a mutex of its own; their lines may mix, but all of them arrive.
class LogProcessTest : public LogThreadTest {
 protected:
  static void write_from_all_processes() {
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
      const pid_t child = fork();
      if (child == 0) {
        zrcfg_log_is_inited = 0;
        int failures = 0;
        for (int line = 0; line < kLines; ++line) {
          failures += zrcfg_logger(0, "process", process, "line %02d\n", line) != 0;
        }
        _exit(failures == 0 ? 0 : 1);
      }
      children.push_back(child);
    }
    for (const pid_t child : children) {
      int status = -1;
      EXPECT_EQ(waitpid(child, &status, 0), child);
      EXPECT_EQ(status, 0) << "a call failed or crashed";
    }
  }
};

TEST_F(LogProcessTest, NoByteOfAnyProcessIsLost) {
  stop_clock(0);
  write_from_all_processes();
  std::string expected;
  for (int process = 0; process < kProcesses; ++process) {
    for (int line = 0; line < kLines; ++line) {
      char text[80];
      snprintf(text, sizeof text, "Thu Jan  1 00:00:00 1970,process[%d]: line %02d\n", process,
               line);
      expected += text;
    }
  }
  std::string written = log_text();
  std::sort(expected.begin(), expected.end());
  std::sort(written.begin(), written.end());
  EXPECT_EQ(written, expected);
}

TEST_F(LogProcessTest, RotationByAllProcessesAtOnceFailsNoCall) {
  zrcfg_log_size = 1;
  const StreamCapture complaints_of_mv(stderr);
  const StreamCapture missing_file(stdout);
  write_from_all_processes();
  EXPECT_TRUE(store_entry_exists(kLog));
  EXPECT_TRUE(store_entry_exists(kBackup));
}

}  // namespace
}  // namespace zrcfg_test
