// A command of the command line, run within this program.
#ifndef ZRCFG_FUZZ_TOOL_COMMAND_H_
#define ZRCFG_FUZZ_TOOL_COMMAND_H_

#include <string>
#include <vector>

namespace zrcfg_fuzz {

// Runs it with these words, the command's name first, and no waiting for locks. An exit code.
int run_tool(std::vector<std::string> words);

}  // namespace zrcfg_fuzz

#endif  // ZRCFG_FUZZ_TOOL_COMMAND_H_
