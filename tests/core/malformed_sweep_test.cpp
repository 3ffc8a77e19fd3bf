// Sweeps over damaged property files: every truncation, every flipped bit, random value sections
// and length words, each compared with a plain account of the rules.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/core/core_support.h"
#include "tests/core/value_model.h"

namespace zrcfg_test {
namespace {

class MalformedSweepTest : public StoreTest {
 protected:
  static PropertyFile small_file() {
    PropertyFile file = property_file({"A", "Bee"}, {"one", ""});
    file.header.max_instance = 3;
    file.header.devfunc = "func";
    return file;
  }

  void check_read(const std::string &bytes, const std::string &name) {
    const ReadOutcome expected = model_read(bytes, name);
    GuardedBuffer value;
    EXPECT_EQ(zrcfg_getsingleparamval(kUrl, name.c_str(), value.data(), ZRCFG_NO_LOCK),
              expected.result);
    if (expected.value) {
      EXPECT_EQ(value.text(), *expected.value);
      EXPECT_TRUE(value.untouched_from(expected.value->size() + 1));
    } else {
      EXPECT_TRUE(value.untouched());
    }
    EXPECT_EQ(read_property(kDir), bytes);
  }

  void check_write(const std::string &bytes, const std::string &name, const std::string &value) {
    const WriteOutcome expected = model_write(bytes, name, value);
    uint8_t changed = 77;
    EXPECT_EQ(
        zrcfg_setsingleparamval_ext(kUrl, name.c_str(), value.c_str(), ZRCFG_NO_LOCK, &changed),
        expected.result);
    EXPECT_EQ(changed, expected.changed.value_or(77));
    const std::string after = read_property(kDir);
    EXPECT_EQ(after, expected.file);
    if (after != bytes) {
      write_property(kDir, bytes);
    }
  }

  void check_old_value(const std::string &bytes, const std::string &name,
                       const std::string &value) {
    const WriteOutcome expected = model_write(bytes, name, value);
    uint8_t changed = 77;
    GuardedBuffer old;
    EXPECT_EQ(zrcfg_setsingleparamval_ext_get_old_value(kUrl, name.c_str(), value.c_str(),
                                                        ZRCFG_NO_LOCK, &changed, old.data()),
              expected.result);
    EXPECT_EQ(changed, expected.changed.value_or(77));
    EXPECT_EQ(read_property(kDir), expected.file);
    if (expected.old_value) {
      EXPECT_EQ(std::string(old.data(), expected.old_value->size()), *expected.old_value);
      EXPECT_TRUE(old.untouched_from(255));
    } else {
      EXPECT_TRUE(old.untouched());
    }
  }

  // The read and the write calls on one file, which ends as one of the writes leaves it.
  void check(const std::string &bytes) {
    write_property(kDir, bytes);
    check_read(bytes, "A");
    check_read(bytes, "Bee");
    check_write(bytes, "A", "longer");
    check_write(bytes, "Bee", "");
    check_write(bytes, "Unknown", "x");
    check_old_value(bytes, "Bee", "b");
    clear_log();
  }
};

TEST_F(MalformedSweepTest, EveryTruncationDoesWhatTheRulesSay) {
  const std::string whole = small_file().bytes();
  for (size_t size = 0; size <= whole.size(); ++size) {
    SCOPED_TRACE("cut to " + std::to_string(size));
    check(whole.substr(0, size));
    ASSERT_FALSE(HasFailure());
  }
}

TEST_F(MalformedSweepTest, EveryLengthWordAroundTheFileDoesWhatTheRulesSay) {
  PropertyFile file = small_file();
  const auto size = static_cast<uint32_t>(file.bytes().size());
  for (uint32_t length = 0; length < size + 300; ++length) {
    SCOPED_TRACE("length word " + std::to_string(length));
    file.length_word = length;
    check(file.bytes());
    ASSERT_FALSE(HasFailure());
  }
}

TEST_F(MalformedSweepTest, RandomValueSectionsDoWhatTheRulesSay) {
  std::mt19937 random(20240611);
  const std::string letters("\n\n\r\0ab", 6);
  PropertyFile file = property_file({"A", "Bee", "C"}, {"", "", ""});
  for (int round = 0; round < 400; ++round) {
    std::string section;
    for (size_t size = random() % 16; size > 0; --size) {
      section += letters[random() % letters.size()];
    }
    SCOPED_TRACE("round " + std::to_string(round));
    file.values = section;
    check(file.bytes());
    ASSERT_FALSE(HasFailure());
  }
}

TEST_F(MalformedSweepTest, RandomBytesDoWhatTheRulesSay) {
  std::mt19937 random(97);
  for (int round = 0; round < 200; ++round) {
    std::string bytes(random() % 700, '\0');
    for (char &byte : bytes) {
      byte = static_cast<char>(random());
    }
    // Half of them begin with a length word that is likely to be served.
    if (bytes.size() >= 4 && round % 2 == 0) {
      bytes.replace(0, 3, std::string("\0\0\1", 3));
    }
    SCOPED_TRACE("round " + std::to_string(round));
    check(bytes);
    ASSERT_FALSE(HasFailure());
  }
}

// One case for each bit of a byte, so that no case takes long where system calls are slow.
class FlippedBitTest : public MalformedSweepTest, public ::testing::WithParamInterface<int> {};

TEST_P(FlippedBitTest, InEveryByteDoesWhatTheRulesSay) {
  const std::string whole = small_file().bytes();
  for (size_t at = 0; at < whole.size(); ++at) {
    SCOPED_TRACE("byte " + std::to_string(at));
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ (1 << GetParam()));
    check(damaged);
    ASSERT_FALSE(HasFailure());
  }
}

INSTANTIATE_TEST_SUITE_P(Bit, FlippedBitTest, ::testing::Range(0, 8));

}  // namespace
}  // namespace zrcfg_test
