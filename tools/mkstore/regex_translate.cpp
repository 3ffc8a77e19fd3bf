// The document's regular expressions, which follow XML Schema, as expression trees.
#include "tools/mkstore/regex_translate.h"

#include <string_view>
#include <utility>
#include <vector>

namespace zrcfg::mkstore {

namespace {

constexpr int kMaxGroupDepth = 32;
constexpr size_t kMaxCount = 255;  // No value is longer, and no matcher need take more.

using Parsed = std::optional<Expression>;

struct Cursor {
  std::string_view text;
  size_t at = 0;
  int depth = 0;

  bool done() const { return at >= text.size(); }
  char peek() const { return text[at]; }
  bool take(char wanted) {
    if (done() || peek() != wanted) {
      return false;
    }
    ++at;
    return true;
  }
};

Parsed parse_alternatives(Cursor &cursor);

// Behind a backslash: a class of bytes or one byte that would mean something else without it.
std::optional<ByteSet> escaped_set(char c) {
  const ByteSet word =
      bytes_between('a', 'z') | bytes_between('A', 'Z') | bytes_between('0', '9') | bytes_of("_");
  switch (c) {
    case 'd':
      return bytes_between('0', '9');
    case 'D':
      return text_bytes() & ~bytes_between('0', '9');
    case 'w':
      return word;
    case 'W':
      return text_bytes() & ~word;
    case 's':
      return bytes_of(" ");  // The other blanks are control characters.
    case 'S':
      return text_bytes() & ~bytes_of(" ");
    default:
      break;
  }
  constexpr std::string_view kPunctuation = "!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~ ";
  if (kPunctuation.find(c) == std::string_view::npos) {
    return std::nullopt;
  }
  return bytes_of(std::string_view(&c, 1));
}

// One member of a set. `single` is the byte when it can begin or end a range.
std::optional<ByteSet> set_member(Cursor &cursor, std::optional<char> &single) {
  single.reset();
  if (cursor.done()) {
    return std::nullopt;
  }
  const char c = cursor.text[cursor.at++];
  if (c == '\\') {
    if (cursor.done()) {
      return std::nullopt;
    }
    const std::optional<ByteSet> set = escaped_set(cursor.text[cursor.at++]);
    if (set && set->count() == 1) {
      single = cursor.text[cursor.at - 1] == 's' ? ' ' : cursor.text[cursor.at - 1];
    }
    return set;
  }
  // A character of several bytes cannot be told from its bytes in a set; "[" begins what only
  // XML Schema has, the difference of two sets.
  if (static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) >= 0x7f || c == '[') {
    return std::nullopt;
  }
  single = c;
  return bytes_of(std::string_view(&c, 1));
}

// Called behind the opening bracket.
Parsed parse_set(Cursor &cursor) {
  const bool negated = cursor.take('^');
  ByteSet set;
  while (!cursor.take(']')) {
    std::optional<char> first;
    const std::optional<ByteSet> member = set_member(cursor, first);
    if (!member) {
      return std::nullopt;
    }
    set |= *member;
    const bool range = cursor.at + 1 < cursor.text.size() && cursor.peek() == '-' &&
                       cursor.text[cursor.at + 1] != ']';
    if (!range) {
      continue;
    }
    ++cursor.at;
    std::optional<char> last;
    if (!set_member(cursor, last) || !first || !last || *last < *first) {
      return std::nullopt;
    }
    set |= bytes_between(*first, *last);
  }
  if (set.none()) {
    return std::nullopt;
  }
  return one_of(negated ? text_bytes() & ~set : set);
}

// Called behind the opening parenthesis.
Parsed parse_group(Cursor &cursor) {
  if (cursor.text.substr(cursor.at, 2) == "?:") {
    cursor.at += 2;
  } else if (!cursor.done() && cursor.peek() == '?') {
    return std::nullopt;  // Looking ahead and behind.
  }
  if (++cursor.depth > kMaxGroupDepth) {
    return std::nullopt;
  }
  Parsed inside = parse_alternatives(cursor);
  --cursor.depth;
  return cursor.take(')') ? inside : std::nullopt;
}

Parsed parse_atom(Cursor &cursor) {
  const char c = cursor.text[cursor.at++];
  switch (c) {
    case '(':
      return parse_group(cursor);
    case '[':
      return parse_set(cursor);
    case '.':
      return one_of(text_bytes());
    case '\\': {
      const std::optional<ByteSet> set =
          cursor.done() ? std::nullopt : escaped_set(cursor.text[cursor.at++]);
      return set ? Parsed(one_of(*set)) : std::nullopt;
    }
    case '*':
    case '+':
    case '?':
    case '{':
    case '}':
    case ']':
      return std::nullopt;
    default:
      break;
  }
  if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) {
    return std::nullopt;
  }
  const size_t start = cursor.at - 1;
  while (!cursor.done() && (static_cast<unsigned char>(cursor.peek()) & 0xC0u) == 0x80u) {
    ++cursor.at;  // The further bytes of one character.
  }
  return literal(cursor.text.substr(start, cursor.at - start));
}

std::optional<size_t> parse_repetition_count(Cursor &cursor) {
  if (cursor.done() || cursor.peek() < '0' || cursor.peek() > '9') {
    return std::nullopt;
  }
  size_t count = 0;
  while (!cursor.done() && cursor.peek() >= '0' && cursor.peek() <= '9') {
    count = count * 10 + static_cast<size_t>(cursor.text[cursor.at++] - '0');
    if (count > kMaxCount) {
      return std::nullopt;
    }
  }
  return count;
}

// {n}, {n,} or {n,m}, called behind the brace.
bool parse_counts(Cursor &cursor, size_t &minimum, size_t &maximum) {
  const std::optional<size_t> least = parse_repetition_count(cursor);
  if (!least) {
    return false;
  }
  minimum = maximum = *least;
  if (cursor.take(',')) {
    const std::optional<size_t> most = parse_repetition_count(cursor);
    maximum = most.value_or(kUnbounded);
  }
  return cursor.take('}') && minimum <= maximum;
}

// The quantifier behind an atom, if there is one.
Parsed parse_repeated(Cursor &cursor, Expression atom) {
  size_t minimum = 1;
  size_t maximum = 1;
  if (cursor.take('*')) {
    minimum = 0;
    maximum = kUnbounded;
  } else if (cursor.take('+')) {
    maximum = kUnbounded;
  } else if (cursor.take('?')) {
    minimum = 0;
  } else if (!cursor.take('{')) {
    return atom;
  } else if (!parse_counts(cursor, minimum, maximum)) {
    return std::nullopt;
  }
  (void)cursor.take('?');  // The lazy form matches the same texts.
  return repeat(atom, minimum, maximum);
}

// "^" at the beginning and "$" at the end of an alternative change nothing, as a pattern always
// covers the whole value; elsewhere, and inside groups, they are refused.
Parsed parse_sequence(Cursor &cursor) {
  std::vector<Expression> parts;
  if (cursor.depth == 0) {
    (void)cursor.take('^');
  }
  while (!cursor.done() && cursor.peek() != '|' && cursor.peek() != ')') {
    if (cursor.peek() == '$' || cursor.peek() == '^') {
      const size_t behind = cursor.at + 1;
      const bool last = behind == cursor.text.size() || cursor.text[behind] == '|';
      if (cursor.depth > 0 || cursor.peek() == '^' || !last) {
        return std::nullopt;
      }
      ++cursor.at;
      continue;
    }
    Parsed atom = parse_atom(cursor);
    Parsed repeated = atom ? parse_repeated(cursor, std::move(*atom)) : std::nullopt;
    if (!repeated) {
      return std::nullopt;
    }
    parts.push_back(std::move(*repeated));
  }
  return sequence(std::move(parts));
}

Parsed parse_alternatives(Cursor &cursor) {
  std::vector<Expression> parts;
  do {
    Parsed part = parse_sequence(cursor);
    if (!part) {
      return std::nullopt;
    }
    parts.push_back(std::move(*part));
  } while (cursor.take('|'));
  return alternatives(std::move(parts));
}

}  // namespace

std::optional<Expression> translate_regex(const std::string &regex) {
  Cursor cursor{regex};
  Parsed expression = parse_alternatives(cursor);
  return cursor.done() ? expression : std::nullopt;
}

}  // namespace zrcfg::mkstore
