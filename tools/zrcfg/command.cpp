// The commands of the command line.
#include "tools/zrcfg/command.h"

#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

constexpr Command kCommands[] = {
    {"get", "PATH...",
     "Prints the value of each parameter, one a line; --names prints PATH=VALUE.\n"
     "Parameters of one object are read together.",
     kOutputOptions | kNames, run_get, true},
    {"set", "PATH=VALUE...",
     "Sets parameters, object by object. All values are checked first and every\n"
     "refusal is reported; an object of which one is refused is not changed. Equal\n"
     "values are not written. Only the first = splits.",
     kNoCheck, run_set, true},
    {"list", "URL...", "Prints PATH=VALUE for all visible parameters of each object.",
     kOutputOptions, run_list, true},
    {"tree", "[URL...]",
     "Prints objects and parameters with their access rights, and the numbers of\n"
     "instances; without URL all that is in the store.",
     kOutputOptions | kDepth, run_tree, false},
    {"attr", "get PATH [NAME...] | set PATH NAME=VALUE...",
     "Prints attributes of a parameter, all or those named by name or number, or sets\n"
     "them; all arguments are checked before the first is set.",
     kOutputOptions, run_attr, true},
    {"object", "get URL [NAME...] | set URL NAME=VALUE...", "The same for an object.",
     kOutputOptions, run_object, true},
    {"wan", "URL|INDEX", "Prints the user index, device, number and type of a WAN connection.",
     kOutputOptions, run_wan, true},
    {"add", "URL [INDEX]",
     "Creates an instance of a table, with the lowest free number unless INDEX says\n"
     "another, and prints its URL. A fixed table needs --static and --from; its counter is\n"
     "left as it is.",
     kStatic | kFrom, run_add, true},
    {"del", "INSTANCE-URL...",
     "Deletes instances with all below them. Instance 0, the template, needs\n"
     "--template; the instances of a fixed table need --static.",
     kStatic | kTemplate, run_del, true},
    {"exists", "URL", "Tells by its exit code whether the object exists.", kOutputOptions,
     run_exists, true},
    {"export", "URL [FILE]",
     "Writes the configuration of an object and all below it as text, to standard\n"
     "output or to a file: +INSTANCE-URL for each instance, PATH=VALUE for each\n"
     "parameter, hidden ones included.",
     0, run_export, true},
    {"apply", "FILE",
     "Replays a configuration: -INSTANCE-URL deletes, +INSTANCE-URL creates, PATH=VALUE\n"
     "sets; first all deletions, then creations, values, and counters. Every line is\n"
     "checked before anything is changed. FILE may be - for standard input.",
     kMode | kVerbose | kDryRun | kNoCheck | kExact, run_apply, true},
    {"dump", "URL",
     "Prints the raw property file of an object, every field with offset and bytes;\n"
     "of a damaged one what there is.",
     kOutputOptions, run_dump, true},
    {"check", "[URL]",
     "Reports what is inconsistent in the store, or in an object and all below it, as\n"
     "PATH: IDENTIFIER: TEXT, and changes nothing. Exit code 0: clean, 1: problems\n"
     "remain, 3: all are repaired.",
     kOutputOptions | kRepair, run_check, false},
    {"watch", "[URL...]",
     "Prints each change of values, attributes and instances of the objects and all below\n"
     "them, or of the whole store, as it happens, until it is interrupted.",
     kJson, run_watch, false},
    {"snapshot", "FILE [URL]",
     "Saves the objects of the store, or an object and all below it, byte for byte.\n"
     "FILE may be - for standard output.",
     0, run_snapshot, true},
    {"restore", "FILE",
     "Brings the store, or the part that was saved, to the state of a snapshot. All of\n"
     "it is checked before anything is changed. FILE may be - for standard input.",
     kDryRun, run_restore, true},
    {"diff", "A [B [URL]]",
     "Prints what leads from A to B: stores (directories, or - for the device's own, also\n"
     "without B), snapshots, and what export wrote. Exit code 0 same, 1 different, 2\n"
     "trouble.",
     kJson, run_diff, true},
    {"lock", "URL -- COMMAND...",
     "Holds the object's lock while a command runs, and passes its exit status on.\n"
     "Calls inside need --timeout -2.",
     kShared, run_lock, true},
    {"islock", "URL",
     "Prints whether a writer would have to wait: locked, with exit code 1, or free.",
     kOutputOptions, run_islock, true},
    {"encode", "[TEXT...]",
     "Prints each text, or standard input, in base64, or in hexadecimal digits.", kHex, run_encode,
     false},
    {"decode", "[TEXT]", "The reverse; writes the bytes as they are, with no line end.", kHex,
     run_decode, false},
    {"batch", "[FILE]",
     "Runs commands, one a line, from a file or from standard input, in one process, and\n"
     "stops at the first that fails, or with --keep-going at the end. Words are split at\n"
     "blanks; 'TEXT', \"TEXT\" with \\\\ \\\" \\t \\r \\n \\xHH, and \\C quote; # begins a "
     "comment.\n"
     "--timeout is that of its lines. The exit code is that of the first failure.",
     kKeepGoing, run_batch, false},
    {"shell", "",
     "The same, typed: with completion, history and line editing where the machine has\n"
     "it. A failure does not end it, 'exit' does.",
     0, run_shell, false},
    {"complete", "-- WORD...", nullptr, 0, run_complete, true},
    {"help", "[COMMAND]", "Prints the help, or that of a command.", 0, run_help, false},
};

}  // namespace

CommandTable all_commands() {
  return {kCommands, sizeof kCommands / sizeof kCommands[0]};
}

const Command *find_command(const char *name) {
  for (const Command &command : kCommands) {
    if (strcmp(command.name, name) == 0) {
      return &command;
    }
  }
  return nullptr;
}

int run_program(int argc, char **argv, const Options &defaults) {
  Options options = defaults;
  const int command_at = parse_options(argc, argv, true, options);
  if (command_at == -1) {
    return kExitUsage;
  }
  if (options.has(kVersion)) {
    puts("zrcfg " ZRCFG_VERSION);
    return kExitOk;
  }
  if (options.has(kHelp)) {
    return run_help(options, {argc - command_at, argv + command_at});
  }
  if (command_at == argc) {
    complain("no command given; 'zrcfg help' lists them");
    return kExitUsage;
  }
  return run_command(argc - command_at, argv + command_at, options);
}

int run_command(int argc, char **argv, const Options &defaults) {
  const Command *const command = find_command(argv[0]);
  if (command == nullptr) {
    complain("no command '%s'; 'zrcfg help' lists them", argv[0]);
    return kExitUsage;
  }
  set_report_command(command->name);
  Options options = defaults;
  const int first = parse_options(argc, argv, false, options);
  if (first == -1) {
    return kExitUsage;
  }
  if (options.has(kHelp)) {
    char *const name = argv[0];
    char *names[] = {name};
    return run_help(options, {1, names});
  }
  if (!options_allowed(options, command->options | kCommonOptions)) {
    return kExitUsage;
  }
  if (first == argc && command->needs_argument) {
    complain("takes %s", command->arguments);
    return kExitUsage;
  }
  return command->run(options, {argc - first, argv + first});
}

}  // namespace zrcfg_tool
