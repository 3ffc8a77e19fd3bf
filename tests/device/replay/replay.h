// The commands of a replay script, and how their results are printed.
#ifndef ZRCFG_TESTS_DEVICE_REPLAY_REPLAY_H_
#define ZRCFG_TESTS_DEVICE_REPLAY_REPLAY_H_

#include <stdint.h>
#include <string.h>

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "zrcfg.h"

namespace zrcfg_test {

// One line of the script: its words behind the command's name. A word that is missing reads as "".
struct Line {
  std::vector<std::string> words;
  int timeout;

  const std::string &word(size_t i) const;
  const char *text(size_t i) const { return word(i).c_str(); }
  // A word as a number, decimal or with 0x; 0 for none.
  long long number(size_t i) const;
  // The words from `first` on.
  std::vector<std::string> rest(size_t first) const;
};

using Command = void (*)(const Line &line);
using CommandTable = std::map<std::string, Command>;

void add_value_commands(CommandTable &table);
void add_attr_commands(CommandTable &table);
void add_instance_commands(CommandTable &table);
void add_tree_commands(CommandTable &table);

// Each prints one indented line, or a part of one; texts are quoted, bytes outside of ASCII
// escaped.
void print_result(uint32_t result);
void print_result(int result);
void print_text(const char *label, const std::string &text);
void print_number(const char *label, unsigned long number);
void print_bytes(const char *label, const void *bytes, size_t size);
void end_line();

// A field's text up to its terminator or its end.
template <size_t kSize>
std::string field_text(const char (&field)[kSize]) {
  return std::string(field, strnlen(field, kSize));
}

// "name=value" at its first "="; without one the value is empty.
struct Pair {
  std::string name;
  std::string value;
};
Pair split_pair(const std::string &word);

// A request list over words of the form name=value. A name with "!" in front carries a fault.
class RequestList {
 public:
  explicit RequestList(const std::vector<std::string> &words);
  RequestList(const RequestList &) = delete;
  RequestList &operator=(const RequestList &) = delete;

  ParamValueEntry *first() { return nodes_.empty() ? nullptr : &nodes_.front(); }
  // Gives the nodes with a mark a fault code.
  void mark_faults();
  // Name, buffer, attribute word, changed, fault and old value of each node.
  void print() const;

 private:
  struct Buffer {
    char text[512];
    uint32_t fault;
    bool marked;
  };
  std::deque<ParamValueEntry> nodes_;
  std::deque<Buffer> buffers_;
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_DEVICE_REPLAY_REPLAY_H_
