// A lock held by another process, until it is told to let go or is killed.
#include "tests/support/lock_holder.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "tests/support/property_builder.h"

namespace zrcfg_test {
namespace {

constexpr char kHolds = '+';
constexpr char kFailed = '-';

// The child's whole life. It reports once, then waits for the end of `control`.
[[noreturn]] void hold(const char *path, int operation, int control, int report) {
  const int fd = open(path, O_RDONLY | O_CLOEXEC);
  const bool held = fd != -1 && flock(fd, operation | LOCK_NB) == 0;
  const char answer = held ? kHolds : kFailed;
  if (write(report, &answer, 1) != 1 || !held) {
    _exit(1);
  }
  char ignored;
  while (read(control, &ignored, 1) == -1 && errno == EINTR) {
  }
  _exit(0);  // Ends the lock with the descriptor.
}

bool lockable(const std::string &relative, int operation) {
  const int fd = open(store_path(relative).c_str(), O_RDONLY | O_CLOEXEC);
  if (fd == -1) {
    throw std::runtime_error("cannot open " + relative);
  }
  const bool free = flock(fd, operation | LOCK_NB) == 0;
  close(fd);
  return free;
}

}  // namespace

LockHolder::LockHolder(const std::string &relative, Held held) {
  const std::string path = store_path(relative);
  int control[2];
  int report[2];
  if (pipe2(control, O_CLOEXEC) == -1) {
    throw std::runtime_error("no pipe");
  }
  if (pipe2(report, O_CLOEXEC) == -1) {
    close(control[0]);
    close(control[1]);
    throw std::runtime_error("no pipe");
  }
  child_ = fork();
  if (child_ == 0) {
    close(control[1]);
    close(report[0]);
    hold(path.c_str(), held == Held::kShared ? LOCK_SH : LOCK_EX, control[0], report[1]);
  }
  close(control[0]);
  close(report[1]);
  control_ = control[1];
  char answer = kFailed;
  ssize_t got;
  do {
    got = read(report[0], &answer, 1);
  } while (got == -1 && errno == EINTR);
  close(report[0]);
  if (child_ == -1 || got != 1 || answer != kHolds) {
    reap();
    throw std::runtime_error("another process cannot lock " + path);
  }
}

LockHolder::~LockHolder() {
  reap();
}

void LockHolder::release() {
  reap();
}

void LockHolder::kill_child() {
  if (child_ > 0) {
    kill(child_, SIGKILL);
  }
  reap();
}

void LockHolder::reap() {
  if (control_ != -1) {
    close(control_);
    control_ = -1;
  }
  if (child_ > 0) {
    while (waitpid(child_, nullptr, 0) == -1 && errno == EINTR) {
    }
    child_ = -1;
  }
}

bool exclusively_lockable(const std::string &relative) {
  return lockable(relative, LOCK_EX);
}

bool shared_lockable(const std::string &relative) {
  return lockable(relative, LOCK_SH);
}

}  // namespace zrcfg_test
