// Tests of checking one value against one numbered filter of "/var/regex_file".
#include <gmock/gmock.h>
#include <regex.h>

#include <filesystem>
#include <string>

#include "tests/values/values_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr char kLookUp[] = "zrfile_uci_get_config filepath=/var/regex_file key=filter1";

int check(unsigned filter, const std::string &value) {
  clear_log();
  return check_param_value_valid_regex(filter, value.c_str());
}

std::string error_text(const char *pattern, int error) {
  char text[63] = "";
  regex_t compiled;
  const int result = regcomp(&compiled, pattern, REG_EXTENDED | REG_NOSUB);
  regerror(result != 0 ? result : error, &compiled, text, sizeof text);
  if (result == 0) {
    regfree(&compiled);
  }
  return text;
}

class ValueFilterTest : public StoreTest {};

TEST_F(ValueFilterTest, NullValueIsRefusedBeforeAnythingElse) {
  EXPECT_EQ(check_param_value_valid_regex(0, nullptr), -1);
  EXPECT_EQ(check_param_value_valid_regex(1, nullptr), -1);
  write_patterns({{1, ".*"}});
  EXPECT_EQ(check_param_value_valid_regex(1, nullptr), -1);
  EXPECT_EQ(log_texts(), std::vector<std::string>(3, "value NULL is not valid.\n"));
}

TEST_F(ValueFilterTest, WithoutTheFileEveryValuePasses) {
  for (const unsigned filter : {0u, 1u, 4294967295u}) {
    for (const std::string value : {"", "x", "a\nb"}) {
      EXPECT_EQ(check(filter, value), 0);
      EXPECT_THAT(value_log(), ElementsAre("no need check param value,\n"));
    }
  }
}

TEST_F(ValueFilterTest, Filter0TakesEverything) {
  write_patterns({{0, "^never$"}, {1, "^never$"}});
  for (const std::string value : {"", "x", "never"}) {
    EXPECT_EQ(check(0, value), 0);
    EXPECT_THAT(value_log(), ElementsAre("no need check param value,\n"));
  }
}

TEST_F(ValueFilterTest, EmptyFileIsThereAndHasNoFilter) {
  write_store_file(kPatternFile, "");
  EXPECT_EQ(check(0, "x"), 0);
  EXPECT_EQ(check(1, "x"), -1);
}

TEST_F(ValueFilterTest, MissingFilterRefuses) {
  write_patterns({{2, ".*"}, {11, ".*"}});
  EXPECT_EQ(check(1, "x"), -1);
  EXPECT_THAT(value_log(), ElementsAre(kLookUp, "get filter1 from /var/regex_file failed.\n"));
  EXPECT_EQ(check(2, "x"), 0);
}

TEST_F(ValueFilterTest, SectionMustHaveAStringOptionValue) {
  for (const char *text :
       {"config filter 'filter1'\n", "config filter 'filter1'\n\tlist value '.*'\n",
        "config filter 'filter1'\n\toption Value '.*'\n", "config filter1\n\toption value '.*'\n",
        "config filter 'Filter1'\n\toption value '.*'\n"}) {
    write_store_file(kPatternFile, text);
    EXPECT_EQ(check(1, "x"), -1) << text;
    EXPECT_TRUE(log_contains("get filter1 from /var/regex_file failed.\n")) << text;
  }
}

TEST_F(ValueFilterTest, TypeOfTheSectionAndOtherOptionsDoNotMatter) {
  write_store_file(kPatternFile,
                   "config whatever filter1\n\toption about 'x'\n\toption value '^[0-9]$'\n");
  EXPECT_EQ(check(1, "7"), 0);
  EXPECT_EQ(check(1, "x"), -1);
}

TEST_F(ValueFilterTest, FileThatCannotBeLoadedRefuses) {
  write_store_file(kPatternFile, "config filter 'filter1'\n\toption value 'no end\n");
  EXPECT_EQ(check(1, "x"), -1);
  EXPECT_TRUE(log_contains("get filter1 from /var/regex_file failed.\n"));
  EXPECT_EQ(check(0, "x"), 0);
}

TEST_F(ValueFilterTest, DirectoryInThePlaceOfTheFileRefuses) {
  make_store_dir("regex_file/");
  EXPECT_EQ(check(1, "x"), -1);
  EXPECT_EQ(check(0, "x"), 0);
}

TEST_F(ValueFilterTest, MatchIsToldWithFilterValueAndPattern) {
  write_patterns({{1, "b+"}});
  EXPECT_EQ(check(1, "abba"), 0);
  EXPECT_THAT(value_log(), ElementsAre(kLookUp, "1 abba matches b+.\n"));
}

TEST_F(ValueFilterTest, MismatchIsToldWithTheSystemsText) {
  write_patterns({{1, "b+"}});
  EXPECT_EQ(check(1, "acca"), -1);
  EXPECT_THAT(value_log(),
              ElementsAre(kLookUp, "regexec error " + error_text("b+", REG_NOMATCH) + ".\n"));
}

TEST_F(ValueFilterTest, PatternThatDoesNotCompileRefusesEveryValue) {
  for (const char *pattern : {"(", "[", "a{2,1}", "a\\"}) {
    write_store_file(kPatternFile,
                     "config filter 'filter1'\n\toption value '" + std::string(pattern) + "'\n");
    if (std::string(pattern) == "a\\") {
      // A quoted backslash stands doubled where the format takes it for an escape.
      write_store_file(kPatternFile, "config filter 'filter1'\n\toption value \"a\\\\\"\n");
    }
    for (const char *value : {"", "(", "aa"}) {
      EXPECT_EQ(check(1, value), -1) << pattern;
      EXPECT_THAT(value_log(),
                  ElementsAre(kLookUp, "regcomp error " + error_text(pattern, 0) + ".\n"));
    }
  }
}

struct PatternRow {
  const char *pattern;
  std::vector<const char *> taken;
  std::vector<const char *> refused;
};

TEST_F(ValueFilterTest, PatternsAreExtendedAndUnanchored) {
  const PatternRow rows[] = {
      {"b", {"b", "abc", "bb"}, {"", "a", "B"}},
      {"^b", {"b", "bc"}, {"ab", ""}},
      {"b$", {"b", "ab"}, {"bc"}},
      {"^b$", {"b"}, {"bb", "ab", "", "b "}},
      {"^$", {""}, {"x", " "}},
      {"^(0|1)$", {"0", "1"}, {"2", "01", ""}},
      {"^[0-9]{1,3}$", {"1", "999"}, {"", "1000", "x"}},
      {"^a+b?$", {"a", "aab"}, {"b", "abb"}},
      {"^a.c$", {"abc", "a c"}, {"ac"}},
      {"^[[:alpha:]_]*$", {"", "aZ_"}, {"1"}},
      {"^(true|false)$", {"true", "false"}, {"True", "truefalse"}},
      {"^([0-9]{1,3}[.]){3}[0-9]{1,3}$", {"192.168.1.1"}, {"192.168.1", "a.b.c.d"}},
  };
  for (const PatternRow &row : rows) {
    write_patterns({{1, row.pattern}});
    for (const char *value : row.taken) {
      EXPECT_EQ(check(1, value), 0) << row.pattern << " " << value;
    }
    for (const char *value : row.refused) {
      EXPECT_EQ(check(1, value), -1) << row.pattern << " " << value;
    }
  }
}

TEST_F(ValueFilterTest, LineFeedIsAnOrdinaryCharacterForThePattern) {
  write_patterns({{1, "^a.b$"}, {2, "^b$"}});
  EXPECT_EQ(check(1, "a\nb"), 0);
  EXPECT_EQ(check(2, "a\nb"), -1) << "lines have no anchors of their own";
}

TEST_F(ValueFilterTest, FilterNumberIsWrittenInFull) {
  write_patterns({{1, "^one$"}, {12, "^twelve$"}, {123, "^more$"}, {4294967295u, "^most$"}});
  EXPECT_EQ(check(1, "one"), 0);
  EXPECT_EQ(check(12, "twelve"), 0);
  EXPECT_EQ(check(12, "one"), -1);
  EXPECT_EQ(check(123, "more"), 0);
  EXPECT_EQ(check(4294967295u, "most"), 0);
  EXPECT_EQ(check(4294967295u, "one"), -1);
}

TEST_F(ValueFilterTest, PatternOf1023CharactersIsUsedWholeAndALongerOneCut) {
  std::string pattern;
  for (int i = 0; i < 511; ++i) {
    pattern += "x|";
  }
  pattern += "Z";
  ASSERT_EQ(pattern.size(), 1023u);
  write_patterns({{1, pattern}, {2, pattern + "Q"}});
  EXPECT_EQ(check(1, "Z"), 0);
  EXPECT_EQ(check(1, "Q"), -1);
  EXPECT_TRUE(log_contains(kLookUp));
  EXPECT_EQ(check(2, "Z"), 0) << "cut behind 1023 characters";
  EXPECT_TRUE(log_contains("2 Z matches " + pattern + ".\n"));
}

TEST_F(ValueFilterTest, EmptyPatternWrittenAsUciNullTakesEverything) {
  write_patterns({{1, "UCI_NULL"}});
  EXPECT_EQ(check(1, ""), 0);
  EXPECT_EQ(check(1, "anything"), 0);
}

TEST_F(ValueFilterTest, FileIsReadAfreshEveryTime) {
  write_patterns({{1, "^a$"}});
  EXPECT_EQ(check(1, "a"), 0);
  write_patterns({{1, "^b$"}});
  EXPECT_EQ(check(1, "a"), -1);
  EXPECT_EQ(check(1, "b"), 0);
  std::filesystem::remove(store_path(kPatternFile));
  EXPECT_EQ(check(1, "a"), 0);
  write_patterns({{2, "^b$"}});
  EXPECT_EQ(check(1, "a"), -1);
}

TEST_F(ValueFilterTest, LongValuesAreCheckedWhole) {
  write_patterns({{1, "^v*$"}, {2, "^v{255}$"}});
  EXPECT_EQ(check(1, std::string(255, 'v')), 0);
  EXPECT_EQ(check(2, std::string(255, 'v')), 0);
  EXPECT_EQ(check(2, std::string(254, 'v')), -1);
  EXPECT_EQ(check(1, std::string(254, 'v') + "w"), -1);
}

TEST_F(ValueFilterTest, NothingInTheStoreIsChanged) {
  write_patterns({{1, "^a$"}});
  const std::map<std::string, std::string> before = store_files();
  EXPECT_EQ(check(1, "a"), 0);
  EXPECT_EQ(check(1, "b"), -1);
  EXPECT_EQ(check(2, "b"), -1);
  EXPECT_EQ(store_files(), before);
}

}  // namespace
}  // namespace zrcfg_test
