// The test for a directory and the making of directories, with their messages.
#include <sys/stat.h>
#include <unistd.h>

#include "lifecycle/dir_tree.h"
#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

constexpr char kStatMessage[] = "isDir:95 call stat failed!";
constexpr char kMakeMessage[] = "createDir:191 call mkdir failed.\n";

using DirQueryTest = StoreTest;

struct Answer {
  int result;
  std::string output;
};

Answer ask(const std::string &path) {
  Answer answer = {-7, ""};
  answer.output = printed([&] { answer.result = isDir(path.c_str()); });
  return answer;
}

Answer make(const std::string &path) {
  Answer answer = {-7, ""};
  answer.output = printed([&] { answer.result = createDir(path.c_str()); });
  return answer;
}

mode_t mode_of(const std::string &relative) {
  struct stat status = {};
  EXPECT_EQ(stat(store_path(relative).c_str(), &status), 0) << relative;
  return status.st_mode & 07777;
}

TEST_F(DirQueryTest, DirectoryIs1WithOrWithoutFinalSlash) {
  make_store_dir("a/b/");
  for (const char *path : {"a", "a/", "a/b", "a//b/", "/a", "a/.", "a/b/..", "", "/", "."}) {
    const Answer answer = ask(path);
    EXPECT_EQ(answer.result, 1) << path;
    EXPECT_EQ(answer.output, "") << path;
  }
}

TEST_F(DirQueryTest, EverythingElseThatExistsIs0) {
  write_store_file("file", "x");
  make_link("file", "link");
  ASSERT_EQ(mkfifo(store_path("pipe").c_str(), 0600), 0);
  ASSERT_EQ(mknod(store_path("socket").c_str(), S_IFSOCK | 0600, 0), 0);
  for (const char *path : {"file", "link", "pipe", "socket"}) {
    const Answer answer = ask(path);
    EXPECT_EQ(answer.result, 0) << path;
    EXPECT_EQ(answer.output, "") << path;
  }
}

TEST_F(DirQueryTest, LinkToADirectoryIs1) {
  make_store_dir("a/");
  make_link("a", "link");
  EXPECT_EQ(ask("link").result, 1);
}

TEST_F(DirQueryTest, WhatCannotBeExaminedIsMinusOneWithAMessageWithoutLineFeed) {
  write_store_file("file", "x");
  make_link("nowhere", "broken");
  make_link("circle", "circle");
  const std::string endless(300, 'x');
  for (const std::string &path : {std::string("none"), std::string("file/"), std::string("file/x"),
                                  std::string("broken"), std::string("circle"), endless}) {
    const Answer answer = ask(path);
    EXPECT_EQ(answer.result, -1) << path;
    EXPECT_EQ(answer.output, kStatMessage) << path;
  }
  EXPECT_EQ(log_texts(), Lines()) << "the message is no diagnostic";
}

TEST_F(DirQueryTest, DirectoryInsideAForbiddenOneCannotBeExamined) {
  make_store_dir("a/b/");
  const ModeChange closed("a", 0);
  const OrdinaryUser user;
  EXPECT_EQ(ask("a").result, 1);
  const Answer answer = ask("a/b");
  EXPECT_EQ(answer.result, -1);
  EXPECT_EQ(answer.output, kStatMessage);
}

TEST_F(DirQueryTest, NullPathsAreMinusOne) {
  EXPECT_EQ(isDir(nullptr), -1);
  EXPECT_EQ(createDir(nullptr), -1);
  EXPECT_EQ(fileCopy(nullptr, "x"), -1);
  EXPECT_EQ(fileCopy("x", nullptr), -1);
  EXPECT_EQ(dirCopy(nullptr, "x"), -1);
  EXPECT_EQ(dirDel(nullptr), -1);
  make_store_dir("a/");
  EXPECT_EQ(dirCopy("a", nullptr), -1);
  EXPECT_EQ(store_tree(), (Tree{{"a", kDirEntry}}));
}

TEST_F(DirQueryTest, CreationMakesEveryMissingAncestor) {
  const Tree expected = {{"a", kDirEntry}, {"a/b", kDirEntry}, {"a/b/c", kDirEntry}};
  for (const char *path : {"a/b/c", "a/b/c/", "/a/b/c", "a//b///c//"}) {
    StoreTest::SetUp();
    const Answer answer = make(path);
    EXPECT_EQ(answer.result, 0) << path;
    EXPECT_EQ(answer.output, "") << path;
    EXPECT_EQ(store_tree(), expected) << path;
  }
}

TEST_F(DirQueryTest, CreationLeavesExistingDirectoriesAsTheyAre) {
  make_store_dir("a/b/");
  write_store_file("a/b/file", "kept");
  const ModeChange narrow("a/b", 0700);
  EXPECT_EQ(make("a/b").result, 0);
  EXPECT_EQ(make("a/b/").result, 0);
  EXPECT_EQ(mode_of("a/b"), 0700u);
  EXPECT_EQ(make("a/b/c").result, 0);
  EXPECT_EQ(mode_of("a/b"), 0700u);
  EXPECT_EQ(store_tree(), (Tree{{"a", kDirEntry},
                                {"a/b", kDirEntry},
                                {"a/b/c", kDirEntry},
                                {"a/b/file", file_entry("kept")}}));
}

TEST_F(DirQueryTest, CreatedDirectoriesHaveMode0755AsFarAsTheMaskAllows) {
  const mode_t before = umask(0);
  EXPECT_EQ(make("open/below").result, 0);
  umask(0027);
  EXPECT_EQ(make("masked").result, 0);
  umask(before);
  EXPECT_EQ(mode_of("open"), 0755u);
  EXPECT_EQ(mode_of("open/below"), 0755u);
  EXPECT_EQ(mode_of("masked"), 0750u);
}

TEST_F(DirQueryTest, RootExistsAlways) {
  for (const char *path : {"", "/", "//"}) {
    EXPECT_EQ(make(path).result, 0) << path;
  }
  EXPECT_EQ(store_tree(), Tree());
}

TEST_F(DirQueryTest, DirectoryThatCannotBeMadeGivesMinusOneAndOneMessage) {
  write_store_file("file", "x");
  const Tree before = store_tree();
  const Answer answer = make("file/x/y");
  EXPECT_EQ(answer.result, -1);
  EXPECT_EQ(answer.output, kMakeMessage);
  EXPECT_EQ(store_tree(), before);
  EXPECT_EQ(log_texts(), Lines()) << "the message is no diagnostic";
}

TEST_F(DirQueryTest, FileInThePlaceOfTheLastDirectoryCountsAsExisting) {
  write_store_file("file", "x");
  for (const char *path : {"file", "file/"}) {
    const Answer answer = make(path);
    EXPECT_EQ(answer.result, 0) << path;
    EXPECT_EQ(answer.output, "") << path;
  }
  EXPECT_EQ(store_tree(), (Tree{{"file", file_entry("x")}}));
}

TEST_F(DirQueryTest, LinkToNowhereIsNeitherADirectoryNorToBeMade) {
  make_link("no/where", "broken");
  make_link("circle", "circle");
  for (const char *path : {"broken", "broken/", "broken/x", "circle", "circle/x"}) {
    const Answer answer = make(path);
    EXPECT_EQ(answer.result, -1) << path;
    EXPECT_EQ(answer.output, kMakeMessage) << path;
  }
  EXPECT_EQ(store_tree(), (Tree{{"broken", "link to no/where"}, {"circle", "link to circle"}}));
}

TEST_F(DirQueryTest, CreationStopsAtTheFirstFailureAndKeepsWhatWasMade) {
  const std::string endless(256, 'x');
  const Answer answer = make("a/" + endless + "/b");
  EXPECT_EQ(answer.result, -1);
  EXPECT_EQ(answer.output, kMakeMessage);
  const Tree tree = store_tree();
  EXPECT_TRUE(tree == Tree() || tree == (Tree{{"a", kDirEntry}})) << ::testing::PrintToString(tree);
}

TEST_F(DirQueryTest, CreationInAForbiddenDirectoryFails) {
  make_store_dir("a/");
  {
    const ModeChange closed("a", 0555);
    const OrdinaryUser user;
    const Answer answer = make("a/b/c");
    EXPECT_EQ(answer.result, -1);
    EXPECT_EQ(answer.output, kMakeMessage);
  }
  EXPECT_EQ(store_tree(), (Tree{{"a", kDirEntry}}));
}

TEST_F(DirQueryTest, SpecialNamesAreNamesLikeOthers) {
  for (const std::string &name :
       {std::string("..."), std::string(".hidden"), std::string("a b"), std::string("%s%n"),
        std::string("line\nfeed"), std::string(200, 'n'), std::string("\xff\x01")}) {
    EXPECT_EQ(make(name + "/x").result, 0) << name;
    EXPECT_EQ(ask(name + "/x").result, 1) << name;
  }
}

// A path is made whole or refused; a cut one would be another directory.
TEST_F(DirQueryTest, LongPathsAreMadeWholeOrRefused) {
  for (size_t length = 240; length < 300; ++length) {
    StoreTest::SetUp();
    const std::string path = path_of(length);
    const int result = make(path).result;
    EXPECT_TRUE(result == 0 || result == -1);
    if (result == 0) {
      EXPECT_EQ(store_tree().count(path.substr(0, length - 1)), 1u) << length;
    }
    EXPECT_TRUE(result == 0 || length > 251) << length;
    for (const auto &[made, entry] : store_tree()) {
      EXPECT_EQ(path.compare(0, made.size() + 1, made + "/"), 0) << made;
    }
  }
  for (const size_t length : {1000u, 4000u, 10000u}) {
    StoreTest::SetUp();
    const std::string path = path_of(length);
    EXPECT_EQ(make(path).result, -1) << length;
    for (const auto &[made, entry] : store_tree()) {
      EXPECT_EQ(path.compare(0, made.size() + 1, made + "/"), 0) << made;
    }
  }
}

}  // namespace
}  // namespace zrcfg_test
