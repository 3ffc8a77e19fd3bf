// shell: commands of the command line, typed one after the other.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/types.h>
#include <unistd.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/line_editor.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/script.h"
#include "tools/zrcfg/standard_input.h"

namespace zrcfg_tool {
namespace {

constexpr char kPrompt[] = "zrcfg> ";

// Where the lines come from.
struct LineSource {
  FILE *stream = nullptr;
  bool edits = false;    // The line editor is loaded.
  bool prompts = false;  // Somebody types without it.
};

bool open_source(LineSource &source) {
  if (isatty(STDIN_FILENO) == 0) {
    source.stream = take_standard_input();
    return source.stream != nullptr;
  }
  source.stream = stdin;
  source.edits = isatty(STDOUT_FILENO) != 0 && load_line_editor();
  source.prompts = !source.edits && isatty(STDERR_FILENO) != 0;
  reserve_standard_input();
  return true;
}

// The next line without its line feed, which the caller frees; null at the end.
char *next_line(const LineSource &source, size_t &length) {
  if (source.edits) {
    char *const line = edit_line(kPrompt);
    length = line != nullptr ? strlen(line) : 0;
    return line;
  }
  if (source.prompts) {
    fputs(kPrompt, stderr);
  }
  char *line = nullptr;
  size_t capacity = 0;
  const ssize_t got = getline(&line, &capacity, source.stream);
  if (got == -1) {
    free(line);
    return nullptr;
  }
  length = static_cast<size_t>(got);
  if (line[length - 1] == '\n') {
    line[--length] = '\0';
  }
  return line;
}

bool is_exit(const char *line) {
  const size_t blanks = strspn(line, " \t");
  const size_t length = strcspn(line + blanks, " \t");
  const char *const word = line + blanks;
  return (strncmp(word, "exit", length) == 0 || strncmp(word, "quit", length) == 0) &&
         length == sizeof "exit" - 1 && word[length + strspn(word + length, " \t")] == '\0';
}

}  // namespace

int run_shell(const Options &options, const Arguments &arguments) {
  if (arguments.count > 0) {
    complain("takes no arguments");
    return kExitUsage;
  }
  LineSource source;
  if (!begin_script()) {
    return kExitUsage;
  }
  if (!open_source(source)) {
    return kExitRefused;
  }
  const Options defaults = script_defaults(options);
  WordList words;
  bool left = false;
  while (!left) {
    size_t length = 0;
    char *const line = next_line(source, length);
    left = line == nullptr || is_exit(line);
    if (line == nullptr && (source.edits || source.prompts)) {
      fputc('\n', stderr);  // The prompt stands on a line of its own.
    }
    if (line != nullptr && source.edits) {
      remember_line(line);
    }
    if (!left) {
      (void)run_line(line, length, 0, words, defaults);  // It has said what failed.
    }
    free(line);
  }
  return kExitOk;
}

}  // namespace zrcfg_tool
