// Upgrades of a store: parameters and their values under every kind of difference between models.
#include "tests/mkstore/filter_reader.h"
#include "tests/mkstore/upgrade_run.h"

namespace {

TEST_F(UpgradeTest, SameModelGivesTheSameBytes) {
  const std::string model = table("", writable("P") + writable("Q", kNumber)) +
                            object("Root.T.{i}.U.{i}.", writable("R")) +
                            object("Root.S.", writable("Text") + writable("Empty"));
  write("instances", "Root.T.2.\nRoot.T.7.U.3.\n");
  write("values", "Root.T.2.Q=12\nRoot.S.Empty=x\n");
  build_old(model);
  std::string every_byte;
  for (int c = 1; c < 256; ++c) {
    every_byte += c == '\n' || c == '\r' ? ' ' : static_cast<char>(c);
  }
  set_old("Root/S", "Text", every_byte);
  set_old("Root/S", "Empty", "\r");
  set_old("Root/T/7", "P", "\\ \" = # '");
  poke_record("Root/T/7", "P", 72, "Subscriber");
  poke_header("Root/T", 12, "function");
  expect_upgrade(model, {},
                 "8 objects, 3 instances, 7 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(tree_of(path("out")), tree_of(path("old")));
}

TEST_F(UpgradeTest, TwiceGivesTheSameBytesAndReport) {
  write("instances", "Root.T.2.\n");
  build_old(table(""));
  const RunResult first = upgrade(table("maxEntries=\"1\""));
  const auto tree = tree_of(path("out"));
  const RunResult second = upgrade(table("maxEntries=\"1\""));
  EXPECT_EQ(tree_of(path("out")), tree);
  EXPECT_EQ(first.out.substr(0, first.out.find('\n')), second.out.substr(0, second.out.find('\n')));
  EXPECT_EQ(leftovers(), std::vector<std::string>({"old", "out"}));
}

TEST_F(UpgradeTest, ParameterAdded) {
  build_old(object("Root.", writable("A")));
  set_old("Root", "A", "old");
  expect_upgrade(
      object("Root.",
             writable("New", "<string/><default type=\"object\" value=\"x\"/>") + writable("A")),
      {}, "1 objects, 0 instances, 1 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "New"), "x");
  EXPECT_EQ(value("Root", "A"), "old");
}

TEST_F(UpgradeTest, ParameterRemoved) {
  build_old(object("Root.", writable("A") + writable("B") + writable("C")));
  set_old("Root", "B", "say \"x\\y\"\t\x7F\xC3\xA4");
  set_old("Root", "C", "c");
  expect_upgrade(
      object("Root.", writable("A") + writable("C")),
      {"dropped parameter Root.B: \"say \\\"x\\\\y\\\"\\x09\\x7F\xC3\xA4\": not in the model"},
      "1 objects, 0 instances, 2 values; 1 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(read("Root").records.size(), 2u);
  EXPECT_EQ(value("Root", "C"), "c");
}

TEST_F(UpgradeTest, ParametersMoved) {
  build_old(object("Root.", writable("A") + writable("B") + writable("C")));
  set_old("Root", "A", "a");
  set_old("Root", "C", "c");
  poke_record("Root", "C", 72, "Subscriber");
  expect_upgrade(object("Root.", writable("C") + writable("B") + writable("A")), {},
                 "1 objects, 0 instances, 3 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  const ReadFile file = read("Root");
  ASSERT_EQ(file.records.size(), 3u);
  EXPECT_EQ(file.records[0].name + file.records[0].line + file.records[0].accesslist,
            "CcSubscriber");
  EXPECT_EQ(file.records[1].name + file.records[1].line, "B\r");
  EXPECT_EQ(file.records[2].name + file.records[2].line + file.records[2].accesslist, "Aa");
}

TEST_F(UpgradeTest, TypeAndFacetsNarrowed) {
  build_old(object("Root.", writable("Type") + writable("Range", kNumber) + writable("Choice") +
                                writable("Size") + writable("Fits") + writable("Empty")));
  set_old("Root", "Type", "high");
  set_old("Root", "Range", "14");
  set_old("Root", "Choice", "WEP");
  set_old("Root", "Size", "12345");
  set_old("Root", "Fits", "13");
  const std::string range =
      "<unsignedInt><range maxInclusive=\"13\"/></unsignedInt>"
      "<default type=\"object\" value=\"6\"/>";
  const std::string model = object(
      "Root.", writable("Type", kNumber) + writable("Range", range) +
                   writable("Choice", "<string><enumeration value=\"WPA\"/></string>") +
                   writable("Size", "<string><size minLength=\"1\" maxLength=\"4\"/></string>") +
                   writable("Fits", range) + writable("Empty", "<boolean/>"));
  write_model(model);
  ASSERT_EQ(run({"--model", path("model.xml"), path("new")}).code, 0);
  const std::vector<std::string> filters = read_filters(path("new/regex_file"));
  ASSERT_EQ(filters.size(), 5u);
  expect_upgrade(model,
                 {"refused value Root.Type: \"high\": it does not match the filter " + filters[0],
                  "refused value Root.Range: \"14\": it does not match the filter " + filters[1],
                  "refused value Root.Choice: \"WEP\": it does not match the filter ^WPA$",
                  "refused value Root.Size: \"12345\": it does not match the filter " + filters[3],
                  "refused value Root.Empty: \"\": it does not match the filter " + filters[4]},
                 "1 objects, 0 instances, 1 values; 0 dropped, 5 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "Type"), "0");
  EXPECT_EQ(value("Root", "Range"), "6");
  EXPECT_EQ(value("Root", "Choice"), "WPA");
  EXPECT_EQ(value("Root", "Size"), "0");
  EXPECT_EQ(value("Root", "Fits"), "13");
  EXPECT_EQ(value("Root", "Empty"), "false");
  EXPECT_EQ(find_record(read("Root"), "Type").type, 3u);
}

// The library takes what no filter refuses, so an upgrade does too.
TEST_F(UpgradeTest, UncheckedFacetsRefuseNothing) {
  build_old(object("Root.", writable("A")));
  set_old("Root", "A", std::string(200, 'a'));
  expect_upgrade(object("Root.", writable("A", "<string><size maxLength=\"64\"/></string>")), {},
                 "1 objects, 0 instances, 1 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "A"), std::string(200, 'a'));
}

TEST_F(UpgradeTest, OldValuesOutliveAnotherDefault) {
  const std::string old_default = "<string/><default type=\"object\" value=\"x\"/>";
  build_old(object("Root.", writable("A", old_default)));
  expect_upgrade(object("Root.", writable("A", "<string/><default type=\"object\" value=\"y\"/>")),
                 {}, "1 objects, 0 instances, 1 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "A"), "x");
}

TEST_F(UpgradeTest, AccessIsTheNewModels) {
  build_old(object("Root.", writable("Closed") + parameter("Opened")));
  set_old("Root", "Closed", "c");
  set_old("Root", "Opened", "o");
  expect_upgrade(object("Root.", parameter("Closed") + writable("Opened")), {},
                 "1 objects, 0 instances, 2 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  const ReadRecord closed = find_record(read("Root"), "Closed");
  const ReadRecord opened = find_record(read("Root"), "Opened");
  EXPECT_EQ(closed.line + opened.line, "co");
  EXPECT_EQ(closed.rw * 100 + closed.key, 0u);
  EXPECT_EQ(opened.rw * 100 + opened.key, 115u);
}

TEST_F(UpgradeTest, ValuesFileHoldsForWhatClientsCannotSet) {
  const std::string model = object("Root.", writable("W") + parameter("R") + parameter("R2"));
  write("values", "Root.W=w1\nRoot.R=r1\nRoot.R2=s1\n");
  build_old(model);
  write("values", "Root.W=w2\nRoot.R=r2\n");
  expect_upgrade(model, {},
                 "1 objects, 0 instances, 2 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "W"), "w1");
  EXPECT_EQ(value("Root", "R"), "r2");
  EXPECT_EQ(value("Root", "R2"), "s1");
}

}  // namespace
