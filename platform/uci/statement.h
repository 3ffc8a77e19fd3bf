// The statements of a UCI text, each as its words with quotes and escapes resolved.
#ifndef ZRCFG_PLATFORM_UCI_STATEMENT_H_
#define ZRCFG_PLATFORM_UCI_STATEMENT_H_

namespace zrcfg_uci {

// Counted from 1.
struct Place {
  int line;
  int byte;
};

struct ParseError {
  const char *reason;
  Place place;
};

// A zero-terminated text inside the text that is read.
struct Word {
  char *text;
  Place place;
};

// No statement takes more words; `count` tells of one more, and those behind it are dropped.
constexpr int kMostWords = 3;

struct Statement {
  Word words[kMostWords + 1];
  int count;
  Place end;
};

// Where reading stands. Words are resolved in place, since none gets longer; so the text is used up
// by the reading, and the byte at `end` must be writable.
struct StatementReader {
  char *at;
  char *end;
  char *line_start;
  int line;
};

enum class ReadResult { kStatement, kEnd, kError };

// Reads the next statement that has a word. `*error` is written for kError only.
ReadResult read_statement(StatementReader *reader, Statement *statement, ParseError *error);

}  // namespace zrcfg_uci

#endif  // ZRCFG_PLATFORM_UCI_STATEMENT_H_
