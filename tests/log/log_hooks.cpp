// Stands between the logger and libc: the time, shell commands, the making of a mutex.
#include "tests/log/log_hooks.h"

#include <dlfcn.h>
#include <pthread.h>
#include <stdlib.h>

#include <mutex>

namespace zrcfg_test {
namespace {

bool clock_stopped = false;
time_t stopped_at = 0;

std::mutex shell_mutex;
std::vector<std::string> commands;
std::function<void(const std::string &)> shell_watcher;

int mutex_error = 0;
unsigned mutex_count = 0;

template <typename Function>
Function next_definition(const char *name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

void stop_clock(time_t now) {
  stopped_at = now;
  clock_stopped = true;
}

void run_clock() {
  clock_stopped = false;
}

std::vector<std::string> shell_commands() {
  const std::lock_guard<std::mutex> guard(shell_mutex);
  return commands;
}

void clear_shell_commands() {
  const std::lock_guard<std::mutex> guard(shell_mutex);
  commands.clear();
}

void watch_shell(std::function<void(const std::string &command)> watcher) {
  const std::lock_guard<std::mutex> guard(shell_mutex);
  shell_watcher = std::move(watcher);
}

void fail_mutex_init(int error) {
  mutex_error = error;
  mutex_count = 0;
}

unsigned mutex_inits() {
  return mutex_count;
}

}  // namespace zrcfg_test

using namespace zrcfg_test;

// The executable's definitions come before libc's when the loader binds the library.
extern "C" {

time_t time(time_t *out) noexcept {
  static const auto real = next_definition<time_t (*)(time_t *)>("time");
  const time_t now = clock_stopped ? stopped_at : real(nullptr);
  if (out != nullptr) {
    *out = now;
  }
  return now;
}

int system(const char *command) {
  static const auto real = next_definition<int (*)(const char *)>("system");
  if (command != nullptr) {
    const std::lock_guard<std::mutex> guard(shell_mutex);
    commands.emplace_back(command);
    if (shell_watcher) {
      shell_watcher(command);
    }
  }
  return real(command);
}

int pthread_mutex_init(pthread_mutex_t *mutex, const pthread_mutexattr_t *attributes) noexcept {
  static const auto real = next_definition<int (*)(pthread_mutex_t *, const pthread_mutexattr_t *)>(
      "pthread_mutex_init");
  ++mutex_count;
  return mutex_error != 0 ? mutex_error : real(mutex, attributes);
}

}  // extern "C"
