// Tests of what is refused, where, and how that is told.
#include "tests/platform/uci/uci_support.h"

namespace zrcfg_test {
namespace {

struct Row {
  std::string text;
  std::string reason;
  int line;
  int byte;
};

void check_errors(const std::vector<Row> &rows) {
  for (const Row &row : rows) {
    EXPECT_EQ(read_uci(row.text), "Parse error (" + row.reason + ") at line " +
                                      std::to_string(row.line) + ", byte " +
                                      std::to_string(row.byte))
        << "of: " << row.text;
  }
}

TEST_F(UciTest, RefusesUnknownCommands) {
  const std::string reason = "invalid command";
  check_errors({{"nonsense", reason, 1, 1},
                {"config t s\n  sectoin x\n", reason, 2, 3},
                {"configs t s\n", reason, 1, 1},
                {"conf t s\n", reason, 1, 1},
                {"Config t s\n", reason, 1, 1},
                {"''\n", reason, 1, 1},
                {"config t s; bad", reason, 1, 13},
                {"too many words in here\n", reason, 1, 1}});
}

TEST_F(UciTest, RefusesMissingWords) {
  const std::string reason = "insufficient arguments";
  check_errors({{"config\n", reason, 1, 7},
                {"config", reason, 1, 7},
                {"config # type?\n", reason, 1, 8},
                {"config ''\n", reason, 1, 8},
                {"package\n", reason, 1, 8},
                {"package ''\n", reason, 1, 9},
                {"config t s\noption\n", reason, 2, 7},
                {"config t s\n\toption ''  1\n", reason, 2, 9},
                {"config t s\nlist;list a 1\n", reason, 2, 5}});
}

TEST_F(UciTest, RefusesWordsTooMany) {
  const std::string reason = "too many arguments";
  check_errors({{"package a b\n", reason, 1, 11},
                {"config t s u\n", reason, 1, 12},
                {"config t s ''\n", reason, 1, 12},
                {"config t s\noption a b c\n", reason, 2, 12},
                {"config t s\noption a b c d e f\n", reason, 2, 12},
                {"config t s\nlist a two words\n", reason, 2, 12},
                {"config t s\noption a \\\n b \\\n  c\n", reason, 4, 3}});
}

TEST_F(UciTest, RefusesNamesWithOtherCharacters) {
  const std::string reason = "invalid character in name field";
  check_errors({{"config t a-b\n", reason, 1, 10},
                {"config t 'a b'\n", reason, 1, 10},
                {"config t a.b\n", reason, 1, 10},
                {"config t \xC3\xA4\n", reason, 1, 10},
                {"config t s\noption a-b 1\n", reason, 2, 8},
                {"config t s\n list a.b 1\n", reason, 2, 7},
                {"package a.b\n", reason, 1, 9},
                {"package 'a b'\n", reason, 1, 9}});
  check_errors({{"config 'a b' s\n", "invalid character in type field", 1, 8},
                {"config a\x7F s\n", "invalid character in type field", 1, 8},
                {"config \xC3\xA4\n", "invalid character in type field", 1, 8}});
}

TEST_F(UciTest, RefusesOptionsBeforeTheFirstSection) {
  const std::string reason = "option/list command found before the first section";
  check_errors(
      {{"option a 1\n", reason, 1, 1}, {"package p\n\n  list a 1\nconfig t s\n", reason, 3, 3}});
}

TEST_F(UciTest, RefusesQuotesThatStayOpen) {
  check_errors({{"config t 's\n", "unterminated '", 1, 10},
                {"config t s\noption a 'one\ntwo\n\n", "unterminated '", 2, 10},
                {"config t s\noption a \"one\ntwo\n\n", "unterminated \"", 2, 10},
                {"config t s\noption a x\"one\\\"", "unterminated \"", 2, 11},
                {"config t s\noption a \"one\\", "unterminated \"", 2, 10},
                {"config t 's'\noption a 'it's'\n", "unterminated '", 2, 15},
                {"'", "unterminated '", 1, 1}});
}

TEST_F(UciTest, PlacesCountLinesInsideQuotesAndJoints) {
  check_errors({{"config t s\noption a 'one\ntwo' three\n", "too many arguments", 3, 6},
                {"config t s\noption a \"1\\\n2\"; bad\n", "invalid command", 3, 5},
                {"config t s\r\noption a 1\r\nbad\r\n", "invalid command", 3, 1},
                {"# one\n# two\nconfig t # three\nbad\n", "invalid command", 4, 1}});
}

TEST_F(UciTest, RefusesZeroBytes) {
  const std::string reason = "zero byte";
  const std::string zero(1, '\0');
  check_errors({{zero, reason, 1, 1},
                {"config t s\noption a 1" + zero + "\n", reason, 2, 11},
                {"config t s\noption a '" + zero + "'\n", reason, 2, 11},
                {"config t s\n# comment" + zero + "\n", reason, 2, 10},
                {"config t s\noption a 1\n" + zero, reason, 3, 1},
                {"bad\nconfig t s\n" + zero + zero, reason, 3, 1}});
}

TEST_F(UciTest, FirstErrorCountsAndNothingIsKept) {
  write_store_file("p", "config t s\noption a 1\nbad\nworse\n");
  UciContext context;
  uci_package *package = nullptr;
  EXPECT_EQ(context.load(store_path("p"), &package), UCI_ERR_PARSE);
  EXPECT_EQ(package, nullptr);
  EXPECT_TRUE(uci_list_empty(&context.get()->root));
  EXPECT_EQ(context.error_text(), "Parse error (invalid command) at line 3, byte 1");
}

TEST_F(UciTest, ErrorTextTakesAPrefix) {
  UciContext context;
  EXPECT_EQ(context.error_text(), "Success");
  EXPECT_EQ(context.load("/var/missing", nullptr), UCI_ERR_NOTFOUND);
  EXPECT_EQ(context.error_text(), "Entry not found");
  EXPECT_EQ(context.error_text("/var/missing"), "/var/missing: Entry not found");
  EXPECT_EQ(context.error_text(""), ": Entry not found");
  EXPECT_EQ(uci_load(context.get(), nullptr, nullptr), UCI_ERR_INVAL);
  EXPECT_EQ(context.error_text("zrcfg"), "zrcfg: Invalid argument");
}

TEST_F(UciTest, ErrorTextGoesToStandardErrorWithoutADestination) {
  UciContext context;
  EXPECT_EQ(context.load("/var/missing", nullptr), UCI_ERR_NOTFOUND);
  testing::internal::CaptureStderr();
  uci_get_errorstr(context.get(), nullptr, "reader");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "reader: Entry not found\n");
}

TEST_F(UciTest, SuccessTakesTheErrorBack) {
  write_store_file("bad", "bad");
  write_store_file("good", "config t s\n");
  UciContext context;
  EXPECT_EQ(context.load(store_path("bad"), nullptr), UCI_ERR_PARSE);
  EXPECT_EQ(context.load(store_path("good"), nullptr), UCI_OK);
  EXPECT_EQ(context.error_text(), "Success");
}

}  // namespace
}  // namespace zrcfg_test
