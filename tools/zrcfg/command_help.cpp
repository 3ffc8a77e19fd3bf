// help [COMMAND]: what the commands do and take.
#include <stdio.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

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
  printf("  zrcfg %s [OPTION...]%s%s\n", command.name, command.arguments[0] != '\0' ? " " : "",
         command.arguments);
  print_indented(command.description);
}

void print_all() {
  puts("Reads and changes the configuration store below /var/.\n\nUsage:");
  const CommandTable commands = all_commands();
  for (size_t i = 0; i < commands.count; ++i) {
    if (commands.begin[i].description != nullptr) {
      print_command(commands.begin[i]);
    }
  }
  puts(
      "\nPATH is a full parameter path such as InternetGatewayDevice.DeviceInfo.SoftwareVersion,\n"
      "URL an object's path, with or without its final dot. Options of every command:");
  print_options(kCommonOptions);
  puts(
      "\nExit codes: 0 done; 1 refused by the store, with a line on standard error that ends in\n"
      "the library's result code; 2 wrong usage, nothing changed.\n"
      "zrcfg help COMMAND tells the options of a command.");
}

}  // namespace

int run_help(const Options &, const Arguments &arguments) {
  if (arguments.count == 0) {
    print_all();
    return kExitOk;
  }
  const Command *const command = find_command(arguments.values[0]);
  if (arguments.count > 1 || command == nullptr || command->description == nullptr) {
    complain("no command '%s'", arguments.values[arguments.count - 1]);
    return kExitUsage;
  }
  print_command(*command);
  puts("\nOptions:");
  print_options(command->options | kCommonOptions);
  return kExitOk;
}

}  // namespace zrcfg_tool
