// Upgrades of a store: objects, tables and instances that come, go and change their kind.
#include <filesystem>

#include "tests/mkstore/upgrade_run.h"

namespace fs = std::filesystem;

namespace {

TEST_F(UpgradeTest, ObjectsAddedAndRemoved) {
  build_old(object("Root.", writable("A")) + object("Root.Gone.", writable("B")) +
            object("Root.Gone.Below.{i}.", writable("C")));
  set_old("Root", "A", "a");
  expect_upgrade(object("Root.", writable("A")) + object("Root.New.", writable("D")),
                 {"dropped object Root.Gone.: not in the model, with 2 objects below"},
                 "1 objects, 0 instances, 1 values; 1 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "A"), "a");
  EXPECT_EQ(value("Root/New", "D"), "\r");
  EXPECT_FALSE(fs::exists(path("out/Root/Gone")));
}

TEST_F(UpgradeTest, RootsAddedAndRemoved) {
  build_old(object("Old.", writable("A")) + object("Root.", writable("A")));
  fs::create_directory(path("old/log"));
  write("old/log/messages", "x");
  expect_upgrade(object("New.", writable("A")) + object("Root.", writable("A")),
                 {"dropped object Old.: not in the model"},
                 "1 objects, 0 instances, 1 values; 1 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_FALSE(fs::exists(path("out/Old")));
  EXPECT_FALSE(fs::exists(path("out/log")));
}

TEST_F(UpgradeTest, InstancesKeepTheirNumbersUpToTheLimit) {
  write("instances", "Root.T.2.\nRoot.T.4.\nRoot.T.5.\nRoot.T.200.\n");
  write("values", "Root.T.4.P=four\n");
  build_old(table("") + object("Root.T.{i}.U.", writable("Q")));
  expect_upgrade(
      table("maxEntries=\"4\"") + object("Root.T.{i}.U.", writable("Q")),
      {"dropped instance Root.T.5.: above max_instance, which is 4, with 1 objects below",
       "dropped instance Root.T.200.: above max_instance, which is 4, with 1 objects below"},
      "6 objects, 2 instances, 4 values; 2 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "TCount"), "2");
  EXPECT_EQ(value("Root/T/4", "P"), "four");
  EXPECT_EQ(read("Root/T").max_instance, 4u);
  for (const char *gone : {"1", "3", "5", "200"}) {
    EXPECT_FALSE(fs::exists(path("out/Root/T/") + gone)) << gone;
  }
}

TEST_F(UpgradeTest, LimitOfTheAttributesFileCounts) {
  write("instances", "Root.T.2.\nRoot.T.4.\n");
  build_old(table(""));
  write("attributes", "Root.T. max_instance=3\n");
  expect_upgrade(table(""), {"dropped instance Root.T.4.: above max_instance, which is 3"},
                 "3 objects, 1 instances, 1 values; 1 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "TCount"), "1");
}

TEST_F(UpgradeTest, CountersAreCountedAnew) {
  write("instances", "Root.T.2.\nRoot.T.4.\n");
  build_old(table(""));
  set_old("Root", "TCount", "77");
  expect_upgrade(table(""), {},
                 "4 objects, 2 instances, 2 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "TCount"), "2");
}

TEST_F(UpgradeTest, InstancesFileHoldsForNewTablesOnly) {
  write("instances", "Root.T.1.\nRoot.T.2.\n");
  build_old(table(""));
  delete_old("Root/T/1");
  const std::string added = object("Root.N.{i}.", writable("P"), kWritable);
  write("instances", "Root.T.1.\nRoot.T.3.\nRoot.N.3.\n");
  write("values", "Root.T.1.P=one\nRoot.T.3.P=three\nRoot.N.3.P=new\nRoot.TCount=2\n");
  expect_upgrade(table("") + added, {},
                 "3 objects, 1 instances, 1 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root", "TCount"), "1");
  EXPECT_EQ(value("Root/T/2", "P"), "\r");
  EXPECT_FALSE(fs::exists(path("out/Root/T/1")));
  EXPECT_FALSE(fs::exists(path("out/Root/T/3")));
  EXPECT_EQ(value("Root/N/3", "P"), "new");
}

TEST_F(UpgradeTest, ListFilesAreStillChecked) {
  build_old(table(""));
  write("values", "Root.T.9.P=x\n");
  const RunResult result = upgrade(table(""));
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err,
            "zrcfg-mkstore: " + path("values") + ":1: no instance Root.T.9. in the store\n");
  EXPECT_EQ(leftovers(), std::vector<std::string>({"old"}));
}

TEST_F(UpgradeTest, LeastNumberOfInstancesIsFilledUp) {
  write("instances", "Root.T.2.\n");
  build_old(table(""));
  set_old("Root/T/2", "P", "two");
  expect_upgrade(table("minEntries=\"3\""),
                 {"added instance Root.T.1.: the model has at least 3",
                  "added instance Root.T.3.: the model has at least 3"},
                 "3 objects, 1 instances, 1 values; 0 dropped, 0 refused, 0 damaged, 2 added");
  EXPECT_EQ(value("Root", "TCount"), "3");
  EXPECT_EQ(value("Root/T/1", "P"), "\r");
  EXPECT_EQ(value("Root/T/2", "P"), "two");
}

TEST_F(UpgradeTest, EnoughInstancesStayAsTheyAre) {
  write("instances", "Root.T.5.\n");
  build_old(table(""));
  expect_upgrade(table("minEntries=\"1\""), {},
                 "3 objects, 1 instances, 1 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_TRUE(fs::exists(path("out/Root/T/5")));
  EXPECT_FALSE(fs::exists(path("out/Root/T/1")));
}

TEST_F(UpgradeTest, FixedTablesGrowAndShrink) {
  const auto fixed = [](const char *name, int number) {
    const std::string entries = std::to_string(number);
    return object(
        std::string("Root.") + name + ".{i}.", writable("P"),
        "access=\"readOnly\" minEntries=\"" + entries + "\" maxEntries=\"" + entries + "\"");
  };
  build_old(object("Root.", "") + fixed("G", 1) + fixed("S", 2));
  set_old("Root/G/1", "P", "g");
  set_old("Root/S/1", "P", "s");
  expect_upgrade(object("Root.", "") + fixed("G", 2) + fixed("S", 1),
                 {"added instance Root.G.2.: the model has at least 2",
                  "dropped instance Root.S.2.: above max_instance, which is 1"},
                 "5 objects, 2 instances, 2 values; 1 dropped, 0 refused, 0 damaged, 1 added");
  EXPECT_EQ(value("Root/G/1", "P") + value("Root/G/2", "P") + value("Root/S/1", "P"), "g\rs");
  EXPECT_FALSE(fs::exists(path("out/Root/S/2")));
}

TEST_F(UpgradeTest, TableBecomesSingleObject) {
  write("instances", "Root.T.1.\nRoot.T.3.\n");
  build_old(table(""));
  set_old("Root/T/1", "P", "one");
  poke_header("Root/T", 8, "\xFF");
  expect_upgrade(object("Root.", "") + object("Root.T.", writable("P")),
                 {"dropped instance Root.T.1.: not a table in the model",
                  "dropped instance Root.T.3.: not a table in the model",
                  "dropped parameter Root.TCount: \"2\": not in the model"},
                 "1 objects, 0 instances, 0 values; 3 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root/T", "P"), "\r");
  EXPECT_EQ(read("Root/T").hide, 0u);
  EXPECT_FALSE(fs::exists(path("out/Root/T/1")));
}

TEST_F(UpgradeTest, SingleObjectBecomesTable) {
  build_old(object("Root.", parameter("TCount", kNumber)) +
            object("Root.T.", writable("P") + writable("Q")) +
            object("Root.T.Below.", writable("B")));
  poke_header("Root/T", 8, "\xFF");
  write("instances", "Root.T.2.\n");
  expect_upgrade(
      table(""),
      {"dropped object Root.T.Below.: not in the model",
       "dropped object Root.T.: a table in the model, with 2 parameters in the old store"},
      "1 objects, 0 instances, 0 values; 2 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(read("Root/T").param_num, 0u);
  EXPECT_EQ(read("Root/T").hide, 0u);
  EXPECT_EQ(value("Root/T/2", "P"), "\r");
  EXPECT_EQ(value("Root", "TCount"), "1");
}

TEST_F(UpgradeTest, TemplatesAreTheNewModels) {
  const std::string nested = table("", writable("P") + parameter("UCount", kNumber)) +
                             object("Root.T.{i}.U.{i}.", writable("Q"),
                                    "access=\"readWrite\" numEntriesParameter=\"UCount\"");
  write("instances", "Root.T.0.U.1.\nRoot.T.1.\nRoot.T.2.U.3.\n");
  build_old(nested);
  delete_old("Root/T/1/U/1");
  set_old("Root/T/0", "P", "changed");
  set_old("Root/T/2/U/0", "Q", "changed");
  set_old("Root/T/2/U/3", "Q", "three");
  write("instances", "Root.T.0.U.2.\n");
  write("values", "Root.T.0.P=template\nRoot.T.0.U.0.Q=inner\n");
  expect_upgrade(nested, {},
                 "8 objects, 4 instances, 4 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root/T/0", "P"), "template");
  EXPECT_EQ(value("Root/T/0/U/2", "Q"), "inner");
  EXPECT_FALSE(fs::exists(path("out/Root/T/0/U/1")));
  EXPECT_EQ(value("Root/T/1", "P") + value("Root/T/1", "UCount"), "\r0");
  EXPECT_EQ(value("Root/T/2", "UCount"), "2");
  EXPECT_EQ(value("Root/T/2/U/0", "Q"), "inner");
  EXPECT_EQ(value("Root/T/2/U/1", "Q") + value("Root/T/2/U/3", "Q"), "\rthree");
}

TEST_F(UpgradeTest, NewTablesInOldInstancesInheritFromTheTemplate) {
  write("instances", "Root.T.4.\n");
  build_old(table(""));
  write("instances", "Root.T.0.U.1.\n");
  write("values", "Root.T.0.U.1.Q=q\n");
  expect_upgrade(table("") + object("Root.T.{i}.U.{i}.", writable("Q")), {},
                 "3 objects, 1 instances, 1 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  EXPECT_EQ(value("Root/T/4/U/1", "Q"), "q");
}

}  // namespace
