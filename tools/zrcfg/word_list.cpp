// A line of text as the words of a command.
#include "tools/zrcfg/word_list.h"

#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/escape.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

constexpr int kFirstCapacity = 32;

char program_name[] = "zrcfg";

bool is_blank(char c) {
  return c == ' ' || c == '\t';
}

// Takes one line apart. Words shrink when their quotes go, so they are written over the line.
struct Splitter {
  char *at;
  char *out;
  bool finished;         // What is wrong with the line is an error, and is reported.
  bool in_word = false;  // The line ended inside a word.

  bool wrong(const char *reason) const {
    if (finished) {
      complain("%s", reason);
    }
    return !finished;
  }

  bool take_single_quoted() {
    for (; *at != '\0'; ++at) {
      if (*at == '\'') {
        ++at;
        return true;
      }
      *out++ = *at;
    }
    return wrong("the line ends inside single quotes");
  }

  bool take_double_quoted() {
    while (*at != '\0') {
      char c = *at++;
      if (c == '"') {
        return true;
      }
      if (c == '\\') {
        const size_t taken = unescape(at, "\\\"trn", c);
        if (taken == 0 && !wrong("\\ in double quotes is followed by neither \\, \", t, r, n nor "
                                 "xHH (01 to ff)")) {
          return false;
        }
        at += taken;
      }
      *out++ = c;
    }
    return wrong("the line ends inside double quotes");
  }

  bool take_unquoted() {
    if (*at == '\\') {
      ++at;
      if (*at == '\0') {
        return wrong("the line ends with a \\");
      }
    }
    if (is_control(*at) && !wrong("a control character outside quotes")) {
      return false;
    }
    *out++ = *at++;
    return true;
  }

  // Takes the word that begins at `at`, up to the blank behind it or the end of the line.
  bool take_word() {
    while (*at != '\0' && !is_blank(*at)) {
      const char c = *at;
      if (c == '\'' || c == '"') {
        ++at;
        if (!(c == '"' ? take_double_quoted() : take_single_quoted())) {
          return false;
        }
      } else if (!take_unquoted()) {
        return false;
      }
    }
    in_word = *at == '\0';
    if (!in_word) {
      ++at;
    }
    *out++ = '\0';
    return true;
  }
};

}  // namespace

WordList::~WordList() {
  free(values);
}

bool WordList::add(char *word) {
  if (count + 2 > capacity_) {
    const int grown = capacity_ == 0 ? kFirstCapacity : capacity_ * 2;
    void *const block = realloc(values, static_cast<size_t>(grown) * sizeof *values);
    if (block == nullptr) {
      complain("out of memory");
      return false;
    }
    values = static_cast<char **>(block);
    capacity_ = grown;
  }
  values[count++] = word;
  values[count] = nullptr;
  return true;
}

bool WordList::split_words(char *line, size_t length, bool finished) {
  count = 0;
  if (memchr(line, '\0', length) != nullptr) {
    complain("a zero byte in the line");
    return false;
  }
  if (!add(program_name)) {
    return false;
  }
  Splitter splitter = {line, line, finished};
  for (;;) {
    while (is_blank(*splitter.at)) {
      ++splitter.at;
    }
    if (*splitter.at == '\0' || *splitter.at == '#') {
      break;
    }
    char *const word = splitter.out;
    if (!splitter.take_word() || !add(word)) {
      return false;
    }
  }
  return finished || splitter.in_word || add(line + length);
}

bool WordList::split(char *line, size_t length) {
  return split_words(line, length, true);
}

bool WordList::split_unfinished(char *line, size_t length) {
  return split_words(line, length, false);
}

}  // namespace zrcfg_tool
