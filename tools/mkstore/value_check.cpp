// What a syntax permits: the check of a value, and the first value of a parameter without default.
#include "tools/mkstore/value_check.h"

#include <algorithm>
#include <map>

#include "core/property_file.h"
#include "tools/mkstore/ere_match.h"
#include "tools/mkstore/number_text.h"
#include "tools/mkstore/pattern_text.h"
#include "tools/mkstore/value_form.h"

namespace zrcfg::mkstore {

namespace {

size_t base64_padding(const std::string &text) {
  const size_t last = text.find_last_not_of('=');
  return last == std::string::npos ? text.size() : text.size() - last - 1;
}

// Length facets count bytes of a text, but octets of what an encoded text stands for.
size_t facet_length(BaseType type, const std::string &text) {
  if (type == BaseType::kHexBinary) {
    return text.size() / 2;
  }
  if (type == BaseType::kBase64) {
    return text.size() / 4 * 3 - base64_padding(text);
  }
  return text.size();
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

// The forms do not change, so their expressions are made once.
bool has_form(BaseType type, const std::string &value) {
  static const std::map<BaseType, std::string> kForms = {
      {BaseType::kBoolean, anchored_text(boolean_form())},
      {BaseType::kDateTime, anchored_text(date_time_form())},
      {BaseType::kDecimal, anchored_text(decimal_form())},
      {BaseType::kHexBinary, anchored_text(hex_form(Lengths().set()))},
      {BaseType::kBase64, anchored_text(base64_form(Lengths().set()))}};
  const auto form = kForms.find(type);
  return form == kForms.end() || ere_matches(form->second, value);
}

// Only the plain form of a number is permitted: no plus sign, no leading zeros.
bool is_plain_number(BaseType type, const std::string &value, Number number) {
  return type == BaseType::kDecimal ? has_form(type, value) : value == number_text(number);
}

std::string number_problem(BaseType type, const Facets &facets, const std::string &value) {
  const std::optional<Number> number = parse_number(value, type == BaseType::kDecimal);
  if (!number || !is_plain_number(type, value, *number) ||
      !range_holds(type_range(type), *number)) {
    return "\"" + value + "\" is not of type " + type_name(type);
  }
  const auto holds = [&](const Range &range) { return range_holds(range, *number); };
  if (!facets.ranges.empty() && std::none_of(facets.ranges.begin(), facets.ranges.end(), holds)) {
    return "\"" + value + "\" is outside the permitted range";
  }
  return {};
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

// Only spaces do not count around an item; other blanks are control characters.
std::string without_blanks(const std::string &item) {
  const size_t first = item.find_first_not_of(' ');
  return first == std::string::npos ? std::string()
                                    : item.substr(first, item.find_last_not_of(' ') - first + 1);
}

std::string list_problem(const Syntax &syntax, const std::string &value) {
  const ListRule &rule = *syntax.list;
  if (!size_permits(rule.sizes, value.size())) {
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
    std::string inner = without_blanks(item);
    if (rule.nested_brackets) {
      if (inner.size() < 2 || inner.front() != '[' || inner.back() != ']') {
        return "list item \"" + inner + "\" is not in brackets";
      }
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

std::string filter_problem(const Filter &filter, const std::string &value) {
  if (filter.expression.empty() || ere_matches(filter.expression, value)) {
    return {};
  }
  return "\"" + value + "\" does not match the filter " + filter.expression;
}

}  // namespace zrcfg::mkstore
