// What may stand where a word of a command is being typed.
#include "tools/zrcfg/completion.h"

#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/completion_values.h"
#include "tools/zrcfg/options.h"

namespace zrcfg_tool {
namespace {

// The arguments before the one that is typed, without options.
struct Before {
  const Command *command = nullptr;  // Null as long as none is typed.
  unsigned awaiting = 0;             // The option whose value is typed; 0 for none.
  bool arguments_only = false;       // Behind "--".
  int count = 0;                     // Of the command's arguments.
  const char *first = "";
};

void add_all(const char *const *names, const char *typed, Candidates &out) {
  for (; *names != nullptr; ++names) {
    out.add(typed, "", *names, "");
  }
}

bool is_any_of(const Command *command, const char *const *names) {
  for (; *names != nullptr; ++names) {
    if (strcmp(command->name, *names) == 0) {
      return true;
    }
  }
  return false;
}

Before look_at(const char *const *words, int count) {
  Before before;
  for (int i = 0; i < count; ++i) {
    const char *const word = words[i];
    if (before.awaiting != 0) {
      before.awaiting = 0;
    } else if (!before.arguments_only && strcmp(word, "--") == 0) {
      before.arguments_only = true;
    } else if (!before.arguments_only && word[0] == '-' && word[1] != '\0') {
      before.awaiting = option_awaiting_value(word);
    } else if (before.command == nullptr) {
      before.command = find_command(word);
      if (before.command == nullptr) {
        before.arguments_only = true;  // Not known: nothing can be said about the rest.
        return before;
      }
    } else if (before.count++ == 0) {
      before.first = word;
    }
  }
  return before;
}

void add_commands(const char *typed, Candidates &out) {
  const CommandTable commands = all_commands();
  for (size_t i = 0; i < commands.count; ++i) {
    if (commands.begin[i].description != nullptr) {
      out.add(typed, "", commands.begin[i].name, "");
    }
  }
}

void add_options(const Command *command, const char *typed, Candidates &out) {
  const unsigned allowed = kCommonOptions | (command != nullptr ? command->options : 0);
  size_t place = 0;
  for (const char *name = next_option_name(allowed, &place); name != nullptr;
       name = next_option_name(allowed, &place)) {
    out.add(typed, "--", name, "");
  }
}

void add_option_values(unsigned option, const char *typed, Candidates &out) {
  constexpr const char *kModes[] = {"1", "2", "3", "all", nullptr};
  constexpr const char *kTimeouts[] = {"-2", "-1", "0", nullptr};
  if (option == kMode) {
    add_all(kModes, typed, out);
  } else if (option == kExact) {
    add_paths(typed, nullptr, out);
  } else if (option == kTimeout) {
    add_all(kTimeouts, typed, out);
  }
}

// --NAME=VALUE in one word.
void add_values_behind(const char *typed, Candidates &out) {
  char name[32];
  const char *const value = strchr(typed, '=') + 1;
  const size_t length = static_cast<size_t>(value - typed);
  if (length > sizeof name) {
    return;  // None is so long.
  }
  memcpy(name, typed, length - 1);
  name[length - 1] = '\0';
  out.before = typed;
  out.before_length = length;
  add_option_values(option_awaiting_value(name), value, out);
}

// Whether the argument is the object behind the files of snapshot and diff.
bool is_object_behind_files(const Before &before) {
  const char *const name = before.command->name;
  return (strcmp(name, "snapshot") == 0 && before.count == 1) ||
         (strcmp(name, "diff") == 0 && before.count == 2);
}

// attr and object: get or set, then the item, then names.
void add_attribute_arguments(const Before &before, const char *typed, Candidates &out) {
  const bool of_object = strcmp(before.command->name, "object") == 0;
  const bool sets = strcmp(before.first, "set") == 0;
  if (before.count == 0) {
    out.add(typed, "", "get", "");
    out.add(typed, "", "set", "");
  } else if (before.count == 1) {
    add_paths(typed, of_object ? nullptr : "", out);
  } else {
    add_attributes(of_object ? kObjectAttributes : kParamAttributes, sets, sets ? "=" : "", typed,
                   out);
  }
}

void add_arguments(const Before &before, const char *typed, Candidates &out) {
  constexpr const char *kTakingPaths[] = {"get", nullptr};
  constexpr const char *kTakingAssignments[] = {"set", nullptr};
  constexpr const char *kTakingObjects[] = {"list", "tree", "watch", "del", nullptr};
  constexpr const char *kTakingOneObject[] = {"wan",  "add",    "exists", "export", "check",
                                              "lock", "islock", "dump",   nullptr};
  constexpr const char *kTakingAttributes[] = {"attr", "object", nullptr};
  constexpr const char *kTakingCommand[] = {"help", nullptr};
  const Command *const command = before.command;
  if (is_any_of(command, kTakingPaths)) {
    add_paths(typed, "", out);
  } else if (is_any_of(command, kTakingAssignments)) {
    if (strchr(typed, '=') == nullptr) {
      add_paths(typed, "=", out);
    }
  } else if (is_any_of(command, kTakingObjects) ||
             (is_any_of(command, kTakingOneObject) && before.count == 0) ||
             is_object_behind_files(before)) {
    add_paths(typed, nullptr, out);
  } else if (is_any_of(command, kTakingAttributes)) {
    add_attribute_arguments(before, typed, out);
  } else if (is_any_of(command, kTakingCommand) && before.count == 0) {
    add_commands(typed, out);
  }
}

}  // namespace

void Candidates::add(const char *typed, const char *head, const char *name, const char *tail) {
  const size_t start = text.size;
  if (!text.append(before, before_length) || !text.append(head) || !text.append(name) ||
      !text.append(tail) || !text.append('\n')) {
    text.size = start;
    return;
  }
  const size_t length = strlen(typed);
  const size_t from = start + before_length;
  if (text.size - from <= length || memcmp(text.at + from, typed, length) != 0) {
    text.size = start;
  }
}

void complete_words(const char *const *words, int count, Candidates &out) {
  const char *const typed = words[count - 1];
  const Before before = look_at(words, count - 1);
  const bool may_be_option = typed[0] == '-' && !before.arguments_only;
  if (before.awaiting != 0) {
    add_option_values(before.awaiting, typed, out);
  } else if (may_be_option && strchr(typed, '=') != nullptr) {
    add_values_behind(typed, out);
  } else if (may_be_option) {
    add_options(before.command, typed, out);
  } else if (before.command != nullptr) {
    add_arguments(before, typed, out);
  } else if (!before.arguments_only) {
    add_commands(typed, out);
  }
}

}  // namespace zrcfg_tool
