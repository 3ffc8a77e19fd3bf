// A compiled filter, and the kinds of facets that a filter may leave unchecked.
#ifndef ZRCFG_TOOLS_MKSTORE_FILTER_H_
#define ZRCFG_TOOLS_MKSTORE_FILTER_H_

#include <bitset>
#include <cstddef>
#include <string>

namespace zrcfg::mkstore {

// docs/store-builder.md explains each of them.
enum class Unchecked : size_t {
  kLength,        // A length that would cost too much, or beside a pattern that cannot be cut.
  kListLength,    // The length of a whole list.
  kListItems,     // The number of a list's items.
  kEnumeration,   // Enumerations too long to be compared beyond their first characters.
  kRange,         // Limits too long to be compared beyond their first digits.
  kPattern,       // A pattern that cannot be translated or would cost too much.
  kStep,          // The step of a range.
  kDecimalRange,  // The limits of a decimal.
  kReference,     // Whether the object that a path names exists.
};
inline constexpr size_t kUncheckedKinds = 9;
using UncheckedSet = std::bitset<kUncheckedKinds>;

// The name of the kind in reports.
const char *unchecked_name(Unchecked kind);

struct Filter {
  std::string expression;  // Anchored; empty when there is nothing to check.
  UncheckedSet unchecked;
};

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_FILTER_H_
