// Tests of the value table on its own: built from a property file, and a section written from it.
#include "values/value_table.h"

#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

#include "tests/values/values_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

constexpr char kCannotOpen[] = "unable to open Gateway/Device/property.conf file\n";
constexpr size_t kSlotSize = 256;

class ValueTableTest : public ValuesTest {};

TEST_F(ValueTableTest, EachLineGoesToTheSlotOfItsRecord) {
  store_section("one\n\r\nthree\n");
  const OpenedImage image;
  ValueTable table;
  EXPECT_EQ(constructParamValues(image.get(), table.out()), 0);
  EXPECT_THAT(table.slots(3), ElementsAre("one", "", "three"));
  EXPECT_THAT(value_log(), ElementsAreArray(table_log({"one", "\r", "three"})));
  expect_untouched();
}

TEST_F(ValueTableTest, RestOfEachSlotIsZero) {
  store_section("one\n\r\nthree\n");
  const OpenedImage image;
  const ValueTable table(image);
  std::string expected;
  for (const std::string text : {"one", "", "three"}) {
    expected += text + std::string(kSlotSize - text.size(), '\0');
  }
  EXPECT_EQ(std::string(table.get(), 3 * kSlotSize), expected);
}

TEST_F(ValueTableTest, TextIsSplitAsByATokenizer) {
  struct Row {
    const char *section;
    std::vector<std::string> slots;
  };
  const Row rows[] = {
      {"a\nb\nc", {"a", "b", "c"}},              // no feed behind the last line
      {"\n\na\n\n\nb\nc\n\n", {"a", "b", "c"}},  // empty lines are no lines
      {"\rx\nb\r\n\rc\n", {"", "b\r", ""}},      // only the first byte tells the empty value
      {"a\n", {"a", "", ""}},                    // lines run out
      {"a\nb\nc\nd\ne\n", {"a", "b", "c"}},      // more lines than records
      {" \n\t\n=\n", {" ", "\t", "="}},
  };
  for (const Row &row : rows) {
    store_section(row.section);
    const OpenedImage image;
    const ValueTable table(image);
    EXPECT_EQ(table.slots(3), row.slots) << row.section;
  }
}

TEST_F(ValueTableTest, LogStopsWhereTheLinesRunOut) {
  store_section("a\nb\n");
  const OpenedImage image;
  ValueTable table;
  EXPECT_EQ(constructParamValues(image.get(), table.out()), 0);
  EXPECT_THAT(value_log(), ElementsAreArray(table_log({"a", "b"})));
}

TEST_F(ValueTableTest, SectionWithoutALineGives7AndNoTable) {
  for (const char *section : {"", "\n", "\n\n\n"}) {
    store_section(section);
    const OpenedImage image;
    char *table = nullptr;
    EXPECT_EQ(constructParamValues(image.get(), &table), 7);
    EXPECT_EQ(table, nullptr);
    EXPECT_THAT(value_log(), ElementsAre("pValue is error\n"));
  }
}

TEST_F(ValueTableTest, MissingFileGives7) {
  store_section("a\nb\nc\n");
  const OpenedImage image;
  const ValueTable before(image);
  ASSERT_EQ(unlink(property_path(kDir).c_str()), 0);
  char *table = nullptr;
  EXPECT_EQ(constructParamValues(image.get(), &table), 7);
  EXPECT_EQ(table, nullptr);
  EXPECT_EQ(setParamValuesToMem(image.get(), before.get()), 7);
  EXPECT_THAT(value_log(), ElementsAre(kCannotOpen, kCannotOpen));
  EXPECT_FALSE(store_entry_exists(kFile)) << "nothing is created";
}

TEST_F(ValueTableTest, UnopenableFileGives7) {
  store_section("a\nb\nc\n");
  const OpenedImage image;
  const ValueTable before(image);
  make_unopenable(kFile);
  char *table = nullptr;
  EXPECT_EQ(constructParamValues(image.get(), &table), 7);
  EXPECT_EQ(setParamValuesToMem(image.get(), before.get()), 7);
  EXPECT_EQ(log_count(kCannotOpen), 2u);
}

TEST_F(ValueTableTest, NullGives10) {
  store_section("a\nb\nc\n");
  const OpenedImage image;
  const ValueTable table(image);
  char *none = nullptr;
  EXPECT_EQ(constructParamValues(nullptr, &none), 10);
  EXPECT_EQ(constructParamValues(image.get(), nullptr), 10);
  EXPECT_EQ(none, nullptr);
  clear_log();
  EXPECT_EQ(setParamValuesToMem(nullptr, table.get()), 10);
  EXPECT_EQ(setParamValuesToMem(image.get(), nullptr), 10);
  EXPECT_EQ(log_count("Input parameters can't be NULL\n"), 2u);
  expect_untouched();
}

TEST_F(ValueTableTest, TheyTakeNoLock) {
  store_section("a\nb\nc\n");
  const OpenedImage image;
  const HeldLock held(kFile, LOCK_EX);
  ValueTable table;
  EXPECT_EQ(constructParamValues(image.get(), table.out()), 0);
  table.put(0, "new");
  EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 0);
  expect_section("new\nb\nc\n");
}

TEST_F(ValueTableTest, FileIsReadAfresh) {
  store_section("a\nb\nc\n");
  const OpenedImage image;
  store_section("x\ny\nz\n");
  ValueTable table;
  EXPECT_EQ(constructParamValues(image.get(), table.out()), 0);
  EXPECT_THAT(table.slots(3), ElementsAre("x", "y", "z"));
}

TEST_F(ValueTableTest, LengthWordIsTheFilesAndCountTheImages) {
  store_section("a\nb\nc\n");
  const OpenedImage image;
  store(numbered_file(5, 10));
  ValueTable table;
  EXPECT_EQ(constructParamValues(image.get(), table.out()), 0);
  EXPECT_THAT(table.slots(3), ElementsAre("0:vvvvvvvv", "1:vvvvvvvv", "2:vvvvvvvv"));
  EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 0);
  expect_section("0:vvvvvvvv\n1:vvvvvvvv\n2:vvvvvvvv\n");
}

TEST_F(ValueTableTest, FileThatGotMalformedGives10) {
  store_section("a\nb\nc\n");
  const OpenedImage image;
  const ValueTable before(image);
  for (const std::string &bytes : {std::string(), std::string(3, '\0'), std::string(200, '\0')}) {
    write_property(kDir, bytes);
    char *table = nullptr;
    EXPECT_EQ(constructParamValues(image.get(), &table), 10) << bytes.size();
    EXPECT_EQ(table, nullptr);
    EXPECT_EQ(setParamValuesToMem(image.get(), before.get()), 10) << bytes.size();
    EXPECT_EQ(read_property(kDir), bytes);
  }
}

TEST_F(ValueTableTest, SectionHasALineForEverySlot) {
  struct Row {
    std::vector<std::string> slots;
    const char *section;
  };
  const Row rows[] = {
      {{"a", "b", "c"}, "a\nb\nc\n"},
      {{"", "", ""}, "\r\n\r\n\r\n"},
      {{"longer than it was", "", "z"}, "longer than it was\n\r\nz\n"},
      {{"\rx", " ", "\r"}, "\rx\n \n\r\n"},
  };
  for (const Row &row : rows) {
    for (const char *before : {"a\nb\nc\n", "a\n", "a\nb\nc\nd\ne\n", "a\nb\nc",
                               "a section that is a good deal longer\nthan\nthose written\n"}) {
      store_section(before);
      const OpenedImage image;
      ValueTable table(image);
      for (size_t i = 0; i < 3; ++i) {
        table.put(i, row.slots[i]);
      }
      EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 0);
      expect_section(row.section);
      EXPECT_EQ(table.slots(3), row.slots) << "the table stays as it is";
      EXPECT_THAT(value_log(), ElementsAre());
    }
  }
}

TEST_F(ValueTableTest, SameSectionIsWrittenAllTheSame) {
  store_section("a\nb\nc\n");
  const OpenedImage image;
  const ValueTable table(image);
  EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 0);
  expect_same_bytes();
  EXPECT_FALSE(is_aged(kFile));
}

TEST_F(ValueTableTest, LineFeedInASlotGives7AndLeavesTheFile) {
  for (size_t i = 0; i < 3; ++i) {
    for (const char *value : {"\n", "x\n", "x\ny", "\r\n"}) {
      store_section("a\nb\nc\n");
      const OpenedImage image;
      ValueTable table(image);
      table.put(i, value);
      EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 7);
      EXPECT_FALSE(log_texts().empty()) << "a refusal is logged";
      expect_untouched();
    }
  }
}

TEST_F(ValueTableTest, SlotWithoutTerminatorIsWrittenWithinItsWidth) {
  store_section("a\nb\nc\n");
  const OpenedImage image;
  ValueTable table(image);
  table.put(1, std::string(kSlotSize, 'u'));
  EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 0);
  expect_section("a\n" + std::string(255, 'u') + "\nc\n");
}

TEST_F(ValueTableTest, HeaderAndRecordsAreNeverTouched) {
  PropertyFile file = property_file({"A", "B"}, {"one", "two"});
  file.header.url_slot = 0x01020304;
  file.header.param_num = 99;
  file.header.param_list_slot = 0x05060708;
  file.params[0].next_slot = 0x090a0b0c;
  file.params[1].next_slot = 0x0d0e0f10;
  store(file);
  const OpenedImage image;
  ValueTable table(image);
  table.put(0, "1");
  EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 0);
  expect_section("1\ntwo\n");
}

TEST_F(ValueTableTest, ObjectWithoutRecordsHasATableWhenThereIsText) {
  PropertyFile file;
  file.values = "stray\n";
  store(file);
  const OpenedImage image;
  ValueTable table;
  EXPECT_EQ(constructParamValues(image.get(), table.out()), 0);
  ASSERT_NE(table.get(), nullptr);
  EXPECT_THAT(value_log(), ElementsAre());
  EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 0);
  expect_section("");
}

TEST_F(ValueTableTest, LongestDirectoryIsServed) {
  const std::string dir = long_path(255, '/');
  const PropertyFile file = property_file({"A", "B"}, {"one", "two"});
  write_property(dir, file);
  const OpenedImage image(dir);
  ValueTable table(image);
  table.put(1, "2");
  EXPECT_EQ(setParamValuesToMem(image.get(), table.get()), 0);
  EXPECT_EQ(read_property(dir), file.head_bytes() + "one\n2\n");
}

}  // namespace
}  // namespace zrcfg_test
