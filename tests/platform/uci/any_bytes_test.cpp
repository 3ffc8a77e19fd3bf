// Tests that no bytes make the reader crash, hang, lose memory or take more than linear time.
#include <time.h>

#include <random>

#include "tests/platform/uci/uci_support.h"

namespace zrcfg_test {
namespace {

// Every statement, quoting form, comment, joint and line end.
const std::string &full_text() {
  static const std::string text =
      "package 'full'\r\n"
      "# a comment\n"
      "config type 'name' # behind\n"
      "\toption plain value\n"
      "\toption single 'two words'\r\n"
      "\toption double \"a \\\"quote\\\" and \\\\\"\n"
      "\toption pieces a'b'\"c\"\\ d\n"
      "\toption joined one\\\ntwo\n"
      "\toption lines 'one\n\ntwo'\n"
      "\toption empty ''\n"
      "\tlist all 1; list all '2'\n"
      "\toption all2 x\\\r\ny\n"
      "config other\n"
      "\toption plain again\n"
      "\toption plain ''\n";
  return text;
}

const std::string kFullRead =
    "type name{plain=value,single=two words,double=a \"quote\" and \\,pieces=abc d,joined=onetwo,"
    "lines=one\n\ntwo,all=[1,2],all2=xy} other ?{}";

bool is_result(const std::string &described) {
  return described.rfind("Parse error (", 0) == 0 || described.empty() || described.back() == '}';
}

double seconds_to_load(const std::string &text, int expected) {
  write_store_file("timed", text);
  UciContext context;
  const clock_t before = clock();
  EXPECT_EQ(context.load(store_path("timed"), nullptr), expected) << context.error_text();
  return static_cast<double>(clock() - before) / CLOCKS_PER_SEC;
}

std::string repeated(const std::string &piece, size_t size) {
  std::string text;
  while (text.size() < size) {
    text += piece;
  }
  return text;
}

TEST_F(UciTest, FullTextIsReadWhole) {
  EXPECT_EQ(read_uci(full_text()), kFullRead);
}

TEST_F(UciTest, TextCutAnywhereIsReadOrRefused) {
  int refused = 0;
  for (size_t size = 0; size < full_text().size(); ++size) {
    const std::string described = read_uci(full_text().substr(0, size));
    EXPECT_TRUE(is_result(described)) << "cut to " << size << ": " << described;
    refused += described.rfind("Parse error", 0) == 0 ? 1 : 0;
  }
  EXPECT_GT(refused, 50);
  EXPECT_LT(refused, static_cast<int>(full_text().size()) - 50);
}

TEST_F(UciTest, CutInQuotesIsRefusedAndCutBehindAStatementIsNot) {
  const size_t quoted = full_text().find("two words");
  EXPECT_EQ(read_uci(full_text().substr(0, quoted)),
            "Parse error (unterminated ') at line 5, byte 16");
  EXPECT_EQ(read_uci(full_text().substr(0, full_text().find("\n\toption single"))),
            "type name{plain=value}");
  EXPECT_EQ(read_uci(full_text().substr(0, full_text().find(" value\n"))), "type name{}");
}

TEST_F(UciTest, ZeroByteAnywhereIsRefusedThere) {
  int line = 1;
  int byte = 1;
  for (size_t at = 0; at < full_text().size(); ++at) {
    std::string text = full_text();
    text[at] = '\0';
    EXPECT_EQ(read_uci(text), "Parse error (zero byte) at line " + std::to_string(line) +
                                  ", byte " + std::to_string(byte));
    const bool line_end = full_text()[at] == '\n';
    line += line_end ? 1 : 0;
    byte = line_end ? 1 : byte + 1;
  }
}

TEST_F(UciTest, AnyByteInAnyPlaceIsReadOrRefused) {
  std::mt19937 random(20240601);
  for (size_t at = 0; at < full_text().size(); ++at) {
    for (const char byte : {'\'', '"', '\\', '\n', '#', ';', ' ', static_cast<char>(random())}) {
      std::string text = full_text();
      text[at] = byte;
      const std::string described = read_uci(text);
      EXPECT_TRUE(is_result(described)) << "byte " << at << ": " << described;
    }
  }
}

TEST_F(UciTest, RandomBytesAreReadOrRefused) {
  std::mt19937 random(7);
  for (int round = 0; round < 1500; ++round) {
    std::string text(random() % 400, '\0');
    for (char &byte : text) {
      byte = static_cast<char>(random());
    }
    const std::string described = read_uci(text);
    EXPECT_TRUE(is_result(described)) << "round " << round << ": " << described;
  }
}

// Pieces of the grammar in random order get further than bytes do.
TEST_F(UciTest, RandomPiecesAreReadOrRefused) {
  const std::vector<std::string> pieces = {
      "config ", "option ", "list ", "package ",   "t",         "name",    "'",        "\"",  "\\",
      "\n",      "\r\n",    "\\\n",  ";",          "#",         " ",       "\t",       "''",  "a_",
      "-",       "'x'",     "\n",    "config t\n", "option a ", "list a ", "\"\\\"\"", "\xFF"};
  std::mt19937 random(11);
  int read = 0;
  for (int round = 0; round < 1500; ++round) {
    std::string text = "config t s\n";
    for (unsigned long count = random() % 30; count > 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    const std::string described = read_uci(text);
    EXPECT_TRUE(is_result(described)) << "round " << round << ": " << described;
    read += described.rfind("Parse error", 0) == 0 ? 0 : 1;
  }
  EXPECT_GT(read, 100);
}

// A reader whose time grew with the square of the size would take minutes for most of these.
TEST_F(UciTest, MegabytesTakeLinearTime) {
  constexpr size_t kSize = 1 << 20;
  constexpr double kSeconds = 5;
  const std::string head = "config t s\n";
  std::string options = head;
  for (int i = 0; options.size() < kSize; ++i) {
    options += "o n" + std::to_string(i) + " 1\n";
  }
  struct {
    const char *what;
    std::string text;
    int result;
  } const rows[] = {
      {"one value", head + "option a '" + std::string(kSize, 'x') + "'", UCI_OK},
      {"one unquoted word", head + "option a " + std::string(kSize, 'x'), UCI_OK},
      {"options of one section", options, UCI_OK},
      {"one option again and again", head + repeated("option a 1\n", kSize), UCI_OK},
      {"one option there and away", head + repeated("o a 1\no a ''\n", kSize), UCI_OK},
      {"one long list", head + repeated("list a 1\n", kSize), UCI_OK},
      {"sections of one name", repeated("config t s\no a 1\n", kSize), UCI_OK},
      {"sections without a name", repeated("c t\n", kSize), UCI_OK},
      {"escapes", head + "option a " + repeated("\\x", kSize), UCI_OK},
      {"empty pieces", head + "option a x" + repeated("''", kSize), UCI_OK},
      {"joints", head + "option a " + repeated("\\\n", kSize), UCI_OK},
      {"line ends", repeated("\n", kSize), UCI_OK},
      {"semicolons", repeated(";", kSize), UCI_OK},
      {"comments", repeated("#\n", kSize), UCI_OK},
      {"words", head + "option " + repeated("a ", kSize), UCI_ERR_PARSE},
      {"an open quote", head + "option a '" + repeated("x\n", kSize), UCI_ERR_PARSE},
      {"a zero byte at the end", repeated("#\n", kSize) + std::string(1, '\0'), UCI_ERR_PARSE},
      {"zero bytes", std::string(kSize, '\0'), UCI_ERR_PARSE},
      {"high bytes", std::string(kSize, '\xFF'), UCI_ERR_PARSE},
  };
  for (const auto &row : rows) {
    EXPECT_LT(seconds_to_load(row.text, row.result), kSeconds) << row.what;
  }
}

TEST_F(UciTest, LargeValuesArriveWhole) {
  std::string value(1 << 20, 'x');
  for (size_t i = 0; i < value.size(); i += 997) {
    value[i] = static_cast<char>('a' + i % 26);
  }
  EXPECT_TRUE(read_value("'" + value + "'") == value);
}

TEST_F(UciTest, LastOfManyOptionsIsFound) {
  std::string text = "config t s\n";
  for (int i = 0; i < 20000; ++i) {
    text += "option n" + std::to_string(i) + " " + std::to_string(i) + "\n";
  }
  write_store_file("p", text);
  UciContext context;
  uci_package *package = nullptr;
  ASSERT_EQ(context.load(store_path("p"), &package), UCI_OK);
  uci_section *section = sections_of(package).at(0);
  EXPECT_STREQ(uci_lookup_option_string(context.get(), section, "n0"), "0");
  EXPECT_STREQ(uci_lookup_option_string(context.get(), section, "n19999"), "19999");
}

}  // namespace
}  // namespace zrcfg_test
