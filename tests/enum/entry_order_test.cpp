// Tests of the order of entries and of its parts: all-digit names, the comparison, freeing a scan.
#include <dirent.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <string>

#include "enum/sub_objects.h"
#include "tests/enum/enum_support.h"

namespace zrcfg_test {
namespace {

class EntryOrderTest : public EnumTest {};

dirent entry_named(const std::string &name) {
  dirent entry = {};
  memcpy(entry.d_name, name.data(), name.size());
  return entry;
}

int sign(int number) {
  return (number > 0) - (number < 0);
}

int compared(const std::string &left, const std::string &right) {
  const dirent a = entry_named(left);
  const dirent b = entry_named(right);
  const dirent *pa = &a;
  const dirent *pb = &b;
  return sign(objsort(&pa, &pb));
}

TEST_F(EntryOrderTest, DecimalDigitsAloneAreANumber) {
  for (const char *text : {"", "0", "7", "10", "007", "1234567890", "00000000000000000000000001"}) {
    EXPECT_EQ(is_digit(text), 1) << text;
  }
  for (const char *text : {"a", "1a", "a1", "-1", "+1", " 1", "1 ", "1.0", "0x1", "WAN", "/", ":",
                           "1:", "\xb2", "1\n"}) {
    EXPECT_EQ(is_digit(text), 0) << text;
  }
  for (int c = 1; c < 256; ++c) {
    const char text[] = {'1', static_cast<char>(c), '1', '\0'};
    EXPECT_EQ(is_digit(text), c >= '0' && c <= '9' ? 1 : 0) << c;
  }
}

TEST_F(EntryOrderTest, NullTextIsNoNumberAndDoesNotCrash) {
  EXPECT_NE(is_digit(nullptr), 1);
}

struct Pair {
  const char *smaller;
  const char *larger;
};

class OrderedPairTest : public EnumTest, public ::testing::WithParamInterface<Pair> {};

TEST_P(OrderedPairTest, ComparesBothWays) {
  EXPECT_EQ(compared(GetParam().smaller, GetParam().larger), -1);
  EXPECT_EQ(compared(GetParam().larger, GetParam().smaller), 1);
}

INSTANTIATE_TEST_SUITE_P(Numbers, OrderedPairTest,
                         ::testing::Values(Pair{"7", "10"}, Pair{"0", "1"}, Pair{"9", "010"},
                                           Pair{"2", "0000003"}, Pair{"99999", "100000"},
                                           Pair{"2147483646", "2147483647"}, Pair{"", "1"},
                                           Pair{"999999999", "99999999999999999999"}));
INSTANTIATE_TEST_SUITE_P(Names, OrderedPairTest,
                         ::testing::Values(Pair{"10", "WANIPConnection"},
                                           Pair{"WANIPConnection", "lower"}, Pair{"A", "B"},
                                           Pair{"A", "AA"}, Pair{"Z", "a"}, Pair{"Host", "Hosts"},
                                           Pair{"10", "7a"}, Pair{"10", "9x"}, Pair{"-1", "0"},
                                           Pair{".", "0"}, Pair{"", "A"}, Pair{"1", "1a"},
                                           Pair{"A10", "A7"}, Pair{"~", "\x80"},
                                           Pair{"a", "\xc3\xa4"}, Pair{"z", "\xff"}));

TEST_F(EntryOrderTest, EqualValuesAndEqualNamesAreEqual) {
  for (const auto &[left, right] :
       {Pair{"7", "7"}, Pair{"007", "7"}, Pair{"07", "0000000007"}, Pair{"", "0"}, Pair{"", ""},
        Pair{"0", "000"}, Pair{"WAN", "WAN"}, Pair{"a1", "a1"}}) {
    EXPECT_EQ(compared(left, right), 0) << left << " " << right;
    EXPECT_EQ(compared(right, left), 0) << left << " " << right;
  }
}

TEST_F(EntryOrderTest, NumbersBeyondTheRangeSaturateOnEveryHost) {
  EXPECT_EQ(compared("2147483647", "2147483648"), 0);
  EXPECT_EQ(compared("4294967297", "9999999999999999999999"), 0);
  EXPECT_EQ(compared("4294967297", "5"), 1) << "not cut to 32 bits";
  EXPECT_EQ(compared(std::string(255, '9'), "2147483647"), 0);
}

TEST_F(EntryOrderTest, NamesOf255CharactersAreComparedToTheEnd) {
  const std::string stem(254, 'n');
  EXPECT_EQ(compared(stem + "a", stem + "b"), -1);
  EXPECT_EQ(compared(stem + "b", stem + "b"), 0);
  EXPECT_EQ(compared(stem, stem + "b"), -1);
  EXPECT_EQ(compared(std::string(254, '0') + "1", std::string(254, '0') + "2"), -1);
}

TEST_F(EntryOrderTest, ComparingChangesNeitherEntry) {
  const dirent a = entry_named("12");
  const dirent b = entry_named("WAN");
  const dirent *pa = &a;
  const dirent *pb = &b;
  (void)objsort(&pa, &pb);
  EXPECT_EQ(pa, &a);
  EXPECT_EQ(pb, &b);
  EXPECT_STREQ(a.d_name, "12");
  EXPECT_STREQ(b.d_name, "WAN");
}

// What is not freed, or freed twice, is the sanitizer's to find.
TEST_F(EntryOrderTest, FreeingAScanTakesItsEntriesAndTheArray) {
  make_store_dir("A/1/");
  make_store_dir("A/B/");
  dirent **entries = nullptr;
  const int count = scandir("/var/A", &entries, nullptr, objsort);
  ASSERT_EQ(count, 4);
  EXPECT_STREQ(entries[2]->d_name, "1");
  EXPECT_STREQ(entries[3]->d_name, "B");
  free_nlist(entries, count);
}

TEST_F(EntryOrderTest, FreeingAnEmptyScanTakesTheArray) {
  free_nlist(static_cast<dirent **>(malloc(sizeof(dirent *))), 0);
  free_nlist(nullptr, 0);
  free_nlist(nullptr, -1);
}

}  // namespace
}  // namespace zrcfg_test
