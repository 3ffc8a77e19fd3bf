// Tests of reading one setting from a UCI file.
#include "config/uci_option.h"

#include <uci.h>

#include <vector>

#include "tests/config/config_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr char kFile[] = "/var/regex_file";

std::string entry_text(const std::string &path, const std::string &key) {
  return "zrfile_uci_get_config filepath=" + path + " key=" + key;
}

class UciOptionTest : public StoreTest {
 protected:
  static void write_file(const std::string &text) { write_store_file("regex_file", text); }

  // The value that `key` has, every byte of the buffer behind it being zero; "-1" for none, the
  // buffer being untouched.
  static std::string value_of(const std::string &key, const char *path = kFile) {
    clear_log();
    Guarded out;
    const int result = zrcfg_uci_get_config(path, key.c_str(), out.data(), kGuardedSize);
    if (result != 0) {
      EXPECT_TRUE(out.untouched_from(0));
      return std::to_string(result);
    }
    const std::string value = out.data();
    EXPECT_EQ(out.text, value + std::string(kGuardedSize - value.size(), '\0'));
    EXPECT_THAT(log_texts(), ElementsAre(entry_text(path, key)));
    return value;
  }

  static std::string transformed(std::string text) {
    EXPECT_EQ(uci_char_transform(text.data()), 0);
    return text;
  }
};

TEST_F(UciOptionTest, NamesStayAsTheyAre) {
  const std::string name =
      "abcdefghijklmnopqrstuvwxyz_ABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789_filter12";
  EXPECT_EQ(transformed(name), name);
  EXPECT_EQ(transformed(""), "");
}

TEST_F(UciOptionTest, EveryOtherByteBecomesAnUnderscore) {
  EXPECT_EQ(transformed("a.b-c"), "a_b_c");
  const std::string kept = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz";
  for (int c = 1; c < 256; ++c) {
    const std::string byte(1, static_cast<char>(c));
    EXPECT_EQ(transformed(byte), kept.find(byte) != std::string::npos ? byte : "_") << c;
  }
}

TEST_F(UciOptionTest, TransformationEndsAtTheTerminator) {
  char text[] = {'a', '.', '\0', '.', 'b', '\0'};
  EXPECT_EQ(uci_char_transform(text), 0);
  EXPECT_STREQ(text, "a_");
  EXPECT_EQ(text[3], '.');
}

TEST_F(UciOptionTest, NothingIsTransformedWithoutAText) {
  EXPECT_EQ(uci_char_transform(nullptr), 0);
}

TEST_F(UciOptionTest, ReadsTheOptionValueOfTheSection) {
  write_file(
      "config filter filter1\n\toption value '^[0-9]+$'\n"
      "config filter filter12\n\toption value '^a b$'\n");
  EXPECT_EQ(value_of("filter1"), "^[0-9]+$");
  EXPECT_EQ(value_of("filter12"), "^a b$");
}

TEST_F(UciOptionTest, SectionTypeIsNotLookedAt) {
  write_file("config one a\n\toption value 1\nconfig two b\n\toption value 2\n");
  EXPECT_EQ(value_of("a"), "1");
  EXPECT_EQ(value_of("b"), "2");
  EXPECT_EQ(value_of("one"), "-1");
}

TEST_F(UciOptionTest, NamesAreComparedWhole) {
  write_file("config t filter1\n\toption value 1\n");
  for (const char *key : {"filter", "filter12", "Filter1", "FILTER1", "", "filter1_"}) {
    EXPECT_EQ(value_of(key), "-1") << key;
  }
}

TEST_F(UciOptionTest, KeyIsTransformedBeforeTheSearch) {
  write_file("config t a_b_c\n\toption value found\n");
  for (const char *key : {"a.b-c", "a/b c", "a_b_c",
                          "a\tb\xFF"
                          "c",
                          "a:b\nc"}) {
    EXPECT_EQ(value_of(key), "found") << key;
  }
  EXPECT_EQ(value_of("a__b_c"), "-1");
}

TEST_F(UciOptionTest, KeyOfTheCallerIsNotChanged) {
  write_file("config t a_b\n\toption value 1\n");
  char key[] = "a.b";
  char out[8] = {};
  EXPECT_EQ(zrcfg_uci_get_config(kFile, key, out, sizeof out), 0);
  EXPECT_STREQ(key, "a.b");
}

TEST_F(UciOptionTest, KeyCountsUpTo256Characters) {
  const std::string name(256, 'k');
  write_file("config t " + name + "\n\toption value 256\n" +  //
             "config t " + std::string(255, 'k') + "\n\toption value 255\n" + "config t " +
             std::string(257, 'k') + "\n\toption value 257\n");
  EXPECT_EQ(value_of(std::string(255, 'k')), "255");
  EXPECT_EQ(value_of(name), "256");
  EXPECT_EQ(value_of(std::string(257, 'k')), "256");
  EXPECT_EQ(value_of(name + std::string(5000, '.')), "256");
}

TEST_F(UciOptionTest, UciNullStandsForTheEmptyValue) {
  write_file(
      "config t a\n\toption value UCI_NULL\n"
      "config t b\n\toption value 'UCI_NULL '\n"
      "config t c\n\toption value uci_null\n");
  EXPECT_EQ(value_of("a"), "");
  EXPECT_EQ(value_of("b"), "UCI_NULL ");
  EXPECT_EQ(value_of("c"), "uci_null");
}

TEST_F(UciOptionTest, OnlyAStringOptionNamedValueCounts) {
  write_file(
      "config t none\n"
      "config t other\n\toption Value 1\n\toption values 2\n"
      "config t many\n\tlist value 1\n"
      "config t empty\n\toption value ''\n");
  for (const char *key : {"none", "other", "many", "empty", "missing"}) {
    EXPECT_EQ(value_of(key), "-1") << key;
    EXPECT_THAT(log_texts(), ElementsAre(entry_text(kFile, key))) << "nothing more is said";
  }
}

TEST_F(UciOptionTest, FirstSectionOfTheNameWithAValueWins) {
  write_file("config t a\n\toption value first\nconfig u a\n\toption value second\n");
  EXPECT_EQ(value_of("a"), "first");
}

TEST_F(UciOptionTest, SectionWithoutAValueDoesNotEndTheSearch) {
  write_file(
      "config t a\n\toption other 1\n"
      "config t a\n\tlist value 2\n"
      "config t a\n\toption value third\n"
      "config t a\n\toption value fourth\n");
  EXPECT_EQ(value_of("a"), "third");
}

TEST_F(UciOptionTest, UnnamedSectionsAreNotFoundByTheEmptyKey) {
  write_file("config t\n\toption value 1\nconfig t ''\n\toption value 2\n");
  EXPECT_EQ(value_of(""), "-1");
}

TEST_F(UciOptionTest, LaterOptionOfTheSectionReplacesTheEarlier) {
  write_file("config t a\n\toption value 1\n\toption value 2\n");
  EXPECT_EQ(value_of("a"), "2");
}

TEST_F(UciOptionTest, MissingFileIsLoggedWithTheReadersText) {
  EXPECT_EQ(value_of("a", "/var/none"), "-1");
  EXPECT_THAT(log_texts(), ElementsAre(entry_text("/var/none", "a"),
                                       "uci_load Path=/var/none error=Entry not found fail!\n"));
  EXPECT_EQ(value_of("a.b", "/var"), "-1");
  EXPECT_THAT(log_texts(), ElementsAre(entry_text("/var", "a.b"),
                                       "uci_load Path=/var error=Entry not found fail!\n"));
}

TEST_F(UciOptionTest, MalformedFileIsLoggedWithItsPlace) {
  write_file("config t a\n\toption value 1\n\tnonsense\n");
  EXPECT_EQ(value_of("a"), "-1") << "also for what stands before";
  EXPECT_THAT(log_texts(),
              ElementsAre(entry_text(kFile, "a"),
                          "uci_load Path=/var/regex_file error=Parse error (invalid command) at "
                          "line 3, byte 2 fail!\n"));
}

TEST_F(UciOptionTest, LogIsOfTheLibrarysModule) {
  EXPECT_EQ(value_of("a", "/var/none"), "-1");
  for (const LogLine &line : log_lines()) {
    EXPECT_EQ(line.module, "ZRCFG");
    EXPECT_EQ(line.level, 7);
  }
}

TEST_F(UciOptionTest, NullArgumentsAreRefused) {
  write_file("config t a\n\toption value 1\n");
  Guarded out;
  struct {
    const char *path;
    const char *key;
    char *out;
  } const rows[] = {
      {nullptr, "a", out.data()}, {kFile, nullptr, out.data()}, {kFile, "a", nullptr}};
  for (const auto &row : rows) {
    clear_log();
    EXPECT_EQ(zrcfg_uci_get_config(row.path, row.key, row.out, 8), -1);
    EXPECT_TRUE(out.untouched_from(0));
    EXPECT_THAT(log_texts(),
                ElementsAre(StartsWith("zrfile_uci_get_config filepath="), "error input param\n"));
  }
}

TEST_F(UciOptionTest, CopyIsBoundedByTheBuffer) {
  write_file("config t a\n\toption value abcdef\n");
  struct {
    unsigned size;
    std::string bytes;
  } const rows[] = {{0, ""},
                    {1, "a"},
                    {5, "abcde"},
                    {6, "abcdef"},
                    {7, std::string("abcdef\0", 7)},
                    {10, std::string("abcdef\0\0\0\0", 10)}};
  for (const auto &row : rows) {
    Guarded out;
    EXPECT_EQ(zrcfg_uci_get_config(kFile, "a", out.data(), row.size), 0) << row.size;
    EXPECT_EQ(out.first(row.size), row.bytes) << row.size;
    EXPECT_TRUE(out.untouched_from(row.size)) << row.size;
  }
}

TEST_F(UciOptionTest, EmptyValueFillsTheBufferWithZeroBytes) {
  write_file("config t a\n\toption value UCI_NULL\n");
  Guarded out;
  EXPECT_EQ(zrcfg_uci_get_config(kFile, "a", out.data(), 4), 0);
  EXPECT_EQ(out.first(4), std::string(4, '\0'));
  EXPECT_TRUE(out.untouched_from(4));
}

TEST_F(UciOptionTest, EveryCallReadsTheFileAfresh) {
  write_file("config t a\n\toption value old\n");
  EXPECT_EQ(value_of("a"), "old");
  write_file("config t a\n\toption value new\n");
  EXPECT_EQ(value_of("a"), "new");
}

TEST_F(UciOptionTest, FileIsNotWritten) {
  const std::string text = "config t a\n\toption value 1\n# end, without a line end";
  write_file(text);
  EXPECT_EQ(value_of("a"), "1");
  EXPECT_EQ(read_store_file("regex_file"), text);
}

TEST_F(UciOptionTest, UnloadFreesPackageAndContext) {
  write_file("config t a\n\toption value 1\n");
  uci_context *context = uci_alloc_context();
  ASSERT_NE(context, nullptr);
  uci_package *package = nullptr;
  ASSERT_EQ(uci_load(context, kFile, &package), UCI_OK);
  unload_ucifile(context, package);

  context = uci_alloc_context();
  ASSERT_NE(context, nullptr);
  unload_ucifile(context, nullptr);
  unload_ucifile(nullptr, nullptr);
}

}  // namespace
}  // namespace zrcfg_test
