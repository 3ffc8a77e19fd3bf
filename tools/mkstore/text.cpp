// Small text helpers shared by the document reader and the list files.
#include "tools/mkstore/text.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tools/mkstore/build_error.h"

namespace zrcfg::mkstore {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

struct FileCloser {
  void operator()(std::FILE *file) const {
    (void)std::fclose(file);
  }  // Read only, nothing to lose.
};

}  // namespace

std::string trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  const size_t last = text.find_last_not_of(kBlanks);
  return std::string(text.substr(first, last - first + 1));
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  size_t start = 0;
  for (;;) {
    const size_t end = text.find(separator, start);
    pieces.emplace_back(text.substr(start, end - start));
    if (end == std::string_view::npos) {
      return pieces;
    }
    start = end + 1;
  }
}

std::optional<size_t> parse_count(std::string_view text, size_t maximum) {
  if (text.empty()) {
    return std::nullopt;
  }
  size_t value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') {
      return std::nullopt;
    }
    const size_t digit = static_cast<size_t>(c - '0');
    if (digit > maximum || value > (maximum - digit) / 10) {
      return std::nullopt;
    }
    value = value * 10 + digit;
  }
  return value;
}

std::string read_whole_file(const std::string &path) {
  const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path.c_str(), "rbe"));
  if (!file) {
    fail(path, std::string("cannot be read: ") + std::strerror(errno));
  }
  std::string content;
  char buffer[65536];
  for (;;) {
    const size_t got = std::fread(buffer, 1, sizeof buffer, file.get());
    content.append(buffer, got);
    if (got < sizeof buffer) {
      break;
    }
  }
  if (std::ferror(file.get()) != 0) {
    fail(path, std::string("cannot be read: ") + std::strerror(errno));
  }
  return content;
}

}  // namespace zrcfg::mkstore
