// The removal of a directory tree.
#include <sys/stat.h>
#include <unistd.h>

#include "lifecycle/dir_tree.h"
#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

constexpr char kOpenMessage[] = "dirDel:273 open failed.\n";

class DirDeleteTest : public LifecycleTest {
 protected:
  int remove_tree(const std::string &path) {
    int result = -7;
    output_ = printed([&] { result = dirDel(path.c_str()); });
    return result;
  }
  std::string output_;
};

TEST_F(DirDeleteTest, TreeIsRemovedAndNothingElse) {
  EXPECT_EQ(remove_tree("Gateway/Table/0"), 0);
  expect_tree(without(tree_, "Gateway/Table/0"));
  EXPECT_EQ(output_, "");
  EXPECT_EQ(log_texts(), Lines());
}

TEST_F(DirDeleteTest, FinalSlashMakesNoDifference) {
  EXPECT_EQ(remove_tree("Gateway/Table/0/"), 0);
  expect_tree(without(tree_, "Gateway/Table/0"));
}

TEST_F(DirDeleteTest, EmptyDirectoryIsRemoved) {
  EXPECT_EQ(remove_tree("Gateway/Table/0/Sub/Bare"), 0);
  expect_tree(without(tree_, "Gateway/Table/0/Sub/Bare"));
}

TEST_F(DirDeleteTest, WhatCannotBeOpenedAsADirectoryGivesMinusOneAndStays) {
  make_link("nowhere", "broken");
  remember();
  for (const char *path :
       {"Gateway/property.conf", "none", "Gateway/Table/7", "broken", "Gateway/property.conf/x"}) {
    EXPECT_EQ(remove_tree(path), -1) << path;
    EXPECT_EQ(output_, kOpenMessage) << path;
  }
  expect_unchanged();
  EXPECT_EQ(log_texts(), Lines()) << "the message is no diagnostic";
}

TEST_F(DirDeleteTest, SpecialNamesAndFilesOfEveryKindAreRemoved) {
  for (const std::string &name :
       {std::string("..."), std::string(".hidden"), std::string("..x"), std::string("a b"),
        std::string("%s%n"), std::string("line\nfeed"), std::string("\xff\x01")}) {
    make_store_dir("Gateway/Table/2/" + name + "/in/");
    write_store_file("Gateway/Table/2/" + name + "/in/" + name, name);
  }
  ASSERT_EQ(mkfifo("/var/Gateway/Table/2/pipe", 0600), 0);
  ASSERT_EQ(mknod("/var/Gateway/Table/2/socket", S_IFSOCK | 0600, 0), 0);
  EXPECT_EQ(remove_tree("Gateway/Table/2"), 0);
  expect_unchanged();
}

TEST_F(DirDeleteTest, LinkThatIsNoDirectoryIsRemovedAndItsTargetStays) {
  make_store_dir("Gateway/Table/2/");
  make_link("nowhere", "Gateway/Table/2/broken");
  make_link("../../../Other/property.conf", "Gateway/Table/2/file");
  EXPECT_EQ(remove_tree("Gateway/Table/2"), 0);
  expect_unchanged();
}

// A link to a directory is taken for one: it is emptied, and neither it nor the link can be removed
// as a directory.
TEST_F(DirDeleteTest, LinkToADirectoryIsEmptiedAndStays) {
  make_store_dir("Gateway/Table/2/");
  make_link("../../../Other", "Gateway/Table/2/link");
  write_store_file("Gateway/Table/2/file", "x");
  remember();
  EXPECT_EQ(remove_tree("Gateway/Table/2"), 0);
  Tree expected = tree_;
  expected.erase("Other/property.conf");
  expected.erase("Gateway/Table/2/file");
  expect_tree(expected);
}

TEST_F(DirDeleteTest, ManyEntriesAreAllRemoved) {
  make_store_dir("Gateway/Table/2/");
  for (int i = 0; i < 1500; ++i) {
    write_store_file("Gateway/Table/2/" + std::string(40, 'f') + std::to_string(i), "x");
  }
  for (int i = 0; i < 300; ++i) {
    write_property("Gateway/Table/2/" + std::to_string(i) + "/", "y");
  }
  EXPECT_EQ(remove_tree("Gateway/Table/2"), 0);
  expect_unchanged();
}

TEST_F(DirDeleteTest, WhatMayNotBeRemovedDoesNotStopTheRest) {
  make_store_dir("Gateway/Table/2/locked/in/");
  write_store_file("Gateway/Table/2/locked/file", "x");
  write_store_file("Gateway/Table/2/free", "x");
  make_store_dir("Gateway/Table/2/open/");
  remember();
  const ModeChange table("Gateway/Table/2", 0777);
  {
    const ModeChange locked("Gateway/Table/2/locked", 0555);
    const OrdinaryUser user;
    EXPECT_EQ(remove_tree("Gateway/Table/2"), 0);
  }
  Tree expected = tree_;
  expected.erase("Gateway/Table/2/free");
  expected.erase("Gateway/Table/2/open");
  expect_tree(expected);
}

TEST_F(DirDeleteTest, DirectoryThatMayNotBeReadStays) {
  make_store_dir("Gateway/Table/2/closed/");
  write_store_file("Gateway/Table/2/closed/file", "x");
  write_store_file("Gateway/Table/2/free", "x");
  remember();
  const ModeChange table("Gateway/Table/2", 0777);
  {
    const ModeChange closed("Gateway/Table/2/closed", 0);
    const OrdinaryUser user;
    EXPECT_EQ(remove_tree("Gateway/Table/2"), 0);
    EXPECT_EQ(output_, "");
    EXPECT_EQ(remove_tree("Gateway/Table/2/closed"), -1);
    EXPECT_EQ(output_, kOpenMessage);
  }
  expect_tree(without(tree_, "Gateway/Table/2/free"));
}

TEST_F(DirDeleteTest, FewDescriptorsLeaveSomeAndNeverTouchAnythingElse) {
  for (unsigned free = 0; free < 8; ++free) {
    LifecycleTest::SetUp();
    int result = -7;
    const std::string output = printed([&] {
      const DescriptorLimit limit(free);
      result = dirDel("Gateway/Table/0");
    });
    EXPECT_EQ(result, free == 0 ? -1 : 0) << free;
    EXPECT_EQ(output.find_first_not_of(kOpenMessage), std::string::npos) << output;
    const Tree found = store_tree();
    EXPECT_EQ(without(found, "Gateway/Table/0"), without(tree_, "Gateway/Table/0")) << free;
    for (const auto &[path, entry] : subtree(found, "Gateway/Table/0")) {
      EXPECT_EQ(entry, tree_.at(path)) << path;
    }
    EXPECT_TRUE(free < 7 || found == without(tree_, "Gateway/Table/0")) << free;
  }
}

}  // namespace
}  // namespace zrcfg_test
