// The options that every subcommand understands.
#include "tools/zrcfg/options.h"

#include <errno.h>
#include <getopt.h>
#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/number.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr long kShortestTimedTry = 10;

// Options without a letter.
constexpr int kNoCheck = 256;
constexpr int kStatic = 257;
constexpr int kFrom = 258;
constexpr int kTemplate = 259;
constexpr int kDepth = 260;

// A time-out that the library can honour: 1 to 9 would mean no try at all, and numbers below
// ZRCFG_NO_LOCK would mean to retry for ever.
bool parse_timeout(const char *text, int &timeout) {
  char *end = nullptr;
  errno = 0;
  const long value = strtol(text, &end, 10);
  if (end == text || *end != '\0' || errno != 0 || value > INT_MAX || value < ZRCFG_NO_LOCK) {
    complain("--timeout %s: not -2, -1, 0 or a number of milliseconds", text);
    return false;
  }
  if (value > 0 && value < kShortestTimedTry) {
    complain("--timeout %s: 1 to 9 would not try at all; use 0 for one try", text);
    return false;
  }
  timeout = static_cast<int>(value);
  return true;
}

// The number that an option takes; `what` it has to be.
bool parse_option_number(const char *option, const char *what, int &number) {
  if (parse_number(optarg, strlen(optarg), number)) {
    return true;
  }
  complain("--%s %s: not %s", option, optarg, what);
  return false;
}

// Takes one option that getopt_long has found; false for one that it refused.
bool apply_option(int option, Options &options) {
  switch (option) {
    case 't':
      return parse_timeout(optarg, options.timeout);
    case kFrom:
      return parse_option_number("from", "an instance number", options.from);
    case kDepth:
      return parse_option_number("depth", "a number of levels", options.depth);
    case 'n':
      return options.names = true;
    case 'x':
      return options.hex = true;
    case 'h':
      return options.help = true;
    case 'V':
      return options.version = true;
    case kStatic:
      return options.fixed = true;
    case kTemplate:
      return options.allow_template = true;
    case kNoCheck:
      options.check = false;
      return true;
    default:
      return false;
  }
}

}  // namespace

int parse_options(int argc, char **argv, bool stop_at_argument, Options &options) {
  static const option kLongOptions[] = {{"timeout", required_argument, nullptr, 't'},
                                        {"names", no_argument, nullptr, 'n'},
                                        {"no-check", no_argument, nullptr, kNoCheck},
                                        {"static", no_argument, nullptr, kStatic},
                                        {"from", required_argument, nullptr, kFrom},
                                        {"template", no_argument, nullptr, kTemplate},
                                        {"depth", required_argument, nullptr, kDepth},
                                        {"hex", no_argument, nullptr, 'x'},
                                        {"help", no_argument, nullptr, 'h'},
                                        {"version", no_argument, nullptr, 'V'},
                                        {nullptr, 0, nullptr, 0}};
  optind = 0;  // Starts anew: the program parses twice.
  for (;;) {
    const int option =
        getopt_long(argc, argv, stop_at_argument ? "+t:nxhV" : "t:nxhV", kLongOptions, nullptr);
    if (option == -1) {
      return optind;
    }
    if (!apply_option(option, options)) {
      return -1;
    }
  }
}

}  // namespace zrcfg_tool
