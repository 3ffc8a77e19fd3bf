// Tests of words: quotes, escapes, comments, line ends.
#include "tests/platform/uci/uci_support.h"

namespace zrcfg_test {
namespace {

struct Row {
  std::string written;
  std::string read;
};

void check_values(const std::vector<Row> &rows) {
  for (const Row &row : rows) {
    EXPECT_EQ(read_value(row.written), row.read) << "written: " << row.written;
    EXPECT_EQ(read_value(row.written + "\n"), row.read) << "with a line end: " << row.written;
  }
}

TEST_F(UciTest, UnquotedWordEndsAtABlank) {
  check_values({{"plain", "plain"},
                {"  \t plain \t ", "plain"},
                {"a\v", "a"},
                {"\fa", "a"},
                {"192.168.1.1/24,x=[y]{z}", "192.168.1.1/24,x=[y]{z}"},
                {"\xC3\xBC\xFF", "\xC3\xBC\xFF"}});
}

TEST_F(UciTest, SingleQuotesTakeEveryByteAsItIs) {
  check_values({{"'two words'", "two words"},
                {"' '", " "},
                {R"('a\b\\c')", R"(a\b\\c)"},
                {R"('a"b')", R"(a"b)"},
                {"'# no comment; no end'", "# no comment; no end"},
                {"'\ttab'", "\ttab"},
                {"'\\'", "\\"}});
}

TEST_F(UciTest, DoubleQuotesTakeTheBackslashOff) {
  check_values({{R"("two words")", "two words"},
                {R"("a\"b")", R"(a"b)"},
                {R"("a\\b")", R"(a\b)"},
                {R"("a\nb")", "anb"},
                {R"("it's")", "it's"},
                {R"("# no comment; no end")", "# no comment; no end"},
                {R"("\#\;\'")", "#;'"}});
}

TEST_F(UciTest, BackslashOutsideQuotesTakesTheNextByteAsItIs) {
  check_values({{R"(two\ words)", "two words"},
                {R"(a\\b)", R"(a\b)"},
                {R"(a\"b)", R"(a"b)"},
                {R"(\'a\')", "'a'"},
                {R"(a\#b)", "a#b"},
                {R"(a\;b)", "a;b"},
                {R"(\a\b)", "ab"},
                {"a\\\tb", "a\tb"}});
}

TEST_F(UciTest, AdjacentPiecesAreOneWord) {
  check_values({{R"('a'"b"c)", "abc"},
                {R"(a'b c'd)", "ab cd"},
                {R"('It'\''s')", "It's"},
                {R"('a''b')", "ab"},
                {R"(""a"")", "a"},
                {R"(''""' ')", " "}});
}

TEST_F(UciTest, CommentLastsToTheLineEnd) {
  EXPECT_EQ(read_uci("# first\n"
                     "   # indented 'quote\n"
                     "config t s # behind \"it\n"
                     "#config u v\n"
                     "\toption a 1 #option b 2\n"
                     "option c 3#4\n"
                     "option d 'x'#y\n"
                     "# last, without a line end"),
            "t s{a=1,c=3,d=x}");
}

TEST_F(UciTest, CommentIsNotContinuedByABackslash) {
  EXPECT_EQ(read_uci("config t s # joined? \\\noption a 1\n"), "t s{a=1}");
}

TEST_F(UciTest, SemicolonEndsAStatement) {
  EXPECT_EQ(read_uci("config t s; option a 1;option b 2;;\n;\nlist c 3;list c 4;"),
            "t s{a=1,b=2,c=[3,4]}");
  EXPECT_EQ(read_uci("config t s;# rest\noption a 'x;y';option b \"z\";"), "t s{a=x;y,b=z}");
}

TEST_F(UciTest, QuotedValueGoesOverLines) {
  check_values({{"'one\ntwo'", "one\ntwo"},
                {"\"one\ntwo\n\"", "one\ntwo\n"},
                {"'\n\n'", "\n\n"},
                {"'a\n# no comment\nb'", "a\n# no comment\nb"},
                {"a'\n'b", "a\nb"},
                {"'a\r\nb'", "a\r\nb"}});
}

TEST_F(UciTest, StatementAfterAQuotedLineEndStandsOnItsOwn) {
  EXPECT_EQ(read_uci("config t s\noption a 'one\n  two'\noption b 3\n"), "t s{a=one\n  two,b=3}");
}

TEST_F(UciTest, BackslashJoinsLines) {
  check_values({{"one\\\ntwo", "onetwo"},
                {"\"one\\\ntwo\"", "onetwo"},
                {"\"one\\\n  two\"", "one  two"},
                {"\\\none", "one"},
                {"one\\\n", "one"},
                {"one\\\r\ntwo", "onetwo"},
                {"\"one\\\r\ntwo\"", "onetwo"},
                {"a\\\n\\\n\\\nb", "ab"}});
  EXPECT_EQ(read_uci("config \\\n t \\\n\\\n s\\\n\noption \\\n a \\\n 1\n"), "t s{a=1}");
}

TEST_F(UciTest, BackslashJoinsNoLinesInSingleQuotes) {
  EXPECT_EQ(read_value("'one\\\ntwo'"), "one\\\ntwo");
}

TEST_F(UciTest, BackslashAtTheEndOfTheFileJoinsNothing) {
  EXPECT_EQ(read_value("a\\"), "a");
  EXPECT_EQ(read_value("a \\"), "a");
  EXPECT_EQ(read_value("a\\\r"), "a\r") << "a carriage return without a line feed is a byte";
}

TEST_F(UciTest, CarriageReturnsBeforeLineFeedsAreBlanks) {
  EXPECT_EQ(read_uci("package p\r\n\r\nconfig t 's'\r\n\toption a 1\r\n\toption b '2'\r\n"
                     "\tlist c \"3\"\r\n# comment\r\n\tlist c 4\r\n"),
            "t s{a=1,b=2,c=[3,4]}");
}

TEST_F(UciTest, LongWordsAreWhole) {
  const std::string text(70000, 'x');
  EXPECT_EQ(read_value(text), text);
  EXPECT_EQ(read_value("'" + text + "'\"" + text + "\""), text + text);
}

TEST_F(UciTest, EveryByteSurvivesInEveryForm) {
  std::string single;
  std::string quoted;
  std::string bare;
  std::string all;
  for (int c = 1; c < 256; ++c) {
    const char byte = static_cast<char>(c);
    all += byte;
    single += byte == '\'' ? "'\\''" : std::string(1, byte);
    quoted += byte == '"' || byte == '\\' ? std::string{'\\', byte} : std::string(1, byte);
    // Behind a backslash a line feed is a joint; only quotes hold one.
    bare += byte == '\n' ? "'\n'" : std::string{'\\', byte};
  }
  EXPECT_EQ(read_value("'" + single + "'"), all);
  EXPECT_EQ(read_value("\"" + quoted + "\""), all);
  EXPECT_EQ(read_value(bare), all);
}

}  // namespace
}  // namespace zrcfg_test
