// What the tests of attributes share: files full of known bits, the model of a record, request
// lists.
#ifndef ZRCFG_TESTS_ATTR_ATTR_SUPPORT_H_
#define ZRCFG_TESTS_ATTR_ATTR_SUPPORT_H_

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/core/core_support.h"
#include "tests/support/user_rights.h"

namespace zrcfg_test {

inline constexpr uint32_t kFailed = 0xffffffffu;
inline constexpr size_t kMostNodes = 1001;
inline constexpr size_t kAccesslistBytes = 16;
inline constexpr size_t kAreaBytes = 28;
inline constexpr char kExists[] = "property_file=Gateway/Device/property.conf exist!\n";
inline constexpr char kUnable[] = "unable to open Gateway/Device/property.conf file\n";
inline constexpr char kNullText[] = "Input parameters can't be NULL\n";

// What the bytes of header and records are before a test changes some of them.
enum class Fill { kZeros, kOnes, kRandom };
inline constexpr Fill kFills[] = {Fill::kZeros, Fill::kOnes, Fill::kRandom};

// `size` bytes; the same for the same seed.
std::string filled(size_t size, Fill fill, unsigned seed = 1);
// A property file of which everything but the length word, the names up to their terminators and
// the value section ("value of NAME") is filled.
std::string filled_file(const std::vector<std::string> &names, Fill fill, unsigned seed = 1);
std::string filled_record(const std::string &name, Fill fill, unsigned seed = 1);

// Where header and record `i` begin in a file.
inline constexpr size_t kHeaderAt = 4;
constexpr size_t record_at(size_t i) {
  return kHeaderAt + kHeadBytes + i * kParamBytes;
}

// A field of bits in a run of bytes.
struct Bits {
  size_t offset;
  unsigned shift;
  unsigned width;

  void set(std::string &bytes, size_t base, uint32_t value) const;
  uint8_t get(const std::string &bytes, size_t base) const;
};

// An attribute of a parameter that is a number of at most 8 bits, in the order of ParamAttr.
struct AttrRow {
  const char *name;
  int number;
  Bits bits;           // In the record.
  size_t attr_offset;  // In ParamAttr.
  bool single;         // Whether the single update by record sets it.
};
const std::vector<AttrRow> &attr_rows();

// The 64 bytes that a query makes of the record at `base` when they were `before`.
std::string model_attr(const std::string &bytes, size_t base, const std::string &before);
// What the writers do to the record at `base`; `value` is the number in the text.
void model_text(std::string &bytes, size_t base, int number, const std::string &text,
                int32_t value);
void model_single_all(std::string &bytes, size_t base, const std::string &attr);
void model_multi_all(std::string &bytes, size_t base, const std::string &attr);
void model_noti(std::string &bytes, size_t base, uint32_t noti);
void model_accesslist(std::string &bytes, size_t base, const std::string &list);
// The word at `at`, most significant byte first.
uint32_t word_at(const std::string &bytes, size_t at);

// A text that stands for a number, and that number on the 32-bit target.
struct NumberText {
  const char *text;
  int32_t value;
};
const std::vector<NumberText> &number_texts();
// Every attribute number and some that are none.
const std::vector<int> &attr_numbers();

// Tells the first difference rather than all bytes.
void expect_bytes(const std::string &actual, const std::string &expected, const std::string &what);

std::string bytes_of(const ParamAttr &attr);
ParamAttr attr_of(const std::string &bytes);

// A caller's request list. Each node is full of marks beforehand, and a buffer's block is exactly
// as large as what it holds, so that the sanitizer sees a step beyond.
class AttrRequests {
 public:
  static constexpr char kMark = '\x5a';

  // A node with a buffer that holds these bytes; by default that of a query.
  AttrRequests &add(const std::string &name,
                    const std::string &bytes = std::string(sizeof(ParamAttr), kMark));
  AttrRequests &add_without_buffer(const std::string &name);

  // Links the nodes and remembers them; null when there are none.
  MultiAttrNode *list();
  MultiAttrNode &node(size_t i) { return items_.at(i).node; }
  size_t size() const { return items_.size(); }
  std::string buffer(size_t i) const;
  bool buffer_untouched(size_t i) const { return buffer(i) == items_.at(i).bytes; }
  // Whether node i is as list() left it.
  bool node_untouched(size_t i) const;
  bool all_untouched() const;
  // The four bytes of the attribute word in memory order.
  std::string word(size_t i) const;
  // Whether everything but these four bytes is as list() left it.
  bool rest_untouched(size_t i) const;

 private:
  struct Item {
    MultiAttrNode node;
    std::string before;
    std::string bytes;
    std::unique_ptr<char[]> buffer;
  };
  std::string node_bytes(size_t i) const;

  std::deque<Item> items_;
};

// The logged lines whose texts the attribute calls promise, without those of locks and opening.
std::vector<std::string> attr_log();

// The object of most tests between a parent and a sub-object, which nothing may change.
class AttrTest : public StoreTest {
 protected:
  void store(const std::string &bytes);
  void store(const PropertyFile &file) { store(file.bytes()); }
  // The object's file is these bytes but for the slots; all other files are as stored.
  void expect_file(const std::string &bytes, const std::string &what = "");
  // Nothing was written at all, not even the same bytes.
  void expect_untouched();

  std::string before_;

 private:
  std::map<std::string, std::string> others_;
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_ATTR_ATTR_SUPPORT_H_
