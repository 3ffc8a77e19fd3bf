// Regular expressions as trees: what filters are built from before they become text.
#include "tools/mkstore/expression.h"

#include <algorithm>
#include <map>
#include <utility>

namespace zrcfg::mkstore {

namespace {

// Optional copies in a row up to this number stay one {m,n}; the rest is nested in such blocks.
constexpr size_t kOptionalBlock = 4;

Expression repeat_node(const Expression &part, size_t minimum, size_t maximum) {
  if (maximum == 0 || is_empty_text(part)) {
    return sequence({});
  }
  if (minimum == 1 && maximum == 1) {
    return part;
  }
  Expression node;
  node.kind = Expression::Kind::kRepeat;
  node.parts.push_back(part);
  node.minimum = minimum;
  node.maximum = maximum;
  return node;
}

// Up to `count` copies as (x{4}(x{4}...)?)?x{0,3}: any number is so many whole blocks and a rest.
Expression optional_copies(const Expression &part, size_t count) {
  if (count <= kOptionalBlock) {
    return repeat_node(part, 0, count);
  }
  const size_t blocks = (count - (kOptionalBlock - 1)) / kOptionalBlock;
  const size_t rest = count - blocks * kOptionalBlock;
  Expression nested;
  for (size_t i = 0; i < blocks; ++i) {
    nested = optional(sequence({repeat_node(part, kOptionalBlock, kOptionalBlock), nested}));
  }
  return sequence({nested, repeat_node(part, 0, rest)});
}

}  // namespace

ByteSet text_bytes() {
  ByteSet set;
  for (size_t byte = 0; byte < set.size(); ++byte) {
    set[byte] = byte >= 0x20 && byte != 0x7f;
  }
  return set;
}

ByteSet bytes_between(char first, char last) {
  ByteSet set;
  for (int byte = static_cast<unsigned char>(first); byte <= static_cast<unsigned char>(last);
       ++byte) {
    set.set(static_cast<size_t>(byte));
  }
  return set;
}

ByteSet bytes_of(std::string_view members) {
  ByteSet set;
  for (const char member : members) {
    set.set(static_cast<unsigned char>(member));
  }
  return set;
}

Expression one_of(const ByteSet &set) {
  if (set.none()) {
    return alternatives({});
  }
  Expression node;
  node.kind = Expression::Kind::kSet;
  node.set = set;
  return node;
}

Expression literal(std::string_view text) {
  Expression node;
  for (const char byte : text) {
    node.parts.push_back(one_of(bytes_of(std::string_view(&byte, 1))));
  }
  return node.parts.size() == 1 ? node.parts.front() : node;
}

Expression sequence(std::vector<Expression> parts) {
  Expression node;
  for (Expression &part : parts) {
    if (is_impossible(part)) {
      return alternatives({});
    }
    if (part.kind == Expression::Kind::kSequence) {
      std::move(part.parts.begin(), part.parts.end(), std::back_inserter(node.parts));
    } else {
      node.parts.push_back(std::move(part));
    }
  }
  if (node.parts.size() == 1) {
    return Expression(std::move(node.parts.front()));
  }
  return node;
}

Expression alternatives(std::vector<Expression> parts) {
  Expression node;
  node.kind = Expression::Kind::kAlternatives;
  ByteSet single;
  bool empty = false;
  for (Expression &part : parts) {
    if (is_empty_text(part)) {
      empty = true;
    } else if (part.kind == Expression::Kind::kSet) {
      single |= part.set;
    } else if (part.kind == Expression::Kind::kAlternatives) {
      std::move(part.parts.begin(), part.parts.end(), std::back_inserter(node.parts));
    } else {
      node.parts.push_back(std::move(part));
    }
  }
  if (single.any()) {
    node.parts.push_back(one_of(single));
  }
  if (node.parts.size() == 1) {
    node = Expression(node.parts.front());
  }
  if (!empty) {
    return node;
  }
  return is_impossible(node) ? sequence({}) : optional(node);
}

Expression optional(const Expression &part) {
  return admits_empty(part) ? part : repeat_node(part, 0, 1);
}

Expression repeat(const Expression &part, size_t minimum, size_t maximum) {
  if (maximum == kUnbounded) {
    return repeat_node(part, minimum, maximum);
  }
  if (maximum - minimum <= kOptionalBlock) {
    return repeat_node(part, minimum, maximum);
  }
  return sequence({repeat_node(part, minimum, minimum), optional_copies(part, maximum - minimum)});
}

bool is_empty_text(const Expression &expression) {
  return expression.kind == Expression::Kind::kSequence && expression.parts.empty();
}

bool is_impossible(const Expression &expression) {
  return expression.kind == Expression::Kind::kAlternatives && expression.parts.empty();
}

bool admits_empty(const Expression &expression) {
  const auto &parts = expression.parts;
  switch (expression.kind) {
    case Expression::Kind::kSet:
      return false;
    case Expression::Kind::kSequence:
      return std::all_of(parts.begin(), parts.end(), admits_empty);
    case Expression::Kind::kAlternatives:
      return std::any_of(parts.begin(), parts.end(), admits_empty);
    case Expression::Kind::kRepeat:
      return expression.minimum == 0 || admits_empty(parts.front());
  }
  return false;
}

Expression choice_of(const std::vector<std::string> &texts, size_t exact) {
  if (exact == 0) {
    ByteSet occurring;
    bool empty = false;
    for (const std::string &text : texts) {
      occurring |= bytes_of(text);
      empty = empty || text.empty();
    }
    return occurring.none() ? sequence({}) : repeat(one_of(occurring), empty ? 0 : 1, kUnbounded);
  }
  std::vector<Expression> parts;
  std::map<char, std::vector<std::string>> rests;
  for (const std::string &text : texts) {
    if (text.empty()) {
      parts.push_back(sequence({}));
    } else {
      rests[text.front()].push_back(text.substr(1));
    }
  }
  std::map<std::vector<std::string>, ByteSet> beginnings;  // Bytes that go on in the same way.
  for (auto &[first, rest] : rests) {
    std::sort(rest.begin(), rest.end());
    rest.erase(std::unique(rest.begin(), rest.end()), rest.end());
    beginnings[rest] |= bytes_of(std::string_view(&first, 1));
  }
  const size_t further = exact == kUnbounded ? kUnbounded : exact - 1;
  for (const auto &[rest, first] : beginnings) {
    parts.push_back(sequence({one_of(first), choice_of(rest, further)}));
  }
  return alternatives(std::move(parts));
}

}  // namespace zrcfg::mkstore
