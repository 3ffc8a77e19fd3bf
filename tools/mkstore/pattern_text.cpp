// Regular expressions of the data model: matching, and the first text that one permits.
#include "tools/mkstore/pattern_text.h"

#include <cstddef>
#include <map>
#include <string_view>

#include "tools/mkstore/ere_match.h"
#include "tools/mkstore/regex_translate.h"

namespace zrcfg::mkstore {

namespace {

constexpr size_t kMaxDerivedLength = 4096;  // Far above any value; stops absurd repetitions.
constexpr int kMaxGroupDepth = 32;

// The position inside a pattern while a text is derived from it.
struct Cursor {
  std::string_view pattern;
  size_t at = 0;
  int depth = 0;

  bool done() const { return at >= pattern.size(); }
  char peek() const { return pattern[at]; }
};

using Derived = std::optional<std::string>;

Derived derive_alternatives(Cursor &cursor);

Derived derive_escape(Cursor &cursor) {
  if (cursor.done()) {
    return std::nullopt;
  }
  const char c = cursor.pattern[cursor.at++];
  switch (c) {
    case 'd':
      return "0";
    case 'w':
      return "a";
    case 's':
      return " ";
    case 'n':
      return std::nullopt;  // A value cannot hold a line feed.
    case 't':
      return "\t";
    default:
      break;
  }
  const bool letter_or_digit =
      (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
  if (letter_or_digit) {
    return std::nullopt;
  }
  return std::string(1, c);
}

// A negated set has no first member in the document, so the first letter or digit outside it is
// looked for with the expression library itself.
Derived derive_negated_set(std::string_view set) {
  const std::string expression(set);
  for (const char c : std::string_view("0aA -_.")) {
    if (pattern_usable(expression) && pattern_matches(expression, std::string(1, c))) {
      return std::string(1, c);
    }
  }
  return std::nullopt;
}

// Called behind the opening bracket.
Derived derive_set(Cursor &cursor) {
  const size_t start = cursor.at - 1;
  const bool negated = !cursor.done() && cursor.peek() == '^';
  if (negated) {
    ++cursor.at;
  }
  Derived first;
  if (!cursor.done() && cursor.peek() == '\\') {
    ++cursor.at;
    first = derive_escape(cursor);
  } else if (!cursor.done() && cursor.peek() != ']') {
    first = std::string(1, cursor.pattern[cursor.at++]);
  }
  while (!cursor.done() && cursor.peek() != ']') {
    cursor.at += cursor.peek() == '\\' ? 2 : 1;
  }
  if (cursor.done()) {
    return std::nullopt;
  }
  ++cursor.at;
  return negated ? derive_negated_set(cursor.pattern.substr(start, cursor.at - start)) : first;
}

// Called behind the opening parenthesis.
Derived derive_group(Cursor &cursor) {
  if (cursor.pattern.substr(cursor.at, 2) == "?:") {
    cursor.at += 2;
  }
  if (++cursor.depth > kMaxGroupDepth) {
    return std::nullopt;
  }
  Derived inside = derive_alternatives(cursor);
  --cursor.depth;
  if (!inside || cursor.done() || cursor.peek() != ')') {
    return std::nullopt;
  }
  ++cursor.at;
  return inside;
}

Derived derive_atom(Cursor &cursor) {
  const char c = cursor.pattern[cursor.at++];
  switch (c) {
    case '(':
      return derive_group(cursor);
    case '[':
      return derive_set(cursor);
    case '\\':
      return derive_escape(cursor);
    case '.':
      return "a";
    case '^':
    case '$':
      return "";
    case '*':
    case '+':
    case '?':
    case '{':
      return std::nullopt;
    default:
      return std::string(1, c);
  }
}

// How often the atom before must stand at least; the cursor moves behind the quantifier.
std::optional<size_t> least_repetitions(Cursor &cursor) {
  if (cursor.done()) {
    return 1;
  }
  size_t least = 1;
  const char c = cursor.peek();
  if (c == '*' || c == '?' || c == '+') {
    ++cursor.at;
    least = c == '+' ? 1 : 0;
  } else if (c == '{') {
    const size_t end = cursor.pattern.find('}', cursor.at);
    least = 0;
    ++cursor.at;
    while (cursor.at < end && !cursor.done() && cursor.peek() >= '0' && cursor.peek() <= '9') {
      least = least * 10 + static_cast<size_t>(cursor.peek() - '0');
      if (least > kMaxDerivedLength) {
        return std::nullopt;
      }
      ++cursor.at;
    }
    if (end == std::string_view::npos) {
      return std::nullopt;
    }
    cursor.at = end + 1;
  } else {
    return 1;
  }
  if (!cursor.done() && cursor.peek() == '?') {
    ++cursor.at;  // The lazy form permits the same texts.
  }
  return least;
}

Derived derive_sequence(Cursor &cursor) {
  std::string text;
  while (!cursor.done() && cursor.peek() != '|' && cursor.peek() != ')') {
    const Derived atom = derive_atom(cursor);
    const std::optional<size_t> times = atom ? least_repetitions(cursor) : std::nullopt;
    if (!times || text.size() + *times * atom->size() > kMaxDerivedLength) {
      return std::nullopt;
    }
    for (size_t i = 0; i < *times; ++i) {
      text += *atom;
    }
  }
  return text;
}

Derived derive_alternatives(Cursor &cursor) {
  Derived first = derive_sequence(cursor);
  while (first && !cursor.done() && cursor.peek() == '|') {
    ++cursor.at;
    if (!derive_sequence(cursor)) {
      return std::nullopt;
    }
  }
  return first;
}

}  // namespace

bool pattern_usable(const std::string &pattern) {
  return translate_regex(pattern).has_value();
}

bool pattern_matches(const std::string &pattern, const std::string &text) {
  static std::map<std::string, std::string> translated;  // Empty: not usable.
  const auto [found, fresh] = translated.try_emplace(pattern);
  if (fresh) {
    const std::optional<Expression> expression = translate_regex(pattern);
    found->second = expression ? anchored_text(*expression) : std::string();
  }
  return found->second.empty() || ere_matches(found->second, text);
}

std::optional<std::string> first_pattern_text(const std::string &pattern) {
  Cursor cursor{pattern};
  Derived text = derive_alternatives(cursor);
  if (!text || !cursor.done()) {
    return std::nullopt;
  }
  return text;
}

}  // namespace zrcfg::mkstore
