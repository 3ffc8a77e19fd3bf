// The first permitted value of a parameter that the document gives no default.
#include <algorithm>

#include "tools/mkstore/number_text.h"
#include "tools/mkstore/pattern_text.h"
#include "tools/mkstore/value_check.h"

namespace zrcfg::mkstore {

namespace {

using Candidate = std::optional<std::string>;

// The lowest number of the first range that has one; without a lower limit the number nearest to 0.
std::string first_number(const Syntax &syntax) {
  if (syntax.facets.ranges.empty()) {
    return "0";
  }
  const Range &range = syntax.facets.ranges.front();
  if (range.minimum) {
    return number_text(*range.minimum);
  }
  return number_text(range.maximum ? std::min<Number>(*range.maximum, 0) : 0);
}

size_t least_size(const std::vector<Size> &sizes) {
  size_t least = sizes.empty() ? 0 : kNoLimit;
  for (const Size &size : sizes) {
    least = std::min(least, size.minimum);
  }
  return least;
}

// So many zero octets in base64.
std::string zero_base64(size_t octets) {
  std::string text(octets / 3 * 4, 'A');
  if (octets % 3 == 1) {
    text += "AA==";
  } else if (octets % 3 == 2) {
    text += "AAA=";
  }
  return text;
}

Candidate permitted(const Syntax &item, const std::string &text) {
  return value_problem(item, text).empty() ? Candidate(text) : std::nullopt;
}

// Every value is at most 255 characters long, so a larger least size cannot be met.
Candidate first_text(const Syntax &item) {
  if (!item.facets.enumerations.empty()) {
    return item.facets.enumerations.front();
  }
  if (Candidate empty = permitted(item, "")) {
    return empty;
  }
  for (const std::string &pattern : item.facets.patterns) {
    Candidate derived = first_pattern_text(pattern);
    if (derived && permitted(item, *derived)) {
      return derived;
    }
  }
  const size_t least = least_size(item.facets.sizes);
  if (least > 255) {
    return std::nullopt;
  }
  switch (item.type) {
    case BaseType::kHexBinary:
      return permitted(item, std::string(least * 2, '0'));
    case BaseType::kBase64:
      return permitted(item, zero_base64(least));
    default:
      return permitted(item, std::string(least, '0'));
  }
}

Candidate first_item(const Syntax &item) {
  if (is_number(item.type)) {
    return first_number(item);
  }
  if (item.type == BaseType::kBoolean) {
    return "false";
  }
  if (item.type == BaseType::kDateTime) {
    return "0001-01-01T00:00:00Z";
  }
  return first_text(item);
}

}  // namespace

std::optional<std::string> first_value(const Syntax &syntax) {
  Syntax item = syntax;
  item.list.reset();
  if (!syntax.list) {
    return first_item(item);
  }
  if (value_problem(syntax, "").empty()) {
    return "";
  }
  Candidate one = first_item(item);
  if (!one) {
    return std::nullopt;
  }
  if (syntax.list->nested_brackets) {
    one = "[" + *one + "]";
  }
  std::string text = *one;
  for (size_t i = 1; i < syntax.list->min_items && text.size() <= 255; ++i) {
    text += "," + *one;
  }
  return permitted(syntax, text);
}

}  // namespace zrcfg::mkstore
