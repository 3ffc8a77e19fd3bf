// watch [URL...]: prints changes of the store as they happen.
#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/watch/watch_tree.h"

namespace zrcfg_tool {
namespace {

constexpr size_t kQueueBuffer = 64u << 10;
constexpr int kBuffersBetweenUpdates = 16;  // So that many events do not put off their printing.
constexpr int kFirstDelay = 5;              // Milliseconds.
constexpr int kLongestDelay = 100;

// The kernel's queue of events.
class EventQueue {
 public:
  EventQueue() : fd_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
  ~EventQueue() {
    if (fd_ != -1) {
      (void)close(fd_);  // Only read.
    }
  }
  EventQueue(const EventQueue &) = delete;
  EventQueue &operator=(const EventQueue &) = delete;

  int fd() const { return fd_; }

  // Hands what has come to the tree. False when the watch ends.
  bool drain(WatchTree &tree) {
    static char buffer[kQueueBuffer] __attribute__((aligned(alignof(inotify_event))));
    for (int i = 0; i < kBuffersBetweenUpdates; ++i) {
      const ssize_t got = read(fd_, buffer, sizeof buffer);
      if (got <= 0) {
        return got == 0 || errno == EAGAIN || errno == EINTR || failed();
      }
      for (const char *at = buffer; at < buffer + got;) {
        const inotify_event &event = *reinterpret_cast<const inotify_event *>(at);
        if (!tree.note(event)) {
          return false;
        }
        at += sizeof event + event.len;
      }
    }
    return true;
  }

 private:
  static bool failed() {
    complain("the kernel's events cannot be read: %s", strerror(errno));
    return false;
  }

  int fd_;
};

// Follows what happens until a signal comes, or something fails.
void follow(EventQueue &queue, WatchTree &tree, const StopSignals &signals) {
  int delay = kFirstDelay;
  while (queue.drain(tree)) {
    const Update update = tree.update();
    if (update == Update::kEnd) {
      return;
    }
    const bool again = update == Update::kAgain;
    if (!signals.wait_for(queue.fd(), POLLIN, again ? delay : -1)) {
      return;
    }
    delay = !again ? kFirstDelay : delay < kLongestDelay / 2 ? 2 * delay : kLongestDelay;
  }
}

int watch(const Options &options, const ObjectUrl *urls, size_t count) {
  const StopSignals signals;
  EventQueue queue;
  if (queue.fd() == -1) {
    complain("the kernel gives no event queue: %s (/proc/sys/fs/inotify/max_user_instances)",
             strerror(errno));
    return kExitRefused;
  }
  EventPrinter printer(signals, options.has(kJson));
  WatchTree tree(queue.fd(), urls, count, signals, printer);
  const size_t complaints = complaint_count();
  if (tree.start(options.timeout) && printer.watching(tree.object_count())) {
    follow(queue, tree, signals);
  }
  return complaint_count() == complaints && signals.stopped() ? kExitOk : kExitRefused;
}

}  // namespace

int run_watch(const Options &options, const Arguments &arguments) {
  ObjectUrl *const urls =
      static_cast<ObjectUrl *>(calloc(static_cast<size_t>(arguments.count) + 1, sizeof(ObjectUrl)));
  if (urls == nullptr) {
    complain("out of memory");
    return kExitRefused;
  }
  bool all_ok = true;
  for (int i = 0; i < arguments.count; ++i) {
    all_ok = parse_object_url(arguments.values[i], urls[i]) && all_ok;
  }
  const int exit_code =
      all_ok ? watch(options, urls, static_cast<size_t>(arguments.count)) : kExitUsage;
  free(urls);
  return exit_code;
}

}  // namespace zrcfg_tool
