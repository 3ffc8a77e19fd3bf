// Tests of bulk calls on property files that no writer of the store produces.
#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

#include "tests/values/bulk_calls.h"
#include "tests/values/values_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

class BulkMalformedTest : public ValuesTest {
 protected:
  static std::vector<std::string> read_abc() {
    Requests requests;
    requests.get("A").get("B").get("C");
    EXPECT_EQ(zrcfg_getmultiparamval(kUrl, requests.list(), 0), 0);
    return {requests.got(0), requests.got(1), requests.got(2)};
  }

  static std::vector<std::string> listed() {
    ParamValueListNode *head = nullptr;
    ParamValueListNode *tail = nullptr;
    EXPECT_EQ(zrcfg_getallparamval(kUrl, &head, &tail, 0), 0);
    std::vector<std::string> values;
    while (head != nullptr) {
      values.push_back(head->value);
      ParamValueListNode *const next = head->next;
      free(head);
      head = next;
    }
    return values;
  }

  // Sets B with the bulk write; its old value.
  static std::string set_b(const char *value) {
    Requests requests;
    requests.set("B", value);
    EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
    return requests.old_value(0);
  }
};

TEST_F(BulkMalformedTest, ZeroByteEndsTheSection) {
  const std::string section("a\0b\nc\nd\n", 8);
  store_section(section);
  EXPECT_THAT(read_abc(), ElementsAre("a", "", ""));
  ParamValueListNode *head = nullptr;
  ParamValueListNode *tail = nullptr;
  EXPECT_EQ(zrcfg_getallparamval(kUrl, &head, &tail, 0), 15);
  EXPECT_EQ(set_b("2"), "");
  expect_section("a\n2\n\r\n");
  store_section(std::string("\0a\nb\nc\n", 7));
  Requests requests;
  requests.get("A");
  EXPECT_EQ(zrcfg_getmultiparamval(kUrl, requests.list(), 0), 7);
  EXPECT_EQ(requests.got(0), "untouched");
}

TEST_F(BulkMalformedTest, LineOver255CharactersIsCut) {
  for (const size_t length : {256u, 257u, 300u, 5000u}) {
    const std::string line(length, 'l');
    const std::string cut(255, 'l');
    store_section("a\n" + line + "\nc\n");
    EXPECT_THAT(read_abc(), ElementsAre("a", cut, "c"));
    EXPECT_THAT(listed(), ElementsAre("a", cut, "c"));
    Requests requests;
    requests.set("C", "3");
    EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
    expect_section("a\n" + cut + "\n3\n");
  }
}

TEST_F(BulkMalformedTest, OldValueOfALongLineIsWhatAReadGives) {
  store_section("a\n" + std::string(300, 'l') + "\nc\n");
  const std::string cut(255, 'l');
  Requests requests;
  requests.set("B", cut);
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, requests.list(), 0), 0);
  EXPECT_EQ(requests.node(0).changed, 0u);
  EXPECT_EQ(requests.old_value(0).substr(0, 255), cut);
  expect_section("a\n" + cut + "\nc\n");
}

TEST_F(BulkMalformedTest, LongLineLogIsNotCutShortOfTheLine) {
  store_section("a\nb\n" + std::string(300, 'l') + "\n");
  EXPECT_THAT(read_abc(), ElementsAre("a", "b", std::string(255, 'l')));
  EXPECT_TRUE(log_contains("i=2,ptr=" + std::string(300, 'l') + "\n"));
}

TEST_F(BulkMalformedTest, CheckedSingleWriteOfAnotherValueKeepsALongLine) {
  const std::string line(300, 'l');
  store_section("a\n" + line + "\nc\n");
  char changed = 77;
  GuardedBuffer old;
  EXPECT_EQ(
      zrcfg_setsingleparamval_ext_get_old_value_check(kUrl, "A", "1", 0, &changed, old.data()), 0);
  expect_section("1\n" + line + "\nc\n");
}

TEST_F(BulkMalformedTest, LastLineNeedsNoEnd) {
  store_section("a\nb\nc");
  EXPECT_THAT(read_abc(), ElementsAre("a", "b", "c"));
  EXPECT_THAT(listed(), ElementsAre("a", "b", "c"));
  EXPECT_EQ(set_b("2"), "b");
  expect_section("a\n2\nc\n");
}

TEST_F(BulkMalformedTest, LengthBetweenTwoCountsOfRecordsShiftsTheSection) {
  PropertyFile file = property_file({"A"}, {""});
  file.length_word = 184 + 124 + 60;
  file.values = std::string(60, '#') + "value\n";
  store(file);
  Requests requests;
  requests.get("A");
  EXPECT_EQ(zrcfg_getmultiparamval(kUrl, requests.list(), 0), 0);
  EXPECT_EQ(requests.got(0), "value");
  Requests write;
  write.set("A", "v");
  EXPECT_EQ(zrcfg_setmultiparamval(kUrl, write.list(), 0), 0);
  expect_section(std::string(60, '#') + "v\n");
}

TEST_F(BulkMalformedTest, StoredCountIsIgnored) {
  for (const uint8_t stored : {uint8_t{0}, uint8_t{1}, uint8_t{200}}) {
    PropertyFile file = property_file({"A", "B", "C"}, {"a", "b", "c"});
    file.header.param_num = stored;
    store(file);
    EXPECT_THAT(read_abc(), ElementsAre("a", "b", "c"));
    EXPECT_THAT(listed(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(set_b("2"), "b");
    expect_section("a\n2\nc\n");
  }
}

TEST_F(BulkMalformedTest, RecordWithoutANameIsFoundByTheEmptyName) {
  store(property_file({"", "B"}, {"nameless", "b"}));
  Requests requests;
  requests.get("").get("B");
  EXPECT_EQ(zrcfg_getmultiparamval(kUrl, requests.list(), 0), 0);
  EXPECT_EQ(requests.got(0), "nameless");
  EXPECT_EQ(requests.got(1), "b");
}

// No content may crash a call, and a call that fails leaves every byte.
TEST_F(BulkMalformedTest, EveryPrefixOfAFileIsSurvived) {
  PropertyFile file = property_file({"A", "B"}, {"stored", "b"});
  file.params[0].param_check = 1;
  write_patterns({{1, "^[a-z]+$"}});
  const std::string whole = file.bytes();
  for (size_t size = 0; size <= whole.size(); size += size < 180 || size > 430 ? 1 : 7) {
    for (const BulkCall &call : bulk_calls()) {
      const std::string bytes = whole.substr(0, size);
      write_property(kDir, bytes);
      clear_log();
      const int result = call.run(kUrl, 0).result;
      if (result != 0 || !call.writes) {
        EXPECT_EQ(read_property(kDir), bytes) << call.name << " " << size;
      } else {
        EXPECT_GE(size, file.head_bytes().size()) << call.name << " needs a line";
      }
    }
  }
}

TEST_F(BulkMalformedTest, EveryLengthWordIsSurvived) {
  PropertyFile file = property_file({"A", "B", "C"}, {"stored", "b", "c"});
  for (uint32_t length = 0; length < 700; length += length < 170 ? 13 : 1) {
    file.length_word = length;
    const std::string bytes = file.bytes();
    for (const BulkCall &call : bulk_calls()) {
      write_property(kDir, bytes);
      clear_log();
      const int result = call.run(kUrl, 0).result;
      EXPECT_TRUE(length >= 184 || result == 10) << call.name << " " << length;
      const std::string after = read_property(kDir);
      if (result != 0 || !call.writes) {
        EXPECT_EQ(after, bytes) << call.name << " " << length;
      } else {
        EXPECT_EQ(after.substr(0, 4 + length), bytes.substr(0, 4 + length)) << length;
      }
    }
  }
}

}  // namespace
}  // namespace zrcfg_test
