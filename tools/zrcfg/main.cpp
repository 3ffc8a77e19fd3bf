// zrcfg: the command line of the configuration store.
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/options.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

constexpr Command kCommands[] = {
    {"get", "PATH...", "prints the value of each parameter, one a line; --names prints PATH=VALUE",
     run_get, true},
    {"set", "PATH=VALUE...",
     "sets parameters, object by object. All values are checked first and every refusal is\n"
     "reported; an object of which one is refused is not changed. Equal values are not written.\n"
     "--no-check leaves the parameters' filters out. Only the first = splits",
     run_set, true},
    {"list", "URL...", "prints PATH=VALUE for all visible parameters of each object", run_list,
     true},
    {"tree", "[URL...]",
     "prints objects and parameters with their access rights, and instances; --depth N stops N\n"
     "levels below the object",
     run_tree, false},
    {"attr", "get|set PATH [NAME[=VALUE]...]",
     "prints attributes of a parameter, all or those named by name or number, or sets them; all\n"
     "arguments are checked before the first is set",
     run_attr, true},
    {"object", "get|set URL [NAME[=VALUE]...]", "the same for an object", run_object, true},
    {"wan", "URL|INDEX", "prints the user index, device, number and type of a WAN connection",
     run_wan, true},
    {"add", "URL [INDEX]",
     "creates an instance of a table, with the lowest free number unless INDEX says another, and\n"
     "prints its URL. Fixed tables need --static, and --from for the instance that is copied",
     run_add, true},
    {"del", "INSTANCE-URL...",
     "deletes instances with all below them; --static for fixed tables. Instance 0, the template,\n"
     "only with --template",
     run_del, true},
    {"exists", "URL", "exits with 0 when the object exists, else with 1", run_exists, true},
    {"encode", "[TEXT...]",
     "prints each text, or standard input, in base64, or with --hex in hexadecimal digits",
     run_encode, false},
    {"decode", "[TEXT]", "the reverse; writes the bytes as they are, with no line end", run_decode,
     false},
};

void print_indented(const char *text) {
  fputs("      ", stdout);
  for (; *text != '\0'; ++text) {
    putchar(*text);
    if (*text == '\n') {
      fputs("      ", stdout);
    }
  }
  putchar('\n');
}

void print_command(const Command &command) {
  printf("  zrcfg [OPTION...] %s %s\n", command.name, command.arguments);
  print_indented(command.description);
}

void print_help(const Command *only) {
  puts("Reads and changes the configuration store below /var/.\n\nUsage:");
  for (const Command &command : kCommands) {
    if (only == nullptr || only == &command) {
      print_command(command);
    }
  }
  puts(
      "\nPATH is a full parameter path such as InternetGatewayDevice.DeviceInfo.SoftwareVersion,\n"
      "URL an object's path, with or without its final dot.\n\n"
      "Options:\n"
      "  -t, --timeout MS  how long to wait for the object's lock (default 3000); 0 tries once,\n"
      "                    -1 waits without limit, -2 takes no lock; 1 to 9 are refused\n"
      "  -n, --names       get: print PATH=VALUE\n"
      "      --no-check    set: take values that the parameters' filters refuse\n"
      "      --depth N     tree: how many levels to print; all unless given\n"
      "      --static      add, del: the table is a fixed one\n"
      "      --from N      add --static: the instance to copy\n"
      "      --template    del: allow deleting the template\n"
      "  -x, --hex         encode, decode: hexadecimal in place of base64\n"
      "  -h, --help        print this help, or that of a command\n"
      "  -V, --version     print the version\n\n"
      "Exit codes: 0 done; 1 refused by the store, with its code and meaning on standard error;\n"
      "2 wrong usage.");
}

const Command *find_command(const char *name) {
  for (const Command &command : kCommands) {
    if (strcmp(command.name, name) == 0) {
      return &command;
    }
  }
  return nullptr;
}

int wrong_usage() {
  fputs("Try 'zrcfg --help'.\n", stderr);
  return kExitUsage;
}

int run(int argc, char **argv) {
  Options options;
  const int command_at = parse_options(argc, argv, true, options);
  if (command_at == -1) {
    return wrong_usage();
  }
  if (options.version) {
    puts("zrcfg " ZRCFG_VERSION);
    return kExitOk;
  }
  if (options.help) {
    print_help(nullptr);
    return kExitOk;
  }
  if (command_at == argc) {
    complain("no command given");
    return wrong_usage();
  }
  const Command *const command = find_command(argv[command_at]);
  if (command == nullptr) {
    complain("no command '%s'", argv[command_at]);
    return wrong_usage();
  }
  char **const rest = argv + command_at;
  const int rest_count = argc - command_at;
  const int first = parse_options(rest_count, rest, false, options);
  if (first == -1) {
    return wrong_usage();
  }
  if (options.help) {
    print_help(command);
    return kExitOk;
  }
  if (first == rest_count && command->needs_argument) {
    complain("%s takes %s", command->name, command->arguments);
    return wrong_usage();
  }
  return command->run(options, {rest_count - first, rest + first});
}

}  // namespace
}  // namespace zrcfg_tool

int main(int argc, char **argv) {
  const int exit_code = zrcfg_tool::run(argc, argv);
  if (fflush(stdout) != 0 || ferror(stdout) != 0) {
    zrcfg_tool::complain("cannot write to standard output");
    return zrcfg_tool::kExitRefused;
  }
  return exit_code;
}
