// Takes the place of the device's log sink in a test program and keeps every line.
#include "support/log_capture.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <mutex>

#include "platform/zrlogmgr/zrlogmgr.h"

namespace zrcfg_test {
namespace {

std::mutex &log_mutex() {
  static std::mutex mutex;
  return mutex;
}

std::vector<LogLine> &captured_lines() {
  static std::vector<LogLine> lines;
  return lines;
}

}  // namespace

std::vector<LogLine> log_lines() {
  const std::lock_guard<std::mutex> guard(log_mutex());
  return captured_lines();
}

std::vector<std::string> log_texts() {
  std::vector<std::string> texts;
  for (const LogLine &line : log_lines()) {
    texts.push_back(line.text);
  }
  return texts;
}

void clear_log() {
  const std::lock_guard<std::mutex> guard(log_mutex());
  captured_lines().clear();
}

bool log_contains(const std::string &text) {
  return log_count(text) > 0;
}

size_t log_count(const std::string &text) {
  const std::vector<std::string> texts = log_texts();
  return static_cast<size_t>(std::count(texts.begin(), texts.end(), text));
}

bool log_has_in_order(const std::vector<std::string> &texts) {
  size_t next = 0;
  for (const std::string &text : log_texts()) {
    if (next < texts.size() && text == texts[next]) {
      ++next;
    }
  }
  return next == texts.size();
}

}  // namespace zrcfg_test

// The executable's definition comes before the log library's when the loader binds the library.
extern "C" __attribute__((visibility("default"))) int zr_mod_log_printf(const char *module,
                                                                        int level,
                                                                        const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  std::string text(length < 0 ? 0 : static_cast<size_t>(length) + 1, '\0');
  if (length >= 0) {
    vsnprintf(text.data(), text.size(), format, again);
    text.pop_back();
  }
  va_end(again);
  const std::lock_guard<std::mutex> guard(zrcfg_test::log_mutex());
  zrcfg_test::captured_lines().push_back({module, level, text});
  return length;
}
