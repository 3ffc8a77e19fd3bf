// What the tests of the file logger share: its switch, its file, captured streams, fresh settings.
#ifndef ZRCFG_TESTS_LOG_LOG_SUPPORT_H_
#define ZRCFG_TESTS_LOG_LOG_SUPPORT_H_

#include <stdio.h>

#include <string>
#include <vector>

#include "tests/log/log_hooks.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"

namespace zrcfg_test {

inline constexpr char kLog[] = "zrcfg.log";  // Relative to /var/, like the next.
inline constexpr char kBackup[] = "zrcfg.log.bak";
inline constexpr char kSwitchFile[] = "/usr/local/zr/log_switch/zrcfg_log_enable";
inline constexpr char kMove[] = "mv  /var/zrcfg.log /var/zrcfg.log.bak";
inline constexpr char kTouchAgain[] = "touch  /var/zrcfg.log";

// The settings as they were before any test.
struct LogSettings {
  std::string path;
  int size;
  int mode;
  int inited;
};
const LogSettings &initial_settings();

// Takes what goes to standard error or standard output.
class StreamCapture {
 public:
  explicit StreamCapture(FILE *stream);
  ~StreamCapture();
  StreamCapture(const StreamCapture &) = delete;
  StreamCapture &operator=(const StreamCapture &) = delete;

  // Ends the capture; what was captured.
  std::string end();

 private:
  FILE *stream_;
  FILE *file_;
  int saved_;
};

std::vector<std::string> lines_of(const std::string &text);  // Each with its line feed.

// Sets zrcfg_log_file_path; 64 characters leave no terminator.
void set_log_path(const std::string &path);

// Each test begins with the logger's defaults, not initialised, the switch file missing.
class LogTest : public StoreTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  static void switch_on();
  static void switch_off();
  static std::string log_text() { return read_store_file(kLog); }
  static void set_zone(const char *zone);
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_LOG_LOG_SUPPORT_H_
