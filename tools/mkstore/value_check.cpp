// What a syntax permits: the check of a value, and the first value of a parameter without default.
#include "tools/mkstore/value_check.h"

#include <algorithm>
#include <cctype>

#include "core/property_file.h"
#include "tools/mkstore/number_text.h"
#include "tools/mkstore/pattern_text.h"
#include "tools/mkstore/text.h"

namespace zrcfg::mkstore {

namespace {

bool all_digits(const std::string &text, size_t at, size_t count) {
  for (size_t i = at; i < at + count; ++i) {
    if (i >= text.size() || std::isdigit(static_cast<unsigned char>(text[i])) == 0) {
      return false;
    }
  }
  return true;
}

int two_digits(const std::string &text, size_t at) {
  return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

int days_in_month(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

// Accepts no zone, Z, or an offset such as +01:00.
bool is_zone(const std::string &zone) {
  if (zone.empty() || zone == "Z") {
    return true;
  }
  return zone.size() == 6 && (zone[0] == '+' || zone[0] == '-') && zone[3] == ':' &&
         all_digits(zone, 1, 2) && all_digits(zone, 4, 2) && two_digits(zone, 1) <= 14 &&
         two_digits(zone, 4) <= 59;
}

bool is_date_time(const std::string &text) {
  constexpr char kShape[] = "dddd-dd-ddTdd:dd:dd";
  constexpr size_t kShapeSize = sizeof kShape - 1;
  for (size_t i = 0; i < kShapeSize; ++i) {
    const bool fits =
        kShape[i] == 'd' ? all_digits(text, i, 1) : i < text.size() && text[i] == kShape[i];
    if (!fits) {
      return false;
    }
  }
  const int year = two_digits(text, 0) * 100 + two_digits(text, 2);
  const int month = two_digits(text, 5);
  const int day = two_digits(text, 8);
  if (month < 1 || month > 12 || day < 1 || day > days_in_month(year, month) ||
      two_digits(text, 11) > 23 || two_digits(text, 14) > 59 || two_digits(text, 17) > 59) {
    return false;
  }
  size_t at = kShapeSize;
  if (at < text.size() && text[at] == '.') {
    const size_t end = text.find_first_not_of("0123456789", at + 1);
    if (end == at + 1 || at + 1 == text.size()) {
      return false;
    }
    at = std::min(end, text.size());
  }
  return is_zone(text.substr(at));
}

bool is_boolean(const std::string &text) {
  return text == "0" || text == "1" || text == "false" || text == "true";
}

bool is_hex(const std::string &text) {
  return text.size() % 2 == 0 &&
         text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

size_t base64_padding(const std::string &text) {
  const size_t last = text.find_last_not_of('=');
  return last == std::string::npos ? text.size() : text.size() - last - 1;
}

bool is_base64(const std::string &text) {
  constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const size_t padding = base64_padding(text);
  return text.size() % 4 == 0 && padding <= 2 &&
         text.substr(0, text.size() - padding).find_first_not_of(kAlphabet) == std::string::npos;
}

// Length facets count characters of a text, but octets of what an encoded text stands for.
size_t facet_length(BaseType type, const std::string &text) {
  if (type == BaseType::kHexBinary) {
    return text.size() / 2;
  }
  if (type == BaseType::kBase64) {
    return text.size() / 4 * 3 - base64_padding(text);
  }
  return character_count(text);
}

bool size_permits(const std::vector<Size> &sizes, size_t length) {
  return sizes.empty() || std::any_of(sizes.begin(), sizes.end(), [length](const Size &size) {
           return length >= size.minimum && length <= size.maximum;
         });
}

bool range_holds(const Range &range, Number number) {
  if (range.minimum && number < *range.minimum) {
    return false;
  }
  if (range.maximum && number > *range.maximum) {
    return false;
  }
  return range.step == 0 || (number - range.minimum.value_or(0)) % range.step == 0;
}

std::string number_problem(BaseType type, const Facets &facets, const std::string &value) {
  const std::optional<Number> number = parse_number(value, type == BaseType::kDecimal);
  if (!number || !range_holds(type_range(type), *number)) {
    return "\"" + value + "\" is not of type " + type_name(type);
  }
  const auto holds = [&](const Range &range) { return range_holds(range, *number); };
  if (!facets.ranges.empty() && std::none_of(facets.ranges.begin(), facets.ranges.end(), holds)) {
    return "\"" + value + "\" is outside the permitted range";
  }
  return {};
}

bool has_form(BaseType type, const std::string &value) {
  switch (type) {
    case BaseType::kBoolean:
      return is_boolean(value);
    case BaseType::kDateTime:
      return is_date_time(value);
    case BaseType::kHexBinary:
      return is_hex(value);
    case BaseType::kBase64:
      return is_base64(value);
    default:
      return true;
  }
}

std::string choice_problem(const Facets &facets, const std::string &value) {
  if (facets.enumerations.empty() && facets.patterns.empty()) {
    return {};
  }
  const auto &names = facets.enumerations;
  if (std::find(names.begin(), names.end(), value) != names.end()) {
    return {};
  }
  const auto matches = [&](const std::string &pattern) { return pattern_matches(pattern, value); };
  if (std::any_of(facets.patterns.begin(), facets.patterns.end(), matches)) {
    return {};
  }
  return "\"" + value + "\" is none of the permitted " +
         (facets.patterns.empty() ? "values" : "values and matches no pattern");
}

std::string item_problem(const Syntax &syntax, const std::string &value) {
  if (is_number(syntax.type)) {
    return number_problem(syntax.type, syntax.facets, value);
  }
  if (!has_form(syntax.type, value)) {
    return "\"" + value + "\" is not of type " + type_name(syntax.type);
  }
  if (!size_permits(syntax.facets.sizes, facet_length(syntax.type, value))) {
    return "\"" + value + "\" does not have a permitted length";
  }
  return choice_problem(syntax.facets, value);
}

// Splits at the commas outside brackets, which protect the commas inside an item.
std::vector<std::string> list_items(const std::string &value, bool nested_brackets) {
  std::vector<std::string> items(1);
  int depth = 0;
  for (const char c : value) {
    depth += nested_brackets && c == '[' ? 1 : 0;
    depth -= nested_brackets && c == ']' ? 1 : 0;
    if (c == ',' && depth == 0) {
      items.emplace_back();
    } else {
      items.back() += c;
    }
  }
  return items;
}

std::string list_problem(const Syntax &syntax, const std::string &value) {
  const ListRule &rule = *syntax.list;
  if (!size_permits(rule.sizes, character_count(value))) {
    return "the list does not have a permitted length";
  }
  std::vector<std::string> items;
  if (!value.empty()) {
    items = list_items(value, rule.nested_brackets);
  }
  if (items.size() < rule.min_items || items.size() > rule.max_items) {
    return "the list has " + std::to_string(items.size()) + " items, which is not permitted";
  }
  for (const std::string &item : items) {
    std::string inner = trimmed(item);
    if (rule.nested_brackets && inner.size() >= 2 && inner.front() == '[' && inner.back() == ']') {
      inner = inner.substr(1, inner.size() - 2);
    }
    const std::string problem = item_problem(syntax, inner);
    if (!problem.empty()) {
      return "list item " + problem;
    }
  }
  return {};
}

}  // namespace

const char *type_name(BaseType type) {
  switch (type) {
    case BaseType::kString:
      return "string";
    case BaseType::kInt:
      return "int";
    case BaseType::kUnsignedInt:
      return "unsignedInt";
    case BaseType::kBoolean:
      return "boolean";
    case BaseType::kDateTime:
      return "dateTime";
    case BaseType::kBase64:
      return "base64";
    case BaseType::kLong:
      return "long";
    case BaseType::kUnsignedLong:
      return "unsignedLong";
    case BaseType::kHexBinary:
      return "hexBinary";
    case BaseType::kDecimal:
      return "decimal";
  }
  return "unknown";
}

bool is_number(BaseType type) {
  return type == BaseType::kInt || type == BaseType::kUnsignedInt || type == BaseType::kLong ||
         type == BaseType::kUnsignedLong || type == BaseType::kDecimal;
}

std::string storage_problem(const std::string &value) {
  if (value.size() > kMaxValueLength) {
    return "the value has " + std::to_string(value.size()) + " characters, more than " +
           std::to_string(kMaxValueLength);
  }
  if (!value.empty() && value.front() == '\r') {
    return "the value begins with a carriage return, which stands for the empty value";
  }
  if (value.find('\n') != std::string::npos) {
    return "the value contains a line feed";
  }
  if (value.find('\0') != std::string::npos) {
    return "the value contains a NUL character";
  }
  return {};
}

std::string value_problem(const Syntax &syntax, const std::string &value) {
  if (syntax.default_value && value == *syntax.default_value) {
    return {};
  }
  return syntax.list ? list_problem(syntax, value) : item_problem(syntax, value);
}

}  // namespace zrcfg::mkstore
