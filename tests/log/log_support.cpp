// What the tests of the file logger share: its switch, its file, captured streams, fresh settings.
#include "tests/log/log_support.h"

#include <string.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "log/zrcfg_log.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

namespace fs = std::filesystem;

constexpr char kDefaultPath[] = "/var/zrcfg.log";
constexpr int kDefaultSize = 2000;
constexpr int kDefaultMode = 1;

LogSettings current_settings() {
  return {std::string(zrcfg_log_file_path, strnlen(zrcfg_log_file_path, 64)), zrcfg_log_size,
          zrcfg_log_out_mode, zrcfg_log_is_inited};
}

const LogSettings before_any_test = current_settings();

void reset_logger() {
  set_log_path(kDefaultPath);
  zrcfg_log_size = kDefaultSize;
  zrcfg_log_out_mode = kDefaultMode;
  zrcfg_log_is_inited = 0;
  run_clock();
  fail_mutex_init(0);
  watch_shell(nullptr);
  clear_shell_commands();
}

}  // namespace

const LogSettings &initial_settings() {
  return before_any_test;
}

StreamCapture::StreamCapture(FILE *stream)
    : stream_(stream), file_(tmpfile()), saved_(dup(fileno(stream))) {
  fflush(stream_);
  dup2(fileno(file_), fileno(stream_));
}

StreamCapture::~StreamCapture() {
  if (file_ != nullptr) {
    (void)end();
  }
}

std::string StreamCapture::end() {
  fflush(stream_);
  dup2(saved_, fileno(stream_));
  close(saved_);
  std::string text;
  rewind(file_);
  char piece[4096];
  for (size_t got; (got = fread(piece, 1, sizeof piece, file_)) > 0;) {
    text.append(piece, got);
  }
  fclose(file_);
  file_ = nullptr;
  return text;
}

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> lines;
  for (size_t at = 0; at < text.size();) {
    const size_t end = text.find('\n', at);
    const size_t next = end == std::string::npos ? text.size() : end + 1;
    lines.push_back(text.substr(at, next - at));
    at = next;
  }
  return lines;
}

void set_log_path(const std::string &path) {
  ASSERT_LE(path.size(), sizeof zrcfg_log_file_path);
  memset(zrcfg_log_file_path, 0, sizeof zrcfg_log_file_path);
  memcpy(zrcfg_log_file_path, path.data(), path.size());
}

void LogTest::SetUp() {
  StoreTest::SetUp();
  if (!HasFatalFailure()) {
    reset_logger();
    switch_off();
  }
}

void LogTest::TearDown() {
  unsetenv("TZ");
  if (!HasFatalFailure()) {
    reset_logger();
    switch_off();
  }
  StoreTest::TearDown();
}

void LogTest::switch_on() {
  fs::create_directories(fs::path(kSwitchFile).parent_path());
  std::ofstream stream(kSwitchFile);
  ASSERT_TRUE(stream.good());
}

void LogTest::switch_off() {
  fs::remove_all(fs::path(kSwitchFile).parent_path());
}

void LogTest::set_zone(const char *zone) {
  setenv("TZ", zone, 1);
  tzset();
}

}  // namespace zrcfg_test
