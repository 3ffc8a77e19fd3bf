// Tests of what is done with property files that no writer of the store produces.
#include <gmock/gmock.h>
#include <sys/file.h>

#include <string>

#include "tests/core/core_support.h"

namespace zrcfg_test {
namespace {

class MalformedTest : public StoreTest {
 protected:
  // The result of opening the object under a lock, which must be free again after a failure.
  static uint32_t open_result(const std::string &bytes) {
    write_property(kDir, bytes);
    int marker = 0;
    ZrcfgObject *image = &marker;
    int lock_fd = -1;
    const uint32_t result = createObjByPath(&image, kDir, &lock_fd, 1, 0);
    if (result == 0) {
      EXPECT_EQ(destroyObj(image, lock_fd), 0u);
    } else {
      EXPECT_EQ(image, &marker) << "the image pointer is not written";
      EXPECT_TRUE(can_lock(kFile, LOCK_EX)) << "the lock is released";
    }
    return result;
  }

  uint32_t get(const char *name) {
    value_ = GuardedBuffer();
    return zrcfg_getsingleparamval(kUrl, name, value_.data(), 0);
  }
  uint32_t set(const char *name, const std::string &value) {
    return zrcfg_setsingleparamval(kUrl, name, value.c_str(), 0);
  }

  static PropertyFile with_length(uint32_t length) {
    PropertyFile file = property_file({"A"}, {"value"});
    file.length_word = length;
    return file;
  }

  static PropertyFile with_values(size_t records, const std::string &values) {
    PropertyFile file;
    for (size_t i = 0; i < records; ++i) {
      file.add(std::string(1, static_cast<char>('A' + i)), "");
    }
    file.values = values;
    return file;
  }

  GuardedBuffer value_;
};

TEST_F(MalformedTest, MissingLengthWordIsRefusedWith10) {
  for (size_t size = 0; size < 4; ++size) {
    EXPECT_EQ(open_result(std::string(size, '\0')), 10u) << size;
    EXPECT_EQ(get("A"), 10u) << size;
    EXPECT_EQ(set("A", "x"), 10u) << size;
    EXPECT_EQ(read_property(kDir), std::string(size, '\0')) << "nothing is written";
  }
  EXPECT_TRUE(value_.untouched());
}

TEST_F(MalformedTest, LengthWordBelow184IsRefusedWith10) {
  for (const uint32_t length : {0u, 1u, 4u, 60u, 124u, 183u}) {
    EXPECT_EQ(open_result(with_length(length).bytes()), 10u) << length;
    EXPECT_EQ(get("A"), 10u) << length;
    EXPECT_EQ(set("A", "x"), 10u) << length;
    EXPECT_EQ(read_property(kDir), with_length(length).bytes());
  }
  EXPECT_EQ(open_result(with_length(184).bytes()), 0u);
}

TEST_F(MalformedTest, LengthWordAbove16MiBIsRefusedWith10) {
  for (const uint32_t length : {(16u << 20) + 1, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
    EXPECT_EQ(open_result(with_length(length).bytes()), 10u) << length;
    EXPECT_EQ(get("A"), 10u) << length;
    EXPECT_EQ(set("A", "x"), 10u) << length;
    EXPECT_EQ(read_property(kDir), with_length(length).bytes());
  }
  EXPECT_EQ(open_result(with_length(16u << 20).bytes()), 0u);
}

TEST_F(MalformedTest, RefusalOfAMalformedFileIsLoggedByTheFrame) {
  write_property(kDir, with_length(7));
  EXPECT_EQ(get("A"), 10u);
  EXPECT_TRUE(log_contains("createObjByPath() fail ret=10!\n"));
}

TEST_F(MalformedTest, LengthWordBeyondTheFileReadsMissingBytesAsZero) {
  PropertyFile file;
  file.add("First", "");
  file.length_word = 184 + 3 * 124;
  const std::string bytes = file.head_bytes();
  ASSERT_EQ(open_result(bytes), 0u);
  const OpenedImage image;
  EXPECT_EQ(image.bytes(4, 1), std::string(1, '\3'));
  EXPECT_EQ(image.bytes(184, 120), bytes.substr(188, 120));
  EXPECT_EQ(image.bytes(184 + 124, 120), std::string(120, '\0'));
  EXPECT_EQ(image.bytes(184 + 248, 120), std::string(120, '\0'));
  EXPECT_EQ(image.bytes(184 + 372, sizeof kDir), std::string(kDir, sizeof kDir));
}

TEST_F(MalformedTest, ValuesOfAFileShorterThanItsLengthFailWith10) {
  PropertyFile file = with_length(184 + 3 * 124);
  write_property(kDir, file);
  EXPECT_EQ(get("A"), 10u);
  EXPECT_TRUE(log_contains("i=0 err!\n"));
  EXPECT_EQ(set("A", "x"), 10u);
  EXPECT_EQ(read_property(kDir), file.bytes());
}

TEST_F(MalformedTest, DirectoryInThePlaceOfTheFileIsRefused) {
  make_store_dir(kFile);
  EXPECT_EQ(get("A"), 10u);
  EXPECT_EQ(set("A", "x"), 10u);
}

TEST_F(MalformedTest, NameWithoutTerminatorEndsAtItsField) {
  const std::string name(64, 'n');
  PropertyFile file = property_file({name, "B"}, {"one", "two"});
  file.params[0].accesslist = "list";
  write_property(kDir, file);
  EXPECT_EQ(get(name.c_str()), 0u);
  EXPECT_EQ(value_.text(), "one");
  EXPECT_EQ(get((name + "list").c_str()), 0u);
  EXPECT_TRUE(value_.untouched());
  EXPECT_EQ(get(name.substr(1).c_str()), 0u);
  EXPECT_TRUE(value_.untouched());
  EXPECT_EQ(set(name.c_str(), "new"), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), "new\ntwo\n");
  EXPECT_EQ(set((name + "list").c_str(), "x"), 5u);
}

TEST_F(MalformedTest, NameWithoutTerminatorInTheLastBytesOfTheImageIsSafe) {
  PropertyFile file = property_file({std::string(64, 'n')}, {"one"});
  file.params[0].accesslist = std::string(16, 'l');
  file.params[0].area = std::string(28, 'a');
  file.params[0].param_check = 0xffffffff;
  file.params[0].next_slot = 0xffffffff;
  write_property(kDir, file);
  EXPECT_EQ(get("n"), 0u);
  EXPECT_TRUE(value_.untouched());
  EXPECT_EQ(set("n", "x"), 5u);
}

TEST_F(MalformedTest, StoredLineOver255IsHandedOutCut) {
  const std::string line = std::string(255, 'x') + "tail beyond";
  write_property(kDir, with_values(2, "a\n" + line + "\n"));
  EXPECT_EQ(get("B"), 0u);
  EXPECT_EQ(value_.text(), std::string(255, 'x'));
  EXPECT_TRUE(value_.untouched_from(256));
}

TEST_F(MalformedTest, StoredLineOver255IsCopiedUnchangedByAWriteOfAnother) {
  const std::string line(300, 'x');
  write_property(kDir, with_values(2, "a\n" + line + "\n"));
  EXPECT_EQ(set("A", "new"), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), "new\n" + line + "\n");
}

TEST_F(MalformedTest, StoredLineOver255CanBeReplaced) {
  write_property(kDir, with_values(1, std::string(5000, 'x') + "\n"));
  GuardedBuffer old;
  uint8_t changed = 77;
  EXPECT_EQ(zrcfg_setsingleparamval_ext_get_old_value(kUrl, "A", "new", 0, &changed, old.data()),
            0u);
  EXPECT_EQ(changed, 1);
  EXPECT_EQ(std::string(old.data(), 255), std::string(255, 'x'));
  EXPECT_TRUE(old.untouched_from(255));
  EXPECT_EQ(value_section(read_property(kDir)), "new\n");
}

TEST_F(MalformedTest, CutValueIsNotTheSameAsTheStoredLine) {
  write_property(kDir, with_values(2, std::string(256, 'x') + "\nb\n"));
  EXPECT_EQ(set("A", std::string(255, 'x')), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), std::string(255, 'x') + "\nb\n");
}

TEST_F(MalformedTest, SectionThatJustFitsItsBufferIsWritten) {
  const std::string line(300, 'x');
  write_property(kDir, with_values(2, "a\n" + line + "\n"));
  const std::string value(512 - 301 - 1, 'v');
  EXPECT_EQ(set("A", value), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), value + "\n" + line + "\n");
}

TEST_F(MalformedTest, SectionThatDoesNotFitItsBufferGives15AndIsNotWritten) {
  const std::string line(300, 'x');
  const PropertyFile file = with_values(2, "a\n" + line + "\n");
  write_property(kDir, file);
  EXPECT_EQ(set("A", std::string(512 - 301, 'v')), 15u);
  EXPECT_TRUE(log_contains("setSingleParamValueByParamName() fail ret=15!\n"));
  EXPECT_EQ(read_property(kDir), file.bytes());
}

TEST_F(MalformedTest, VeryLongLinesGive15) {
  const PropertyFile file = with_values(3, "a\nb\n" + std::string(100000, 'x') + "\n");
  write_property(kDir, file);
  EXPECT_EQ(set("A", "new"), 15u);
  EXPECT_EQ(read_property(kDir), file.bytes());
  EXPECT_EQ(get("C"), 0u);
  EXPECT_EQ(value_.text(), std::string(255, 'x'));
}

TEST_F(MalformedTest, NulByteEndsTheSectionForReaders) {
  write_property(kDir, with_values(3, std::string("a\nb\0b\nc\n", 8)));
  EXPECT_EQ(get("A"), 0u);
  EXPECT_EQ(value_.text(), "a");
  EXPECT_EQ(get("B"), 0u);
  EXPECT_EQ(value_.text(), "b");
  EXPECT_EQ(get("C"), 10u);
  EXPECT_TRUE(value_.untouched());
}

TEST_F(MalformedTest, NulByteEndsTheSectionForWriters) {
  const PropertyFile file = with_values(3, std::string("a\nb\0b\nc\n", 8));
  write_property(kDir, file);
  EXPECT_EQ(set("C", "new"), 5u);
  EXPECT_EQ(read_property(kDir), file.bytes());
  EXPECT_EQ(set("A", "new"), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), "new\nb\n");
  write_property(kDir, with_values(1, std::string("\0a\n", 3)));
  EXPECT_EQ(set("A", "new"), 10u);
}

TEST_F(MalformedTest, LongTailBehindTheLinesIsCutOffByAWrite) {
  write_property(kDir, with_values(1, "a\n" + std::string(20000, '\n') + std::string(9, '\0')));
  EXPECT_EQ(set("A", "b"), 0u);
  EXPECT_EQ(value_section(read_property(kDir)), "b\n");
}

// The low byte of the count is what is served, so a write could not keep the values of the rest.
TEST_F(MalformedTest, FileOf257RecordsServesOneAndRefusesToWriteIt) {
  PropertyFile file;
  for (int i = 0; i < 257; ++i) {
    file.add("Name" + std::to_string(i), "v" + std::to_string(i));
  }
  write_property(kDir, file);
  EXPECT_EQ(get("Name0"), 0u);
  EXPECT_EQ(value_.text(), "v0");
  EXPECT_EQ(get("Name1"), 0u);
  EXPECT_TRUE(value_.untouched());
  EXPECT_EQ(set("Name0", "new"), 10u);
  EXPECT_EQ(read_property(kDir), file.bytes());
}

TEST_F(MalformedTest, FileOf511RecordsServes255AndRefusesToWriteThem) {
  PropertyFile file;
  for (int i = 0; i < 511; ++i) {
    file.add("Name" + std::to_string(i), "v" + std::to_string(i));
  }
  write_property(kDir, file);
  EXPECT_EQ(get("Name254"), 0u);
  EXPECT_EQ(value_.text(), "v254");
  EXPECT_EQ(get("Name255"), 0u);
  EXPECT_TRUE(value_.untouched());
  EXPECT_EQ(set("Name254", "new"), 10u);
  EXPECT_EQ(read_property(kDir), file.bytes());
}

TEST_F(MalformedTest, StoredSlotsAndCountsAreNotTrusted) {
  PropertyFile file = property_file({"A", "B"}, {"one", "two"});
  file.header.param_num = 200;
  file.header.url_slot = 0xffffffff;
  file.header.param_list_slot = 0xffffffff;
  file.params[0].next_slot = 0xffffffff;
  file.params[1].next_slot = 0x12345678;
  write_property(kDir, file);
  EXPECT_EQ(get("B"), 0u);
  EXPECT_EQ(value_.text(), "two");
  EXPECT_EQ(get("C"), 0u);
  EXPECT_TRUE(value_.untouched());
  EXPECT_EQ(set("B", "2"), 0u);
  file.params[1].value = "2";
  EXPECT_EQ(read_property(kDir), file.bytes());
}

}  // namespace
}  // namespace zrcfg_test
