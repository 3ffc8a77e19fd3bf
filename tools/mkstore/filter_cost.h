// What a filter costs the device: the memory that compiling it and matching one value takes.
#ifndef ZRCFG_TOOLS_MKSTORE_FILTER_COST_H_
#define ZRCFG_TOOLS_MKSTORE_FILTER_COST_H_

#include <cstddef>

#include "tools/mkstore/expression.h"

namespace zrcfg::mkstore {

inline constexpr size_t kMaxFilterCost = size_t{128} * 1024;
inline constexpr size_t kMaxFilterLength = 1023;

// An upper estimate, in bytes, for glibc on a 64-bit machine, which takes more than any 32-bit
// one: the expression as text, compiled, and matched against the value that makes it work most.
// Far above kMaxFilterCost it is not exact, only too much.
size_t filter_cost(const Expression &expression);

// Whether the expression may become a filter: its text fits, and so does its cost.
bool is_affordable(const Expression &expression);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_FILTER_COST_H_
