// A line on standard error about work that takes over a second.
#ifndef ZRCFG_TOOLS_ZRCFG_PROGRESS_H_
#define ZRCFG_TOOLS_ZRCFG_PROGRESS_H_

#include <stddef.h>
#include <stdint.h>

namespace zrcfg_tool {

// The time on the monotonic clock.
int64_t milliseconds_now();

// Prints "zrcfg: VERB N [of TOTAL] THINGS", after a second and then once a second; on a terminal
// only, and wiped away at the end.
class Progress {
 public:
  Progress(const char *verb, const char *things, size_t total = 0);
  ~Progress() { finish(); }
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  void step(size_t steps = 1);
  void finish();

 private:
  const char *verb_;
  const char *things_;
  size_t total_;
  size_t done_ = 0;
  int64_t next_;  // Milliseconds on the monotonic clock.
  bool shown_ = false;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_PROGRESS_H_
