// What the tests of bulk values share: request lists with marked outputs, value tables, the log.
#ifndef ZRCFG_TESTS_VALUES_VALUES_SUPPORT_H_
#define ZRCFG_TESTS_VALUES_VALUES_SUPPORT_H_

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "tests/core/core_support.h"

namespace zrcfg_test {

inline constexpr char kPatternFile[] = "regex_file";  // Below the store root.
inline constexpr size_t kMostRequests = 1001;
inline constexpr uint32_t kNoFault = 0;

// A caller's request list. Every field that a call may fill holds a mark beforehand.
class Requests {
 public:
  static constexpr char kMark = '\x5a';

  // A node that receives a value in a guarded buffer.
  Requests &get(const std::string &name);
  // A node that brings a value.
  Requests &set(const std::string &name, const std::string &value);
  // A node that an earlier write is said to have filled; `fault` is what its pointer points to.
  Requests &filled(const std::string &name, const std::string &old_value, uint32_t changed,
                   uint32_t fault);

  // Links the nodes; null when there are none.
  ParamValueEntry *list();
  size_t size() const { return items_.size(); }
  ParamValueEntry &node(size_t i) { return items_.at(i).node; }
  GuardedBuffer &buffer(size_t i) { return items_.at(i).buffer; }
  uint32_t &fault(size_t i) { return items_.at(i).fault; }

  // What a read has put into node i; "untouched" when nothing.
  std::string got(size_t i) const;
  // The old value's text; all 256 bytes when it has no terminator.
  std::string old_value(size_t i) const;
  // The four bytes of the attribute word in memory order.
  std::string attribute_bytes(size_t i) const;
  // Whether old value, changed and attribute word all hold their mark.
  bool outputs_untouched(size_t i) const;
  bool all_outputs_untouched() const;
  // Whether name, value and fault pointer are the caller's.
  bool inputs_kept() const;

 private:
  struct Item {
    ParamValueEntry node;
    GuardedBuffer buffer;
    std::string value;
    std::string name;
    uint32_t fault;
    bool reads;
  };
  Item &add(const std::string &name);

  std::deque<Item> items_;
};

// A value table, freed at the end of a test.
class ValueTable {
 public:
  ValueTable() = default;
  // Built from the image's file; must succeed.
  explicit ValueTable(const OpenedImage &image);
  ~ValueTable();
  ValueTable(const ValueTable &) = delete;
  ValueTable &operator=(const ValueTable &) = delete;

  char *get() const { return table_; }
  char **out() { return &table_; }
  std::string slot(size_t i) const;
  std::vector<std::string> slots(size_t count) const;
  void put(size_t i, const std::string &value);

 private:
  char *table_ = nullptr;
};

// The logged lines whose texts the calls promise, without those of locks and of opening a file.
std::vector<std::string> value_log();

// The lines of a request that was applied: a parameter without attributes.
std::vector<std::string> applied_log(const std::string &name, const std::string &value, bool same);
// "i=0,ptr=…" and so on, as the building of a table logs the lines that it reads.
std::vector<std::string> table_log(const std::vector<std::string> &lines);
std::vector<std::string> joined(const std::vector<std::vector<std::string>> &parts);

// Path and bytes of every file of the store.
std::map<std::string, std::string> store_files();

// Names P0, P1, … and a file of them.
std::string numbered_name(size_t i);
PropertyFile numbered_file(size_t count, size_t value_length);

// Writes "/var/regex_file" with these patterns, by filter number.
void write_patterns(const std::map<unsigned, std::string> &patterns);

// The object of most tests and the whole store as it was stored.
class ValuesTest : public StoreTest {
 protected:
  void store(const PropertyFile &file);
  // An object of parameters A, B, C with this value section.
  void store_section(const std::string &values);
  // The object's file is what was stored but for this value section, every other file is as stored.
  void expect_section(const std::string &values);
  // Nothing was written at all, not even the same bytes.
  void expect_untouched();
  // The same bytes, whether written or not.
  void expect_same_bytes();

  PropertyFile file_;
  std::map<std::string, std::string> files_;
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_VALUES_VALUES_SUPPORT_H_
