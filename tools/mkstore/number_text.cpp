// Decimal texts and the scaled numbers that ranges are compared with.
#include "tools/mkstore/number_text.h"

#include <cstdint>
#include <limits>

namespace zrcfg::mkstore {

namespace {

constexpr size_t kFractionDigits = 9;
constexpr size_t kMaxIntegerDigits = 27;  // More would overflow the scaled number.

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

std::optional<Number> digits_value(std::string_view digits) {
  if (digits.empty()) {
    return std::nullopt;
  }
  Number value = 0;
  for (const char c : digits) {
    if (!is_digit(c)) {
      return std::nullopt;
    }
    value = value * 10 + (c - '0');
  }
  return value;
}

}  // namespace

std::optional<Number> parse_number(std::string_view text, bool fraction) {
  const bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) {
    text.remove_prefix(1);
  }
  const size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  if (whole.size() > kMaxIntegerDigits || (point != std::string_view::npos && !fraction)) {
    return std::nullopt;
  }
  const std::optional<Number> integer = digits_value(whole);
  if (!integer) {
    return std::nullopt;
  }
  Number number = *integer * kNumberScale;
  if (point != std::string_view::npos) {
    std::string behind(text.substr(point + 1));
    if (behind.empty() || behind.size() > kFractionDigits) {
      return std::nullopt;
    }
    behind.append(kFractionDigits - behind.size(), '0');
    const std::optional<Number> part = digits_value(behind);
    if (!part) {
      return std::nullopt;
    }
    number += *part;
  }
  return negative ? -number : number;
}

std::string number_text(Number number) {
  const bool negative = number < 0;
  Number rest = negative ? -number : number;
  Number whole = rest / kNumberScale;
  rest %= kNumberScale;
  std::string text;
  do {
    text.insert(text.begin(), static_cast<char>('0' + static_cast<int>(whole % 10)));
    whole /= 10;
  } while (whole != 0);
  if (rest != 0) {
    std::string fraction = std::to_string(static_cast<uint64_t>(rest));
    fraction.insert(0, kFractionDigits - fraction.size(), '0');
    fraction.erase(fraction.find_last_not_of('0') + 1);
    text += '.' + fraction;
  }
  return negative ? '-' + text : text;
}

Range type_range(BaseType type) {
  const auto scaled = [](auto value) { return static_cast<Number>(value) * kNumberScale; };
  switch (type) {
    case BaseType::kInt:
      return {scaled(std::numeric_limits<int32_t>::min()),
              scaled(std::numeric_limits<int32_t>::max())};
    case BaseType::kUnsignedInt:
      return {scaled(0), scaled(std::numeric_limits<uint32_t>::max())};
    case BaseType::kLong:
      return {scaled(std::numeric_limits<int64_t>::min()),
              scaled(std::numeric_limits<int64_t>::max())};
    case BaseType::kUnsignedLong:
      return {scaled(0), scaled(std::numeric_limits<uint64_t>::max())};
    default:
      return {};
  }
}

}  // namespace zrcfg::mkstore
