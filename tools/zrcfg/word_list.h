// A line of text as the words of a command.
#ifndef ZRCFG_TOOLS_ZRCFG_WORD_LIST_H_
#define ZRCFG_TOOLS_ZRCFG_WORD_LIST_H_

#include <stddef.h>

namespace zrcfg_tool {

// The words as a program gets them: at 0 stands a name for the program, behind the last word a null
// pointer. The words lie in the line.
struct WordList {
  char **values = nullptr;
  int count = 0;

  WordList() = default;
  ~WordList();
  WordList(const WordList &) = delete;
  WordList &operator=(const WordList &) = delete;

  // Forgets all words, then splits a line of `length` characters, which is changed on the way.
  // Words are separated by blanks and tabs, and parts of a word that stand side by side are joined:
  //   'TEXT'   stands for TEXT
  //   "TEXT"   the same, but \\ \" \t \r \n stand for the one character, \xHH for any byte but 0
  //   \C       elsewhere stands for the character C
  // "#" where a word would begin starts a comment. Control characters stand in quotes only. Reports
  // and returns false when a quote does not end, an escape is none, or there is no memory.
  bool split(char *line, size_t length);
  // The same for what may still be typed: an open quote ends with the line, and nothing is
  // reported. The last word is empty when the line ends between words.
  bool split_unfinished(char *line, size_t length);

 private:
  bool add(char *word);
  bool split_words(char *line, size_t length, bool finished);

  int capacity_ = 0;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_WORD_LIST_H_
