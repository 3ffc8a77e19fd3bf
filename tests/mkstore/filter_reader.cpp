// Reads the filters of a store as the device does: sections by name, options, libc's matcher.
#include "tests/mkstore/filter_reader.h"

#include <gtest/gtest.h>
#include <regex.h>

#include <fstream>

namespace {

// The text in single quotes, in which '\'' stands for a single quote.
std::string unquoted(const std::string &quoted) {
  std::string text;
  bool inside = false;
  for (size_t at = 0; at < quoted.size(); ++at) {
    if (quoted[at] == '\'') {
      inside = !inside;
    } else if (!inside && quoted[at] == '\\' && at + 1 < quoted.size()) {
      text += quoted[++at];
    } else {
      EXPECT_TRUE(inside) << "outside quotes: " << quoted;
      text += quoted[at];
    }
  }
  EXPECT_FALSE(inside) << "quotes stay open: " << quoted;
  return text;
}

}  // namespace

std::vector<std::string> read_filters(const std::string &path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.good()) << path;
  std::vector<std::string> filters;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty()) {
      continue;
    }
    EXPECT_EQ(line, "config filter 'filter" + std::to_string(filters.size() + 1) + "'");
    const std::string start = "\toption value ";
    EXPECT_TRUE(std::getline(file, line) && line.compare(0, start.size(), start) == 0) << line;
    filters.push_back(unquoted(line.substr(start.size())));
  }
  return filters;
}

bool filter_matches(const std::string &expression, const std::string &value) {
  regex_t compiled;
  const int code = regcomp(&compiled, expression.c_str(), REG_EXTENDED | REG_NOSUB);
  EXPECT_EQ(code, 0) << expression;
  if (code != 0) {
    return false;
  }
  const bool matches = regexec(&compiled, value.c_str(), 0, nullptr, 0) == 0;
  regfree(&compiled);
  return matches;
}
