// The copy of one file: bytes, destination, tail, refusals.
#include <sys/stat.h>
#include <unistd.h>

#include "lifecycle/dir_tree.h"
#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

constexpr size_t kLongestCreated = 250;  // 255 with the root in front.

class FileCopyTest : public StoreTest {
 protected:
  // Copies; nothing may be printed or, on success, logged.
  static int copy(const std::string &src, const std::string &dst) {
    int result = -7;
    EXPECT_EQ(printed([&] { result = fileCopy(src.c_str(), dst.c_str()); }), "");
    return result;
  }
};

TEST_F(FileCopyTest, CopiesEveryByteWhateverTheSize) {
  for (const size_t size : {0u, 1u, 1023u, 1024u, 1025u, 2048u, 4096u, 100001u}) {
    std::string bytes(size, '\0');
    for (size_t i = 0; i < size; ++i) {
      bytes[i] = static_cast<char>(i * 7 + i / 256);
    }
    write_store_file("src", bytes);
    EXPECT_EQ(copy("src", "dst" + std::to_string(size)), 0);
    EXPECT_EQ(read_store_file("dst" + std::to_string(size)), bytes) << size;
    EXPECT_EQ(read_store_file("src"), bytes);
  }
  EXPECT_EQ(log_texts(), Lines());
}

TEST_F(FileCopyTest, LongerDestinationKeepsItsTail) {
  write_store_file("src", "new");
  write_store_file("dst", "0123456789");
  EXPECT_EQ(copy("src", "dst"), 0);
  EXPECT_EQ(read_store_file("dst"), "new3456789");
  write_store_file("src", "");
  EXPECT_EQ(copy("src", "dst"), 0);
  EXPECT_EQ(read_store_file("dst"), "new3456789");
}

TEST_F(FileCopyTest, ShorterDestinationGrows) {
  write_store_file("src", std::string(3000, 's'));
  write_store_file("dst", std::string(2000, 'd'));
  EXPECT_EQ(copy("src", "dst"), 0);
  EXPECT_EQ(read_store_file("dst"), std::string(3000, 's'));
}

TEST_F(FileCopyTest, IntoADirectoryKeepsTheLastNameOfTheSource) {
  make_store_dir("from/");
  make_store_dir("into/");
  write_store_file("from/name", "bytes");
  write_store_file("plain", "other");
  for (const char *dst : {"into", "into/"}) {
    EXPECT_EQ(copy("from/name", dst), 0);
    EXPECT_EQ(copy("plain", dst), 0);
    EXPECT_EQ(copy("/plain", dst), 0);
    EXPECT_EQ(store_tree(), (Tree{{"from", kDirEntry},
                                  {"from/name", file_entry("bytes")},
                                  {"into", kDirEntry},
                                  {"into/name", file_entry("bytes")},
                                  {"into/plain", file_entry("other")},
                                  {"plain", file_entry("other")}}))
        << dst;
    unlink("/var/into/name");
    unlink("/var/into/plain");
  }
}

TEST_F(FileCopyTest, IntoTheRoot) {
  make_store_dir("from/");
  write_store_file("from/name", "bytes");
  EXPECT_EQ(copy("from/name", "/"), 0);
  EXPECT_EQ(read_store_file("name"), "bytes");
}

TEST_F(FileCopyTest, IntoADirectoryThatHasADirectoryOfThatNameFails) {
  write_store_file("name", "bytes");
  make_store_dir("into/name/");
  const Tree before = store_tree();
  EXPECT_EQ(copy("name", "into"), -1);
  EXPECT_EQ(store_tree(), before);
}

TEST_F(FileCopyTest, FinalSlashWithoutADirectoryFails) {
  write_store_file("src", "bytes");
  const Tree before = store_tree();
  EXPECT_EQ(copy("src", "none/"), -1);
  EXPECT_EQ(copy("src", "none/deeper"), -1);
  EXPECT_EQ(copy("src", "src/deeper"), -1);
  EXPECT_EQ(store_tree(), before);
}

TEST_F(FileCopyTest, SourceThatIsMissingFailsAndCreatesNothing) {
  make_link("nowhere", "broken");
  const Tree before = store_tree();
  EXPECT_EQ(copy("none", "dst"), -1);
  EXPECT_EQ(copy("broken", "dst"), -1);
  EXPECT_EQ(store_tree(), before);
}

TEST_F(FileCopyTest, DirectoryAsSourceFails) {
  make_store_dir("src/");
  EXPECT_EQ(copy("src", "dst"), -1);
  EXPECT_EQ(copy("", "dst"), -1);
}

TEST_F(FileCopyTest, SourceThatMayNotBeReadFailsAndCreatesNothing) {
  make_store_dir("in/");
  write_store_file("in/src", "secret");
  const ModeChange open("in", 0777);
  const ModeChange closed("in/src", 0);
  {
    const OrdinaryUser user;
    EXPECT_EQ(copy("in/src", "in/dst"), -1);
  }
  EXPECT_FALSE(store_entry_exists("in/dst"));
}

TEST_F(FileCopyTest, DestinationThatMayNotBeWrittenFailsAndIsKept) {
  write_store_file("src", "new");
  write_store_file("dst", "old");
  const ModeChange readable("src", 0644);
  const ModeChange closed("dst", 0444);
  {
    const OrdinaryUser user;
    EXPECT_EQ(copy("src", "dst"), -1);
  }
  EXPECT_EQ(read_store_file("dst"), "old");
}

TEST_F(FileCopyTest, LinksAreFollowedOnBothSides) {
  write_store_file("real", "bytes");
  make_link("real", "link");
  EXPECT_EQ(copy("link", "dst"), 0);
  make_link("behind", "to");
  EXPECT_EQ(copy("real", "to"), 0);
  EXPECT_EQ(store_tree(), (Tree{{"real", file_entry("bytes")},
                                {"link", "link to real"},
                                {"dst", file_entry("bytes")},
                                {"to", "link to behind"},
                                {"behind", file_entry("bytes")}}));
}

TEST_F(FileCopyTest, NewFileHasMode0666AsFarAsTheMaskAllows) {
  write_store_file("src", "bytes");
  const ModeChange narrow("src", 0600);
  const mode_t before = umask(0);
  EXPECT_EQ(copy("src", "open"), 0);
  umask(0022);
  EXPECT_EQ(copy("src", "masked"), 0);
  umask(before);
  struct stat status = {};
  ASSERT_EQ(stat("/var/open", &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0666u);
  ASSERT_EQ(stat("/var/masked", &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0644u);
}

TEST_F(FileCopyTest, ModeOfAnExistingDestinationIsKept) {
  write_store_file("src", "bytes");
  write_store_file("dst", "");
  const ModeChange narrow("dst", 0600);
  EXPECT_EQ(copy("src", "dst"), 0);
  struct stat status = {};
  ASSERT_EQ(stat("/var/dst", &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(FileCopyTest, SpecialNames) {
  for (const std::string &name :
       {std::string("..."), std::string(".hidden"), std::string("a b"), std::string("%s%n"),
        std::string("line\nfeed"), std::string("property.conf"), std::string("\xff\x01")}) {
    write_store_file(name, name);
    EXPECT_EQ(copy(name, name + "2"), 0) << name;
    EXPECT_EQ(read_store_file(name + "2"), name);
  }
}

// A created path longer than the store's names can be would be cut; it is refused instead.
TEST_F(FileCopyTest, CreatedPathThatDoesNotFitIsRefused) {
  write_store_file("src", "bytes");
  for (size_t length = 245; length <= 270; ++length) {
    const std::string dir = path_of(length - 4);
    make_store_dir(dir);
    const Tree before = store_tree();
    const bool fits = length <= kLongestCreated;
    EXPECT_EQ(copy("src", dir + "name"), fits ? 0 : -1) << length;
    Tree expected = before;
    if (fits) {
      expected[dir + "name"] = file_entry("bytes");
    }
    EXPECT_EQ(store_tree(), expected) << length;
    StoreTest::SetUp();
    write_store_file("src", "bytes");
  }
}

TEST_F(FileCopyTest, NameThatTheDirectoryGivesCountsForTheLimit) {
  write_store_file("name", "bytes");
  for (size_t length = 240; length <= 260; ++length) {
    const std::string dir = path_of(length);
    make_store_dir(dir);
    const Tree before = store_tree();
    Tree expected = before;
    const int result = copy("name", dir);
    EXPECT_TRUE(result == 0 || result == -1);
    EXPECT_TRUE(result == 0 || length + 4 > kLongestCreated) << length;
    EXPECT_TRUE(result == -1 || length + 4 <= kLongestCreated) << length;
    if (result == 0) {
      expected[dir + "name"] = file_entry("bytes");
    }
    EXPECT_EQ(store_tree(), expected) << length;
    StoreTest::SetUp();
    write_store_file("name", "bytes");
  }
}

TEST_F(FileCopyTest, EndlessPathsAreRefused) {
  write_store_file("src", "bytes");
  const Tree before = store_tree();
  for (const size_t length : {300u, 4000u, 100000u}) {
    EXPECT_EQ(copy("src", std::string(length, 'x')), -1) << length;
    EXPECT_EQ(copy(std::string(length, 'x'), "dst"), -1) << length;
    std::string slashes(length, '/');
    EXPECT_EQ(copy("src", slashes + "dst"), -1) << length;
  }
  EXPECT_EQ(store_tree(), before);
}

TEST_F(FileCopyTest, LongSourceOfAShortDestinationIsRead) {
  const std::string dir = path_of(255);
  make_store_dir(dir);
  write_store_file(dir + "property.conf", "bytes");
  EXPECT_EQ(copy(dir + "property.conf", "dst"), 0);
  EXPECT_EQ(read_store_file("dst"), "bytes");
}

TEST_F(FileCopyTest, OntoItselfChangesNothing) {
  write_store_file("src", std::string(3000, 's'));
  EXPECT_EQ(copy("src", "src"), 0);
  EXPECT_EQ(read_store_file("src"), std::string(3000, 's'));
}

TEST_F(FileCopyTest, WithoutDescriptorsFails) {
  write_store_file("src", "bytes");
  {
    const DescriptorLimit none(0);
    EXPECT_EQ(fileCopy("src", "dst"), -1);
  }
  EXPECT_FALSE(store_entry_exists("dst"));
  {
    const DescriptorLimit one(1);
    EXPECT_EQ(fileCopy("src", "dst"), -1);
  }
  EXPECT_EQ(store_tree(), (Tree{{"src", file_entry("bytes")}}));
}

}  // namespace
}  // namespace zrcfg_test
