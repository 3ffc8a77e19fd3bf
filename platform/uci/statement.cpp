// Splitting a UCI text into statements and words.
//
// A statement ends at a line end or ";". Words stand between blanks. Unquoted, a backslash takes
// the next byte as it is and "#" begins a comment that lasts to the line end, also within a word.
// In double quotes only the backslash is special, in single quotes nothing is; line ends in quotes
// belong to the word. Pieces without a blank between them are one word. A backslash before a line
// end joins the two lines, except in single quotes.
#include "statement.h"

#include <string.h>

namespace zrcfg_uci {

namespace {

// A carriage return before a line feed is a blank like any other.
bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

bool ends_statement(char c) {
  return c == '\n' || c == ';' || c == '#';
}

Place place_of(const StatementReader *reader) {
  return Place{reader->line, static_cast<int>(reader->at - reader->line_start) + 1};
}

void pass_byte(StatementReader *reader) {
  const char passed = *reader->at++;
  if (passed == '\n') {
    ++reader->line;
    reader->line_start = reader->at;
  }
}

// The bytes of a backslash with the line end behind it; the end of the file counts as one.
int joint_length(const StatementReader *reader) {
  const char *at = reader->at;
  if (*at != '\\') {
    return 0;
  }
  if (at + 1 == reader->end) {
    return 1;
  }
  if (at[1] == '\n') {
    return 2;
  }
  return at[1] == '\r' && at + 2 != reader->end && at[2] == '\n' ? 3 : 0;
}

bool pass_joint(StatementReader *reader) {
  const int length = joint_length(reader);
  for (int i = 0; i < length; ++i) {
    pass_byte(reader);
  }
  return length > 0;
}

void pass_blanks(StatementReader *reader) {
  while (reader->at != reader->end) {
    if (is_blank(*reader->at)) {
      ++reader->at;
    } else if (!pass_joint(reader)) {
      return;
    }
  }
}

void pass_statement_end(StatementReader *reader) {
  if (*reader->at == '#') {
    char *line_end = static_cast<char *>(
        memchr(reader->at, '\n', static_cast<size_t>(reader->end - reader->at)));
    reader->at = line_end != nullptr ? line_end : reader->end;
  }
  if (reader->at != reader->end) {
    pass_byte(reader);
  }
}

// Appends what the quotes at the reader hold to `*out`.
bool read_quoted(StatementReader *reader, char **out, ParseError *error) {
  const char quote = *reader->at;
  const Place opened = place_of(reader);
  pass_byte(reader);
  while (reader->at != reader->end) {
    if (*reader->at == quote) {
      pass_byte(reader);
      return true;
    }
    if (quote == '"' && *reader->at == '\\') {
      if (pass_joint(reader)) {
        continue;
      }
      pass_byte(reader);
    }
    *(*out)++ = *reader->at;
    pass_byte(reader);
  }
  *error = {quote == '"' ? "unterminated \"" : "unterminated '", opened};
  return false;
}

enum class WordResult { kMoreWords, kLastWord, kError };

// Reads one word and the byte that ends it, whose place the word's terminator may take.
WordResult read_word(StatementReader *reader, Statement *statement, Word *word, ParseError *error) {
  char *out = reader->at;
  *word = Word{out, place_of(reader)};
  while (reader->at != reader->end) {
    const char c = *reader->at;
    if (is_blank(c)) {
      ++reader->at;
      *out = '\0';
      return WordResult::kMoreWords;
    }
    if (ends_statement(c)) {
      break;
    }
    if (c == '\'' || c == '"') {
      if (!read_quoted(reader, &out, error)) {
        return WordResult::kError;
      }
      continue;
    }
    if (c == '\\') {
      if (pass_joint(reader)) {
        continue;
      }
      pass_byte(reader);
    }
    *out++ = *reader->at;
    pass_byte(reader);
  }
  statement->end = place_of(reader);
  if (reader->at != reader->end) {
    pass_statement_end(reader);
  }
  *out = '\0';
  return WordResult::kLastWord;
}

}  // namespace

ReadResult read_statement(StatementReader *reader, Statement *statement, ParseError *error) {
  statement->count = 0;
  for (;;) {
    pass_blanks(reader);
    statement->end = place_of(reader);
    if (reader->at == reader->end) {
      return statement->count > 0 ? ReadResult::kStatement : ReadResult::kEnd;
    }
    if (ends_statement(*reader->at)) {
      pass_statement_end(reader);
      if (statement->count > 0) {
        return ReadResult::kStatement;
      }
      continue;
    }
    Word word;
    const WordResult result = read_word(reader, statement, &word, error);
    if (result == WordResult::kError) {
      return ReadResult::kError;
    }
    if (statement->count <= kMostWords) {
      statement->words[statement->count++] = word;
    }
    if (result == WordResult::kLastWord) {
      return ReadResult::kStatement;
    }
  }
}

}  // namespace zrcfg_uci
