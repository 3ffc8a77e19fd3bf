// Ranges of whole numbers as expressions over their decimal texts.
#include "tools/mkstore/integer_range.h"

#include <algorithm>
#include <string>
#include <utility>

namespace zrcfg::mkstore {

namespace {

std::string digits_of(Number number) {
  std::string digits;
  do {
    digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(number % 10)));
    number /= 10;
  } while (number != 0);
  return digits;
}

bool is_all(const std::string &digits, size_t from, char digit) {
  return digits.find_first_not_of(digit, from) == std::string::npos;
}

Expression any_digits(size_t count) {
  return repeat(one_of(bytes_between('0', '9')), count, count);
}

// The digit texts from `low` to `high`, which are of one length, from position `at` on.
Expression same_length(const std::string &low, const std::string &high, size_t at) {
  if (at == low.size()) {
    return sequence({});
  }
  if (is_all(low, at, '0') && is_all(high, at, '9')) {
    return any_digits(low.size() - at);
  }
  if (low[at] == high[at]) {
    return sequence({one_of(bytes_of(low.substr(at, 1))), same_length(low, high, at + 1)});
  }
  std::vector<Expression> parts;
  char first = low[at];
  char last = high[at];
  const std::string nines(low.size(), '9');
  const std::string zeros(low.size(), '0');
  if (!is_all(low, at + 1, '0')) {
    parts.push_back(
        sequence({one_of(bytes_between(first, first)), same_length(low, nines, at + 1)}));
    ++first;
  }
  Expression upper = alternatives({});
  if (!is_all(high, at + 1, '9')) {
    upper = sequence({one_of(bytes_between(last, last)), same_length(zeros, high, at + 1)});
    --last;
  }
  if (first <= last) {
    parts.push_back(
        sequence({one_of(bytes_between(first, last)), any_digits(low.size() - at - 1)}));
  }
  if (!is_impossible(upper)) {
    parts.push_back(std::move(upper));
  }
  return alternatives(std::move(parts));
}

// Numbers above zero. All whole lengths between the two ends share one part.
Expression positive_between(Number lowest, Number highest) {
  if (lowest > highest) {
    return alternatives({});
  }
  const std::string low = digits_of(lowest);
  const std::string high = digits_of(highest);
  if (low.size() == high.size()) {
    return same_length(low, high, 0);
  }
  const bool low_whole = low[0] == '1' && is_all(low, 1, '0');
  const bool high_whole = is_all(high, 0, '9');
  const size_t shortest = low.size() + (low_whole ? 0 : 1);
  const size_t longest = high.size() - (high_whole ? 0 : 1);
  std::vector<Expression> parts;
  if (!low_whole) {
    parts.push_back(same_length(low, std::string(low.size(), '9'), 0));
  }
  if (shortest <= longest) {
    parts.push_back(sequence({one_of(bytes_between('1', '9')),
                              repeat(one_of(bytes_between('0', '9')), shortest - 1, longest - 1)}));
  }
  if (!high_whole) {
    parts.push_back(same_length("1" + std::string(high.size() - 1, '0'), high, 0));
  }
  return alternatives(std::move(parts));
}

// The two signs apart.
Expression signs_apart(Number lowest, Number highest) {
  const Expression below = positive_between(std::max<Number>(1, -highest), -lowest);
  const Expression above = positive_between(std::max<Number>(1, lowest), highest);
  return alternatives({sequence({literal("-"), below}), above});
}

// What both signs have in common once, the rest of the longer side apart.
Expression signs_together(Number lowest, Number highest) {
  const Number common = std::min(-lowest, highest);
  const Expression both = sequence({optional(literal("-")), positive_between(1, common)});
  const Expression below = positive_between(common + 1, -lowest);
  return alternatives(
      {both, sequence({literal("-"), below}), positive_between(common + 1, highest)});
}

}  // namespace

Expression integers_between(Number lowest, Number highest) {
  if (lowest > highest) {
    return alternatives({});
  }
  Expression apart = signs_apart(lowest, highest);
  if (lowest > 0 || highest < 0) {
    return apart;
  }
  const Expression together = signs_together(lowest, highest);
  const bool shorter = expression_text(together).size() < expression_text(apart).size();
  return alternatives({literal("0"), shorter ? together : apart});
}

}  // namespace zrcfg::mkstore
