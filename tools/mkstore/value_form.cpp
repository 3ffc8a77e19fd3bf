// The forms of the basic types as expressions: booleans, dates, binaries, decimals.
#include "tools/mkstore/value_form.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace zrcfg::mkstore {

namespace {

Expression digits(size_t count) {
  return repeat(one_of(bytes_between('0', '9')), count, count);
}

// A number of two digits, the lower ones with a zero in front.
Expression two_digits(int lowest, int highest) {
  std::vector<std::string> texts;
  for (int number = lowest; number <= highest; ++number) {
    texts.push_back(std::string(number < 10 ? "0" : "") + std::to_string(number));
  }
  return choice_of(texts);
}

Expression days_of_months(const std::vector<std::string> &months, int last_day) {
  return sequence({choice_of(months), literal("-"), two_digits(1, last_day)});
}

// Multiples of four among two digits, 00 left out when it stands for a century.
std::vector<std::string> fours(bool with_zero) {
  std::vector<std::string> texts;
  for (int number = with_zero ? 0 : 4; number < 100; number += 4) {
    texts.push_back(std::string(number < 10 ? "0" : "") + std::to_string(number));
  }
  return texts;
}

Expression leap_year() {
  return alternatives({sequence({digits(2), choice_of(fours(false))}),
                       sequence({choice_of(fours(true)), literal("00")})});
}

Expression date_form() {
  const Expression any_year =
      alternatives({days_of_months({"01", "03", "05", "07", "08", "10", "12"}, 31),
                    days_of_months({"04", "06", "09", "11"}, 30), days_of_months({"02"}, 28)});
  return alternatives(
      {sequence({digits(4), literal("-"), any_year}), sequence({leap_year(), literal("-02-29")})});
}

}  // namespace

Expression boolean_form() {
  return choice_of({"0", "1", "false", "true"});
}

Expression date_time_form() {
  const Expression fraction =
      sequence({literal("."), repeat(one_of(bytes_between('0', '9')), 1, kUnbounded)});
  const Expression offset =
      sequence({one_of(bytes_of("+-")), two_digits(0, 14), literal(":"), two_digits(0, 59)});
  return sequence({date_form(), literal("T"), two_digits(0, 23), literal(":"), two_digits(0, 59),
                   literal(":"), two_digits(0, 59), optional(fraction),
                   optional(alternatives({literal("Z"), offset}))});
}

Expression decimal_form() {
  const Expression digit = one_of(bytes_between('0', '9'));
  const Expression whole = alternatives(
      {literal("0"), sequence({one_of(bytes_between('1', '9')), repeat(digit, 0, kUnbounded)})});
  return sequence({optional(literal("-")), whole,
                   optional(sequence({literal("."), repeat(digit, 1, kUnbounded)}))});
}

Expression hex_form(const Lengths &octets) {
  const Expression digit =
      one_of(bytes_between('0', '9') | bytes_between('A', 'F') | bytes_between('a', 'f'));
  Lengths counts;
  // A value of 255 characters holds 127 octets; a limit beyond is none.
  constexpr size_t kMostOctets = kMaxValueLength / 2;
  for (size_t i = 0; i < counts.size(); ++i) {
    counts[i] = i <= kMostOctets ? octets[i] : octets[kMostOctets];
  }
  return repeat_counts(repeat(digit, 2, 2), counts);
}

Expression base64_form(const Lengths &octets) {
  const Expression character = one_of(bytes_between('A', 'Z') | bytes_between('a', 'z') |
                                      bytes_between('0', '9') | bytes_of("+/"));
  constexpr size_t kMostGroups = kMaxValueLength / 4;
  std::vector<Expression> parts;
  const Expression ends[] = {sequence({}), sequence({repeat(character, 2, 2), literal("==")}),
                             sequence({repeat(character, 3, 3), literal("=")})};
  Lengths groups[3];
  for (size_t rest = 0; rest < 3; ++rest) {
    for (size_t i = 0; i < groups[rest].size(); ++i) {
      groups[rest][i] = octets[std::min(i, kMostGroups - 1) * 3 + rest];
    }
    parts.push_back(sequence({repeat_counts(repeat(character, 4, 4), groups[rest]), ends[rest]}));
  }
  if (groups[0] == groups[1] && groups[0] == groups[2]) {
    return sequence({repeat_counts(repeat(character, 4, 4), groups[0]),
                     alternatives({ends[0], ends[1], ends[2]})});
  }
  return alternatives(std::move(parts));
}

}  // namespace zrcfg::mkstore
