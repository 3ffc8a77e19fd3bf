// Line editing, by the library for it that the machine may have.
#include "tools/zrcfg/line_editor.h"

#include <dlfcn.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/completion.h"
#include "tools/zrcfg/history.h"
#include "tools/zrcfg/word_list.h"

namespace zrcfg_tool {
namespace {

// All of them have the same calls.
constexpr const char *kLibraries[] = {"libreadline.so.8", "libreadline.so.7", "libreadline.so.6",
                                      "libedit.so.2",     "libedit.so.0",     "libreadline.so",
                                      "libedit.so"};

using Generator = char *(*)(const char *text, int state);
using Completer = char **(*)(const char *text, int start, int end);

// The calls and settings of the library that are used.
struct EditLibrary {
  char *(*read)(const char *prompt);
  int (*remember)(const char *line);
  char **(*matches)(const char *text, Generator generator);
  const char **word_breaks;
  Completer *completer;
  char **line;
  int *append;          // The character behind a word that is complete.
  int *no_other_names;  // Set by the completer: no names of files.
};

EditLibrary library;
const char *next_candidate;

template <typename Target>
bool find(void *handle, const char *name, Target &target) {
  void *const symbol = dlsym(handle, name);
  static_assert(sizeof target == sizeof symbol, "a pointer");
  memcpy(&target, &symbol, sizeof target);
  return symbol != nullptr;
}

bool find_all(void *handle, EditLibrary &found) {
  return find(handle, "readline", found.read) && find(handle, "add_history", found.remember) &&
         find(handle, "rl_completion_matches", found.matches) &&
         find(handle, "rl_completer_word_break_characters", found.word_breaks) &&
         find(handle, "rl_attempted_completion_function", found.completer) &&
         find(handle, "rl_line_buffer", found.line) &&
         find(handle, "rl_completion_append_character", found.append) &&
         find(handle, "rl_attempted_completion_over", found.no_other_names);
}

// Hands out one candidate a call, as a block that the library frees.
char *generate(const char *, int) {
  const char *const feed = next_candidate != nullptr ? strchr(next_candidate, '\n') : nullptr;
  if (feed == nullptr) {
    return nullptr;
  }
  char *const word = strndup(next_candidate, static_cast<size_t>(feed - next_candidate));
  next_candidate = feed + 1;
  return word;
}

// Whether every candidate goes on, so that no blank is to follow.
bool all_go_on(const char *text) {
  for (const char *feed = strchr(text, '\n'); feed != nullptr; feed = strchr(feed + 1, '\n')) {
    if (feed == text || strchr(".=", feed[-1]) == nullptr) {
      return false;
    }
  }
  return true;
}

// Only commands take files, in places where no word of the store may stand.
bool takes_file(const char *command) {
  return strcmp(command, "apply") == 0 || strcmp(command, "export") == 0;
}

// The library's words end at blanks; what is before the typed one is split as commands are, and the
// typed one is taken as it stands.
char **complete_line(const char *typed, int start, int) {
  char *const before = strndup(*library.line, static_cast<size_t>(start));
  if (before == nullptr) {
    return nullptr;
  }
  WordList words;
  Candidates candidates;
  if (words.split_unfinished(before, strlen(before)) && words.values[words.count - 1][0] == '\0') {
    words.values[words.count - 1] = const_cast<char *>(typed);  // Only read.
    complete_words(words.values + 1, words.count - 1, candidates);
  }
  const bool ended = candidates.text.append('\0');
  next_candidate = ended ? candidates.text.at : nullptr;
  const bool no_files = words.count < 2 || !takes_file(words.values[1]);
  free(before);
  *library.no_other_names = no_files ? 1 : 0;
  *library.append = ended && all_go_on(candidates.text.at) && candidates.text.size > 1 ? 0 : ' ';
  return library.matches(typed, generate);
}

void take_history(const char *line) {
  (void)library.remember(line);  // A line that is lost costs typing only.
}

}  // namespace

bool load_line_editor() {
  const char *const unwanted = getenv("ZRCFG_NO_READLINE");
  if (unwanted != nullptr && unwanted[0] != '\0') {
    return false;
  }
  for (const char *name : kLibraries) {
    void *const handle = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
      continue;
    }
    if (find_all(handle, library)) {
      *library.word_breaks = " \t";
      *library.completer = complete_line;
      load_history(take_history);
      return true;
    }
    (void)dlclose(handle);  // Not used.
  }
  return false;
}

char *edit_line(const char *prompt) {
  return library.read(prompt);
}

void remember_line(const char *line) {
  if (line[0] != '\0' && line[0] != ' ' && strchr(line, '\n') == nullptr) {
    (void)library.remember(line);  // A line that is lost costs typing only.
    append_history(line);
  }
}

}  // namespace zrcfg_tool
