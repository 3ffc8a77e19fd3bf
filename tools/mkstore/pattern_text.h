// Regular expressions of the data model: matching, and the first text that one permits.
#ifndef ZRCFG_TOOLS_MKSTORE_PATTERN_TEXT_H_
#define ZRCFG_TOOLS_MKSTORE_PATTERN_TEXT_H_

#include <optional>
#include <string>

namespace zrcfg::mkstore {

// Whether the expression can be evaluated at all. One that cannot is not used for checking.
bool pattern_usable(const std::string &pattern);

// Whether the whole of `text` matches. A pattern that is not usable permits every text.
bool pattern_matches(const std::string &pattern, const std::string &text);

// A shortest-first derivation: the first alternative, the fewest repetitions, the first member of
// a set. Nothing when the expression uses something that the derivation does not know.
std::optional<std::string> first_pattern_text(const std::string &pattern);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_PATTERN_TEXT_H_
