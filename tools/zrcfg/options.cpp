// The options that every subcommand understands.
#include "tools/zrcfg/options.h"

#include <errno.h>
#include <getopt.h>
#include <limits.h>
#include <stdlib.h>

#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr long kShortestTimedTry = 10;
constexpr int kNoCheck = 256;  // An option without a letter.

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

}  // namespace

int parse_options(int argc, char **argv, bool stop_at_argument, Options &options) {
  static const option kLongOptions[] = {{"timeout", required_argument, nullptr, 't'},
                                        {"names", no_argument, nullptr, 'n'},
                                        {"no-check", no_argument, nullptr, kNoCheck},
                                        {"hex", no_argument, nullptr, 'x'},
                                        {"help", no_argument, nullptr, 'h'},
                                        {"version", no_argument, nullptr, 'V'},
                                        {nullptr, 0, nullptr, 0}};
  optind = 0;  // Starts anew: the program parses twice.
  for (;;) {
    switch (
        getopt_long(argc, argv, stop_at_argument ? "+t:nxhV" : "t:nxhV", kLongOptions, nullptr)) {
      case -1:
        return optind;
      case 't':
        if (!parse_timeout(optarg, options.timeout)) {
          return -1;
        }
        break;
      case 'n':
        options.names = true;
        break;
      case kNoCheck:
        options.check = false;
        break;
      case 'x':
        options.hex = true;
        break;
      case 'h':
        options.help = true;
        break;
      case 'V':
        options.version = true;
        break;
      default:
        return -1;  // getopt_long has said what is wrong.
    }
  }
}

}  // namespace zrcfg_tool
