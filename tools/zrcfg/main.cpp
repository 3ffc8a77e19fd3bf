// zrcfg: the command line of the configuration store.
#include <stdio.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/options.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

int run(int argc, char **argv) {
  Options options;
  const int command_at = parse_options(argc, argv, true, options);
  if (command_at == -1) {
    return kExitUsage;
  }
  if (options.has(kVersion)) {
    puts("zrcfg " ZRCFG_VERSION);
    return kExitOk;
  }
  if (options.has(kHelp)) {
    return run_help(options, {argc - command_at, argv + command_at});
  }
  if (command_at == argc) {
    complain("no command given; 'zrcfg help' lists them");
    return kExitUsage;
  }
  return run_command(argc - command_at, argv + command_at, options);
}

}  // namespace
}  // namespace zrcfg_tool

int main(int argc, char **argv) {
  const int exit_code = zrcfg_tool::run(argc, argv);
  zrcfg_tool::set_report_command(nullptr);
  if (fflush(stdout) != 0 || ferror(stdout) != 0) {
    zrcfg_tool::complain("cannot write to standard output");
    return zrcfg_tool::kExitRefused;
  }
  return exit_code;
}
