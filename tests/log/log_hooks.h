// Stands between the logger and libc: the time, shell commands, the making of a mutex.
#ifndef ZRCFG_TESTS_LOG_LOG_HOOKS_H_
#define ZRCFG_TESTS_LOG_LOG_HOOKS_H_

#include <time.h>

#include <functional>
#include <string>
#include <vector>

namespace zrcfg_test {

// What time() gives, until the clock runs again.
void stop_clock(time_t now);
void run_clock();

// The commands that went to the shell, from all threads; each is run as well.
std::vector<std::string> shell_commands();
void clear_shell_commands();
// Called with each command before it is run, by one thread at a time.
void watch_shell(std::function<void(const std::string &command)> watcher);

// Lets the making of a mutex fail with this error number; 0 ends that.
void fail_mutex_init(int error);
unsigned mutex_inits();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_LOG_LOG_HOOKS_H_
