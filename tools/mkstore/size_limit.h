// Sizes put into expressions: the texts of an expression that have a permitted length.
#ifndef ZRCFG_TOOLS_MKSTORE_SIZE_LIMIT_H_
#define ZRCFG_TOOLS_MKSTORE_SIZE_LIMIT_H_

#include <bitset>
#include <optional>
#include <vector>

#include "core/property_file.h"
#include "tools/mkstore/expression.h"
#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

// A set of lengths in bytes, up to the longest value.
using Lengths = std::bitset<kMaxValueLength + 1>;

// The lengths that the sizes permit; all when there are no sizes.
Lengths permitted_lengths(const std::vector<Size> &sizes);

// The lengths of the values that the expression matches.
Lengths lengths_of(const Expression &expression);

// `part` repeated so often that the number of copies is in `counts`.
Expression repeat_counts(const Expression &part, const Lengths &counts);

// What the expression matches, as far as its length is in `lengths`. Nothing when that cannot be
// written as an expression of about the same size: only one of the parts of a sequence, and only
// copies of one length in a repetition, can give way to a limit.
std::optional<Expression> limited_to(const Expression &expression, const Lengths &lengths);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_SIZE_LIMIT_H_
