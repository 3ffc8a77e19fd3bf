// The filter of a syntax: one POSIX extended regular expression for all that its facets say.
//
// The whole syntax is tried first. Where that costs the device too much, one kind of facet after
// the other is given up, in a fixed order, until the rest is affordable.
#include "tools/mkstore/filter_pattern.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "tools/mkstore/ere_match.h"
#include "tools/mkstore/filter_cost.h"
#include "tools/mkstore/item_expression.h"
#include "tools/mkstore/size_limit.h"
#include "tools/mkstore/value_check.h"

namespace zrcfg::mkstore {

namespace {

// Up to how many characters are compared when not all of them can be.
constexpr size_t kLongestBeginning = 32;

// What the syntax permits. Nothing when that is every text.
using Draft = std::optional<Expression>;

// More items than this are never counted: every one is a state of its own, and so many cost too
// much in any list. A value has room for 256 items, so a higher limit is none.
constexpr size_t kMostCountedItems = 60;
constexpr size_t kMostItems = kMaxValueLength + 1;

// The limits of a list as far as they are looked at; notes what is given up.
ListRule relaxed_rule(const ListRule &rule, const Relaxation &relaxation, UncheckedSet &unchecked) {
  ListRule relaxed = rule;
  if (relaxed.max_items >= kMostItems) {
    relaxed.max_items = kNoLimit;
  }
  const bool limited = relaxed.min_items > 1 || relaxed.max_items != kNoLimit;
  const bool countable = relaxed.min_items <= kMostCountedItems &&
                         (relaxed.max_items == kNoLimit || relaxed.max_items <= kMostCountedItems);
  if (limited && (!relaxation.list_items || !countable)) {
    unchecked.set(static_cast<size_t>(Unchecked::kListItems));
    relaxed.min_items = std::min<size_t>(relaxed.min_items, 1);
    relaxed.max_items = kNoLimit;
  }
  return relaxed;
}

// A list of unrestricted texts is a text itself, so only its own length matters.
Draft free_list(const ListRule &rule, Relaxation relaxation, UncheckedSet &unchecked) {
  const bool counted = rule.min_items > 1 || rule.max_items != kNoLimit;
  if (!counted) {
    return sized_text(relaxed_lengths(rule.sizes, relaxation, Unchecked::kListLength, unchecked));
  }
  if (!permitted_lengths(rule.sizes).all()) {
    unchecked.set(static_cast<size_t>(Unchecked::kListLength));
  }
  const Expression item = repeat(one_of(text_bytes() & ~bytes_of(",")), 0, kUnbounded);
  return listed(item, rule.min_items, rule.max_items);
}

Draft draft_list(const Syntax &syntax, Relaxation relaxation, UncheckedSet &unchecked) {
  const ListRule rule = relaxed_rule(*syntax.list, relaxation, unchecked);
  const Draft item = item_expression(syntax, relaxation, unchecked);
  if (!item) {
    return free_list(rule, relaxation, unchecked);
  }
  const Expression inside =
      rule.nested_brackets ? sequence({literal("["), *item, literal("]")}) : *item;
  const Expression blanks = repeat(literal(" "), 0, kUnbounded);
  const Expression list =
      listed(sequence({blanks, inside, blanks}), rule.min_items, rule.max_items);
  if (Draft limited = limited_to(list, permitted_lengths(rule.sizes))) {
    return limited;
  }
  unchecked.set(static_cast<size_t>(Unchecked::kListLength));
  return list;
}

struct Attempt {
  Draft draft;
  UncheckedSet unchecked;
  bool good = true;  // Whether the device can afford it.
};

Attempt attempt(const Syntax &syntax, const std::string &initial, Relaxation relaxation) {
  Attempt result;
  if (syntax.facets.reference) {
    result.unchecked.set(static_cast<size_t>(Unchecked::kReference));
  }
  result.draft = syntax.list ? draft_list(syntax, relaxation, result.unchecked)
                             : item_expression(syntax, relaxation, result.unchecked);
  if (!result.draft) {
    return result;
  }
  result.good = is_affordable(*result.draft);
  // Only what is affordable is compiled here, as on the device.
  if (result.good && !ere_matches(anchored_text(*result.draft), initial)) {
    result.draft = alternatives({*result.draft, literal(initial)});
    result.good = is_affordable(*result.draft);
  }
  return result;
}

// What is looked at less closely when nothing else helps; nothing where that is not possible.
std::optional<Unchecked> shortened_kind(const Syntax &syntax) {
  const bool integer = is_number(syntax.type) && syntax.type != BaseType::kDecimal;
  if (integer) {
    return Unchecked::kRange;
  }
  return syntax.facets.enumerations.empty() ? std::nullopt : std::optional(Unchecked::kEnumeration);
}

// Compares so many characters of the enumerations, or digits of the limits, as are affordable.
Attempt shortened(const Syntax &syntax, const std::string &initial, Relaxation relaxation) {
  const std::optional<Unchecked> kind = shortened_kind(syntax);
  Attempt best;
  best.unchecked.set(static_cast<size_t>(Unchecked::kPattern));
  if (!kind) {
    return best;
  }
  relaxation.exact = 0;
  const Attempt loosest = attempt(syntax, initial, relaxation);
  if (!loosest.good) {
    return best;
  }
  best = loosest;
  best.unchecked.set(static_cast<size_t>(*kind));
  size_t low = 0;
  size_t high = kLongestBeginning;
  while (low < high) {
    const size_t middle = (low + high + 1) / 2;
    relaxation.exact = middle;
    Attempt next = attempt(syntax, initial, relaxation);
    if (next.good) {
      next.unchecked.set(static_cast<size_t>(*kind));
      best = std::move(next);
      low = middle;
    } else {
      high = middle - 1;
    }
  }
  return best;
}

Attempt affordable_attempt(const Syntax &syntax, const std::string &initial) {
  Relaxation relaxation;
  for (const LengthCheck check : {LengthCheck::kFull, LengthCheck::kLeast, LengthCheck::kNone}) {
    relaxation.lengths = check;
    for (const bool items : {true, false}) {
      relaxation.list_items = items;
      if (!items && !syntax.list) {
        continue;
      }
      Attempt next = attempt(syntax, initial, relaxation);
      if (next.good) {
        return next;
      }
    }
  }
  return shortened(syntax, initial, relaxation);
}

// Parameters share their syntax often, so what was compiled is kept under all that it depends on.
std::string syntax_key(const Syntax &syntax, const std::string &initial) {
  std::string key = std::to_string(static_cast<int>(syntax.type)) + '\n' + initial + '\n';
  const auto add_sizes = [&key](const std::vector<Size> &sizes) {
    for (const Size &size : sizes) {
      key += std::to_string(size.minimum) + '-' + std::to_string(size.maximum) + ' ';
    }
    key += '\n';
  };
  const auto add_number = [&key](const std::optional<Number> &number) {
    const auto half = [&number](unsigned shift) {
      return std::to_string(static_cast<int64_t>(*number >> shift));
    };
    key += number ? half(64) + ',' + half(0) : std::string("none");
    key += ' ';
  };
  const Facets &facets = syntax.facets;
  key += facets.reference ? "reference\n" : "\n";
  add_sizes(facets.sizes);
  for (const Range &range : facets.ranges) {
    add_number(range.minimum);
    add_number(range.maximum);
    add_number(range.step);
  }
  for (const auto *texts : {&facets.enumerations, &facets.patterns}) {
    key += '\n';
    for (const std::string &text : *texts) {
      key += std::to_string(text.size()) + ':' + text;
    }
  }
  if (syntax.list) {
    key += "\nlist " + std::to_string(syntax.list->min_items) + ' ' +
           std::to_string(syntax.list->max_items) + (syntax.list->nested_brackets ? " [" : " ");
    add_sizes(syntax.list->sizes);
  }
  return key;
}

}  // namespace

const char *unchecked_name(Unchecked kind) {
  switch (kind) {
    case Unchecked::kLength:
      return "length";
    case Unchecked::kListLength:
      return "list-length";
    case Unchecked::kListItems:
      return "list-items";
    case Unchecked::kEnumeration:
      return "enumeration";
    case Unchecked::kPattern:
      return "pattern";
    case Unchecked::kRange:
      return "range";
    case Unchecked::kStep:
      return "step";
    case Unchecked::kDecimalRange:
      return "decimal-range";
    case Unchecked::kReference:
      return "reference";
  }
  return "unknown";
}

Filter compile_filter(const Syntax &syntax, const std::string &initial) {
  static std::map<std::string, Filter> known;
  const auto [found, fresh] = known.try_emplace(syntax_key(syntax, initial));
  Filter &filter = found->second;
  if (fresh) {
    const Attempt result = affordable_attempt(syntax, initial);
    filter.unchecked = result.unchecked;
    filter.expression = result.draft ? anchored_text(*result.draft) : std::string();
  }
  return filter;
}

}  // namespace zrcfg::mkstore
