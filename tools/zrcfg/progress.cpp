// A line on standard error about work that takes over a second.
#include "tools/zrcfg/progress.h"

#include <stdio.h>
#include <time.h>
#include <unistd.h>

namespace zrcfg_tool {
namespace {

constexpr int64_t kInterval = 1000;

}  // namespace

int64_t milliseconds_now() {
  timespec time = {};
  (void)clock_gettime(CLOCK_MONOTONIC, &time);  // Cannot fail.
  return int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1000000;
}

Progress::Progress(const char *verb, const char *things, size_t total)
    : verb_(verb), things_(things), total_(total), next_(milliseconds_now() + kInterval) {}

void Progress::step(size_t steps) {
  done_ += steps;
  const int64_t time = milliseconds_now();
  if (time < next_ || isatty(STDERR_FILENO) == 0) {
    return;
  }
  next_ = time + kInterval;
  shown_ = true;
  if (total_ > 0) {
    fprintf(stderr, "\rzrcfg: %s %zu of %zu %s", verb_, done_, total_, things_);
  } else {
    fprintf(stderr, "\rzrcfg: %s %zu %s", verb_, done_, things_);
  }
}

void Progress::finish() {
  if (shown_) {
    fputs("\r\033[K", stderr);
    shown_ = false;
  }
}

}  // namespace zrcfg_tool
