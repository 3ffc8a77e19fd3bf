// Every exported call on property files that are cut short, have a flipped bit, or are random
// bytes. What each call has to keep to is checked where they are made (fuzz/any_object.h).
//
// By default a part of the truncations and bits is taken, a different one for each file; with
// ZRCFG_ANYBYTES=all every single one.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>

#include <algorithm>
#include <random>

#include "fuzz/any_object.h"
#include "fuzz/store_file.h"
#include "tests/anybytes/any_files.h"
#include "tests/support/property_builder.h"

namespace zrcfg_test {
namespace {

// Every so many-th damage is tried by default.
constexpr size_t kSampleStep = 11;
constexpr size_t kLengthWord = 4;

size_t step() {
  const char *const wish = getenv("ZRCFG_ANYBYTES");
  return wish != nullptr && strcmp(wish, "all") == 0 ? 1 : kSampleStep;
}

class AnyBytesTest : public ::testing::TestWithParam<NamedFile> {
 protected:
  void SetUp() override {
    zrcfg_fuzz::require_private_store();
    RecordProperty("step", static_cast<int>(step()));
  }
};

void make_calls(const std::string &bytes) {
  EXPECT_GT(zrcfg_fuzz::make_every_call(bytes), 0u);
}

TEST_P(AnyBytesTest, CutAtEveryLength) {
  const std::string &whole = GetParam().bytes;
  for (size_t size = 0; size < whole.size(); size += step()) {
    make_calls(whole.substr(0, size));
  }
  make_calls(whole);
}

// One case for each bit of a byte, so that they run at the same time.
class FlippedBitTest : public ::testing::TestWithParam<std::tuple<NamedFile, int>> {};

TEST_P(FlippedBitTest, InEveryByte) {
  zrcfg_fuzz::require_private_store();
  const auto &[file, bit] = GetParam();
  for (size_t at = static_cast<size_t>(bit) * 5 % step(); at < file.bytes.size(); at += step()) {
    std::string damaged = file.bytes;
    damaged[at] = static_cast<char>(damaged[at] ^ (1 << bit));
    make_calls(damaged);
  }
}

// Behind the length word, which has cases of its own.
TEST_P(AnyBytesTest, RandomBytesInItsPlaces) {
  std::mt19937 random(20260101);
  const size_t rounds = 2000 / step();
  for (size_t round = 0; round < rounds; ++round) {
    std::string damaged = GetParam().bytes;
    for (int changes = 0; changes < 8; ++changes) {
      damaged[kLengthWord + random() % (damaged.size() - kLengthWord)] =
          static_cast<char>(random());
    }
    make_calls(damaged);
  }
}

TEST(AnyRandomBytesTest, OfAnyLength) {
  zrcfg_fuzz::require_private_store();
  std::mt19937 random(97);
  const size_t rounds = 3000 / step();
  for (size_t round = 0; round < rounds; ++round) {
    std::string bytes(random() % 900, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
    // Half of them begin with a length word that is served.
    if (bytes.size() >= kLengthWord && round % 2 == 0) {
      bytes.replace(0, 3, std::string("\0\0\1", 3));
    }
    make_calls(bytes);
  }
}

// The largest length words that are served and the smallest that are not, in a file of few bytes: a
// call may clear so much memory, and not more.
class LargeLengthWordTest : public ::testing::TestWithParam<uint32_t> {};

long resident_kilobytes() {
  rusage used = {};
  return getrusage(RUSAGE_SELF, &used) == 0 ? used.ru_maxrss : -1;
}

TEST_P(LargeLengthWordTest, NeedsMemoryWithinBounds) {
  zrcfg_fuzz::require_private_store();
  PropertyFile file = property_file({"Name", "Count"}, {"one", "2"});
  file.length_word = GetParam();
  make_calls(file.bytes());
  // A sanitizer keeps freed blocks for a while: its own bound, and four times the largest file.
  constexpr long kMostKilobytes = 900L << 10;
  EXPECT_LT(resident_kilobytes(), kMostKilobytes);
}

INSTANTIATE_TEST_SUITE_P(Words, LargeLengthWordTest,
                         ::testing::Values(0u, 1u << 16, 1u << 20, 16u << 20, (16u << 20) + 1,
                                           0x7fffffffu, 0x80000000u, 0xffffffffu));

INSTANTIATE_TEST_SUITE_P(Files, AnyBytesTest, ::testing::ValuesIn(small_files()),
                         [](const auto &row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(Files, FlippedBitTest,
                         ::testing::Combine(::testing::ValuesIn(small_files()),
                                            ::testing::Range(0, 8)),
                         [](const auto &row) {
                           return std::string(std::get<0>(row.param).name) + "Bit" +
                                  std::to_string(std::get<1>(row.param));
                         });

}  // namespace
}  // namespace zrcfg_test
