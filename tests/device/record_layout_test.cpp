// Tests that the exchange records have the sizes and offsets of the interface, on every target.
#include "tests/device/record_layout.h"

#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"

namespace zrcfg_test {
namespace {

constexpr LayoutFact kFacts[] = {ZRCFG_LAYOUT_FACTS};

void expect_layout(const LayoutFact *facts, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    EXPECT_EQ(facts[i].seen, facts[i].bytes + facts[i].words * sizeof(void *)) << facts[i].what;
  }
}

TEST(RecordLayoutTest, HasTheSizesAndOffsetsOfTheInterfaceInCxx) {
  expect_layout(kFacts, sizeof kFacts / sizeof *kFacts);
}

TEST(RecordLayoutTest, HasTheSizesAndOffsetsOfTheInterfaceInC) {
  ASSERT_EQ(c_layout_fact_count, sizeof kFacts / sizeof *kFacts);
  expect_layout(c_layout_facts, c_layout_fact_count);
}

// The byte of the flags is the first of the attribute word.
uint8_t flag_byte(const MultiAttrNode &node) {
  uint8_t byte = 0;
  memcpy(&byte, reinterpret_cast<const char *>(&node) + 64 + sizeof(void *), 1);
  return byte;
}

TEST(RecordLayoutTest, PacksTheFlagsFromTheHighestBitDown) {
  struct Case {
    unsigned noti, flash_rw, namechange, inform_tr069;
    uint8_t byte;
  };
  for (const Case &c : {Case{15, 0, 0, 0, 0xF0}, Case{9, 0, 0, 0, 0x90}, Case{0, 1, 0, 0, 0x08},
                        Case{0, 0, 1, 0, 0x04}, Case{0, 0, 0, 1, 0x02}, Case{5, 1, 0, 1, 0x5A}}) {
    MultiAttrNode node = {};
    set_flags_in_c(&node, c.noti, c.flash_rw, c.namechange, c.inform_tr069);
    EXPECT_EQ(flag_byte(node), c.byte);
    EXPECT_EQ(node.noti, c.noti);
    EXPECT_EQ(node.flash_rw, c.flash_rw);
    EXPECT_EQ(node.namechange, c.namechange);
    EXPECT_EQ(node.inform_tr069, c.inform_tr069);
  }
}

class AttributeWordTest : public StoreTest {};

// What the library stores there, byte by byte and not through the members.
TEST_F(AttributeWordTest, IsFilledInTheSameByteOrderOnEveryTarget) {
  PropertyFile file;
  ParamFields &param = file.add("Name", "value");
  param.noti = 0xA;
  param.flash_rw = 1;
  param.inform_tr069 = 1;
  param.inform_dbus = 0xC3;
  write_property("A/", file);

  MultiAttrNode node = {};
  strcpy(node.name, "Name");
  ASSERT_EQ(zrcfg_getmultiparamattr("A.", &node, ZRCFG_ATTR_GET_FLAGS, 0), 0u);
  uint8_t word[4];
  memcpy(word, reinterpret_cast<const char *>(&node) + 64 + sizeof(void *), sizeof word);
  EXPECT_EQ(word[0], 0xAA);
  EXPECT_EQ(word[1], 0xC3);
  EXPECT_EQ(word[2], 0);
  EXPECT_EQ(word[3], 0);

  char value[ZRCFG_VALUE_SIZE] = "other";
  ParamValueEntry entry = {};
  strcpy(entry.name, "Name");
  entry.value = value;
  ASSERT_EQ(zrcfg_setmultiparamval("A.", &entry, 0), 0);
  memcpy(word, reinterpret_cast<const char *>(&entry) + 64 + sizeof(void *), sizeof word);
  EXPECT_EQ(word[0], 0xAA);
  EXPECT_EQ(word[1], 0xC3);
  EXPECT_EQ(entry.changed, 1u);
  EXPECT_STREQ(entry.old_value, "value");
}

// param_check is the one number of several bytes that a record of the file hands over.
TEST_F(AttributeWordTest, HandsFileNumbersOverInTheTargetsByteOrder) {
  PropertyFile file;
  file.add("Name", "value").param_check = 0x01020304;
  write_property("A/", file);
  ParamAttr attr = {};
  ASSERT_EQ(zrcfg_getsingleparamattr("A.", "Name", &attr, 0), 0u);
  EXPECT_EQ(attr.param_check, 0x01020304u);
  attr.param_check = 0x0A0B0C0D;
  ASSERT_EQ(zrcfg_setsingleparamattr("A.", "Name", &attr, ZRCFG_ATTR_SET_ALL, 0), 0u);
  EXPECT_EQ(read_property("A/").substr(4 + kHeadBytes + 116, 4), "\x0A\x0B\x0C\x0D");
}

}  // namespace
}  // namespace zrcfg_test
