// Deep trees and long paths: bounded, refused cleanly, nothing under a cut name.
#include "lifecycle/dir_tree.h"
#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

constexpr size_t kLongestCreated = 250;
constexpr size_t kAlwaysReached = 255;  // A path of that length is served by every reader.

class DirLimitsTest : public StoreTest {
 protected:
  // A chain of directories below `dir`, each with a file; their names have `width` characters.
  static void make_chain(std::string dir, size_t levels, size_t width) {
    for (size_t i = 0; i < levels; ++i) {
      dir += std::string(width, static_cast<char>('a' + i % 26)) + "/";
      write_property(dir, "level " + std::to_string(i));
    }
  }
};

// Everything in the copy is an entry of the source under its whole name; nothing is missing that
// fits.
void expect_copy_as_far_as_it_fits(const std::string &from, const std::string &to) {
  const Tree tree = store_tree();
  const Tree source = subtree(tree, from);
  const Tree copy = subtree(tree, to);
  for (const auto &[path, entry] : copy) {
    const auto original = source.find(from + path.substr(to.size()));
    ASSERT_NE(original, source.end()) << path;
    EXPECT_EQ(entry, original->second) << path;
  }
  for (const auto &[path, entry] : source) {
    const std::string target = to + path.substr(from.size());
    const bool fits = target.size() <= kLongestCreated && path.size() <= kAlwaysReached;
    EXPECT_TRUE(!fits || copy.count(target) == 1) << target;
    const bool is_file = entry != kDirEntry;
    EXPECT_TRUE(target.size() <= kLongestCreated || !is_file || copy.count(target) == 0) << target;
  }
  Tree rest = without(without(tree, from), to);
  EXPECT_EQ(rest, Tree());
}

TEST_F(DirLimitsTest, DeepTreeIsCopiedAsFarAsItsPathsFit) {
  for (const size_t width : {1u, 9u, 30u, 60u, 200u}) {
    StoreTest::SetUp();
    make_chain("s/", 700 / (width + 1), width);
    EXPECT_EQ(dirCopy("s", "t"), 0) << width;
    expect_copy_as_far_as_it_fits("s", "t");
  }
}

TEST_F(DirLimitsTest, EveryLengthAroundTheLimitIsCopiedWholeOrNotAtAll) {
  for (size_t length = 225; length <= 262; ++length) {
    StoreTest::SetUp();
    write_property("s/" + path_of(length), "at the end");
    EXPECT_EQ(dirCopy("s", "t"), 0) << length;
    expect_copy_as_far_as_it_fits("s", "t");
  }
}

TEST_F(DirLimitsTest, LongerDestinationCopiesLess) {
  make_chain("s/", 10, 20);
  EXPECT_EQ(dirCopy("s", "t234567890123456789012345678901234567890"), 0);
  expect_copy_as_far_as_it_fits("s", "t234567890123456789012345678901234567890");
}

TEST_F(DirLimitsTest, DirectoryOf250CharactersIsReachedAsADestination) {
  write_property("s/", "x");
  for (const size_t length : {236u, 237u, 238u, 249u, 250u, 255u}) {
    const std::string dir = path_of(length);
    EXPECT_EQ(dirCopy("s", dir.c_str()), 0) << length;
    const bool fits = length + 13 <= kLongestCreated;
    EXPECT_EQ(store_tree().count(dir + "property.conf"), fits ? 1u : 0u) << length;
  }
}

TEST_F(DirLimitsTest, EndlessPathsGiveMinusOneAndNothingIsMade) {
  write_property("s/", "x");
  const Tree before = store_tree();
  for (const size_t length : {300u, 4096u, 100000u}) {
    const std::string endless = path_of(length);
    EXPECT_EQ(dirCopy(endless.c_str(), "t"), -1) << length;
    EXPECT_EQ(dirDel(endless.c_str()), -1) << length;
    EXPECT_EQ(isDir(endless.c_str()), -1) << length;
  }
  EXPECT_EQ(store_tree(), before);
}

TEST_F(DirLimitsTest, LoopOfLinksEnds) {
  write_property("source/", "x");
  make_link(".", "source/a_link_to_itself");
  EXPECT_EQ(dirCopy("source", "target"), 0);
  const Tree copy = subtree(store_tree(), "target");
  EXPECT_EQ(copy.at("target/property.conf"), file_entry("x"));
  for (const auto &[path, entry] : copy) {
    EXPECT_LE(path.size(), 287u);
    EXPECT_TRUE(entry == kDirEntry || (entry == file_entry("x") && path.size() <= kLongestCreated))
        << path;
  }
}

TEST_F(DirLimitsTest, RemovalOfALoopOfLinksEnds) {
  write_property("source/", "x");
  write_property("aside/", "x");
  make_link(".", "source/a_link_to_itself");
  EXPECT_EQ(dirDel("source"), 0);
  EXPECT_FALSE(store_entry_exists("source/property.conf"));
  EXPECT_EQ(read_property("aside/"), "x");
}

TEST_F(DirLimitsTest, CopyIntoItselfEnds) {
  write_property("source_directory/", "x");
  EXPECT_EQ(dirCopy("source_directory", "source_directory/copy_inside"), 0);
  EXPECT_EQ(read_property("source_directory/"), "x");
}

TEST_F(DirLimitsTest, DeepTreeIsRemovedAsFarAsItsPathsFit) {
  for (const size_t width : {1u, 9u, 30u, 60u, 200u}) {
    StoreTest::SetUp();
    make_chain("s/", 700 / (width + 1), width);
    write_property("aside/", "x");
    const Tree before = store_tree();
    EXPECT_EQ(dirDel("s"), 0) << width;
    const Tree left = store_tree();
    EXPECT_EQ(without(left, "s"), without(before, "s")) << width;
    for (const auto &[path, entry] : subtree(left, "s")) {
      EXPECT_EQ(entry, before.at(path)) << path;
      // Only what does not fit is left, and the directories on the way to it.
      EXPECT_TRUE(entry == kDirEntry || path.size() > kAlwaysReached) << path;
    }
  }
}

TEST_F(DirLimitsTest, EveryTreeThatFitsIsRemovedWhole) {
  for (size_t length = 225; length <= 257; ++length) {
    StoreTest::SetUp();
    const std::string dir = "s/" + path_of(length - 2);
    write_property(dir, "at the end");
    EXPECT_EQ(dirDel("s"), 0) << length;
    const Tree left = store_tree();
    // The property file of the longest directory is reached too.
    EXPECT_EQ(left, Tree()) << length;
  }
}

TEST_F(DirLimitsTest, DeepTreeNeedsFewDescriptorsOrStopsCleanly) {
  make_chain("s/", 100, 1);
  const Tree before = store_tree();
  {
    const DescriptorLimit limit(20);
    EXPECT_EQ(dirCopy("s", "t"), 0);
  }
  const Tree tree = store_tree();
  EXPECT_EQ(subtree(tree, "s"), before);
  for (const auto &[path, entry] : subtree(tree, "t")) {
    EXPECT_EQ(entry, before.at("s" + path.substr(1))) << path;
  }
  {
    const DescriptorLimit limit(20);
    EXPECT_EQ(dirDel("t"), 0);
  }
  EXPECT_EQ(subtree(store_tree(), "s"), before);
}

}  // namespace
}  // namespace zrcfg_test
