// The filters of a store: their numbers, the file that holds them, and what stays unchecked.
#ifndef ZRCFG_TOOLS_MKSTORE_FILTER_TABLE_H_
#define ZRCFG_TOOLS_MKSTORE_FILTER_TABLE_H_

#include <array>
#include <string>
#include <vector>

#include "tools/mkstore/model.h"

namespace zrcfg::mkstore {

// The name of the file in the store's root.
inline constexpr char kFilterFileName[] = "regex_file";

struct FilterTable {
  std::vector<std::string> expressions;             // Filter 1 is the first.
  size_t parameters = 0;                            // Parameters that have a filter.
  std::array<size_t, kUncheckedKinds> unchecked{};  // Parameters by kind.
  std::vector<std::string> unchecked_parameters;    // "PATH: kind, kind", in document order.
};

// Numbers the filters of the model's parameters in document order; equal filters share a number.
FilterTable number_filters(Model &model);

// The UCI file with one section for each filter; empty when there are none.
std::string filter_file_text(const FilterTable &table);

// One line for the user: the number of filters, and how many parameters have facets of each kind
// that no filter checks.
std::string filter_summary(const FilterTable &table);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_FILTER_TABLE_H_
