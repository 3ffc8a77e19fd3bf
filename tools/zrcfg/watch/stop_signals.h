// Ending a command with the signals that ask for it.
#ifndef ZRCFG_TOOLS_ZRCFG_WATCH_STOP_SIGNALS_H_
#define ZRCFG_TOOLS_ZRCFG_WATCH_STOP_SIGNALS_H_

#include <poll.h>
#include <signal.h>

namespace zrcfg_tool {

// While it lives, SIGINT and SIGTERM ask to stop.
class StopSignals {
 public:
  StopSignals();
  ~StopSignals();
  StopSignals(const StopSignals &) = delete;
  StopSignals &operator=(const StopSignals &) = delete;

  // Whether one has arrived.
  bool stopped() const;
  // Waits for `events` on a descriptor, -1 milliseconds without limit. False when asked to stop, or
  // when nobody reads the standard output any more.
  bool wait_for(int fd, short events, int milliseconds) const;

 private:
  struct sigaction old_int_;
  struct sigaction old_term_;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_WATCH_STOP_SIGNALS_H_
