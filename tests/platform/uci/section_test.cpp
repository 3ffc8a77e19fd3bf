// Tests of packages, sections, options and lists.
#include <set>

#include "tests/platform/uci/uci_support.h"

namespace zrcfg_test {
namespace {

TEST_F(UciTest, EmptyFileIsAnEmptyPackage) {
  EXPECT_EQ(read_uci(""), "");
  EXPECT_EQ(read_uci("\n\n  \n\t\r\n"), "");
  EXPECT_EQ(read_uci("# nothing but this"), "");
}

TEST_F(UciTest, PackageStatementIsAcceptedAnywhere) {
  EXPECT_EQ(read_uci("package network\nconfig t s\noption a 1\n"), "t s{a=1}");
  EXPECT_EQ(read_uci("package 'my-pack_age2'\n"), "");
  EXPECT_EQ(read_uci("config t s\npackage other\noption a 1\n"), "t s{a=1}");
}

TEST_F(UciTest, SectionsHaveTypeAndName) {
  EXPECT_EQ(
      read_uci("config interface lan\nconfig 'interface' 'wan'\nconfig \"x-y.z:@!\" \"_9\"\n"),
      "interface lan{} interface wan{} x-y.z:@! _9{}");
}

TEST_F(UciTest, SectionWithoutANameIsAnonymous) {
  write_store_file("p", "config rule\nconfig rule ''\nconfig rule named\nconfig host\n");
  UciContext context;
  uci_package *package = nullptr;
  ASSERT_EQ(context.load(store_path("p"), &package), UCI_OK);
  EXPECT_EQ(describe(package), "rule ?{} rule ?{} rule named{} host ?{}");

  std::set<std::string> names;
  for (const uci_section *section : sections_of(package)) {
    const std::string name = section->e.name;
    EXPECT_TRUE(names.insert(name).second) << name << " is there twice";
    EXPECT_EQ(name.rfind("cfg", 0) == 0, section->anonymous) << name;
    EXPECT_EQ(name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789"), std::string::npos)
        << name;
  }
}

TEST_F(UciTest, MadeUpNamesDifferInALargeFile) {
  std::string text;
  for (int i = 0; i < 1000; ++i) {
    text += "config rule\n";
  }
  write_store_file("p", text);
  UciContext context;
  uci_package *package = nullptr;
  ASSERT_EQ(context.load(store_path("p"), &package), UCI_OK);
  std::set<std::string> names;
  for (const uci_section *section : sections_of(package)) {
    names.insert(section->e.name);
  }
  EXPECT_EQ(names.size(), 1000u);
}

TEST_F(UciTest, SectionsKeepFileOrder) {
  EXPECT_EQ(read_uci("config b z\nconfig a y\nconfig c x\n"), "b z{} a y{} c x{}");
}

TEST_F(UciTest, OptionsKeepFileOrder) {
  EXPECT_EQ(read_uci("config t s\noption z 1\nlist m 2\noption a 3\nlist m 4\n"),
            "t s{z=1,m=[2,4],a=3}");
}

TEST_F(UciTest, IndentationMeansNothing) {
  EXPECT_EQ(read_uci("  config t s\noption a 1\n\t\tconfig t u\n option b 2"), "t s{a=1} t u{b=2}");
}

TEST_F(UciTest, CommandsMayBeShortenedToALetter) {
  EXPECT_EQ(read_uci("p x\nc t s\no a 1\nl b 2\n"), "t s{a=1,b=[2]}");
  EXPECT_EQ(read_uci("'config' t s\n\"option\" a 1\n"), "t s{a=1}");
}

TEST_F(UciTest, LaterOptionReplacesTheEarlierInItsPlace) {
  EXPECT_EQ(read_uci("config t s\noption a 1\noption b 2\noption a 3\n"), "t s{a=3,b=2}");
}

TEST_F(UciTest, LaterListEntriesAppend) {
  EXPECT_EQ(read_uci("config t s\nlist a 1\nlist a 2\nlist a 1\n"), "t s{a=[1,2,1]}");
}

TEST_F(UciTest, ListBehindAnOptionKeepsItsValueAsFirstEntry) {
  EXPECT_EQ(read_uci("config t s\noption a 1\nlist a 2\n"), "t s{a=[1,2]}");
}

TEST_F(UciTest, OptionBehindAListReplacesIt) {
  EXPECT_EQ(read_uci("config t s\nlist a 1\nlist a 2\noption a 3\n"), "t s{a=3}");
}

TEST_F(UciTest, EmptyValueIsNotStored) {
  EXPECT_EQ(read_uci("config t s\noption a ''\noption b \"\"\noption c\noption d 1\n"), "t s{d=1}");
}

TEST_F(UciTest, EmptyValueRemovesTheEarlier) {
  EXPECT_EQ(read_uci("config t s\noption a 1\noption b 2\noption a ''\n"), "t s{b=2}");
  EXPECT_EQ(read_uci("config t s\nlist a 1\noption b 2\noption a ''\n"), "t s{b=2}");
  EXPECT_EQ(read_uci("config t s\noption a 1\noption b 2\noption a ''\noption a 3\n"),
            "t s{b=2,a=3}");
  EXPECT_EQ(read_uci("config t s\nlist a 1\noption a ''\nlist a 2\n"), "t s{a=[2]}");
  EXPECT_EQ(read_uci("config t s\noption a 1\noption a ''\nlist a 2\noption a ''\noption a ''\n"),
            "t s{}");
}

TEST_F(UciTest, OptionsOfOneNameInTwoSectionsAreTwo) {
  EXPECT_EQ(read_uci("config t s\noption a 1\nconfig t u\noption a 2\n"), "t s{a=1} t u{a=2}");
}

TEST_F(UciTest, ManyOptionsAreFoundAgain) {
  std::string text = "config t s\n";
  std::string described;
  for (int i = 0; i < 500; ++i) {
    text += "option n" + std::to_string(i) + " old\n";
  }
  for (int i = 499; i >= 0; --i) {
    text += "option n" + std::to_string(i) + " new" + std::to_string(i) + "\n";
  }
  for (int i = 0; i < 500; ++i) {
    described += (i == 0 ? "n" : ",n") + std::to_string(i) + "=new" + std::to_string(i);
  }
  EXPECT_EQ(read_uci(text), "t s{" + described + "}");
}

TEST_F(UciTest, LookupFindsOptionsByName) {
  write_store_file("p", "config t s\noption a 1\nlist b 2\noption aa 3\n");
  UciContext context;
  uci_package *package = nullptr;
  ASSERT_EQ(context.load(store_path("p"), &package), UCI_OK);
  uci_section *section = sections_of(package).at(0);

  uci_option *option = uci_lookup_option(context.get(), section, "b");
  ASSERT_NE(option, nullptr);
  EXPECT_EQ(option->type, UCI_TYPE_LIST);
  EXPECT_EQ(uci_lookup_option_string(context.get(), section, "b"), nullptr) << "a list is no text";
  EXPECT_STREQ(uci_lookup_option_string(context.get(), section, "a"), "1");
  EXPECT_STREQ(uci_lookup_option_string(context.get(), section, "aa"), "3");
  for (const char *missing : {"", "A", "aaa", "c"}) {
    EXPECT_EQ(uci_lookup_option(context.get(), section, missing), nullptr) << missing;
    EXPECT_EQ(uci_lookup_option_string(context.get(), section, missing), nullptr) << missing;
  }
}

TEST_F(UciTest, SectionsOfOneNameStayApart) {
  EXPECT_EQ(read_uci("config t s\noption a 1\nconfig t s\noption a 2\nconfig u s\n"),
            "t s{a=1} t s{a=2} u s{}");
}

}  // namespace
}  // namespace zrcfg_test
