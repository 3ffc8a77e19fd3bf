// Ending a command with the signals that ask for it.
#include "tools/zrcfg/watch/stop_signals.h"

#include <time.h>
#include <unistd.h>

namespace zrcfg_tool {
namespace {

constexpr int kMillisecondsASecond = 1000;
constexpr long kNanosecondsAMillisecond = 1000000;

volatile sig_atomic_t stop_asked = 0;

void ask_to_stop(int) {
  stop_asked = 1;
}

}  // namespace

StopSignals::StopSignals() {
  stop_asked = 0;
  struct sigaction action = {};
  action.sa_handler = ask_to_stop;
  (void)sigaction(SIGINT, &action, &old_int_);  // Neither can fail.
  (void)sigaction(SIGTERM, &action, &old_term_);
}

StopSignals::~StopSignals() {
  (void)sigaction(SIGINT, &old_int_, nullptr);
  (void)sigaction(SIGTERM, &old_term_, nullptr);
}

bool StopSignals::stopped() const {
  return stop_asked != 0;
}

bool StopSignals::wait_for(int fd, short events, int milliseconds) const {
  sigset_t signals;
  sigset_t before;
  (void)sigemptyset(&signals);  // None of these can fail.
  (void)sigaddset(&signals, SIGINT);
  (void)sigaddset(&signals, SIGTERM);
  (void)sigprocmask(SIG_BLOCK, &signals, &before);
  pollfd waited[] = {{fd, events, 0}, {STDOUT_FILENO, 0, 0}};
  // A signal between this question and the wait ends the wait.
  if (!stopped()) {
    const timespec limit = {milliseconds / kMillisecondsASecond,
                            milliseconds % kMillisecondsASecond * kNanosecondsAMillisecond};
    // Callers look again.
    (void)ppoll(waited, 2, milliseconds >= 0 ? &limit : nullptr, &before);
  }
  (void)sigprocmask(SIG_SETMASK, &before, nullptr);
  return !stopped() && (waited[1].revents & POLLERR) == 0;
}

}  // namespace zrcfg_tool
