// The value of a parameter: type code, default, or the first value that its syntax permits.
#include <ostream>

#include "tests/mkstore/build_run.h"

namespace {

struct Case {
  const char *syntax;
  unsigned type;
  const char *line;
};

void PrintTo(const Case &given, std::ostream *out) {
  *out << case_title(given.syntax);
}

class FirstValueTest : public BuildTest, public testing::WithParamInterface<Case> {};

const char kTypes[] =
    "<dataType name=\"Base\"><string><size maxLength=\"9\"/><enumeration value=\"None\"/></string>"
    "</dataType><dataType name=\"Derived\" base=\"Base\"><enumeration value=\"More\"/></dataType>"
    "<dataType name=\"Level\"><int><range minInclusive=\"3\"/></int></dataType>";

TEST_P(FirstValueTest, IsStoredWithItsTypeCode) {
  write_model(object("Root.", parameter("P", GetParam().syntax)), kTypes);
  const RunResult result = build();
  ASSERT_EQ(result.code, 0) << result.err;
  const ReadFile file = read("Root");
  ASSERT_TRUE(file.well_formed);
  EXPECT_EQ(file.records.at(0).type, GetParam().type);
  EXPECT_EQ(file.records.at(0).line, GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Types, FirstValueTest,
    testing::Values(
        Case{"<string/>", 1, "\r"}, Case{"<int/>", 2, "0"}, Case{"<unsignedInt/>", 3, "0"},
        Case{"<boolean/>", 4, "false"}, Case{"<dateTime/>", 5, "0001-01-01T00:00:00Z"},
        Case{"<base64/>", 6, "\r"}, Case{"<long/>", 7, "0"}, Case{"<unsignedLong/>", 8, "0"},
        Case{"<hexBinary/>", 9, "\r"}, Case{"<decimal/>", 10, "0"},
        Case{"<list/><unsignedInt/>", 11, "\r"}, Case{"<dataType ref=\"Base\"/>", 1, "None"},
        Case{"<dataType ref=\"Derived\"/>", 1, "None"}, Case{"<dataType ref=\"Level\"/>", 2, "3"},
        Case{"<dataType ref=\"Level\"><range minInclusive=\"5\"/></dataType>", 2, "5"}));

INSTANTIATE_TEST_SUITE_P(
    Defaults, FirstValueTest,
    testing::Values(Case{"<int/><default type=\"object\" value=\"-4\"/>", 2, "-4"},
                    Case{"<int/><default type=\"factory\" value=\"8\"/>", 2, "8"},
                    Case{"<string/><default type=\"object\" value=\"\"/>", 1, "\r"},
                    Case{"<string/><default type=\"object\" value=\" \"/>", 1, " "},
                    Case{"<int/><default type=\"object\" value=\"8\" status=\"deleted\"/>", 2, "0"},
                    Case{"<int/><default type=\"implementation\" value=\"8\"/>", 2, "0"},
                    Case{"<list/><string/><default type=\"object\" value=\"a,b\"/>", 11, "a,b"}));

INSTANTIATE_TEST_SUITE_P(
    Facets, FirstValueTest,
    testing::Values(
        Case{"<int><range minInclusive=\"-1\"/></int>", 2, "-1"},
        Case{"<int><range maxInclusive=\"-7\"/></int>", 2, "-7"},
        Case{"<int><range maxInclusive=\"7\"/></int>", 2, "0"},
        Case{"<unsignedInt><range minInclusive=\"4\" maxInclusive=\"4\"/>"
             "<range minInclusive=\"2\" maxInclusive=\"2\"/></unsignedInt>",
             3, "4"},
        Case{"<decimal><range minInclusive=\"-0.50\"/></decimal>", 10, "-0.5"},
        Case{"<string><enumeration value=\"Old\" status=\"deleted\"/><enumeration value=\"Up\"/>"
             "</string>",
             1, "Up"},
        Case{"<string><size minLength=\"3\" maxLength=\"5\"/></string>", 1, "000"},
        Case{"<string><size minLength=\"3\" status=\"deleted\"/></string>", 1, "\r"},
        Case{"<hexBinary><size minLength=\"2\"/></hexBinary>", 9, "0000"},
        Case{"<base64><size minLength=\"4\" maxLength=\"4\"/></base64>", 6, "AAAAAA=="},
        Case{"<list minItems=\"2\"/><unsignedInt><range minInclusive=\"1\"/></unsignedInt>", 11,
             "1,1"},
        Case{"<list minItems=\"2\" nestedBrackets=\"required\"/><string><pattern "
             "value=\"([0-7],){2}[0-7]\"/></string>",
             11, "[0,0,0],[0,0,0]"}));

INSTANTIATE_TEST_SUITE_P(
    Patterns, FirstValueTest,
    testing::Values(
        Case{"<string><pattern value=\"\"/><pattern value=\"[0-9]+\"/></string>", 1, "\r"},
        Case{"<string><pattern value=\"[0-9]*\"/></string>", 1, "\r"},
        Case{"<string><pattern value=\"[0-9A-F]{6}\"/></string>", 1, "000000"},
        Case{"<string><pattern value=\"(one|two)-\\d+(\\.\\d+)*\"/></string>", 1, "one-0"},
        Case{"<string><pattern value=\"[A-Z][A-Z][ OI]\"/></string>", 1, "AA "},
        Case{"<string><pattern value=\"X [0-9A-F]{6} .*\"/></string>", 1, "X 000000 "},
        Case{"<string><pattern value=\"([0-9]{1,15}?[BKMGT])\"/></string>", 1, "0B"},
        Case{"<string><pattern value=\"[^0]\"/></string>", 1, "a"},
        Case{"<string><size minLength=\"4\"/><pattern value=\"ab\"/><pattern value=\"abcd\"/>"
             "</string>",
             1, "abcd"}));

TEST_F(BuildTest, LengthsThatContradictThePatternsAreNotUsed) {
  write_model(object("Root.", parameter("P",
                                        "<string><size maxLength=\"2\"/><pattern "
                                        "value=\"[0-9]{4}\"/></string>")));
  const RunResult result = build();
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "zrcfg-mkstore: warning: " + path("model.xml") +
                            ": Root.P: its lengths contradict its patterns and are not used\n");
  EXPECT_EQ(value("Root", "P"), "0000");
}

TEST_F(BuildTest, DefaultThatItsSyntaxForbidsIsKeptWithAWarning) {
  write_model(object("Root.", parameter("P", "<dateTime/><default type=\"object\" value=\"\"/>")));
  const RunResult result = build();
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err,
            "zrcfg-mkstore: warning: " + path("model.xml") +
                ": Root.P: the default is kept although \"\" is not of type dateTime\n");
  EXPECT_EQ(value("Root", "P"), "\r");
}

}  // namespace
