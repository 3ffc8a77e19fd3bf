// The commands of the command line.
#ifndef ZRCFG_TOOLS_ZRCFG_COMMAND_H_
#define ZRCFG_TOOLS_ZRCFG_COMMAND_H_

#include <stddef.h>

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
  const char *description;  // One line a line, indented by the help; null: not for people.
  unsigned options;         // Besides the common ones.
  int (*run)(const Options &options, const Arguments &arguments);
  bool needs_argument;
};

int run_add(const Options &options, const Arguments &arguments);
int run_apply(const Options &options, const Arguments &arguments);
int run_attr(const Options &options, const Arguments &arguments);
int run_batch(const Options &options, const Arguments &arguments);
int run_check(const Options &options, const Arguments &arguments);
int run_complete(const Options &options, const Arguments &arguments);
int run_decode(const Options &options, const Arguments &arguments);
int run_del(const Options &options, const Arguments &arguments);
int run_diff(const Options &options, const Arguments &arguments);
int run_dump(const Options &options, const Arguments &arguments);
int run_encode(const Options &options, const Arguments &arguments);
int run_exists(const Options &options, const Arguments &arguments);
int run_export(const Options &options, const Arguments &arguments);
int run_get(const Options &options, const Arguments &arguments);
int run_help(const Options &options, const Arguments &arguments);
int run_islock(const Options &options, const Arguments &arguments);
int run_list(const Options &options, const Arguments &arguments);
int run_lock(const Options &options, const Arguments &arguments);
int run_object(const Options &options, const Arguments &arguments);
int run_restore(const Options &options, const Arguments &arguments);
int run_set(const Options &options, const Arguments &arguments);
int run_shell(const Options &options, const Arguments &arguments);
int run_snapshot(const Options &options, const Arguments &arguments);
int run_tree(const Options &options, const Arguments &arguments);
int run_wan(const Options &options, const Arguments &arguments);
int run_watch(const Options &options, const Arguments &arguments);

// All commands, in the order of the help.
struct CommandTable {
  const Command *begin;
  size_t count;
};
CommandTable all_commands();

// The command of that name; null for none.
const Command *find_command(const char *name);

// Runs what the words behind argv[0] say: options, and a command with its own. An exit code.
int run_program(int argc, char **argv, const Options &defaults);

// Runs the command that argv[0] names with its options and arguments, on top of `defaults`. An exit
// code.
int run_command(int argc, char **argv, const Options &defaults);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_COMMAND_H_
