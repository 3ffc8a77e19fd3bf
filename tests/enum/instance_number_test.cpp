// Tests of the instance numbers that a URL carries.
#include <gmock/gmock.h>

#include <array>
#include <ostream>
#include <string>
#include <vector>

#include "tests/enum/enum_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr uint32_t kMark = 0x5a5a5a5a;
constexpr size_t kWords = 9;  // A count and eight numbers.

// The words that a call fills, between guards.
class Numbers {
 public:
  Numbers() { words_.fill(kMark); }
  uint32_t *data() { return words_.data() + kGuard; }

  // The numbers that the count word tells of; the rest of the nine words must be 0.
  std::vector<uint32_t> read(uint32_t result) const {
    const uint32_t *const first = words_.data() + kGuard;
    EXPECT_EQ(first[0], result) << "word 0 is the count";
    EXPECT_LE(first[0], kWords - 1);
    std::vector<uint32_t> numbers;
    for (uint32_t i = 1; i < kWords; ++i) {
      if (i <= first[0]) {
        numbers.push_back(first[i]);
      } else {
        EXPECT_EQ(first[i], 0u) << "word " << i;
      }
    }
    return numbers;
  }

  bool guards_kept() const {
    for (size_t i = 0; i < words_.size(); ++i) {
      if ((i < kGuard || i >= kGuard + kWords) && words_[i] != kMark) {
        return false;
      }
    }
    return true;
  }
  bool untouched() const {
    return words_ == [] {
      std::array<uint32_t, kWords + 2 * kGuard> marked;
      marked.fill(kMark);
      return marked;
    }();
  }

 private:
  static constexpr size_t kGuard = 64;
  std::array<uint32_t, kWords + 2 * kGuard> words_;
};

struct UrlNumbers {
  std::string url;
  std::vector<uint32_t> numbers;
};

void PrintTo(const UrlNumbers &row, std::ostream *out) {
  *out << row.url;
}

class InstanceNumberTest : public EnumTest {};
class UrlNumbersTest : public EnumTest, public ::testing::WithParamInterface<UrlNumbers> {};

TEST_P(UrlNumbersTest, AreTakenInTheirOrder) {
  Numbers words;
  const uint32_t result = zrcfg_getobjidbyobjpath(GetParam().url.c_str(), words.data());
  EXPECT_EQ(words.read(result), GetParam().numbers);
  EXPECT_TRUE(words.guards_kept());
  EXPECT_THAT(enum_log(), ElementsAre("obj_path=" + GetParam().url + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Urls, UrlNumbersTest,
    ::testing::Values(
        UrlNumbers{"InternetGatewayDevice.WANDevice.1.WANConnectionDevice.2.WANIPConnection.3.",
                   {1, 2, 3}},
        UrlNumbers{"InternetGatewayDevice.", {}}, UrlNumbers{"A.1.", {1}},
        UrlNumbers{"A.0.B.0.", {0, 0}}, UrlNumbers{"A.007.B.10.", {7, 10}},
        UrlNumbers{"A.1.2.3.", {1, 2, 3}}, UrlNumbers{"A.9999999.", {9999999}}));
INSTANTIATE_TEST_SUITE_P(OpenNumberAtTheEndIsDropped, UrlNumbersTest,
                         ::testing::Values(UrlNumbers{"A.1.B.2", {1}}, UrlNumbers{"A.1", {}},
                                           UrlNumbers{"A.12345", {}}, UrlNumbers{"A.1.2", {1}}));
INSTANTIATE_TEST_SUITE_P(
    OddTexts, UrlNumbersTest,
    ::testing::Values(UrlNumbers{"a.12b.c", {12}}, UrlNumbers{"a.b12.c.", {}},
                      UrlNumbers{"a.1b2.c.", {1}}, UrlNumbers{"a.12 34.", {12}}, UrlNumbers{"", {}},
                      UrlNumbers{".", {}}, UrlNumbers{"...", {}}, UrlNumbers{".5.", {5}},
                      UrlNumbers{"5.6.", {6}}, UrlNumbers{"7.", {}}, UrlNumbers{"77.", {}},
                      UrlNumbers{"1", {}}, UrlNumbers{"a.-3.", {}}, UrlNumbers{"a.+3.", {}},
                      UrlNumbers{"a..4..", {4}}, UrlNumbers{"A/1/B/2/", {}},
                      UrlNumbers{"A.1/B.2/", {1, 2}}, UrlNumbers{"A.3\xc3\xa4.", {3}},
                      UrlNumbers{"A.{i}.B.2.", {2}}, UrlNumbers{"A.0x10.", {0}}));
INSTANTIATE_TEST_SUITE_P(
    AtMostEight, UrlNumbersTest,
    ::testing::Values(UrlNumbers{"A.1.2.3.4.5.6.7.8.", {1, 2, 3, 4, 5, 6, 7, 8}},
                      UrlNumbers{"A.1.2.3.4.5.6.7.8.9.", {1, 2, 3, 4, 5, 6, 7, 8}},
                      UrlNumbers{"A.1.B.2.C.3.D.4.E.5.F.6.G.7.H.8.I.9.J.10.K.11.",
                                 {1, 2, 3, 4, 5, 6, 7, 8}}));
INSTANTIATE_TEST_SUITE_P(
    AtMostSevenDigits, UrlNumbersTest,
    ::testing::Values(UrlNumbers{"A.12345678.", {1234567}}, UrlNumbers{"A.00000012.", {1}},
                      UrlNumbers{"A.99999999999999999999.B.2.", {9999999, 2}}));

TEST_F(InstanceNumberTest, EveryTextUpTo255CharactersStaysInNineWords) {
  for (size_t levels = 1; levels <= 126; ++levels) {
    std::string url = "A.";
    for (size_t i = 0; i < levels; ++i) {
      url += std::to_string(i % 10) + ".";
    }
    Numbers words;
    const uint32_t result = zrcfg_getobjidbyobjpath(url.c_str(), words.data());
    EXPECT_EQ(words.read(result).size(), std::min<size_t>(levels, 8)) << url;
    EXPECT_TRUE(words.guards_kept()) << url;
  }
}

TEST_F(InstanceNumberTest, NumberEndedByTheLastOf255CharactersCounts) {
  const std::string stem(252, 'x');
  Numbers words;
  EXPECT_THAT(words.read(zrcfg_getobjidbyobjpath((stem + ".4.").c_str(), words.data())),
              ElementsAre(4u));
}

TEST_F(InstanceNumberTest, LongerTextsAreCutAndHarmless) {
  for (const size_t length : {256u, 257u, 1000u, 100000u}) {
    Numbers words;
    const std::string url = "A.6." + std::string(length, 'x') + ".9.";
    EXPECT_THAT(words.read(zrcfg_getobjidbyobjpath(url.c_str(), words.data())), ElementsAre(6u));
    EXPECT_TRUE(words.guards_kept());
    Numbers digits;
    const std::string number = "A." + std::string(length, '1') + ".";
    const std::vector<uint32_t> taken =
        digits.read(zrcfg_getobjidbyobjpath(number.c_str(), digits.data()));
    EXPECT_LE(taken.size(), 1u);
    EXPECT_TRUE(digits.guards_kept());
  }
}

TEST_F(InstanceNumberTest, CallersTextIsNotChanged) {
  char url[] = "A.1.B.2.";
  Numbers words;
  EXPECT_EQ(zrcfg_getobjidbyobjpath(url, words.data()), 2u);
  EXPECT_STREQ(url, "A.1.B.2.");
}

TEST_F(InstanceNumberTest, NullArgumentsWriteNothing) {
  Numbers words;
  (void)zrcfg_getobjidbyobjpath(nullptr, words.data());
  EXPECT_TRUE(words.untouched());
  clear_log();
  (void)zrcfg_getobjidbyobjpath("A.1.", nullptr);
  EXPECT_THAT(enum_log(), ElementsAre("obj_path=A.1.\n")) << "logged before the test for null";
}

}  // namespace
}  // namespace zrcfg_test
