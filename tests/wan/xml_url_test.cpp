// Tests of a URL with its instance numbers taken out.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "zrcfg.h"

namespace zrcfg_test {
namespace {

// Transforms into a record of marks; every byte must be written.
instanceStack transform(const std::string &url, char mark) {
  instanceStack stack;
  memset(static_cast<void *>(&stack), mark, sizeof stack);
  EXPECT_EQ(xmlurl_transform(url.c_str(), &stack), 0) << url;
  return stack;
}

std::string repeated(const std::string &text, size_t times) {
  std::string all;
  for (size_t i = 0; i < times; ++i) {
    all += text;
  }
  return all;
}

void expect_stack(const std::string &url, const std::vector<uint32_t> &numbers, uint32_t depth,
                  const std::string &path) {
  instanceStack expected = {};
  expected.depth = depth;
  for (size_t i = 0; i < numbers.size(); ++i) {
    expected.index[i] = numbers[i];
  }
  memcpy(expected.objpathinxml, path.data(), path.size());
  for (const char mark : {'\0', '\xff'}) {
    const instanceStack stack = transform(url, mark);
    EXPECT_EQ(stack.depth, depth) << url;
    EXPECT_STREQ(stack.objpathinxml, path.c_str()) << url;
    EXPECT_EQ(memcmp(&stack, &expected, sizeof stack), 0) << url;
  }
}

struct UrlRow {
  const char *name;
  const char *url;
  std::vector<uint32_t> numbers;
  uint32_t depth;
  const char *path;
};

class XmlUrlTest : public ::testing::TestWithParam<UrlRow> {};

TEST_P(XmlUrlTest, GivesNumbersDepthAndTemplate) {
  const UrlRow &row = GetParam();
  expect_stack(row.url, row.numbers, row.depth, row.path);
}

const UrlRow kRows[] = {
    {"Connection",
     "InternetGatewayDevice.WANDevice.7.WANConnectionDevice.2.WANPPPConnection.1.",
     {7, 2, 1},
     3,
     "InternetGatewayDevice.WANDevice.x.WANConnectionDevice.x.WANPPPConnection.x."},
    {"WithoutFinalDot", "A.1.B.2", {1, 2}, 2, "A.x.B.x."},
    {"NoNumbers", "A.B.C.", {}, 0, "A.B.C."},
    {"Empty", "", {}, 0, ""},
    {"OneDot", ".", {}, 0, ""},
    {"DotsOnly", ".....", {}, 0, ""},
    {"EmptyComponentsVanish", "..A...1..B.", {1}, 1, "A.x.B."},
    {"LeadingNumberIsText", "1.2.3.", {2, 3}, 2, "1.x.x."},
    {"LeadingNumberBehindDots", "..1.2.", {2}, 1, "1.x."},
    {"SingleNumber", "12", {}, 0, "12."},
    {"FourNumbers", "A.1.2.3.4.", {1, 2, 3, 4}, 4, "A.x.x.x.x."},
    {"FifthNumberCountsOnly", "A.1.2.3.4.5.6.", {1, 2, 3, 4}, 6, "A.x.x.x.x.x.x."},
    {"Zero", "A.0.00.B.", {0, 0}, 2, "A.x.x.B."},
    {"LeadingZeros", "A.007.", {7}, 1, "A.x."},
    {"OtherThanDigits", "A.1a.a1.-1.+1. 1.1 .0x1.1,2.", {}, 0, "A.1a.a1.-1.+1. 1.1 .0x1.1,2."},
    {"LargestNumber", "A.2147483647.", {2147483647u}, 1, "A.x."},
    {"SaturatedNumbers",
     "A.2147483648.4294967295.99999999999999999999.",
     {2147483647u, 2147483647u, 2147483647u},
     3,
     "A.x.x.x."},
    {"TenComponents", "A.b.1.c.d.2.e.f.g.3.", {1, 2, 3}, 3, "A.b.x.c.d.x.e.f.g.x."},
    {"EleventhComponentIsDropped",
     "A.b.1.c.d.2.e.f.g.3.4.h.",
     {1, 2, 3},
     3,
     "A.b.x.c.d.x.e.f.g.x."},
    {"NumbersBehindTheTenthDoNotCount",
     "A.b.c.d.e.f.g.h.i.j.1.2.3.",
     {},
     0,
     "A.b.c.d.e.f.g.h.i.j."},
    {"EmptyComponentsAreNoneOfTheTen",
     "A..b..c..d..e..f..g..h..1..2..3.",
     {1, 2},
     2,
     "A.b.c.d.e.f.g.h.x.x."},
    {"ComponentX", "A.x.1.", {1}, 1, "A.x.x."},
};

INSTANTIATE_TEST_SUITE_P(Urls, XmlUrlTest, ::testing::ValuesIn(kRows),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(XmlUrlLimitsTest, TemplateIsCutAt127Characters) {
  for (const size_t length : {126u, 127u, 128u, 129u, 200u, 254u, 255u}) {
    // One component of all characters but the final dot.
    const std::string url = std::string(length - 1, 'n') + ".";
    expect_stack(url, {}, 0, url.substr(0, 127));
  }
  const std::string front(124, 'n');
  expect_stack(front + ".1.", {1}, 1, front + ".x.");
  expect_stack(front + ".1.2.", {1, 2}, 2, front + ".x.");
  expect_stack("n" + front + ".1.", {1}, 1, "n" + front + ".x");
  expect_stack("nn" + front + ".1.", {1}, 1, "nn" + front + ".");
  expect_stack("nnn" + front + ".1.B.2.", {1, 2}, 2, "nnn" + front);
}

// What becomes of the rest of a URL that is no URL any more is open; its beginning is kept.
TEST(XmlUrlLimitsTest, UrlBeyondAllLimitsIsNoCrash) {
  for (const size_t length : {255u, 256u, 257u, 1000u, 100000u}) {
    const instanceStack one = transform(std::string(length, 'n'), '\xff');
    EXPECT_EQ(std::string(one.objpathinxml), std::string(127, 'n'));
    const instanceStack many = transform(repeated("1.", length), '\xff');
    EXPECT_EQ(many.depth, 9u);
    EXPECT_STREQ(many.objpathinxml, "1.x.x.x.x.x.x.x.x.x.");
    const instanceStack dots = transform(std::string(length, '.') + "A.1.", '\xff');
    EXPECT_LE(dots.depth, 1u);
  }
}

TEST(XmlUrlLimitsTest, UrlIsNotModified) {
  std::string url = "A.1.B.2.";
  instanceStack stack;
  EXPECT_EQ(xmlurl_transform(url.c_str(), &stack), 0);
  EXPECT_EQ(url, "A.1.B.2.");
}

TEST(XmlUrlLimitsTest, NullGivesMinus1) {
  instanceStack stack;
  EXPECT_EQ(xmlurl_transform(nullptr, &stack), -1);
  EXPECT_EQ(xmlurl_transform("A.1.", nullptr), -1);
  EXPECT_EQ(xmlurl_transform(nullptr, nullptr), -1);
}

}  // namespace
}  // namespace zrcfg_test
