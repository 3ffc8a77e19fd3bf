// The text of an expression tree: a POSIX extended regular expression that every libc takes.
#include <cstddef>

#include "tools/mkstore/expression.h"

namespace zrcfg::mkstore {

namespace {

constexpr size_t kFirstPrintable = 0x20;
constexpr size_t kLastPrintable = 0x7e;

// What stands in brackets: the printable members and `named`, a named class or nothing. Ranges of
// three and more are written as such; "]" stands first and "-" last, where they mean themselves.
std::string members_text(const ByteSet &set, const std::string &named) {
  std::string text;
  for (size_t byte = kFirstPrintable; byte <= kLastPrintable; ++byte) {
    if (!set[byte] || byte == ']' || byte == '-' || byte == '^' || byte == '[') {
      continue;
    }
    size_t last = byte;
    // Runs end at the characters that have a place of their own.
    while (last < kLastPrintable && set[last + 1] && last + 1 != ']' && last + 1 != '-' &&
           last + 1 != '^' && last + 1 != '[') {
      ++last;
    }
    text += static_cast<char>(byte);
    if (last > byte + 1) {
      text += '-';
    }
    if (last > byte) {
      text += static_cast<char>(last);
    }
    byte = last;
  }
  text = (set[']'] ? "]" : "") + named + text + (set['['] ? "[" : "");
  if (set['^'] && text.empty()) {
    return "-^";  // Alone with "-", as a set of one is not written in brackets.
  }
  return text + (set['^'] ? "^" : "") + (set['-'] ? "-" : "");
}

std::string byte_text(char byte) {
  constexpr std::string_view kSpecial = "^.[$()|*+?{\\";
  const bool special = kSpecial.find(byte) != std::string_view::npos;
  return special ? std::string("\\") + byte : std::string(1, byte);
}

std::string set_text(const ByteSet &set) {
  if (set.count() == 1) {
    size_t byte = 0;
    while (!set[byte]) {
      ++byte;
    }
    return byte_text(static_cast<char>(byte));
  }
  if (set[0x80]) {  // Bytes above 127 are in a set all or not at all.
    return "[^" + members_text(text_bytes() & ~set, "[:cntrl:]") + "]";
  }
  return "[" + members_text(set, "") + "]";
}

std::string count_text(size_t minimum, size_t maximum) {
  if (maximum == kUnbounded && minimum <= 1) {
    return minimum == 0 ? "*" : "+";
  }
  if (minimum == 0 && maximum == 1) {
    return "?";
  }
  std::string text = "{" + std::to_string(minimum);
  if (maximum != minimum) {
    text += "," + (maximum == kUnbounded ? std::string() : std::to_string(maximum));
  }
  return text + "}";
}

bool is_atom(const Expression &expression) {
  return expression.kind == Expression::Kind::kSet;
}

std::string grouped(const Expression &expression, bool group) {
  const std::string text = expression_text(expression);
  return group ? "(" + text + ")" : text;
}

}  // namespace

std::string expression_text(const Expression &expression) {
  std::string text;
  switch (expression.kind) {
    case Expression::Kind::kSet:
      return set_text(expression.set);
    case Expression::Kind::kSequence:
      for (const Expression &part : expression.parts) {
        text += grouped(part, part.kind == Expression::Kind::kAlternatives);
      }
      return text;
    case Expression::Kind::kAlternatives:
      for (const Expression &part : expression.parts) {
        text += (text.empty() ? "" : "|") + expression_text(part);
      }
      return text;
    case Expression::Kind::kRepeat:
      return grouped(expression.parts.front(), !is_atom(expression.parts.front())) +
             count_text(expression.minimum, expression.maximum);
  }
  return text;
}

std::string anchored_text(const Expression &expression) {
  return "^" + grouped(expression, expression.kind == Expression::Kind::kAlternatives) + "$";
}

}  // namespace zrcfg::mkstore
