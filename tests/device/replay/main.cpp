// zrcfg_replay SCRIPT PART: makes the calls of a script on the store and prints their results.
//
// A script has a call on each line: the command and its words, separated by spaces; '"' encloses a
// word with spaces, inside of it "\n", "\r", "\"", "\\" and "\xHH" stand for a byte, and "{C*N}"
// for N times the character C, in every word. "@" at the beginning of a word stands for
// "InternetGatewayDevice.". "timeout N" holds for the lines behind it, "part" ends the first part;
// PART is 1, 2 or all. Empty lines and those that begin with "#" are left out.
//
// Each call prints its line, its result and outputs, and its log: the number of lines and a sum
// over their formats, which does not depend on the order of a directory or on addresses.
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <fstream>
#include <stdexcept>

#include "tests/device/replay/replay.h"

namespace {

unsigned log_lines;
uint32_t log_sum;

}  // namespace

// The device's log sink, in its place.
extern "C" int zr_mod_log_printf(const char *, int level, const char *format, ...) {
  uint32_t sum = static_cast<uint32_t>(level);
  for (const char *at = format; *at != '\0'; ++at) {
    sum = sum * 31 + static_cast<unsigned char>(*at);
  }
  ++log_lines;
  log_sum += sum;
  return 0;
}

namespace zrcfg_test {
namespace {

// Reads one word at `at`, which then stands behind it.
class WordReader {
 public:
  explicit WordReader(const std::string &line) : line_(line) {}

  std::vector<std::string> words() {
    std::vector<std::string> found;
    while (skip_spaces()) {
      found.push_back(word());
    }
    return found;
  }

 private:
  bool skip_spaces() {
    while (at_ < line_.size() && line_[at_] == ' ') {
      ++at_;
    }
    return at_ < line_.size();
  }

  std::string word() {
    std::string text;
    bool quoted = false;
    if (line_[at_] == '@') {
      text = "InternetGatewayDevice.";
      ++at_;
    }
    for (; at_ < line_.size() && (quoted || line_[at_] != ' '); ++at_) {
      const char c = line_[at_];
      if (c == '"') {
        quoted = !quoted;
      } else if (quoted && c == '\\') {
        text += escaped();
      } else if (c == '{' && line_.find('}', at_) != std::string::npos) {
        text += repeated();
      } else {
        text += c;
      }
    }
    return text;
  }

  // Behind a backslash; leaves `at_` on the last character.
  char escaped() {
    const char c = line_.at(++at_);
    if (c == 'x') {
      const std::string digits = line_.substr(at_ + 1, 2);
      at_ += 2;
      return static_cast<char>(strtol(digits.c_str(), nullptr, 16));
    }
    return c == 'n' ? '\n' : c == 'r' ? '\r' : c;
  }

  std::string repeated() {
    const char c = line_.at(at_ + 1);
    const long times = strtol(line_.c_str() + at_ + 3, nullptr, 10);
    at_ = line_.find('}', at_);
    return std::string(static_cast<size_t>(times), c);
  }

  const std::string &line_;
  size_t at_ = 0;
};

CommandTable all_commands() {
  CommandTable table;
  add_value_commands(table);
  add_attr_commands(table);
  add_instance_commands(table);
  add_tree_commands(table);
  return table;
}

void replay(std::istream &script, const std::string &part) {
  const CommandTable commands = all_commands();
  std::string text;
  int now = 1;
  Line line = {{}, 3000};
  for (int number = 1; std::getline(script, text); ++number) {
    line.words = WordReader(text).words();
    if (line.words.empty() || line.words[0][0] == '#') {
      continue;
    }
    const std::string name = line.words[0];
    line.words.erase(line.words.begin());
    if (name == "part") {
      ++now;
    } else if (name == "timeout") {
      line.timeout = static_cast<int>(line.number(0));
    } else if (commands.count(name) == 0) {
      throw std::runtime_error("line " + std::to_string(number) + ": no command " + name);
    } else if (part == "all" || part == std::to_string(now)) {
      printf("%d %s\n", number, text.c_str());
      log_lines = 0;
      log_sum = 0;
      commands.at(name)(line);
      printf("  log %u lines, sum %08x\n", log_lines, log_sum);
    }
  }
}

}  // namespace
}  // namespace zrcfg_test

int main(int argc, char **argv) {
  std::ifstream script(argc == 3 ? argv[1] : "");
  if (!script) {
    fprintf(stderr, "usage: zrcfg_replay SCRIPT 1|2|all\n");
    return 2;
  }
  try {
    zrcfg_test::replay(script, argv[2]);
  } catch (const std::exception &error) {
    fprintf(stderr, "zrcfg_replay: %s\n", error.what());
    return 1;
  }
  return 0;
}
