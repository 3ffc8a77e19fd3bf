// The values of one item as an expression: a whole value, or what stands between a list's commas.
#ifndef ZRCFG_TOOLS_MKSTORE_ITEM_EXPRESSION_H_
#define ZRCFG_TOOLS_MKSTORE_ITEM_EXPRESSION_H_

#include <optional>

#include "tools/mkstore/filter.h"
#include "tools/mkstore/model.h"
#include "tools/mkstore/size_limit.h"

namespace zrcfg::mkstore {

enum class LengthCheck { kFull, kLeast, kNone };

// Which facets are looked at.
struct Relaxation {
  LengthCheck lengths = LengthCheck::kFull;  // kLeast: only the least length.
  bool list_items = true;
  // So many bytes of each enumeration are compared, and digits of each limit.
  size_t exact = kUnbounded;
};

// The lengths that the sizes permit when they are looked at so; notes what is given up.
Lengths relaxed_lengths(const std::vector<Size> &sizes, const Relaxation &relaxation,
                        Unchecked kind, UncheckedSet &unchecked);

// A text without control characters of such a length. Nothing when that is any length.
std::optional<Expression> sized_text(const Lengths &lengths);

// Items of one form, with commas between them. No item at all only when `least` is 0.
Expression listed(const Expression &item, size_t least, size_t most);

// Nothing when any text will do. `unchecked` gets what the expression does not look at.
std::optional<Expression> item_expression(const Syntax &syntax, const Relaxation &relaxation,
                                          UncheckedSet &unchecked);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_ITEM_EXPRESSION_H_
