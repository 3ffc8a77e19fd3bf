// Commands that come as lines of text.
#include "tools/zrcfg/script.h"

#include <stdio.h>

#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

bool running = false;

// Writes standard output out, for whoever waits for this command's. The error is taken away, so
// that the next command meets its own.
bool flush_output() {
  if (fflush(stdout) == 0 && ferror(stdout) == 0) {
    return true;
  }
  clearerr(stdout);
  complain("cannot write to standard output");
  return false;
}

}  // namespace

bool begin_script() {
  if (running) {
    complain("not inside another batch or shell");
    return false;
  }
  running = true;
  return true;
}

Options script_defaults(const Options &options) {
  Options defaults;
  defaults.given = options.given & kTimeout;
  defaults.timeout = options.timeout;
  return defaults;
}

int run_line(char *line, size_t length, size_t number, WordList &words, const Options &defaults) {
  set_report_command(nullptr);
  set_script_line(number);
  const size_t complaints = complaint_count();
  int exit_code = kExitUsage;
  if (words.split(line, length)) {
    exit_code = words.count == 1 ? kExitOk : run_program(words.count, words.values, defaults);
  }
  if (!flush_output() && exit_code == kExitOk) {
    exit_code = kExitRefused;
  }
  if (exit_code != kExitOk && complaint_count() == complaints) {
    complain("exit code %d", exit_code);  // It was an answer, or that of a process.
  }
  set_script_line(0);
  set_report_line(0);
  return exit_code;
}

}  // namespace zrcfg_tool
