// Small text helpers shared by the document reader and the list files.
#ifndef ZRCFG_TOOLS_MKSTORE_TEXT_H_
#define ZRCFG_TOOLS_MKSTORE_TEXT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zrcfg::mkstore {

// The text without leading and trailing blanks, tabs and line ends.
std::string trimmed(std::string_view text);

// The pieces between `separator`; an empty text has one empty piece.
std::vector<std::string> split(std::string_view text, char separator);

// A plain decimal number of at most `maximum`; nothing but digits is accepted.
std::optional<size_t> parse_count(std::string_view text, size_t maximum);

// The whole file. Throws BuildError with the system's reason when it cannot be read.
std::string read_whole_file(const std::string &path);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_TEXT_H_
