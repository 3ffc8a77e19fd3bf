// The subcommands of the command line.
#ifndef ZRCFG_TOOLS_ZRCFG_COMMAND_H_
#define ZRCFG_TOOLS_ZRCFG_COMMAND_H_

#include "tools/zrcfg/options.h"

namespace zrcfg_tool {

// Exit codes of the program.
inline constexpr int kExitOk = 0;
inline constexpr int kExitRefused = 1;
inline constexpr int kExitUsage = 2;

struct Arguments {
  int count;
  char **values;
};

struct Command {
  const char *name;
  const char *arguments;    // As the usage line shows them.
  const char *description;  // One line a line, indented by the help.
  int (*run)(const Options &options, const Arguments &arguments);
  bool needs_argument;
};

int run_get(const Options &options, const Arguments &arguments);
int run_set(const Options &options, const Arguments &arguments);
int run_list(const Options &options, const Arguments &arguments);
int run_add(const Options &options, const Arguments &arguments);
int run_del(const Options &options, const Arguments &arguments);
int run_tree(const Options &options, const Arguments &arguments);
int run_attr(const Options &options, const Arguments &arguments);
int run_object(const Options &options, const Arguments &arguments);
int run_wan(const Options &options, const Arguments &arguments);
int run_encode(const Options &options, const Arguments &arguments);
int run_decode(const Options &options, const Arguments &arguments);
int run_exists(const Options &options, const Arguments &arguments);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_COMMAND_H_
