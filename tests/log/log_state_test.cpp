// Tests of the logger's settings, switch file, initialisation, mutex, and files it cannot open.
#include <errno.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "log/zrcfg_log.h"
#include "tests/log/log_support.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kLine[] = "Thu Jan  1 00:00:00 1970,w[1]: m\n";

class LogStateTest : public LogTest {
 protected:
  void SetUp() override {
    LogTest::SetUp();
    set_zone("UTC");
    stop_clock(0);
  }

  static int log_once() { return zrcfg_logger(0, "w", 1, "m\n"); }
  static bool mutex_is_free() {
    if (pthread_mutex_trylock(&zrcfg_mut) != 0) {
      return false;
    }
    pthread_mutex_unlock(&zrcfg_mut);
    return true;
  }
};

TEST_F(LogStateTest, DefaultsAreTheDocumentedOnes) {
  EXPECT_EQ(initial_settings().path, "/var/zrcfg.log");
  EXPECT_EQ(initial_settings().size, 2000);
  EXPECT_EQ(initial_settings().mode, 1);
  EXPECT_EQ(initial_settings().inited, 0);
  static_assert(sizeof zrcfg_log_file_path == 64, "the path is char[64]");
}

TEST_F(LogStateTest, InitialisingMakesTheFileAndTheMutex) {
  EXPECT_EQ(init_zrcfg_logger(), 0);
  EXPECT_EQ(zrcfg_log_is_inited, 1);
  EXPECT_EQ(log_text(), "");
  EXPECT_THAT(shell_commands(), ElementsAre("touch /var/zrcfg.log"));
  EXPECT_TRUE(mutex_is_free());
}

TEST_F(LogStateTest, InitialisingKeepsWhatTheFileHolds) {
  write_store_file(kLog, "older\n");
  EXPECT_EQ(init_zrcfg_logger(), 0);
  EXPECT_EQ(init_zrcfg_logger(), 0);
  EXPECT_EQ(log_text(), "older\n");
}

TEST_F(LogStateTest, WithoutSwitchTheFirstCallMakesTheFileAndNothingElse) {
  StreamCapture error(stderr);
  StreamCapture output(stdout);
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(output.end(), "");
  EXPECT_EQ(error.end(), "");
  EXPECT_EQ(log_text(), "");
  EXPECT_EQ(zrcfg_log_is_inited, 1);
  EXPECT_THAT(shell_commands(), ElementsAre("touch /var/zrcfg.log"));
}

TEST_F(LogStateTest, WithoutSwitchEveryModeIsSilent) {
  for (const int mode : {0, 1, 2, 3}) {
    zrcfg_log_out_mode = mode;
    StreamCapture error(stderr);
    EXPECT_EQ(log_once(), 0);
    EXPECT_EQ(error.end(), "");
  }
  EXPECT_EQ(log_text(), "");
}

TEST_F(LogStateTest, OnlyTheSwitchsExistenceMattersAndItIsLookedAtEachTime) {
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(log_text(), "");
  fs::create_directories(kSwitchFile);
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(log_text(), kLine) << "a directory will do";
  switch_off();
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(log_text(), kLine);
  switch_on();
  fs::permissions(kSwitchFile, fs::perms::none);
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(log_text(), std::string(kLine) + kLine) << "it need not be readable";
  fs::remove(kSwitchFile);
  fs::create_symlink("/nowhere", kSwitchFile);
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(log_text(), std::string(kLine) + kLine) << "what the link names does not exist";
}

TEST_F(LogStateTest, InitialisedLoggerDoesNotInitialiseAgain) {
  switch_on();
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(log_once(), 0);
  EXPECT_THAT(shell_commands(), ElementsAre("touch /var/zrcfg.log"));
  EXPECT_EQ(mutex_inits(), 1u);
  switch_off();
  fs::remove("/var/zrcfg.log");
  EXPECT_EQ(log_once(), 0);
  EXPECT_FALSE(store_entry_exists(kLog));
}

TEST_F(LogStateTest, FailedInitialisationIsToldAndTriedAgain) {
  fail_mutex_init(ENOMEM);
  EXPECT_EQ(init_zrcfg_logger(), -1);
  EXPECT_EQ(zrcfg_log_is_inited, 0);
  EXPECT_TRUE(store_entry_exists(kLog)) << "the file comes first";
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(mutex_inits(), 2u);
  switch_on();
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(mutex_inits(), 3u);
  EXPECT_EQ(zrcfg_log_is_inited, 0);
  EXPECT_EQ(log_text(), kLine) << "logging proceeds";
  fail_mutex_init(0);
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(zrcfg_log_is_inited, 1);
  EXPECT_EQ(log_text(), std::string(kLine) + kLine);
}

TEST_F(LogStateTest, WithoutSwitchNoLockIsTaken) {
  ASSERT_EQ(init_zrcfg_logger(), 0);
  pthread_mutex_lock(&zrcfg_mut);
  EXPECT_EQ(log_once(), 0);
  pthread_mutex_unlock(&zrcfg_mut);
}

TEST_F(LogStateTest, WriterWaitsForTheMutexAndReleasesIt) {
  switch_on();
  ASSERT_EQ(init_zrcfg_logger(), 0);
  pthread_mutex_lock(&zrcfg_mut);
  stop_clock(5);
  std::thread writer([] { EXPECT_EQ(log_once(), 0); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(log_text(), "");
  stop_clock(0);
  pthread_mutex_unlock(&zrcfg_mut);
  writer.join();
  EXPECT_EQ(log_text(), kLine) << "the time is taken under the mutex";
  EXPECT_TRUE(mutex_is_free());
}

TEST_F(LogStateTest, ChangedPathIsUsedFromTheNextCall) {
  switch_on();
  EXPECT_EQ(log_once(), 0);
  make_store_dir("dir/");
  set_log_path("/var/dir/other.log");
  StreamCapture output(stdout);
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(output.end(), "zrcfg_log_file_path = /var/dir/other.log\n")
      << "the new file does not exist yet";
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(log_text(), kLine);
  EXPECT_EQ(read_store_file("dir/other.log"), std::string(kLine) + kLine);
}

TEST_F(LogStateTest, ChangedPathIsMadeByTheInitialisation) {
  set_log_path("/var/other.log");
  EXPECT_EQ(log_once(), 0);
  EXPECT_THAT(shell_commands(), ElementsAre("touch /var/other.log"));
  EXPECT_EQ(read_store_file("other.log"), "");
  EXPECT_FALSE(store_entry_exists(kLog));
}

TEST_F(LogStateTest, PathsThatFillTheSettingAreUsedWhole) {
  switch_on();
  for (const size_t length : {63u, 64u}) {
    zrcfg_log_is_inited = 0;
    clear_shell_commands();
    const std::string name(length - 5, 'p');
    set_log_path("/var/" + name);
    EXPECT_EQ(log_once(), 0);
    EXPECT_THAT(shell_commands(), ElementsAre("touch /var/" + name));
    EXPECT_EQ(read_store_file(name), kLine) << length;
  }
}

TEST_F(LogStateTest, MissingFileIsToldOnStandardOutputAndMade) {
  switch_on();
  ASSERT_EQ(init_zrcfg_logger(), 0);
  fs::remove("/var/zrcfg.log");
  clear_shell_commands();
  StreamCapture error(stderr);
  StreamCapture output(stdout);
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(output.end(), "zrcfg_log_file_path = /var/zrcfg.log\n");
  EXPECT_EQ(error.end(), "");
  EXPECT_EQ(log_text(), kLine);
  EXPECT_THAT(shell_commands(), IsEmpty()) << "no rotation";
}

struct Unopenable {
  const char *path;
  const char *output;
  const char *error;
};

class UnopenableTest : public LogStateTest, public ::testing::WithParamInterface<Unopenable> {};

TEST_P(UnopenableTest, GivesMinusOneWithItsTextInEveryMode) {
  switch_on();
  make_store_dir("dir/");
  write_store_file("file", "x");
  ASSERT_EQ(init_zrcfg_logger(), 0);
  set_log_path(GetParam().path);
  for (const int mode : {0, 1, 2, 3}) {
    zrcfg_log_out_mode = mode;
    StreamCapture error(stderr);
    StreamCapture output(stdout);
    const int result = log_once();
    EXPECT_EQ(output.end(), GetParam().output);
    EXPECT_EQ(error.end(), GetParam().error);
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(mutex_is_free());
  }
  EXPECT_EQ(log_text(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Paths, UnopenableTest,
    ::testing::Values(Unopenable{"/var/none/x.log", "zrcfg_log_file_path = /var/none/x.log\n",
                                 "zrcfg_log.c[103](zrcfg_logger): No such file or directory\n"},
                      Unopenable{"/var/file/x.log", "zrcfg_log_file_path = /var/file/x.log\n",
                                 "zrcfg_log.c[103](zrcfg_logger): Not a directory\n"},
                      Unopenable{"/var/dir", "",
                                 "zrcfg_log.c[103](zrcfg_logger): Is a directory\n"},
                      Unopenable{"", "zrcfg_log_file_path = \n",
                                 "zrcfg_log.c[103](zrcfg_logger): No such file or directory\n"}),
    [](const auto &row) { return "Path" + std::to_string(row.index); });

TEST_F(LogStateTest, LoggingGoesOnBehindAFailure) {
  switch_on();
  ASSERT_EQ(init_zrcfg_logger(), 0);
  set_log_path("/var/none/x.log");
  {
    const StreamCapture error(stderr);
    const StreamCapture output(stdout);
    EXPECT_EQ(log_once(), -1);
  }
  set_log_path("/var/zrcfg.log");
  EXPECT_EQ(log_once(), 0);
  EXPECT_EQ(log_text(), kLine);
}

}  // namespace
}  // namespace zrcfg_test
