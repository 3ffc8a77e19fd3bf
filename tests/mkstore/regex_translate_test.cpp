// The document's expressions translated for libc: what each must accept and refuse.
#include "tools/mkstore/regex_translate.h"

#include <gtest/gtest.h>
#include <regex.h>

#include <ostream>
#include <string>
#include <vector>

#include "tests/mkstore/build_run.h"

namespace {

struct Case {
  const char *pattern;
  std::vector<std::string> accepted;
  std::vector<std::string> refused;
};

void PrintTo(const Case &given, std::ostream *out) {
  *out << case_title(given.pattern);
}

class RegexTranslateTest : public testing::TestWithParam<Case> {};

TEST_P(RegexTranslateTest, AcceptsAndRefuses) {
  const Case &given = GetParam();
  const auto translated = zrcfg::mkstore::translate_regex(given.pattern);
  ASSERT_TRUE(translated.has_value());
  const std::string text = zrcfg::mkstore::anchored_text(*translated);
  regex_t expression;
  ASSERT_EQ(regcomp(&expression, text.c_str(), REG_EXTENDED | REG_NOSUB), 0) << text;
  const auto matches = [&expression](const std::string &value) {
    return regexec(&expression, value.c_str(), 0, nullptr, 0) == 0;
  };
  for (const std::string &value : given.accepted) {
    EXPECT_TRUE(matches(value)) << "\"" << value << "\" by " << text;
  }
  for (const std::string &value : given.refused) {
    EXPECT_FALSE(matches(value)) << "\"" << value << "\" by " << text;
  }
  for (const std::string &value : given.accepted) {
    EXPECT_FALSE(matches(value + "\n")) << "a line feed by " << text;
  }
  regfree(&expression);
}

// Every pattern of TR-098 1.8 and TR-181 2.11.
INSTANTIATE_TEST_SUITE_P(
    Documents, RegexTranslateTest,
    testing::Values(
        Case{"", {""}, {"a", " "}},
        Case{
            "([0-9A-Fa-f][0-9A-Fa-f]:){5}([0-9A-Fa-f][0-9A-Fa-f])",
            {"00:11:22:33:44:55", "aB:Cd:EF:09:9f:FF"},
            {"", "00:11:22:33:44", "00:11:22:33:44:5", "00:11:22:33:44:555", "00:11:22:33:44:55:66",
             "00-11-22-33-44-55", "0g:11:22:33:44:55", " 00:11:22:33:44:55"}},
        Case{"[A-Fa-f0-9]{8}-[A-Fa-f0-9]{4}-[A-Fa-f0-9]{4}-[A-Fa-f0-9]{4}-[A-Fa-f0-9]{12}",
             {"01234567-89ab-cdef-0123-456789ABCDEF"},
             {"01234567-89ab-cdef-0123-456789ABCDE", "0123456-789ab-cdef-0123-456789ABCDEF",
              "01234567-89ab-cdef-0123-456789ABCDEFa", "g1234567-89ab-cdef-0123-456789ABCDEF", ""}},
        Case{"[0-9A-F]{6}", {"00A0C9", "ABCDEF"}, {"", "00A0C", "00A0C90", "00a0c9", "00A0CG"}},
        Case{"1 Firmware Upgrade Image",
             {"1 Firmware Upgrade Image"},
             {"1 Firmware Upgrade Imag", "1 Firmware Upgrade Image ", "",
              "1Firmware Upgrade Image"}},
        Case{"2 Web Content", {"2 Web Content"}, {"2 web Content", "1 Web Content", ""}},
        Case{"3 Vendor Configuration File",
             {"3 Vendor Configuration File"},
             {"3 Vendor Configuration Files", "3  Vendor Configuration File"}},
        Case{"4 Vendor Log File", {"4 Vendor Log File"}, {"4 Vendor Log", "44 Vendor Log File"}},
        Case{"X [0-9A-F]{6} .*",
             {"X 00A0C9 ", "X 00A0C9 own file", "X 00A0C9 \xc3\xa4 | ( ] ^ $"},
             {"X 00A0C9", "X 00A0C9own", "x 00A0C9 own", "X 00a0c9 own", "X 00A0C9 a\tb"}},
        Case{"[0-9A-Fa-f]{8}-([0-9A-Fa-f]{4}-){3}[0-9A-Fa-f]{12}",
             {"01234567-89ab-cdef-0123-456789ABCDEF"},
             {"01234567-89ab-cdef-456789ABCDEF", "01234567-89ab-cdef-0123-0123-456789ABCDEF", ""}},
        Case{"Null", {"Null"}, {"null", "Nul", "Nulll", ""}},
        Case{"Drop", {"Drop"}, {"drop", "Dro", "Drop ", ""}},
        Case{"Count", {"Count"}, {"Counts", "count", ""}},
        Case{"[0-9]|[1-5][0-9]|6[0-3]",
             {"0", "9", "10", "59", "60", "63"},
             {"", "64", "65", "70", "00", "100", "-1"}},
        Case{":[0-7]", {":0", ":7"}, {"", ":", ":8", "7", "1:7"}},
        Case{"([0-9]|[1-5][0-9]|6[0-3]):[0-7]",
             {"0:0", "63:7", "12:3"},
             {"64:0", "63:8", "63", ":7", "63:", ""}},
        Case{"\\d+\\.\\d+", {"1.0", "10.25"}, {"", "1", "1.", ".1", "1x0", "1.0.0", "d+.d+"}},
        Case{"([0-9A-Fa-f][0-9A-Fa-f]:){7}([0-9A-Fa-f][0-9A-Fa-f])",
             {"00:11:22:33:44:55:66:77"},
             {"00:11:22:33:44:55", "00:11:22:33:44:55:66", "00:11:22:33:44:55:66:7z", ""}},
        Case{
            "((25[0-5]|2[0-4][0-9]|[01]?[0-9]?[0-9])\\.){3}(25[0-5]|2[0-4][0-9]|[01]?[0-9]?[0-9])",
            {"0.0.0.0", "255.255.255.255", "192.168.1.1", "010.001.099.249"},
            {"", "256.0.0.0", "1.2.3", "1.2.3.4.5", "1.2.3.260", "1.2.3.", "1,2,3,4", "1.2.3.4/5"}},
        Case{"/(3[0-2]|[012]?[0-9])",
             {"/0", "/9", "/24", "/32", "/00"},
             {"", "/", "/33", "/40", "24", "/240"}},
        Case{"((25[0-5]|2[0-4][0-9]|[01]?[0-9]?[0-9])\\.){3}(25[0-5]|2[0-4][0-9]|[01]?[0-9]?[0-9])/"
             "(3[0-2]|[012]?[0-9])",
             {"10.0.0.0/8", "255.255.255.255/32"},
             {"10.0.0.0", "10.0.0.0/33", "10.0.0/8", ""}},
        Case{"([0-9A-Fa-f]){4}", {"0aF9"}, {"0aF", "0aF99", "0aFg", ""}},
        Case{"2\\.\\d+", {"2.0", "2.11"}, {"2", "2.", "1.11", "211", "2.x", ""}},
        Case{"[0-9]{15,15}", {"123456789012345"}, {"12345678901234", "1234567890123456", ""}},
        Case{"[0-9]{14,15}",
             {"12345678901234", "123456789012345"},
             {"1234567890123", "1234567890123456", "1234567890123x"}},
        Case{"[0-9]{6,20}",
             {"123456", "12345678901234567890"},
             {"12345", "123456789012345678901", "12345a"}},
        Case{"\\d+/\\d+", {"0/0", "12/34"}, {"/", "1/", "/1", "1/2/3", ""}},
        Case{"\\d+(\\.\\d+)*", {"1", "1.2", "10.20.30"}, {"", "1.", ".1", "1..2", "1.a"}},
        Case{"\\d+", {"0", "0123456789"}, {"", "-1", "1 ", "a", "d"}},
        Case{"[A-Z][A-Z][ OI]", {"DE ", "DEO", "DEI"}, {"DE", "deI", "DEA", "D E", ""}},
        Case{"\\d{4}|\\d{8}", {"1234", "12345678"}, {"123", "12345", "1234567", "123456789", ""}},
        Case{"([0-7],){15}[0-7]",
             {"0,1,2,3,4,5,6,7,0,1,2,3,4,5,6,7"},
             {"0,1,2,3,4,5,6,7,0,1,2,3,4,5,6", "0,1,2,3,4,5,6,7,0,1,2,3,4,5,6,8",
              "0,1,2,3,4,5,6,7,0,1,2,3,4,5,6,7,", ""}},
        Case{"([0-7],[0-1],){7}[0-7],[0-1]",
             {"0,0,1,1,2,0,3,1,4,0,5,1,6,0,7,1"},
             {"0,0,1,1,2,0,3,1,4,0,5,1,6,0,7,2", "0,0,1,1,2,0,3,1,4,0,5,1,6,0,7", ""}},
        Case{"([0-9]{1,15}?[BKMGT])",
             {"0B", "123456789012345T", "10K"},
             {"", "B", "1", "1k", "1234567890123456G", "1KB"}}));

INSTANTIATE_TEST_SUITE_P(
    Notation, RegexTranslateTest,
    testing::Values(
        Case{"^ab$", {"ab"}, {"^ab$", "xab", "abx"}}, Case{"^a$|^b$", {"a", "b"}, {"ab", ""}},
        Case{"(?:ab)+", {"ab", "abab"}, {"", "aba"}}, Case{"a*?b+?", {"b", "aabb"}, {"a", ""}},
        Case{"[a\\]\\-\\\\]", {"a", "]", "-", "\\"}, {"b", ""}}, Case{"[-a]", {"-", "a"}, {"b"}},
        Case{"[a-]", {"-", "a"}, {"b"}}, Case{"[\\^-]", {"^", "-"}, {"a"}},
        Case{"[a^\\]-]", {"a", "^", "]", "-"}, {"b"}},
        Case{"[^0]", {"a", " ", "]", "[", "^", "-", ":"}, {"0", "", "\t"}},
        Case{"[^\\]a-]+", {"b[", "^:"}, {"]", "a", "-"}}, Case{"[^ ]+", {"x[y"}, {" ", "x y", ""}},
        Case{"\\w\\W\\s\\S\\D", {"a- ax", "_. 1-"}, {"a-\tax", "aa ax", "a- a1"}},
        Case{"\\.\\*\\+\\?\\(\\)\\[\\]\\{\\}\\|\\^\\$\\\\\\/", {".*+?()[]{}|^$\\/"}, {"", "a"}},
        Case{"a{2,}", {"aa", "aaaaa"}, {"a", ""}}, Case{"a{0}b", {"b"}, {"ab"}},
        Case{"(a|)b", {"ab", "b"}, {"a", ""}},
        Case{"a{3,12}", {"aaa", "aaaaaaaaaaaa"}, {"aa", "aaaaaaaaaaaaa"}},
        Case{"\xc3\xa4+", {"\xc3\xa4", "\xc3\xa4\xc3\xa4"}, {"\xc3", "\xc3\xa4\xa4", ""}}));

TEST(RegexTranslateFailureTest, WhatIsNotUnderstoodIsNotTranslated) {
  for (const char *pattern :
       {"(",    ")",      "[",      "[]",         "[b-a]",  "*",   "a**",   "a{",
        "a{x}", "a{3,2}", "a{256}", "\\",         "\\p{L}", "\\1", "(?=a)", "[a-z-[aeiou]]",
        "a^b",  "a$b",    "(a$)",   "[\xc3\xa4]", "a\tb"}) {
    EXPECT_FALSE(zrcfg::mkstore::translate_regex(pattern).has_value()) << pattern;
  }
}

}  // namespace
