// Regular expressions as trees: what filters are built from before they become text.
#ifndef ZRCFG_TOOLS_MKSTORE_EXPRESSION_H_
#define ZRCFG_TOOLS_MKSTORE_EXPRESSION_H_

#include <bitset>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace zrcfg::mkstore {

using ByteSet = std::bitset<256>;

inline constexpr size_t kUnbounded = std::numeric_limits<size_t>::max();

// One node. A sequence without parts is the empty text, alternatives without parts match nothing.
struct Expression {
  enum class Kind { kSet, kSequence, kAlternatives, kRepeat };

  Kind kind = Kind::kSequence;
  ByteSet set;                    // Of kSet: one byte out of these.
  std::vector<Expression> parts;  // Of kRepeat exactly one.
  size_t minimum = 0;             // Of kRepeat.
  size_t maximum = 0;
};

// Every byte that a checked text may hold: all but the control characters, so that no filter ever
// admits a line feed. Bytes above 127 belong to characters of several bytes and are admitted.
ByteSet text_bytes();

ByteSet bytes_between(char first, char last);
ByteSet bytes_of(std::string_view members);

Expression one_of(const ByteSet &set);
Expression literal(std::string_view text);
Expression sequence(std::vector<Expression> parts);
Expression alternatives(std::vector<Expression> parts);
Expression optional(const Expression &part);

// The part at least `minimum` and at most `maximum` times. Many optional copies are nested in
// blocks, because matchers keep a list of all optional copies that lie in a row.
Expression repeat(const Expression &part, size_t minimum, size_t maximum);

bool is_empty_text(const Expression &expression);
bool is_impossible(const Expression &expression);
bool admits_empty(const Expression &expression);

// The texts of a choice, with common beginnings shared. Where texts go on differently behind
// `exact` bytes, only the bytes that occur there are looked at, in any order and number.
Expression choice_of(const std::vector<std::string> &texts, size_t exact = kUnbounded);

// The POSIX extended regular expression, not anchored.
std::string expression_text(const Expression &expression);

// The same, anchored at both ends.
std::string anchored_text(const Expression &expression);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_EXPRESSION_H_
