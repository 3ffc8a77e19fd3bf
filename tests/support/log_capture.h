// Takes the place of the device's log sink in a test program and keeps every line.
#ifndef ZRCFG_TESTS_SUPPORT_LOG_CAPTURE_H_
#define ZRCFG_TESTS_SUPPORT_LOG_CAPTURE_H_

#include <cstddef>
#include <string>
#include <vector>

namespace zrcfg_test {

struct LogLine {
  std::string module;
  int level;
  std::string text;  // Formatted, with its line feed.
};

// What was logged since the last clear_log, from all threads.
std::vector<LogLine> log_lines();
std::vector<std::string> log_texts();
void clear_log();

bool log_contains(const std::string &text);  // As a whole line.
size_t log_count(const std::string &text);
// Whether the texts were logged in this order, other lines between them allowed.
bool log_has_in_order(const std::vector<std::string> &texts);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_SUPPORT_LOG_CAPTURE_H_
