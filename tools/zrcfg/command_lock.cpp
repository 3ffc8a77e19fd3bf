// lock URL -- COMMAND...: holds an object's lock while a command runs; islock URL.
#include <errno.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/output.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr int kExitCannotRun = 126;
constexpr int kExitNotFound = 127;
constexpr int kExitSignalBase = 128;

// Signals that end programs; they reach the command, which decides.
constexpr int kForwarded[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};
constexpr size_t kForwardedCount = sizeof kForwarded / sizeof kForwarded[0];

volatile sig_atomic_t command_process = 0;

void forward(int signal) {
  if (command_process > 0) {
    (void)kill(command_process, signal);  // One that has just ended needs it no more.
  }
}

// Forwards the signals for as long as it lives.
class Forwarding {
 public:
  Forwarding() {
    struct sigaction action = {};
    action.sa_handler = forward;
    for (size_t i = 0; i < kForwardedCount; ++i) {
      (void)sigaction(kForwarded[i], &action, &saved_[i]);  // Valid signals.
    }
  }
  ~Forwarding() {
    for (size_t i = 0; i < kForwardedCount; ++i) {
      (void)sigaction(kForwarded[i], &saved_[i], nullptr);
    }
  }
  Forwarding(const Forwarding &) = delete;
  Forwarding &operator=(const Forwarding &) = delete;

  // What the command is started with.
  void restore_in_child() const {
    for (size_t i = 0; i < kForwardedCount; ++i) {
      (void)sigaction(kForwarded[i], &saved_[i], nullptr);
    }
  }

 private:
  struct sigaction saved_[kForwardedCount];
};

[[noreturn]] void run_in_child(const Forwarding &forwarding, char **command) {
  forwarding.restore_in_child();
  (void)execvp(command[0], command);
  const int error = errno;
  complain("%s: %s", command[0], strerror(error));
  _exit(error == ENOENT ? kExitNotFound : kExitCannotRun);
}

int wait_for(pid_t process) {
  int status;
  while (waitpid(process, &status, 0) == -1) {
    if (errno != EINTR) {
      complain("%s", strerror(errno));
      return kExitRefused;
    }
  }
  return WIFSIGNALED(status) ? kExitSignalBase + WTERMSIG(status) : WEXITSTATUS(status);
}

int run_locked(char **command) {
  const Forwarding forwarding;
  (void)fflush(stdout);  // Nothing is to be printed twice; main reports what fails.
  const pid_t process = fork();
  if (process == -1) {
    complain("%s", strerror(errno));
    return kExitRefused;
  }
  if (process == 0) {
    run_in_child(forwarding, command);
  }
  command_process = process;
  const int exit_code = wait_for(process);
  command_process = 0;
  return exit_code;
}

}  // namespace

int run_lock(const Options &options, const Arguments &arguments) {
  if (arguments.count < 2) {
    complain("takes URL -- COMMAND...");
    return kExitUsage;
  }
  ObjectUrl url;
  if (!parse_object_url(arguments.values[0], url)) {
    return kExitUsage;
  }
  if (options.timeout == ZRCFG_NO_LOCK) {
    complain("--timeout -2 would take no lock");
    return kExitUsage;
  }
  const uint32_t type = options.has(kShared) ? ZRCFG_LOCK_SHARED : ZRCFG_LOCK_EXCLUSIVE;
  int fd = -1;
  if (zrcfg_lockurl(url.text, &fd, options.timeout, type) != ZRCFG_OK) {
    report_refusal(url.text, "", ZRCFG_E_LOCK);
    return kExitRefused;
  }
  const int exit_code = run_locked(arguments.values + 1);
  (void)zrcfg_releaselock(fd);  // The command's status is what matters.
  return exit_code;
}

int run_islock(const Options &options, const Arguments &arguments) {
  if (arguments.count != 1) {
    complain("takes one URL");
    return kExitUsage;
  }
  ObjectUrl url;
  Form form;
  if (!parse_object_url(arguments.values[0], url) || !choose_form(options, form)) {
    return kExitUsage;
  }
  if (zrcfg_isobjectexist(url.text) != 1) {
    report_refusal(url.text, "", ZRCFG_E_NOT_FOUND);
    return kExitUsage;
  }
  // The library's own test looks at the directory only, its locks lie on property files.
  int fd = -1;
  const bool obtained = zrcfg_lockurl(url.text, &fd, 0, ZRCFG_LOCK_EXCLUSIVE) == ZRCFG_OK;
  (void)zrcfg_releaselock(fd);
  const bool locked = !obtained || zrcfg_islock(url.text) != 0;
  if (form == Form::kText) {
    puts(locked ? "locked" : "free");
  } else {
    RecordPrinter(form).print(Field::of("locked", locked));
  }
  return locked ? kExitRefused : kExitOk;
}

}  // namespace zrcfg_tool
