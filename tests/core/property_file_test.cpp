// Tests of the property file's layout: built byte by byte here, read and rewritten by the library.
#include "core/property_file.h"

#include <gmock/gmock.h>

#include <cstring>
#include <string>

#include "tests/core/core_support.h"

namespace zrcfg_test {
namespace {

class PropertyFileTest : public StoreTest {};

// A header in which every field and every reserved byte differs from its neighbours.
HeaderFields busy_header() {
  HeaderFields header;
  header.url_slot = 0x11121314;
  header.param_num = 99;
  header.max_instance = 200;
  header.device_type = 0x81;
  header.level3 = 7;
  header.flag0 = 1;
  header.rw = 2;
  header.key = 9;
  header.level7 = 5;
  header.flag8 = 1;
  header.flag11 = 1;
  header.reserved_flag = 1;
  header.reserved_10 = "\x31\x32";
  header.devfunc = "devfunc text";
  header.pnoe = "WANDeviceNumberOfEntries";
  header.reserved_140 = "reserved";
  header.extra_text = "extra";
  header.reserved_176 = "tail";
  header.param_list_slot = 0x21222324;
  return header;
}

ParamFields busy_param(const std::string &name) {
  ParamFields param;
  param.name = name;
  param.value = "value of " + name;
  param.type = 3;
  param.inform_dbus = 250;
  param.device_type = 0x7f;
  param.reserved_3 = 0x55;
  param.rw = 2;
  param.key = 11;
  param.encryt = 1;
  param.noti = 12;
  param.flash_rw = 1;
  param.noti_rw = 1;
  param.flash_encryt = 1;
  param.inform_tr069 = 1;
  param.reserved_6_low = 21;
  param.reserved_7 = 0x66;
  param.accesslist = "Subscriber";
  param.area = "area";
  param.param_check = 0x01020304;
  param.next_slot = 0x31323334;
  return param;
}

PropertyFile many_records(size_t count) {
  PropertyFile file;
  for (size_t i = 0; i < count; ++i) {
    file.add("Name" + std::to_string(i), "v" + std::to_string(i));
  }
  return file;
}

uint8_t image_count(const OpenedImage &image) {
  return static_cast<uint8_t>(image.bytes(4, 1)[0]);
}

TEST_F(PropertyFileTest, HeaderIsReadByteForByteButItsSlotsAndCount) {
  PropertyFile file;
  file.header = busy_header();
  file.params = {busy_param("One"), busy_param("Two")};
  write_property(kDir, file);
  const OpenedImage image;
  const std::string expected = header_bytes(file.header);
  EXPECT_EQ(image_count(image), 2) << "recomputed, not taken from the file";
  EXPECT_EQ(image.bytes(5, 175), expected.substr(5, 175));
}

TEST_F(PropertyFileTest, RecordsAreReadByteForByteButTheirSlots) {
  PropertyFile file;
  file.params = {busy_param("One"), busy_param("Two"), busy_param("Three")};
  write_property(kDir, file);
  const OpenedImage image;
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(image.bytes(184 + 124 * i, 120), param_bytes(file.params[i]).substr(0, 120)) << i;
  }
}

TEST_F(PropertyFileTest, DirectoryPathFollowsTheRecords) {
  write_property(kDir, many_records(3));
  const OpenedImage image;
  EXPECT_EQ(image.bytes(184 + 3 * 124, sizeof kDir), std::string(kDir, sizeof kDir));
}

#if UINTPTR_MAX == UINT32_MAX
TEST_F(PropertyFileTest, SlotsHoldTheAddressesOn32BitTargets) {
  write_property(kDir, many_records(2));
  const OpenedImage image;
  const char *base = static_cast<const char *>(image.get());
  const auto slot = [base](size_t offset) {
    const char *address;
    memcpy(&address, base + offset, sizeof address);
    return address;
  };
  EXPECT_EQ(slot(0), base + 184 + 2 * 124);
  EXPECT_EQ(slot(180), base + 184);
  EXPECT_EQ(slot(184 + 120), base + 184 + 124);
  EXPECT_EQ(slot(184 + 124 + 120), nullptr);
}
#endif

TEST_F(PropertyFileTest, ObjectWithoutParametersLoads) {
  PropertyFile file;
  file.header = busy_header();
  write_property(kDir, file);
  ASSERT_EQ(file.bytes().size(), 188u);
  const OpenedImage image;
  EXPECT_EQ(image_count(image), 0);
}

TEST_F(PropertyFileTest, CountIsTheLowByteOfTheNumberOfRecords) {
  write_property("A/", many_records(255));
  write_property("B/", many_records(256));
  write_property("C/", many_records(257));
  EXPECT_EQ(image_count(OpenedImage("A/")), 255);
  EXPECT_EQ(image_count(OpenedImage("B/")), 0);
  EXPECT_EQ(image_count(OpenedImage("C/")), 1);
}

TEST_F(PropertyFileTest, AllOf255ParametersAreReachable) {
  write_property(kDir, many_records(255));
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name254", value.data(), 0), 0u);
  EXPECT_EQ(value.text(), "v254");
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Name254", "last", 0), 0u);
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Name0", "first", 0), 0u);
  PropertyFile expected = many_records(255);
  expected.params[0].value = "first";
  expected.params[254].value = "last";
  EXPECT_EQ(read_property(kDir), expected.bytes());
}

TEST_F(PropertyFileTest, ValuesOf256RecordsAreNotReachable) {
  write_property(kDir, many_records(256));
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name0", value.data(), 0), 0u);
  EXPECT_TRUE(value.untouched());
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Name0", "new", 0), 5u);
  EXPECT_EQ(read_property(kDir), many_records(256).bytes());
}

TEST_F(PropertyFileTest, ValueLinesBelongToRecordsInOrder) {
  PropertyFile file = many_records(3);
  file.values = "a\n\r\nc\n";
  write_property(kDir, file);
  for (const auto &[name, expected] :
       {std::pair("Name0", "a"), std::pair("Name1", ""), std::pair("Name2", "c")}) {
    GuardedBuffer value;
    EXPECT_EQ(zrcfg_getsingleparamval(kUrl, name, value.data(), 0), 0u);
    EXPECT_EQ(value.text(), expected) << name;
  }
}

TEST_F(PropertyFileTest, SectionGrowsAndShrinksWithItsValues) {
  PropertyFile file = many_records(3);
  file.values = "a\n\r\nc\n";
  const std::string before = file.bytes();
  write_property(kDir, before);
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Name1", "bb", 0), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), "a\nbb\nc\n");
  EXPECT_EQ(read_property(kDir).size(), before.size() + 1);
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Name1", "", 0), 0u);
  EXPECT_EQ(read_property(kDir), before);
}

TEST_F(PropertyFileTest, HeaderAndRecordsAreNotRewrittenWithValues) {
  PropertyFile file;
  file.header = busy_header();
  file.params = {busy_param("One"), busy_param("Two")};
  write_property(kDir, file);
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Two", "new", 0), 0u);
  file.params[1].value = "new";
  EXPECT_EQ(read_property(kDir), file.bytes()) << "stored slots and count included";
}

TEST_F(PropertyFileTest, LengthThatEndsInsideARecordServesTheWholeOnes) {
  PropertyFile file = many_records(1);
  file.length_word = 184 + 124 + 60;
  file.values = std::string(60, '\n') + "value\n";
  write_property(kDir, file);
  EXPECT_EQ(image_count(OpenedImage()), 1);
  GuardedBuffer value;
  EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name0", value.data(), 0), 0u);
  EXPECT_EQ(value.text(), "value") << "the values begin where the length word says";
  EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Name0", "x", 0), 0u);
  file.values = std::string(60, '\n') + "x\n";
  EXPECT_EQ(read_property(kDir), file.bytes());
}

TEST_F(PropertyFileTest, FilesOfEverySizeAreReadAndRewrittenWhole) {
  const size_t head = 4 + 184 + 100 * 124;
  for (const size_t block : {size_t{16384}, size_t{32768}}) {
    for (size_t size = block - 2; size <= block + 2; ++size) {
      PropertyFile file = many_records(100);
      size_t left = size - head - 100;  // One line feed a record.
      for (size_t i = 0; i < 100; ++i) {
        const size_t length = (left + 99 - i) / (100 - i);
        file.params[i].value = std::string(length, static_cast<char>('a' + i % 26));
        left -= length;
      }
      ASSERT_EQ(file.bytes().size(), size);
      write_property(kDir, file);
      GuardedBuffer value;
      EXPECT_EQ(zrcfg_getsingleparamval(kUrl, "Name99", value.data(), 0), 0u) << size;
      EXPECT_EQ(value.text(), file.params[99].value) << size;
      for (const char *next : {"x", "", "longer than before"}) {
        file.params[50].value = next;
        EXPECT_EQ(zrcfg_setsingleparamval(kUrl, "Name50", next, 0), 0u) << size;
        EXPECT_EQ(read_property(kDir), file.bytes()) << size;
      }
    }
  }
}

}  // namespace
}  // namespace zrcfg_test
