// zrcfg: the command line of the configuration store.
#include <stdio.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/options.h"
#include "tools/zrcfg/report.h"

int main(int argc, char **argv) {
  const int exit_code = zrcfg_tool::run_program(argc, argv, zrcfg_tool::Options());
  zrcfg_tool::set_report_command(nullptr);
  if (fflush(stdout) != 0 || ferror(stdout) != 0) {
    zrcfg_tool::complain("cannot write to standard output");
    return zrcfg_tool::kExitRefused;
  }
  return exit_code;
}
