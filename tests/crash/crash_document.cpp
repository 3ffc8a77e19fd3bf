// The tables of docs/crash.md, for the tests that compare them with what they find.
#include "tests/crash/crash_document.h"

#include <fstream>
#include <stdexcept>

namespace zrcfg_test {
namespace {

std::string trimmed(const std::string &text) {
  const size_t begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? ""
                                    : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::vector<std::string> cells_of(const std::string &line) {
  std::vector<std::string> cells;
  for (size_t begin = 1; begin < line.size();) {
    const size_t end = line.find('|', begin);
    cells.push_back(trimmed(line.substr(begin, end - begin)));
    begin = end == std::string::npos ? line.size() : end + 1;
  }
  return cells;
}

}  // namespace

std::vector<std::vector<std::string>> document_table(const std::string &heading) {
  constexpr int kHeadLines = 2;
  std::ifstream document(ZRCFG_CRASH_DOCUMENT);
  std::vector<std::vector<std::string>> rows;
  bool inside = false;
  int lines = 0;
  for (std::string line; std::getline(document, line);) {
    if (line.compare(0, 2, "##") == 0) {
      inside = line == "## " + heading;
    }
    if (!inside || line.empty() || line[0] != '|' || ++lines <= kHeadLines) {
      continue;
    }
    rows.push_back(cells_of(line));
    if (rows.back()[0].empty() && rows.size() > 1) {
      rows.back()[0] = rows[rows.size() - 2][0];
    }
  }
  if (rows.empty()) {
    throw std::runtime_error(std::string(ZRCFG_CRASH_DOCUMENT) + " has no table " + heading);
  }
  return rows;
}

MomentStates documented_moments(const std::string &group) {
  MomentStates found;
  for (const auto &row : document_table("A killed process")) {
    if (row[0] == group) {
      found.emplace(row[1], row[2]);
    }
  }
  return found;
}

std::string documented_mender(const std::string &state) {
  for (const auto &row : document_table("States")) {
    if (row[0] == state) {
      return row[3];
    }
  }
  return "no such state: " + state;
}

}  // namespace zrcfg_test
