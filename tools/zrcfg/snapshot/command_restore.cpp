// restore FILE: brings the store to the state of a snapshot.
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/snapshot/restore.h"

namespace zrcfg_tool {

int run_restore(const Options &options, const Arguments &arguments) {
  if (arguments.count != 1) {
    complain("takes one file");
    return kExitUsage;
  }
  Restore restore(options);
  if (!restore.load(arguments.values[0]) || !restore.check()) {
    complain("%s: nothing was changed", arguments.values[0]);
    return kExitRefused;
  }
  if (options.has(kDryRun)) {
    restore.print_changes();
    return kExitOk;
  }
  return restore.run() ? kExitOk : kExitRefused;
}

}  // namespace zrcfg_tool
