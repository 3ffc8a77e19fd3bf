// Sizes put into expressions: the texts of an expression that have a permitted length.
#include "tools/mkstore/size_limit.h"

#include <algorithm>
#include <utility>

namespace zrcfg::mkstore {

namespace {

Lengths only(size_t length) {
  Lengths lengths;
  if (length < lengths.size()) {
    lengths.set(length);
  }
  return lengths;
}

Lengths sums(const Lengths &left, const Lengths &right) {
  Lengths result;
  if (left.count() > right.count()) {
    return sums(right, left);  // One turn for each of the fewer lengths.
  }
  for (size_t i = 0; i < left.size(); ++i) {
    if (left[i]) {
      result |= right << i;
    }
  }
  return result;
}

Lengths repeated_lengths(const Expression &expression) {
  const Lengths one = lengths_of(expression.parts.front());
  Lengths exactly = only(0);
  Lengths result;
  // Copies beyond the longest value add nothing: each is empty or makes the text longer.
  const size_t most = std::min(expression.maximum, std::max(expression.minimum, one.size()));
  for (size_t copies = 0; copies <= most && exactly.any(); ++copies) {
    if (copies >= expression.minimum) {
      result |= exactly;
    }
    exactly = sums(exactly, one);
  }
  return result;
}

std::optional<size_t> single_length(const Expression &expression) {
  const Lengths lengths = lengths_of(expression);
  if (lengths.count() != 1) {
    return std::nullopt;
  }
  size_t length = 0;
  while (!lengths[length]) {
    ++length;
  }
  return length;
}

std::optional<Expression> limited_alternatives(const Expression &expression,
                                               const Lengths &lengths) {
  std::vector<Expression> parts;
  for (const Expression &part : expression.parts) {
    std::optional<Expression> limited = limited_to(part, lengths);
    if (!limited) {
      return std::nullopt;
    }
    parts.push_back(std::move(*limited));
  }
  return alternatives(std::move(parts));
}

std::optional<Expression> limited_sequence(const Expression &expression, const Lengths &lengths) {
  size_t fixed = 0;
  size_t variable = expression.parts.size();
  for (size_t i = 0; i < expression.parts.size(); ++i) {
    const std::optional<size_t> length = single_length(expression.parts[i]);
    if (length) {
      fixed += *length;
    } else if (variable == expression.parts.size()) {
      variable = i;
    } else {
      return std::nullopt;
    }
  }
  // A sequence of fixed length was told apart by its lengths, so one part varies.
  // cppcheck-suppress containerOutOfBounds
  std::optional<Expression> limited = limited_to(expression.parts[variable], lengths >> fixed);
  if (!limited) {
    return std::nullopt;
  }
  std::vector<Expression> parts = expression.parts;
  parts[variable] = std::move(*limited);
  return sequence(std::move(parts));
}

std::optional<Expression> limited_repeat(const Expression &expression, const Lengths &lengths) {
  const std::optional<size_t> each = single_length(expression.parts.front());
  if (!each || *each == 0) {
    return std::nullopt;
  }
  Lengths counts;
  for (size_t count = expression.minimum;
       count <= expression.maximum && count * *each < lengths.size(); ++count) {
    counts[count] = lengths[count * *each];
  }
  return repeat_counts(expression.parts.front(), counts);
}

}  // namespace

Lengths permitted_lengths(const std::vector<Size> &sizes) {
  Lengths lengths;
  for (const Size &size : sizes) {
    for (size_t i = size.minimum; i < lengths.size() && i <= size.maximum; ++i) {
      lengths.set(i);
    }
  }
  return sizes.empty() ? ~lengths : lengths;
}

Lengths lengths_of(const Expression &expression) {
  Lengths result;
  switch (expression.kind) {
    case Expression::Kind::kSet:
      return only(1);
    case Expression::Kind::kSequence:
      result = only(0);
      for (const Expression &part : expression.parts) {
        result = sums(result, lengths_of(part));
      }
      return result;
    case Expression::Kind::kAlternatives:
      for (const Expression &part : expression.parts) {
        result |= lengths_of(part);
      }
      return result;
    case Expression::Kind::kRepeat:
      return repeated_lengths(expression);
  }
  return result;
}

Expression repeat_counts(const Expression &part, const Lengths &counts) {
  std::vector<Expression> parts;
  for (size_t first = 0; first < counts.size(); ++first) {
    if (!counts[first]) {
      continue;
    }
    size_t last = first;
    while (last + 1 < counts.size() && counts[last + 1]) {
      ++last;
    }
    // The longest value ends the run anyway when it would go on beyond.
    const bool open = last + 1 == counts.size();
    parts.push_back(repeat(part, first, open ? kUnbounded : last));
    first = last;
  }
  return alternatives(std::move(parts));
}

std::optional<Expression> limited_to(const Expression &expression, const Lengths &lengths) {
  if (lengths.all()) {
    return expression;
  }
  const Lengths possible = lengths_of(expression);
  if ((possible & ~lengths).none()) {
    return expression;
  }
  if ((possible & lengths).none()) {
    return alternatives({});
  }
  switch (expression.kind) {
    case Expression::Kind::kAlternatives:
      return limited_alternatives(expression, lengths);
    case Expression::Kind::kSequence:
      return limited_sequence(expression, lengths);
    case Expression::Kind::kRepeat:
      return limited_repeat(expression, lengths);
    case Expression::Kind::kSet:
      break;  // Of one length, so one of the two cases above.
  }
  return std::nullopt;
}

}  // namespace zrcfg::mkstore
