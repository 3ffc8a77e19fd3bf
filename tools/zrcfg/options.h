// The options that every subcommand understands.
#ifndef ZRCFG_TOOLS_ZRCFG_OPTIONS_H_
#define ZRCFG_TOOLS_ZRCFG_OPTIONS_H_

#include <limits.h>

namespace zrcfg_tool {

inline constexpr int kNoInstance = -1;

struct Options {
  int timeout = 3000;  // Milliseconds, as the library takes them.
  bool names = false;
  bool check = true;            // Whether values have to pass their filters.
  bool fixed = false;           // The table is a fixed one.
  int from = kNoInstance;       // The instance to copy.
  bool allow_template = false;  // Whether the template may be deleted.
  int depth = INT_MAX;          // Levels of a tree.
  bool hex = false;
  bool help = false;
  bool version = false;
};

// Reads options from argv[1] on and moves other arguments behind them; with `stop_at_argument` it
// stops at the first other argument instead. Returns the index of the first argument left, or -1
// after reporting what is wrong.
int parse_options(int argc, char **argv, bool stop_at_argument, Options &options);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_OPTIONS_H_
