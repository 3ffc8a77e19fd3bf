// The filter of a syntax in the built store: what it admits, refuses and leaves unchecked.
#include <ostream>
#include <string>
#include <vector>

#include "tests/mkstore/build_run.h"
#include "tests/mkstore/filter_reader.h"

namespace {

struct Case {
  const char *syntax;
  std::vector<std::string> accepted;
  std::vector<std::string> refused;
  const char *unchecked;  // The kinds in the report.
};

void PrintTo(const Case &given, std::ostream *out) {
  *out << case_title(given.syntax);
}

class FilterPatternTest : public BuildTest, public testing::WithParamInterface<Case> {};

TEST_P(FilterPatternTest, AdmitsWhatTheSyntaxPermits) {
  const Case &given = GetParam();
  write_model(object("Root.", parameter("P", given.syntax)));
  const RunResult result = run({"--verbose", "--model", path("model.xml"), path("out")});
  ASSERT_EQ(result.code, 0) << result.err;
  const std::string line = "unchecked: Root.P: " + std::string(given.unchecked) + "\n";
  if (*given.unchecked != '\0') {
    EXPECT_EQ(result.out.substr(0, line.size()), line);
  } else {
    EXPECT_EQ(result.out.find("Root.P"), std::string::npos) << result.out;
  }
  const ReadRecord record = read("Root").records.at(0);
  if (given.accepted.empty() && given.refused.empty()) {
    EXPECT_EQ(record.param_check, 0u);
    return;
  }
  ASSERT_EQ(record.param_check, 1u);
  const std::string filter = read_filters(path("out/regex_file")).at(0);
  EXPECT_LE(filter.size(), 1023u);
  EXPECT_TRUE(filter_matches(filter, record.line == "\r" ? "" : record.line)) << filter;
  for (const std::string &value : given.accepted) {
    EXPECT_TRUE(filter_matches(filter, value)) << "\"" << value << "\" by " << filter;
    EXPECT_FALSE(filter_matches(filter, value + "\n")) << "a line feed by " << filter;
  }
  for (const std::string &value : given.refused) {
    EXPECT_FALSE(filter_matches(filter, value)) << "\"" << value << "\" by " << filter;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Types, FilterPatternTest,
    testing::Values(
        Case{"<string/>", {}, {}, ""},
        Case{"<boolean/>", {"0", "1", "true", "false"}, {"", "2", "True", "truefalse", "yes"}, ""},
        Case{"<int/>",
             {"0", "-1", "2147483647", "-2147483648"},
             {"", "2147483648", "-2147483649", "+1", "01", "-0", "1.0", "x"},
             ""},
        Case{"<unsignedInt/>", {"0", "4294967295"}, {"", "-1", "4294967296", "007"}, ""},
        Case{"<long/>",
             {"0", "-9223372036854775808", "9223372036854775807"},
             {"", "-", "99999999999999999999", "1x"},
             "range"},
        Case{"<unsignedLong/>",
             {"0", "18446744073709551615"},
             {"", "-1", "20000000000000000000", "100000000000000000000"},
             "range"},
        Case{
            "<decimal/>", {"0", "-1.50", "12.000", "3"}, {"", ".5", "1.", "+1", "00.1", "1e3"}, ""},
        Case{"<dateTime/>",
             {"0001-01-01T00:00:00Z", "2024-02-29T23:59:59", "2000-02-29T00:00:00Z",
              "2023-12-31T00:00:00.123456-14:59", "2023-04-30T10:20:30+00:00"},
             {"", "2023-02-29T00:00:00Z", "1900-02-29T00:00:00Z", "2023-04-31T00:00:00Z",
              "2023-13-01T00:00:00Z", "2023-00-01T00:00:00Z", "2023-01-00T00:00:00Z",
              "2023-01-32T00:00:00Z", "2023-01-01T24:00:00Z", "2023-01-01T00:60:00Z",
              "2023-01-01T00:00:60Z", "2023-01-01T00:00:00.Z", "2023-01-01T00:00:00+15:00",
              "2023-01-01", "23-01-01T00:00:00Z", "2023-01-01 00:00:00Z"},
             ""},
        Case{"<base64/>",
             {"", "QQ==", "QUI=", "QUJD", "QUJDQQ=="},
             {"Q", "QQ", "QQ=", "Q===", "QUJDQ", "QU*D", "QQ==QUJD"},
             ""},
        Case{"<hexBinary/>", {"", "00", "aF09"}, {"0", "0g", "000"}, ""}));

INSTANTIATE_TEST_SUITE_P(
    Facets, FilterPatternTest,
    testing::Values(
        Case{"<string><size maxLength=\"255\"/></string>", {}, {}, ""},
        Case{"<string><size maxLength=\"4\"/></string>", {"", "a b\xff"}, {"abcde", "a\tb"}, ""},
        Case{
            "<string><size minLength=\"2\" maxLength=\"3\"/><size minLength=\"6\" maxLength=\"6\"/>"
            "</string>",
            {"ab", "abc", "abcdef"},
            {"", "a", "abcd", "abcde", "abcdefg"},
            ""},
        Case{"<string><size minLength=\"1\"/></string>", {"a", "abc"}, {""}, ""},
        Case{"<string><size maxLength=\"32\"/></string>",
             {"", std::string(32, 'x')},
             {std::string(33, 'x'), std::string(255, 'x')},
             ""},
        Case{"<string><size maxLength=\"64\"/></string>", {}, {}, "length"},
        Case{"<string><size minLength=\"8\" maxLength=\"63\"/></string>",
             {"12345678", std::string(63, 'x')},
             {"", "1234567"},
             "length"},
        Case{"<string><size maxLength=\"8\"/><pattern value=\"\\d+(-\\d+)?\"/></string>",
             {"1", "12-34"},
             {"", "-1", "1-"},
             "length"},
        Case{"<string><size maxLength=\"5\"/><pattern value=\"x\\.\\d+\"/></string>",
             {"x.1", "x.123"},
             {"x.", "x.1234", ""},
             ""},
        Case{"<string><size minLength=\"1\" maxLength=\"4\"/><pattern value=\"[ab]*\"/><pattern "
             "value=\"\"/></string><default type=\"object\" value=\"a\"/>",
             {"a", "abab"},
             {"", "ababa", "c"},
             ""},
        Case{"<string><enumeration value=\"a.b|(c)\"/><enumeration value=\"[x]^$*\"/><enumeration "
             "value=\"it's {2} \\\"/><enumeration value=\"?+\"/></string>",
             {"a.b|(c)", "[x]^$*", "it's {2} \\", "?+"},
             {"", "axb|(c)", "a.b", "c", "its {2} \\"},
             ""},
        Case{"<string><enumeration value=\"Up\"/><enumeration value=\"\"/><pattern "
             "value=\"[0-9]+\"/></string>",
             {"Up", "", "12"},
             {"up", "Up1", " "},
             ""},
        Case{"<string><pattern value=\"\\p{Lu}\"/></string>", {}, {}, "pattern"},
        Case{"<hexBinary><size minLength=\"5\" maxLength=\"5\"/><size minLength=\"13\" "
             "maxLength=\"13\"/></hexBinary>",
             {"0123456789", "00112233445566778899aabbcc"},
             {"", "012345678", "01234567890", "0123456789ab", "00112233445566778899aabbccdd"},
             ""},
        Case{"<base64><size maxLength=\"4\"/></base64>",
             {"", "QQ==", "QUJD", "QUJDRA=="},
             {"QUJDREU=", "QUJDREVG"},
             ""},
        Case{"<unsignedInt><range minInclusive=\"0\" maxInclusive=\"0\"/><range "
             "minInclusive=\"60\"/></unsignedInt>",
             {"0", "60", "4294967295"},
             {"1", "59", "4294967296"},
             ""},
        Case{"<int><range minInclusive=\"-10\" maxInclusive=\"10\" step=\"5\"/></int>",
             {"-10", "10", "0"},
             {"11", "-11"},
             "step"},
        Case{"<decimal><range minInclusive=\"0.5\"/></decimal>",
             {"0.5", "2"},
             {"", "x"},
             "decimal-range"},
        Case{"<string><pathRef/></string>", {}, {}, "reference"},
        Case{"<dateTime/><default type=\"object\" value=\"\"/>",
             {"", "2024-01-01T00:00:00Z"},
             {"0", "2024-02-30T00:00:00Z"},
             ""},
        Case{"<int/><default type=\"factory\" value=\"none (yet)\"/>",
             {"none (yet)", "5"},
             {"none yet", "none"},
             ""}));

INSTANTIATE_TEST_SUITE_P(
    Lists, FilterPatternTest,
    testing::Values(
        Case{"<list/><string/>", {}, {}, ""},
        Case{"<list/><unsignedInt><range maxInclusive=\"100\"/></unsignedInt>",
             {"", "0", "1,2,3", "1, 100 ,3", " 7 "},
             {",", "1,", ",1", "1,,2", "101", "1;2", " "},
             ""},
        Case{"<list minItems=\"1\" maxItems=\"3\"/><unsignedInt><range maxInclusive=\"9\"/>"
             "</unsignedInt>",
             {"0", "1,2", "1,2,3"},
             {"", "1,2,3,4", "10"},
             ""},
        Case{"<list minItems=\"2\" maxItems=\"2\"/><string><enumeration value=\"On\"/><enumeration "
             "value=\"Off\"/></string>",
             {"On,Off", "On, On"},
             {"", "On", "On,Off,On", "Onn,Off"},
             ""},
        Case{"<list maxItems=\"3\"/><string/>", {"", "a", "a,b,c"}, {"a,b,c,d"}, ""},
        Case{"<list maxItems=\"300\"/><string/>", {}, {}, ""},
        Case{"<list maxItems=\"100\"/><string/>", {}, {}, "list-items"},
        Case{"<list/><string><size maxLength=\"4\"/></string>",
             {"", "abcd", "ab , cd"},
             {"abcde", "ab,cdefg"},
             ""},
        Case{"<list><size maxLength=\"16\"/></list><string/>",
             {"", "a,b", std::string(16, ',')},
             {std::string(17, 'x')},
             ""},
        Case{"<list><size maxLength=\"16\"/></list><unsignedInt><range maxInclusive=\"9\"/>"
             "</unsignedInt>",
             {"1,2"},
             {"10"},
             "list-length"},
        Case{"<list nestedBrackets=\"required\"/><string><pattern value=\"[0-7],[0-7]\"/></string>",
             {"", "[1,2]", "[1,2], [3,4]"},
             {"1,2", "[1,2],3,4", "[1,8]", "[1,2]]", "[1,2"},
             ""}));

TEST_F(BuildTest, EnumerationsTooLongForTheDeviceAreComparedByTheirBeginning) {
  std::string names;
  for (int i = 0; i < 40; ++i) {
    names += "<enumeration value=\"" + std::to_string(i) + "LongNameOfAState\"/>";
  }
  write_model(object("Root.", parameter("P", "<list/><string>" + names + "</string>")));
  const RunResult result = run({"--verbose", "--model", path("model.xml"), path("out")});
  ASSERT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(result.out.substr(0, 31), "unchecked: Root.P: enumeration\n");
  const std::string filter = read_filters(path("out/regex_file")).at(0);
  EXPECT_TRUE(filter_matches(filter, "0LongNameOfAState, 39LongNameOfAState"));
  EXPECT_FALSE(filter_matches(filter, "0LongNameOfAState, ")) << filter;
  EXPECT_FALSE(filter_matches(filter, "0Long?")) << filter;
}

TEST_F(BuildTest, CounterIsNotLimitedByItsRange) {
  write_model(object("Root.", parameter("TNumberOfEntries",
                                        "<unsignedInt><range minInclusive=\"2\"/></unsignedInt>")) +
              object("Root.T.{i}.", parameter("P"),
                     "access=\"readWrite\" minEntries=\"0\" maxEntries=\"9\" "
                     "numEntriesParameter=\"TNumberOfEntries\""));
  ASSERT_EQ(build().code, 0);
  EXPECT_EQ(value("Root", "TNumberOfEntries"), "0");
  EXPECT_TRUE(filter_matches(read_filters(path("out/regex_file")).at(0), "0"));
}

}  // namespace
