// The options of the command line.
#ifndef ZRCFG_TOOLS_ZRCFG_OPTIONS_H_
#define ZRCFG_TOOLS_ZRCFG_OPTIONS_H_

#include <limits.h>
#include <stddef.h>

namespace zrcfg_tool {

// One bit an option: what a command allows, and what was given.
enum OptionBit : unsigned {
  kTimeout = 1u << 0,
  kHelp = 1u << 1,
  kVersion = 1u << 2,
  kNames = 1u << 3,
  kNoCheck = 1u << 4,
  kStatic = 1u << 5,
  kFrom = 1u << 6,
  kTemplate = 1u << 7,
  kDepth = 1u << 8,
  kHex = 1u << 9,
  kJson = 1u << 10,
  kNull = 1u << 11,
  kShell = 1u << 12,
  kMode = 1u << 13,
  kVerbose = 1u << 14,
  kDryRun = 1u << 15,
  kKeepGoing = 1u << 16,
  kShared = 1u << 17,
  kExact = 1u << 18,
  kRepair = 1u << 19,
};

// Options that every command takes, and those of commands that print what they read.
inline constexpr unsigned kCommonOptions = kTimeout | kHelp | kVersion;
inline constexpr unsigned kOutputOptions = kJson | kNull | kShell;

inline constexpr int kNoInstance = -1;
inline constexpr int kAllModes = 0;

struct Options {
  unsigned given = 0;           // The OptionBits that were given.
  int timeout = 3000;           // Milliseconds, as the library takes them.
  int from = kNoInstance;       // The instance to copy.
  int depth = INT_MAX;          // Levels of a tree.
  const char *exact = nullptr;  // The object that is to be as the text says.
  int mode = kAllModes;         // Of the export calls.

  bool has(unsigned bit) const { return (given & bit) != 0; }
};

// Reads options from argv[1] on and moves other arguments behind them; with `stop_at_argument` it
// stops at the first other argument instead. Returns the index of the first argument left, or -1
// after reporting what is wrong.
int parse_options(int argc, char **argv, bool stop_at_argument, Options &options);

// Whether everything that was given is among `allowed`; else reports it.
bool options_allowed(const Options &options, unsigned allowed);

// Prints the options that are among `allowed`, one a line.
void print_options(unsigned allowed);

// The option that takes the next argument as its value, when `argument` ends in one; 0 for none.
unsigned option_awaiting_value(const char *argument);

// The long name of the next option from `*place` on that is among `allowed`; null at the end.
const char *next_option_name(unsigned allowed, size_t *place);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_OPTIONS_H_
