// The options of the command line.
#include "tools/zrcfg/options.h"

#include <errno.h>
#include <getopt.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/number.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr long kShortestTimedTry = 10;
constexpr int kFirstLongOnly = 256;  // getopt's codes of options without a letter begin here.

struct OptionRule {
  unsigned bit;
  char letter;  // 0 for none.
  const char *name;
  const char *value;  // What the help calls it; null for an option without.
  const char *description;
};

constexpr OptionRule kRules[] = {
    {kTimeout, 't', "timeout", "MS",
     "how long to wait for a lock, in milliseconds (default 3000); 0 tries once,\n"
     "-1 waits without limit, -2 takes no lock; 1 to 9 are refused"},
    {kNames, 'n', "names", nullptr, "print PATH=VALUE"},
    {kJson, 'j', "json", nullptr, "print JSON"},
    {kNull, '0', "null", nullptr, "end what is printed with a zero byte in place of a line end"},
    {kShell, 's', "shell", nullptr, "print NAME='VALUE' for a shell to evaluate"},
    {kNoCheck, 0, "no-check", nullptr, "take values that the parameters' filters refuse"},
    {kDepth, 'd', "depth", "N", "print N levels only"},
    {kStatic, 0, "static", nullptr, "the table is a fixed one"},
    {kFrom, 0, "from", "N", "the instance to copy, for --static"},
    {kTemplate, 0, "template", nullptr, "allow deleting the template"},
    {kHex, 'x', "hex", nullptr, "hexadecimal digits in place of base64"},
    {kMode, 'm', "mode", "MODE", "1, 2 or 3: only what has that bit in its key; all: everything"},
    {kVerbose, 'v', "verbose", nullptr, "print the outcome of every line"},
    {kExact, 0, "exact", "URL", "delete the instances below URL that FILE does not create"},
    {kDryRun, 0, "dry-run", nullptr, "check only, change nothing"},
    {kKeepGoing, 'k', "keep-going", nullptr, "go on behind a failure"},
    {kShared, 0, "shared", nullptr, "the readers' lock in place of the writers'"},
    {kRepair, 0, "repair", nullptr, "repair what has one right answer"},
    {kHelp, 'h', "help", nullptr, "print this help, or that of a command"},
    {kVersion, 'V', "version", nullptr, "print the version"},
};
constexpr size_t kRuleCount = sizeof kRules / sizeof kRules[0];

// getopt's tables, made from the rules.
struct GetoptTables {
  option long_options[kRuleCount + 1] = {};
  char letters[2 * kRuleCount + 3] = {};

  explicit GetoptTables(bool stop_at_argument) {
    char *letter = letters;
    if (stop_at_argument) {
      *letter++ = '+';
    }
    *letter++ = ':';
    for (size_t i = 0; i < kRuleCount; ++i) {
      const OptionRule &rule = kRules[i];
      const int takes_value = rule.value != nullptr ? required_argument : no_argument;
      long_options[i] = {rule.name, takes_value, nullptr, kFirstLongOnly + static_cast<int>(i)};
      if (rule.letter != 0) {
        *letter++ = rule.letter;
        if (rule.value != nullptr) {
          *letter++ = ':';
        }
      }
    }
  }
};

const OptionRule *find_rule(int code) {
  for (size_t i = 0; i < kRuleCount; ++i) {
    if (code == kFirstLongOnly + static_cast<int>(i) || code == kRules[i].letter) {
      return &kRules[i];
    }
  }
  return nullptr;
}

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

bool parse_mode(const char *text, int &mode) {
  if (strcmp(text, "all") == 0) {
    mode = kAllModes;
    return true;
  }
  if (parse_number(text, strlen(text), mode) && mode >= 1 && mode <= 3) {
    return true;
  }
  complain("--mode %s: not 1, 2, 3 or all", text);
  return false;
}

// The number that an option takes; `what` it has to be.
bool parse_option_number(const OptionRule &rule, const char *what, int &number) {
  if (parse_number(optarg, strlen(optarg), number)) {
    return true;
  }
  complain("--%s %s: not %s", rule.name, optarg, what);
  return false;
}

// Takes one option, with its value in `optarg`.
bool apply_option(const OptionRule &rule, Options &options) {
  options.given |= rule.bit;
  switch (rule.bit) {
    case kTimeout:
      return parse_timeout(optarg, options.timeout);
    case kExact:
      options.exact = optarg;
      return true;
    case kMode:
      return parse_mode(optarg, options.mode);
    case kFrom:
      return parse_option_number(rule, "an instance number", options.from);
    case kDepth:
      return parse_option_number(rule, "a number of levels", options.depth);
    default:
      return true;
  }
}

}  // namespace

int parse_options(int argc, char **argv, bool stop_at_argument, Options &options) {
  const GetoptTables tables(stop_at_argument);
  optind = 0;  // Starts anew: the program parses more than once.
  opterr = 0;  // Errors are reported here.
  for (;;) {
    const int code = getopt_long(argc, argv, tables.letters, tables.long_options, nullptr);
    if (code == -1) {
      return optind;
    }
    const OptionRule *const rule = find_rule(code);
    if (rule == nullptr) {
      complain(code == ':' ? "%s: needs a value" : "%s: no such option", argv[optind - 1]);
      return -1;
    }
    if (!apply_option(*rule, options)) {
      return -1;
    }
  }
}

bool options_allowed(const Options &options, unsigned allowed) {
  for (const OptionRule &rule : kRules) {
    if (options.has(rule.bit) && (allowed & rule.bit) == 0) {
      complain("--%s: not an option of this command", rule.name);
      return false;
    }
  }
  return true;
}

unsigned option_awaiting_value(const char *argument) {
  if (strncmp(argument, "--", 2) == 0) {
    for (const OptionRule &rule : kRules) {
      if (rule.value != nullptr && strcmp(rule.name, argument + 2) == 0) {
        return rule.bit;
      }
    }
    return 0;
  }
  if (argument[0] != '-' || argument[1] == '\0') {
    return 0;
  }
  for (const char *letter = argument + 1; *letter != '\0'; ++letter) {
    const OptionRule *const rule = find_rule(*letter);
    if (rule != nullptr && rule->value != nullptr) {
      return letter[1] == '\0' ? rule->bit : 0;  // Behind it stands its value.
    }
  }
  return 0;
}

const char *next_option_name(unsigned allowed, size_t *place) {
  while (*place < kRuleCount) {
    const OptionRule &rule = kRules[(*place)++];
    if ((allowed & rule.bit) != 0) {
      return rule.name;
    }
  }
  return nullptr;
}

void print_options(unsigned allowed) {
  for (const OptionRule &rule : kRules) {
    if ((allowed & rule.bit) == 0) {
      continue;
    }
    char name[32];
    (void)snprintf(name, sizeof name, "--%s%s%s", rule.name, rule.value != nullptr ? " " : "",
                   rule.value != nullptr ? rule.value : "");  // None is longer.
    if (rule.letter != 0) {
      printf("  -%c, %-16s ", rule.letter, name);
    } else {
      printf("      %-16s ", name);
    }
    for (const char *at = rule.description; *at != '\0'; ++at) {
      putchar(*at);
      if (*at == '\n') {
        printf("%*s", 23, "");
      }
    }
    putchar('\n');
  }
}

}  // namespace zrcfg_tool
