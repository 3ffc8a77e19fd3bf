// Which values of the values file a syntax permits.
#include <ostream>

#include "tests/mkstore/build_run.h"

namespace {

struct Case {
  const char *syntax;
  const char *value;
  const char *problem;  // Empty: the value is stored.
};

void PrintTo(const Case &given, std::ostream *out) {
  *out << case_title(std::string(given.syntax) + " " + given.value);
}

class ValueCheckTest : public BuildTest, public testing::WithParamInterface<Case> {};

TEST_P(ValueCheckTest, PermitsExactlyWhatTheSyntaxSays) {
  const Case &given = GetParam();
  write_model(object("Root.", parameter("P", given.syntax)));
  write("values", "Root.P=" + std::string(given.value) + "\n");
  if (*given.problem != '\0') {
    expect_refused("@values:1: Root.P: " + std::string(given.problem));
    return;
  }
  const RunResult result = build();
  ASSERT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(value("Root", "P"), *given.value == '\0' ? "\r" : given.value);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, ValueCheckTest,
    testing::Values(
        Case{"<int/>", "2147483647", ""}, Case{"<int/>", "-2147483648", ""},
        Case{"<int/>", "2147483648", "\"2147483648\" is not of type int"},
        Case{"<int/>", "", "\"\" is not of type int"},
        Case{"<int/>", "1.5", "\"1.5\" is not of type int"},
        Case{"<int/>", " 1", "\" 1\" is not of type int"},
        Case{"<int/>", "+1", "\"+1\" is not of type int"},
        Case{"<int/>", "01", "\"01\" is not of type int"},
        Case{"<int/>", "-0", "\"-0\" is not of type int"},
        Case{"<decimal/>", "+1.5", "\"+1.5\" is not of type decimal"},
        Case{"<unsignedInt/>", "4294967295", ""},
        Case{"<unsignedInt/>", "4294967296", "\"4294967296\" is not of type unsignedInt"},
        Case{"<unsignedInt/>", "-1", "\"-1\" is not of type unsignedInt"},
        Case{"<long/>", "-9223372036854775808", ""},
        Case{"<long/>", "9223372036854775808", "\"9223372036854775808\" is not of type long"},
        Case{"<unsignedLong/>", "18446744073709551615", ""},
        Case{"<unsignedLong/>", "18446744073709551616",
             "\"18446744073709551616\" is not of type unsignedLong"},
        Case{"<decimal/>", "-3.25", ""}, Case{"<decimal/>", "3.", "\"3.\" is not of type decimal"},
        Case{"<int><range minInclusive=\"1\" maxInclusive=\"4\"/><range minInclusive=\"9\"/></int>",
             "9", ""},
        Case{"<int><range minInclusive=\"1\" maxInclusive=\"4\"/><range minInclusive=\"9\"/></int>",
             "5", "\"5\" is outside the permitted range"},
        Case{"<int><range minInclusive=\"-10\" maxInclusive=\"10\" step=\"5\"/></int>", "-5", ""},
        Case{"<int><range minInclusive=\"-10\" maxInclusive=\"10\" step=\"5\"/></int>", "4",
             "\"4\" is outside the permitted range"}));

INSTANTIATE_TEST_SUITE_P(
    Forms, ValueCheckTest,
    testing::Values(Case{"<boolean/>", "0", ""}, Case{"<boolean/>", "1", ""},
                    Case{"<boolean/>", "true", ""}, Case{"<boolean/>", "false", ""},
                    Case{"<boolean/>", "True", "\"True\" is not of type boolean"},
                    Case{"<dateTime/>", "2024-02-29T23:59:59Z", ""},
                    Case{"<dateTime/>", "2024-02-29T23:59:59.125+02:00", ""},
                    Case{"<dateTime/>", "2023-02-29T00:00:00Z",
                         "\"2023-02-29T00:00:00Z\" is not of type dateTime"},
                    Case{"<dateTime/>", "2024-01-01T24:00:00",
                         "\"2024-01-01T24:00:00\" is not of type dateTime"},
                    Case{"<dateTime/>", "2024-01-01", "\"2024-01-01\" is not of type dateTime"},
                    Case{"<hexBinary/>", "00fF", ""},
                    Case{"<hexBinary/>", "0", "\"0\" is not of type hexBinary"},
                    Case{"<base64/>", "AAA=", ""},
                    Case{"<base64/>", "AAA", "\"AAA\" is not of type base64"},
                    Case{"<base64/>", "A===", "\"A===\" is not of type base64"}));

INSTANTIATE_TEST_SUITE_P(
    Texts, ValueCheckTest,
    testing::Values(Case{"<string/>", "a=b # c ", ""}, Case{"<string/>", "\t padded\r", ""},
                    Case{"<string><size maxLength=\"4\"/></string>", "\xc3\xa4\xc3\xb6", ""},
                    Case{"<string><size maxLength=\"3\"/></string>", "\xc3\xa4\xc3\xb6",
                         "\"\xc3\xa4\xc3\xb6\" does not have a permitted length"},
                    Case{"<string><size maxLength=\"3\"/></string>", "a\tb",
                         "\"a\tb\" does not match the filter ^[^[:cntrl:]]{0,3}$"},
                    Case{"<string><size maxLength=\"2\"/></string>", "abc",
                         "\"abc\" does not have a permitted length"},
                    Case{"<string><size minLength=\"1\" maxLength=\"1\"/><size minLength=\"3\" "
                         "maxLength=\"3\"/></string>",
                         "ab", "\"ab\" does not have a permitted length"},
                    Case{"<hexBinary><size maxLength=\"1\"/></hexBinary>", "ffff",
                         "\"ffff\" does not have a permitted length"},
                    Case{"<base64><size minLength=\"2\" maxLength=\"2\"/></base64>", "AAA=", ""},
                    Case{"<string><enumeration value=\"Up\"/></string>", "Up", ""},
                    Case{"<string><enumeration value=\"Up\"/></string>", "up",
                         "\"up\" is none of the permitted values"},
                    Case{"<string><enumeration value=\"Up\"/><pattern value=\"[0-9]+\"/></string>",
                         "12", ""},
                    Case{"<string><pattern value=\"[0-9]+\"/></string>", "12a",
                         "\"12a\" is none of the permitted values and matches no pattern"},
                    Case{"<string><enumeration value=\"Up\"/></string><default type=\"object\" "
                         "value=\"Later\"/>",
                         "Later", ""}));

INSTANTIATE_TEST_SUITE_P(
    Lists, ValueCheckTest,
    testing::Values(
        Case{"<list/><unsignedInt/>", "", ""}, Case{"<list/><unsignedInt/>", "1, 2,3", ""},
        Case{"<list/><unsignedInt/>", "1,,3", "list item \"\" is not of type unsignedInt"},
        Case{"<list maxItems=\"2\"/><string/>", "a,b,c",
             "the list has 3 items, which is not permitted"},
        Case{"<list><size maxLength=\"3\"/></list><string/>", "a,bc",
             "the list does not have a permitted length"},
        Case{"<list><size maxLength=\"9\"/></list><string><size maxLength=\"1\"/></string>", "a,bc",
             "list item \"bc\" does not have a permitted length"},
        Case{"<list nestedBrackets=\"required\"/><string><pattern value=\"[0-7],[0-7]\"/></string>",
             "[1,2],[3,4]", ""},
        Case{"<list nestedBrackets=\"required\"/><string><pattern value=\"[0-7]\"/></string>",
             "[1],2", "list item \"2\" is not in brackets"},
        Case{"<list nestedBrackets=\"required\"/><string><pattern value=\"[0-7],[0-7]\"/></string>",
             "[1,2],[3,9]",
             "list item \"3,9\" is none of the permitted values and matches no pattern"}));

}  // namespace
