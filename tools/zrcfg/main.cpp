// zrcfg: the command line of the configuration store.
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/options.h"
#include "tools/zrcfg/report.h"

namespace {

// The first files that are opened would otherwise take the place of standard streams that were
// closed. Nothing can be read from the placeholder or written to it.
void occupy_closed_streams() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (fcntl(fd, F_GETFD) == -1) {
      (void)open("/dev/null", O_PATH);  // The lowest that is free.
    }
  }
}

}  // namespace

int main(int argc, char **argv) {
  occupy_closed_streams();
  const int exit_code = zrcfg_tool::run_program(argc, argv, zrcfg_tool::Options());
  zrcfg_tool::set_report_command(nullptr);
  if (fflush(stdout) != 0 || ferror(stdout) != 0) {
    zrcfg_tool::complain("cannot write to standard output");
    return zrcfg_tool::kExitRefused;
  }
  return exit_code;
}
