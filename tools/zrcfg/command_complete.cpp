// complete -- WORD...: what may stand in place of the last word, for the completion of shells.
#include <stdio.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/completion.h"

namespace zrcfg_tool {

int run_complete(const Options &, const Arguments &arguments) {
  Candidates candidates;
  complete_words(arguments.values, arguments.count, candidates);
  (void)candidates.text.write_to(stdout);  // main reports what standard output suffers.
  return kExitOk;
}

}  // namespace zrcfg_tool
