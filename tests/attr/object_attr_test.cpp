// Tests of the attributes that an object's header holds: read all, set one by number and text.
#include <gmock/gmock.h>

#include <climits>
#include <cstring>
#include <string>

#include "tests/attr/attr_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr char kWritten[] = "obj's attr has write to file\n";
constexpr char kTest[] = "zrcfg_setsingleobjattr_ext() test\n";
constexpr int kNone = -1;

// An attribute of an object that is a number.
struct ObjectRow {
  int number;
  Bits bits;           // In the header.
  size_t attr_offset;  // In ObjAttr.
};

constexpr ObjectRow kRows[] = {{0, {8, 6, 1}, 0},     {1, {8, 7, 1}, 1},  {2, {8, 4, 2}, 2},
                               {3, {7, 0, 8}, 3},     {4, {8, 0, 4}, 4},  {5, {5, 0, 8}, 5},
                               {kNone, {6, 0, 8}, 6}, {10, {9, 4, 4}, 7}, {13, {9, 2, 1}, 8},
                               {11, {9, 3, 1}, 9},    {14, {9, 1, 1}, 11}};

struct TextPlace {
  size_t header_offset;
  size_t attr_offset;
  size_t size;
};
constexpr TextPlace kTexts[] = {{76, 12, 64}, {12, 84, 64}, {148, 148, 28}};

// The 176 bytes that a read makes of a header.
std::string model_object(const std::string &file, const std::string &before) {
  std::string attr = before;
  for (const ObjectRow &row : kRows) {
    attr[row.attr_offset] = static_cast<char>(row.bits.get(file, kHeaderAt));
  }
  attr[10] = '\0';
  for (const TextPlace &text : kTexts) {
    attr.replace(text.attr_offset, text.size, file, kHeaderAt + text.header_offset, text.size);
  }
  return attr;
}

class ObjectAttrTest : public AttrTest {
 protected:
  std::string read(uint32_t expected = 0, char mark = '\x5a') {
    ObjAttr attr;
    memset(static_cast<void *>(&attr), mark, sizeof attr);
    clear_log();
    EXPECT_EQ(zrcfg_getobjattr(kUrl, &attr, 0), expected);
    return std::string(reinterpret_cast<const char *>(&attr), sizeof attr);
  }

  static uint32_t set(int number, const char *text) {
    clear_log();
    return zrcfg_setsingleobjattr_ext(kUrl, number, text, 0);
  }
};

TEST_F(ObjectAttrTest, ReadFillsAllButTheReservedBytes) {
  for (const Fill fill : kFills) {
    for (const char mark : {'\0', '\x5a', '\xff'}) {
      store(filled_file({"A", "B"}, fill, 110));
      expect_bytes(read(0, mark), model_object(before_, std::string(176, mark)), "object");
    }
  }
  expect_untouched();
}

TEST_F(ObjectAttrTest, EachBitOfAHeaderShowsInItsFieldOnly) {
  const std::string plain = filled_file({"A"}, Fill::kZeros);
  for (size_t bit = 0; bit < kHeadBytes * 8; ++bit) {
    std::string bytes = plain;
    char &changed = bytes[kHeaderAt + bit / 8];
    changed = static_cast<char>(changed ^ (1 << (bit % 8)));
    store(bytes);
    expect_bytes(read(), model_object(bytes, std::string(176, '\x5a')),
                 "bit " + std::to_string(bit));
  }
}

TEST_F(ObjectAttrTest, NamedFieldsHoldTheirValues) {
  PropertyFile file = property_file({"A"}, {"a"});
  file.header.max_instance = 44;
  file.header.device_type = 0x40;
  file.header.level3 = 0xee;
  file.header.hide = 1;
  file.header.rw = 2;
  file.header.key = 9;
  file.header.level7 = 12;
  file.header.flag9 = 1;
  file.header.devfunc = "a function";
  file.header.pnoe = "Gateway/DeviceNumberOfEntries";
  file.header.extra_text = "eight and twenty characters!";
  store(file);
  ObjAttr attr = {};
  EXPECT_EQ(zrcfg_getobjattr(kUrl, &attr, 0), 0u);
  EXPECT_EQ(attr.flag0, 0);
  EXPECT_EQ(attr.hide, 1);
  EXPECT_EQ(attr.rw, 2);
  EXPECT_EQ(attr.level3, 0xee);
  EXPECT_EQ(attr.key, 9);
  EXPECT_EQ(attr.max_instance, 44);
  EXPECT_EQ(attr.device_type, 0x40);
  EXPECT_EQ(attr.level7, 12);
  EXPECT_EQ(attr.flag8, 0);
  EXPECT_EQ(attr.flag9, 1);
  EXPECT_EQ(attr.zero10, 0);
  EXPECT_EQ(attr.flag11, 0);
  EXPECT_STREQ(attr.devfunc, "a function");
  EXPECT_STREQ(attr.pnoe, "Gateway/DeviceNumberOfEntries");
  EXPECT_EQ(std::string(attr.extra_text, 28), "eight and twenty characters!");
  EXPECT_THAT(attr_log(),
              ElementsAre("objUrl =  Gateway.Device.\n", "pAttr->devfunc=a function!\n"));
}

TEST_F(ObjectAttrTest, DevfuncWithoutTerminatorEndsAtItsWidthInTheLog) {
  PropertyFile file;
  file.header.devfunc = std::string(64, 'd');
  file.header.pnoe = std::string(64, 'p');
  store(file);
  read();
  EXPECT_EQ(attr_log().back(), "pAttr->devfunc=" + std::string(64, 'd') + "!\n");
}

TEST_F(ObjectAttrTest, EveryNumberWithEveryTextChangesItsFieldOnly) {
  for (const Fill fill : kFills) {
    for (const int number : attr_numbers()) {
      for (const NumberText &text : number_texts()) {
        store(filled_file({"A", "B"}, fill, 111));
        std::string expected = before_;
        for (const ObjectRow &row : kRows) {
          if (row.number == number && number != kNone) {
            row.bits.set(expected, kHeaderAt, static_cast<uint32_t>(text.value));
          }
        }
        ASSERT_EQ(set(number, text.text), 0u);
        expect_file(expected, std::to_string(number) + " set to \"" + text.text + "\"");
        if (HasFailure()) {
          return;
        }
      }
    }
  }
}

TEST_F(ObjectAttrTest, Number5Of300Is44) {
  store(filled_file({"A"}, Fill::kOnes));
  EXPECT_EQ(set(5, "300"), 0u);
  EXPECT_EQ(read_property(kDir).at(kHeaderAt + 5), 44);
}

TEST_F(ObjectAttrTest, NumbersWithoutFieldRewriteTheHeaderUnchanged) {
  for (const int number : {6, 7, 8, 9, 12, 15, 16, 100, -1, INT_MIN}) {
    store(filled_file({"A"}, Fill::kOnes));
    EXPECT_EQ(set(number, "0"), 0u) << number;
    expect_file(before_, std::to_string(number));
    EXPECT_FALSE(is_aged(kFile)) << "the header is written back";
  }
}

TEST_F(ObjectAttrTest, CountIsStoredAsItWasComputed) {
  for (const size_t count : {0u, 1u, 3u, 255u, 256u, 258u}) {
    std::string bytes = filled_file(std::vector<std::string>(count, "A"), Fill::kRandom, 112);
    const char right = bytes[kHeaderAt + 4];
    bytes[kHeaderAt + 4] = static_cast<char>(right ^ 0x55);
    store(bytes);
    std::string expected = before_;
    expected[kHeaderAt + 4] = right;
    Bits{9, 3, 1}.set(expected, kHeaderAt, 0);
    EXPECT_EQ(set(11, "0"), 0u);
    expect_file(expected, std::to_string(count));
  }
}

TEST_F(ObjectAttrTest, HiddenObjectIsReadAndSet) {
  PropertyFile file;
  file.header.hide = 1;
  file.header.device_type = 0x40;
  store(file);
  EXPECT_EQ(read()[1], 1);
  EXPECT_EQ(set(1, "0"), 0u);
  file.header.hide = 0;
  expect_file(file.bytes());
  EXPECT_EQ(read()[1], 0);
}

TEST_F(ObjectAttrTest, LogTellsPreparationTestAndWrite) {
  store(filled_file({"A"}, Fill::kOnes));
  EXPECT_EQ(set(2, "1"), 0u);
  EXPECT_THAT(attr_log(), ElementsAre(kExists, kTest, kWritten));
}

TEST_F(ObjectAttrTest, FileThatMayOnlyBeReadIsReadAndNotSet) {
  store(filled_file({"A"}, Fill::kRandom));
  {
    const UserWithMode reader(kFile, 0444);
    expect_bytes(read(), model_object(before_, std::string(176, '\x5a')), "read only");
    EXPECT_EQ(set(2, "1"), 8u);
  }
  EXPECT_EQ(attr_log().back(), kUnable);
  expect_untouched();
}

TEST_F(ObjectAttrTest, NullGives10WithItsTextAlone) {
  store(filled_file({"A"}, Fill::kRandom));
  ObjAttr attr;
  memset(static_cast<void *>(&attr), 0x5a, sizeof attr);
  EXPECT_EQ(zrcfg_getobjattr(nullptr, &attr, 0), 10u);
  EXPECT_EQ(zrcfg_getobjattr(kUrl, nullptr, 0), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(2, kNullText));
  EXPECT_EQ(attr.flag0, 0x5a);
  clear_log();
  EXPECT_EQ(zrcfg_setsingleobjattr_ext(nullptr, 1, "1", 0), 10u);
  EXPECT_EQ(zrcfg_setsingleobjattr_ext(kUrl, 1, nullptr, 0), 10u);
  EXPECT_EQ(zrcfg_setsingleobjattr_ext(kUrl, 12, nullptr, 0), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(3, kNullText));
  expect_untouched();
}

}  // namespace
}  // namespace zrcfg_test
