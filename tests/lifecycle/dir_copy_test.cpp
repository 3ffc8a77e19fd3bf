// The copy of a directory tree.
#include <sys/stat.h>
#include <unistd.h>

#include "lifecycle/dir_tree.h"
#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

constexpr char kStatMessage[] = "isDir:95 call stat failed!";
constexpr char kMakeMessage[] = "createDir:191 call mkdir failed.\n";

class DirCopyTest : public LifecycleTest {
 protected:
  int copy(const std::string &src, const std::string &dst) {
    int result = -7;
    output_ = printed([&] { result = dirCopy(src.c_str(), dst.c_str()); });
    return result;
  }
  std::string output_;
};

TEST_F(DirCopyTest, TreeIsCopiedWhole) {
  EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  expect_tree(with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2"));
  EXPECT_EQ(output_, "");
  EXPECT_EQ(log_texts(), Lines());
}

TEST_F(DirCopyTest, FinalSlashesMakeNoDifference) {
  EXPECT_EQ(copy("Gateway/Table/0/", "Gateway/Table/2/"), 0);
  expect_tree(with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2"));
}

TEST_F(DirCopyTest, MissingAncestorsOfTheDestinationAreMade) {
  EXPECT_EQ(copy("Gateway/Fixed/1", "New/Deep/1"), 0);
  Tree expected = with_copy(tree_, "Gateway/Fixed/1", "New/Deep/1");
  expected["New"] = kDirEntry;
  expected["New/Deep"] = kDirEntry;
  expect_tree(expected);
}

TEST_F(DirCopyTest, SourceThatIsMissingGivesMinusOneAndCreatesNothing) {
  EXPECT_EQ(copy("Gateway/Table/7", "Gateway/Table/2"), -1);
  EXPECT_EQ(output_, kStatMessage);
  expect_unchanged();
}

TEST_F(DirCopyTest, SourceThatIsAFileIsCopiedAndGives0WhateverBecomesOfIt) {
  EXPECT_EQ(copy("Gateway/Table/0/blocks", "copy"), 0);
  Tree expected = tree_;
  expected["copy"] = tree_["Gateway/Table/0/blocks"];
  expect_tree(expected);
  EXPECT_EQ(copy("Gateway/Table/0/blocks", "none/copy"), 0);
  expect_tree(expected);
  EXPECT_EQ(output_, "");
}

TEST_F(DirCopyTest, EmptyDirectoryIsCopied) {
  EXPECT_EQ(copy("Gateway/Table/0/Sub/Bare", "Bare"), 0);
  Tree expected = tree_;
  expected["Bare"] = kDirEntry;
  expect_tree(expected);
}

TEST_F(DirCopyTest, CopyOntoAnExistingTreeMergesAndKeepsTails) {
  write_store_file("Gateway/Table/1/blocks", std::string(5000, 'o'));
  write_store_file("Gateway/Table/1/only here", "kept");
  remember();
  EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/1"), 0);
  Tree expected = with_copy(tree_, "Gateway/Table/0", "Gateway/Table/1");
  const std::string blocks = read_store_file("Gateway/Table/0/blocks");
  expected["Gateway/Table/1/blocks"] = file_entry(blocks + std::string(5000 - blocks.size(), 'o'));
  // The template's property file is longer than the instance's: no tail is left of that.
  ASSERT_GE(read_property("Gateway/Table/0/").size(),
            property_file({"A", "B"}, {"one", "1"}).bytes().size());
  const std::string sub = property_file({"S"}, {"of a sub-object"}).bytes();
  expected["Gateway/Table/1/Sub/property.conf"] = file_entry(sub);
  expect_tree(expected);
}

TEST_F(DirCopyTest, NestedSpecialNamesAreCopied) {
  for (const std::string &name :
       {std::string("..."), std::string(".hidden"), std::string("..x"), std::string("a b"),
        std::string("%s%n"), std::string("line\nfeed"), std::string("\xff\x01")}) {
    make_store_dir("Gateway/Table/0/" + name + "/in/");
    write_store_file("Gateway/Table/0/" + name + "/in/" + name, name);
  }
  remember();
  EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  expect_tree(with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2"));
}

TEST_F(DirCopyTest, LinksAreFollowed) {
  make_link("../../../Other", "Gateway/Table/0/linked dir");
  make_link("blocks", "Gateway/Table/0/linked file");
  remember();
  EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  Tree expected = with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2");
  expected = with_copy(without(expected, "Gateway/Table/2/linked dir"), "Other",
                       "Gateway/Table/2/linked dir");
  expected["Gateway/Table/2/linked file"] = tree_["Gateway/Table/0/blocks"];
  expect_tree(expected);
}

TEST_F(DirCopyTest, EntryThatCannotBeExaminedIsSkippedWithItsMessage) {
  make_link("nowhere", "Gateway/Table/0/broken");
  make_link("circle", "Gateway/Table/0/circle");
  remember();
  EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  Tree expected = with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2");
  expected.erase("Gateway/Table/2/broken");
  expected.erase("Gateway/Table/2/circle");
  expect_tree(expected);
  EXPECT_EQ(output_, std::string(kStatMessage) + kStatMessage);
}

TEST_F(DirCopyTest, EntryThatCannotBeCopiedDoesNotStopTheOthers) {
  ASSERT_EQ(mknod(store_path("Gateway/Table/0/socket").c_str(), S_IFSOCK | 0666, 0), 0);
  // In the place of a file of the template lies a directory with one of that name in it.
  make_store_dir("Gateway/Table/2/blocks/blocks/");
  remember();
  EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  Tree expected = with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2");
  expected["Gateway/Table/2/blocks"] = kDirEntry;
  Tree found = store_tree();
  // Whether the failed copy of the socket leaves an empty file is open.
  found.erase("Gateway/Table/2/socket");
  expected.erase("Gateway/Table/2/socket");
  EXPECT_EQ(found, expected);
}

TEST_F(DirCopyTest, FileWhereADirectoryIsToBeMadeDoesNotStopTheOthers) {
  make_store_dir("Gateway/Table/2/");
  write_store_file("Gateway/Table/2/Sub", "a file");
  remember();
  EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  Tree expected = tree_;
  for (const auto &[path, entry] : subtree(tree_, "Gateway/Table/0")) {
    if (path.find("/Sub") == std::string::npos) {
      expected["Gateway/Table/2" + path.substr(15)] = entry;
    }
  }
  expect_tree(expected);
}

TEST_F(DirCopyTest, FileInThePlaceOfTheDestinationIsKept) {
  write_store_file("Gateway/Table/2", "a file");
  remember();
  EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  expect_unchanged();
}

TEST_F(DirCopyTest, DestinationThatCannotBeMadePrintsItsMessageAndGives0) {
  write_store_file("file", "x");
  make_store_dir("empty/");
  remember();
  EXPECT_EQ(copy("empty", "file/copy"), 0);
  EXPECT_EQ(output_, kMakeMessage);
  expect_unchanged();
}

TEST_F(DirCopyTest, DirectoryThatMayNotBeReadIsSkipped) {
  const ModeChange table("Gateway/Table", 0777);
  {
    const ModeChange closed("Gateway/Table/0/Sub", 0311);
    const OrdinaryUser user;
    EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  }
  Tree found = store_tree();
  // The empty directory itself may have been made.
  found.erase("Gateway/Table/2/Sub");
  Tree expected =
      without(with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2"), "Gateway/Table/2/Sub");
  EXPECT_EQ(found, expected);
}

TEST_F(DirCopyTest, TopThatMayNotBeReadIsNoCrash) {
  const ModeChange table("Gateway/Table", 0777);
  {
    const ModeChange closed("Gateway/Table/0", 0);
    const OrdinaryUser user;
    EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  }
  Tree found = store_tree();
  found.erase("Gateway/Table/2");
  EXPECT_EQ(found, tree_);
}

TEST_F(DirCopyTest, FileThatMayNotBeReadIsSkipped) {
  const ModeChange table("Gateway/Table", 0777);
  {
    const ModeChange closed("Gateway/Table/0/blocks", 0);
    const OrdinaryUser user;
    EXPECT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  }
  expect_tree(
      without(with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2"), "Gateway/Table/2/blocks"));
}

// With few descriptors deeper directories or files cannot be opened; what is copied is whole.
TEST_F(DirCopyTest, FewDescriptorsCutTheCopyShortAndNothingElse) {
  for (unsigned free = 0; free < 8; ++free) {
    LifecycleTest::SetUp();
    int result = -7;
    {
      const DescriptorLimit limit(free);
      result = dirCopy("Gateway/Table/0", "Gateway/Table/2");
    }
    EXPECT_EQ(result, 0) << free;
    const Tree whole = with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2");
    const Tree found = store_tree();
    EXPECT_EQ(without(found, "Gateway/Table/2"), tree_) << free;
    for (const auto &[path, entry] : subtree(found, "Gateway/Table/2")) {
      ASSERT_EQ(whole.count(path), 1u) << path;
      EXPECT_EQ(entry, whole.at(path)) << path;
    }
    EXPECT_TRUE(free < 6 || found == whole) << free;
  }
}

TEST_F(DirCopyTest, CopiedFilesAreNewOnes) {
  ASSERT_EQ(copy("Gateway/Table/0", "Gateway/Table/2"), 0);
  struct stat from = {};
  struct stat to = {};
  ASSERT_EQ(stat("/var/Gateway/Table/0/property.conf", &from), 0);
  ASSERT_EQ(stat("/var/Gateway/Table/2/property.conf", &to), 0);
  EXPECT_NE(from.st_ino, to.st_ino);
  EXPECT_EQ(to.st_nlink, 1u);
}

}  // namespace
}  // namespace zrcfg_test
