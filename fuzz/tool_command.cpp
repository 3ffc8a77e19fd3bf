// A command of the command line, run within this program.
#include "fuzz/tool_command.h"

#include "tools/zrcfg/command.h"

namespace zrcfg_fuzz {

int run_tool(std::vector<std::string> words) {
  zrcfg_tool::Options options;
  options.timeout = 0;
  std::vector<char *> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string &word : words) {
    arguments.push_back(word.data());
  }
  arguments.push_back(nullptr);
  return zrcfg_tool::run_command(static_cast<int>(words.size()), arguments.data(), options);
}

}  // namespace zrcfg_fuzz
