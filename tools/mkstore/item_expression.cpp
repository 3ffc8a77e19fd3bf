// The values of one item as an expression: a whole value, or what stands between a list's commas.
#include "tools/mkstore/item_expression.h"

#include <algorithm>
#include <utility>

#include "tools/mkstore/integer_range.h"
#include "tools/mkstore/number_text.h"
#include "tools/mkstore/regex_translate.h"
#include "tools/mkstore/value_check.h"
#include "tools/mkstore/value_form.h"

namespace zrcfg::mkstore {

namespace {

using Draft = std::optional<Expression>;

void note(UncheckedSet &unchecked, Unchecked kind) {
  unchecked.set(static_cast<size_t>(kind));
}

Number rounded_up(Number number) {
  const Number whole = number / kNumberScale;
  return number > 0 && number % kNumberScale != 0 ? whole + 1 : whole;
}

Number rounded_down(Number number) {
  const Number whole = number / kNumberScale;
  return number < 0 && number % kNumberScale != 0 ? whole - 1 : whole;
}

// A limit of which only the leading digits are looked at: further away from zero, or nearer to it.
Number rounded_limit(Number limit, size_t exact, bool away) {
  const Number amount = limit < 0 ? -limit : limit;
  const size_t digits = number_text(amount * kNumberScale).size();
  Number unit = 1;
  for (size_t i = exact; i < digits; ++i) {
    unit *= 10;
  }
  const Number rounded = amount / unit * unit + (away ? unit - 1 : 0);
  return limit < 0 ? -rounded : rounded;
}

Expression any_integer(bool signed_too) {
  const Expression above = sequence(
      {one_of(bytes_between('1', '9')), repeat(one_of(bytes_between('0', '9')), 0, kUnbounded)});
  return alternatives(
      {literal("0"), signed_too ? sequence({optional(literal("-")), above}) : above});
}

Expression integer_expression(const Syntax &syntax, const Relaxation &relaxation,
                              UncheckedSet &unchecked) {
  const Range whole = type_range(syntax.type);
  std::vector<Range> ranges = syntax.facets.ranges;
  if (ranges.empty()) {
    ranges.push_back(whole);
  }
  std::vector<Expression> parts;
  for (const Range &range : ranges) {
    const Number lowest = std::max(range.minimum.value_or(*whole.minimum), *whole.minimum);
    const Number highest = std::min(range.maximum.value_or(*whole.maximum), *whole.maximum);
    if (range.step > kNumberScale) {
      note(unchecked, Unchecked::kStep);
    }
    if (relaxation.exact == 0) {
      parts.push_back(any_integer(lowest < 0));
      continue;
    }
    const Number from = rounded_up(lowest);
    const Number to = rounded_down(highest);
    if (from > to) {
      continue;  // Nothing, and rounding must not make it something.
    }
    parts.push_back(integers_between(rounded_limit(from, relaxation.exact, from < 0),
                                     rounded_limit(to, relaxation.exact, to > 0)));
  }
  return alternatives(std::move(parts));
}

Expression decimal_expression(const Syntax &syntax, UncheckedSet &unchecked) {
  for (const Range &range : syntax.facets.ranges) {
    if (range.minimum || range.maximum) {
      note(unchecked, Unchecked::kDecimalRange);
    }
    if (range.step != 0) {
      note(unchecked, Unchecked::kStep);
    }
  }
  return decimal_form();
}

// Blanks around an item do not count, so the limit begins with the first other character.
Draft sized_item(const Lengths &lengths) {
  if (lengths.all()) {
    return std::nullopt;
  }
  const ByteSet bytes = text_bytes() & ~bytes_of(",");
  const Lengths behind_first =
      lengths >> 1 | (lengths[lengths.size() - 1] ? Lengths().set(lengths.size() - 1) : Lengths());
  const Expression filled =
      sequence({one_of(bytes & ~bytes_of(" ")), repeat_counts(one_of(bytes), behind_first)});
  return lengths[0] ? optional(filled) : filled;
}

// An enumeration or pattern as far as it has a permitted length; all of it where that cannot be
// written down.
Expression limited_choice(const Expression &choice, const Lengths &lengths,
                          UncheckedSet &unchecked) {
  Draft limited = limited_to(choice, lengths);
  if (limited) {
    return *limited;
  }
  note(unchecked, Unchecked::kLength);
  return choice;
}

// Enumerations and patterns are alternatives.
Draft choice_expression(const Syntax &syntax, const Relaxation &relaxation,
                        UncheckedSet &unchecked) {
  const Facets &facets = syntax.facets;
  const Lengths permitted = permitted_lengths(facets.sizes);
  const Lengths lengths = relaxation.lengths == LengthCheck::kFull ? permitted : Lengths().set();
  std::vector<std::string> names;
  for (const std::string &name : facets.enumerations) {
    if (name.size() < permitted.size() && permitted[name.size()]) {
      names.push_back(name);
    }
  }
  std::vector<Expression> parts;
  if (!names.empty()) {
    parts.push_back(choice_of(names, relaxation.exact));
  }
  for (const std::string &pattern : facets.patterns) {
    const Draft translated = translate_regex(pattern);
    if (!translated) {
      note(unchecked, Unchecked::kPattern);
      return std::nullopt;
    }
    if (relaxation.lengths != LengthCheck::kFull && (lengths_of(*translated) & ~permitted).any()) {
      note(unchecked, Unchecked::kLength);
    }
    parts.push_back(limited_choice(*translated, lengths, unchecked));
  }
  return alternatives(std::move(parts));
}

Draft text_expression(const Syntax &syntax, const Relaxation &relaxation, UncheckedSet &unchecked) {
  if (!syntax.facets.enumerations.empty() || !syntax.facets.patterns.empty()) {
    return choice_expression(syntax, relaxation, unchecked);
  }
  const Lengths lengths =
      relaxed_lengths(syntax.facets.sizes, relaxation, Unchecked::kLength, unchecked);
  return syntax.list && !syntax.list->nested_brackets ? sized_item(lengths) : sized_text(lengths);
}

}  // namespace

Lengths relaxed_lengths(const std::vector<Size> &sizes, const Relaxation &relaxation,
                        Unchecked kind, UncheckedSet &unchecked) {
  Lengths lengths = permitted_lengths(sizes);
  if (relaxation.lengths == LengthCheck::kFull || lengths.all()) {
    return lengths;
  }
  note(unchecked, kind);
  const bool from_least = relaxation.lengths == LengthCheck::kLeast;
  bool permitted = !from_least;
  for (size_t i = 0; i < lengths.size(); ++i) {
    permitted = permitted || lengths[i];
    lengths[i] = permitted;
  }
  return lengths;
}

Draft sized_text(const Lengths &lengths) {
  return lengths.all() ? std::nullopt : Draft(repeat_counts(one_of(text_bytes()), lengths));
}

Expression listed(const Expression &item, size_t least, size_t most) {
  if (most == 0) {
    return sequence({});
  }
  const size_t further = most == kNoLimit ? kUnbounded : most - 1;
  const Expression list = sequence(
      {repeat(sequence({item, literal(",")}), std::max<size_t>(least, 1) - 1, further), item});
  return least == 0 ? optional(list) : list;
}

Draft item_expression(const Syntax &syntax, const Relaxation &relaxation, UncheckedSet &unchecked) {
  const auto octets = [&] {
    return relaxed_lengths(syntax.facets.sizes, relaxation, Unchecked::kLength, unchecked);
  };
  switch (syntax.type) {
    case BaseType::kBoolean:
      return boolean_form();
    case BaseType::kDateTime:
      return date_time_form();
    case BaseType::kHexBinary:
      return hex_form(octets());
    case BaseType::kBase64:
      return base64_form(octets());
    case BaseType::kDecimal:
      return decimal_expression(syntax, unchecked);
    case BaseType::kString:
      return text_expression(syntax, relaxation, unchecked);
    default:
      return integer_expression(syntax, relaxation, unchecked);
  }
}

}  // namespace zrcfg::mkstore
