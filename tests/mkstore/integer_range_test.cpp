// Ranges of whole numbers as expressions, compared with arithmetic at every boundary.
#include "tools/mkstore/integer_range.h"

#include <gtest/gtest.h>
#include <regex.h>

#include <ostream>
#include <set>
#include <string>

namespace {

using zrcfg::mkstore::anchored_text;
using zrcfg::mkstore::integers_between;
using Number = zrcfg::mkstore::Number;

std::string decimal(Number number) {
  std::string text;
  Number rest = number < 0 ? -number : number;
  do {
    text.insert(text.begin(), static_cast<char>('0' + static_cast<int>(rest % 10)));
    rest /= 10;
  } while (rest != 0);
  return number < 0 ? "-" + text : text;
}

// A compiled expression of libc, as the device has it.
class Matcher {
 public:
  explicit Matcher(const std::string &text)
      : code_(regcomp(&expression_, text.c_str(), REG_EXTENDED | REG_NOSUB)) {
    EXPECT_EQ(code_, 0) << text;
  }
  ~Matcher() {
    if (code_ == 0) {
      regfree(&expression_);
    }
  }
  Matcher(const Matcher &) = delete;
  Matcher &operator=(const Matcher &) = delete;
  bool operator()(const std::string &value) const {
    return code_ == 0 && regexec(&expression_, value.c_str(), 0, nullptr, 0) == 0;
  }

 private:
  regex_t expression_ = {};
  int code_;
};

TEST(IntegerRangeTest, EverySmallRangeHoldsExactlyItsNumbers) {
  const int limits[] = {-1000, -999, -101, -100, -99, -12, -10, -9,  -2,  -1,  0,   1,
                        2,     9,    10,   11,   19,  99,  100, 109, 110, 999, 1000};
  for (const int low : limits) {
    for (const int high : limits) {
      if (low > high) {
        continue;
      }
      const Matcher matches(anchored_text(integers_between(low, high)));
      for (int number = -1234; number <= 1234; ++number) {
        ASSERT_EQ(matches(std::to_string(number)), number >= low && number <= high)
            << number << " in " << low << " to " << high;
      }
    }
  }
}

TEST(IntegerRangeTest, EmptyRangeMatchesNothing) {
  EXPECT_TRUE(zrcfg::mkstore::is_impossible(integers_between(3, 2)));
}

TEST(IntegerRangeTest, OnlyThePlainFormMatches) {
  const Matcher matches(anchored_text(integers_between(-20, 20)));
  for (const char *value :
       {"", "-", "+1", "01", "-01", "-0", "00", "1 ", " 1", "1.0", "0x1", "1e0"}) {
    EXPECT_FALSE(matches(value)) << value;
  }
}

struct Limits {
  const char *name;
  Number low;
  Number high;
};

void PrintTo(const Limits &limits, std::ostream *out) {
  *out << limits.name;
}

class LargeRangeTest : public testing::TestWithParam<Limits> {};

constexpr Number kTwo31 = 2147483648;
constexpr Number kTwo32 = 4294967296;
constexpr Number kTwo63 = static_cast<Number>(1) << 63;
constexpr Number kTwo64 = static_cast<Number>(1) << 64;

// Around both limits, around every power of ten and its multiples, and around every number that
// differs from a limit in one digit.
std::set<Number> interesting(const Limits &limits) {
  std::set<Number> numbers;
  const auto add = [&numbers](Number around) {
    for (int off = -2; off <= 2; ++off) {
      numbers.insert(around + off);
      numbers.insert(-around + off);
    }
  };
  Number power = 1;
  for (int digit = 0; digit < 22; ++digit) {
    for (int times = 1; times <= 9; ++times) {
      add(power * times);
      add(limits.low + power * times);
      add(limits.low - power * times);
      add(limits.high + power * times);
      add(limits.high - power * times);
    }
    power *= 10;
  }
  add(limits.low);
  add(limits.high);
  return numbers;
}

TEST_P(LargeRangeTest, HoldsExactlyItsNumbers) {
  const Limits &limits = GetParam();
  const std::string text = anchored_text(integers_between(limits.low, limits.high));
  EXPECT_LE(text.size(), 1023u);
  const Matcher matches(text);
  for (const Number number : interesting(limits)) {
    EXPECT_EQ(matches(decimal(number)), number >= limits.low && number <= limits.high)
        << decimal(number) << " by " << text;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Types, LargeRangeTest,
    testing::Values(Limits{"int", -kTwo31, kTwo31 - 1}, Limits{"unsignedInt", 0, kTwo32 - 1},
                    Limits{"long", -kTwo63, kTwo63 - 1}, Limits{"unsignedLong", 0, kTwo64 - 1},
                    Limits{"intFromMinusOne", -1, kTwo31 - 1}, Limits{"fromOne", 1, kTwo32 - 1},
                    Limits{"port", 0, 65535}, Limits{"vlan", 1, 4094}, Limits{"mtu", 64, 1540},
                    Limits{"degrees", -180000000, 180000000}, Limits{"uneven", -5000000, 25000000},
                    Limits{"below", -274, kTwo31 - 1}, Limits{"negative", -127000, -5},
                    Limits{"timer", 120, 86400}));

}  // namespace
