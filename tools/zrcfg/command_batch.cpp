// batch [FILE]: commands of the command line, one a line.
#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/script.h"
#include "tools/zrcfg/standard_input.h"

namespace zrcfg_tool {
namespace {

FILE *open_input(const char *name) {
  if (strcmp(name, "-") == 0) {
    return take_standard_input();
  }
  FILE *const stream = fopen(name, "re");
  if (stream == nullptr) {
    complain("%s: cannot be read: %s", name, strerror(errno));
  }
  return stream;
}

// Runs the lines of a stream. The exit code of the first that fails.
int run_lines(const Options &options, FILE *stream, const char *name) {
  const Options defaults = script_defaults(options);
  WordList words;
  char *line = nullptr;
  size_t capacity = 0;
  size_t number = 0;
  int exit_code = kExitOk;
  while (exit_code == kExitOk || options.has(kKeepGoing)) {
    errno = 0;
    ssize_t length = getline(&line, &capacity, stream);
    if (length == -1) {
      set_report_command("batch");
      if (feof(stream) == 0) {
        complain("%s: cannot be read: %s", name, strerror(errno));
        exit_code = exit_code == kExitOk ? kExitRefused : exit_code;
      }
      break;
    }
    if (line[length - 1] == '\n') {
      line[--length] = '\0';
    }
    const int result = run_line(line, static_cast<size_t>(length), ++number, words, defaults);
    exit_code = exit_code == kExitOk ? result : exit_code;
  }
  free(line);
  return exit_code;
}

}  // namespace

int run_batch(const Options &options, const Arguments &arguments) {
  if (arguments.count > 1) {
    complain("takes one file");
    return kExitUsage;
  }
  if (!begin_script()) {
    return kExitUsage;
  }
  const char *const name = arguments.count == 1 ? arguments.values[0] : "-";
  FILE *const stream = open_input(name);
  if (stream == nullptr) {
    return kExitRefused;
  }
  const int exit_code =
      run_lines(options, stream, strcmp(name, "-") == 0 ? "standard input" : name);
  (void)fclose(stream);  // Only read.
  return exit_code;
}

}  // namespace zrcfg_tool
