// Which directory and which file is the lock of an object, on chosen and on generated trees.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <set>

#include "lock/object_lock.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"

namespace zrcfg_test {
namespace {

using Names = std::vector<std::string>;

class LockFileChoiceTest : public StoreTest {
 protected:
  static void object(const std::string &dir) {
    write_property(dir, property_file({"Name"}, {"value"}));
  }

  static std::string lock_path(const std::string &path) {
    char out[512] = {};
    EXPECT_EQ(getLockPath(path.c_str(), out), 0);
    return out;
  }

  // The lock file, or "-1".
  static std::string lock_file(const std::string &path) {
    char out[512] = {};
    const int result = getLockFile(path.c_str(), out);
    EXPECT_TRUE(result == 0 || result == -1) << result;
    return result == 0 ? out : "-1";
  }
};

TEST_F(LockFileChoiceTest, InstanceLocksItsTemplateWhenThatExists) {
  object("A/B/0/");
  object("A/B/3/");
  EXPECT_EQ(lock_path("A/B/3/"), "A/B/0/");
  EXPECT_EQ(log_texts(), Names{"getLockPath() path=A/B/0/ exist!\n"});
  EXPECT_EQ(lock_file("A/B/3/"), "A/B/0/property.conf");
}

TEST_F(LockFileChoiceTest, InstanceWithoutTemplateLocksItself) {
  object("A/B/3/");
  EXPECT_EQ(lock_path("A/B/3/"), "A/B/3/");
  EXPECT_EQ(log_texts(), Names{});
  EXPECT_EQ(lock_file("A/B/3/"), "A/B/3/property.conf");
}

TEST_F(LockFileChoiceTest, OutermostTemplateThatExistsWins) {
  object("A/B/0/");
  object("A/B/3/C/0/");
  object("A/B/3/C/2/");
  EXPECT_EQ(lock_path("A/B/3/C/2/"), "A/B/0/");
  EXPECT_EQ(lock_file("A/B/3/C/2/"), "A/B/0/property.conf");
}

TEST_F(LockFileChoiceTest, InnerTemplateServesWhenTheOuterOneIsMissing) {
  object("A/B/3/C/0/");
  object("A/B/3/C/2/");
  EXPECT_EQ(lock_path("A/B/3/C/2/"), "A/B/3/C/0/");
  EXPECT_EQ(log_texts(), Names{"getLockPath() path=A/B/3/C/0/ exist!\n"});
  EXPECT_EQ(lock_file("A/B/3/C/2/"), "A/B/3/C/0/property.conf");
}

TEST_F(LockFileChoiceTest, ObjectsBelowAnInstanceLockTheTemplateOfThatInstance) {
  object("A/B/0/");
  object("A/B/12/C/D/");
  EXPECT_EQ(lock_file("A/B/12/C/D/"), "A/B/0/property.conf");
}

TEST_F(LockFileChoiceTest, TemplateMapsToItself) {
  object("A/B/0/");
  EXPECT_EQ(lock_path("A/B/0/"), "A/B/0/");
  EXPECT_EQ(lock_file("A/B/0/"), "A/B/0/property.conf");
}

TEST_F(LockFileChoiceTest, ObjectWithoutInstanceNumberLocksItself) {
  object("A/B/");
  object("A/B/0/");
  EXPECT_EQ(lock_path("A/B/"), "A/B/");
  EXPECT_EQ(lock_file("A/B/"), "A/B/property.conf");
}

TEST_F(LockFileChoiceTest, LeadingDigitsAreNoInstanceNumber) {
  object("0/");
  object("3/x/");
  EXPECT_EQ(lock_path("3/x/"), "3/x/");
  EXPECT_EQ(lock_file("3/x/"), "3/x/property.conf");
}

TEST_F(LockFileChoiceTest, LeadingSlashMakesTheFirstSegmentCount) {
  object("0/");
  object("3/x/");
  EXPECT_EQ(lock_path("/3/x/"), "/0/");
  EXPECT_EQ(lock_file("/3/x/"), "/0/property.conf");
}

TEST_F(LockFileChoiceTest, SegmentOfDigitsAndLettersIsNoInstanceNumber) {
  object("A/0/");
  object("A/3a/");
  object("A/a3/");
  object("A/3a/B/");
  EXPECT_EQ(lock_path("A/3a/"), "A/3a/");
  EXPECT_EQ(lock_path("A/a3/"), "A/a3/");
  EXPECT_EQ(lock_path("A/3a/B/"), "A/3a/B/");
}

TEST_F(LockFileChoiceTest, NumberWithoutSlashBehindItIsNoInstanceNumber) {
  object("A/B/0/");
  object("A/B/3/");
  EXPECT_EQ(lock_path("A/B/3"), "A/B/3");
}

TEST_F(LockFileChoiceTest, NumberOfManyDigitsIsReplacedAsAWhole) {
  object("A/B/0/");
  EXPECT_EQ(lock_path("A/B/1234567/C/"), "A/B/0/");
  EXPECT_EQ(lock_path("A/B/00/C/"), "A/B/0/");
}

TEST_F(LockFileChoiceTest, FileInPlaceOfATemplateIsNoTemplate) {
  object("A/B/3/");
  write_store_file("A/B/0", "a file");
  EXPECT_EQ(lock_path("A/B/3/"), "A/B/3/");
  EXPECT_EQ(lock_file("A/B/3/"), "A/B/3/property.conf");
}

TEST_F(LockFileChoiceTest, TemplateWithoutFileLeavesTheObjectItsOwnFile) {
  make_store_dir("A/B/0/");
  object("A/B/3/C/0/");
  object("A/B/3/C/2/");
  EXPECT_EQ(lock_path("A/B/3/C/2/"), "A/B/0/");
  clear_log();
  EXPECT_EQ(lock_file("A/B/3/C/2/"), "A/B/3/C/2/property.conf");
  EXPECT_EQ(log_texts(),
            (Names{"getLockFile() objPath=A/B/3/C/2/!\n", "getLockPath() path=A/B/0/ exist!\n",
                   "property_file=A/B/3/C/2/property.conf exist!"}));
}

TEST_F(LockFileChoiceTest, NoFileAtAllIsReported) {
  make_store_dir("A/B/0/");
  make_store_dir("A/B/3/");
  EXPECT_EQ(lock_file("A/B/3/"), "-1");
  EXPECT_EQ(log_texts(),
            (Names{"getLockFile() objPath=A/B/3/!\n", "getLockPath() path=A/B/0/ exist!\n",
                   "getLockFile() can not found file!\n"}));
  clear_log();
  EXPECT_EQ(lock_file("No/Such/"), "-1");
  EXPECT_EQ(log_texts(),
            (Names{"getLockFile() objPath=No/Such/!\n", "getLockFile() can not found file!\n"}));
}

TEST_F(LockFileChoiceTest, FoundFileIsNotReported) {
  object("A/B/0/");
  EXPECT_EQ(lock_file("A/B/7/"), "A/B/0/property.conf");
  EXPECT_EQ(log_texts(),
            (Names{"getLockFile() objPath=A/B/7/!\n", "getLockPath() path=A/B/0/ exist!\n"}));
}

TEST_F(LockFileChoiceTest, EmptyPathLocksTheFileOfTheRoot) {
  write_property("", property_file({"Name"}, {"value"}));
  EXPECT_EQ(lock_path(""), "");
  EXPECT_EQ(lock_file(""), "property.conf");
}

TEST_F(LockFileChoiceTest, LongestPathsWork) {
  std::string path = "A/B/3/";
  path += std::string(200, 'x') + "/";
  path += std::string(255 - path.size() - 1, 'y') + "/";
  ASSERT_EQ(path.size(), 255u);
  object(path);
  EXPECT_EQ(lock_path(path), path);
  EXPECT_EQ(lock_file(path), path + "property.conf");
  object("A/B/0/");
  EXPECT_EQ(lock_file(path), "A/B/0/property.conf");
}

// ---- Generated trees ----------------------------------------------------------------------------

// An independent reading of the rule, on a list of the directories and files that exist.
struct Tree {
  std::set<std::string> dirs;   // Each with its final slash.
  std::set<std::string> files;  // Directories that have a property file.
};

bool all_digits(const std::string &text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string normalised(const std::string &path) {
  std::string result;
  for (const char c : path) {
    if (c != '/' || (!result.empty() && result.back() != '/')) {
      result += c;
    }
  }
  return result;
}

// Walks from slash to slash instead of from character to character.
std::string expected_lock_dir(const Tree &tree, const std::string &path) {
  for (size_t slash = path.find('/'); slash != std::string::npos;
       slash = path.find('/', slash + 1)) {
    const size_t end = path.find('/', slash + 1);
    if (end == std::string::npos) {
      break;
    }
    if (!all_digits(path.substr(slash + 1, end - slash - 1))) {
      continue;
    }
    const std::string candidate = path.substr(0, slash + 1) + "0/";
    if (tree.dirs.count(normalised(candidate)) != 0) {
      return candidate;
    }
  }
  return path;
}

std::string expected_lock_file(const Tree &tree, const std::string &path) {
  for (const std::string &dir : {expected_lock_dir(tree, path), path}) {
    if (dir.back() == '/' && tree.files.count(normalised(dir)) != 0) {
      return dir + "property.conf";
    }
  }
  return "-1";
}

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  size_t below(size_t bound) { return random_() % bound; }

  std::string path() {
    static const char *const kSegments[] = {"A", "B", "0",  "1",  "2",  "10", "007",
                                            "0", "3", "3a", "a3", "-1", "00", "1"};
    std::string path = below(12) == 0 ? "/" : "";
    const size_t depth = 1 + below(6);
    for (size_t i = 0; i < depth; ++i) {
      path += kSegments[below(std::size(kSegments))];
      path += below(25) == 0 ? "//" : "/";
    }
    if (below(10) == 0) {
      path.pop_back();
    }
    return path;
  }

 private:
  std::mt19937 random_;
};

void add_dir(Tree &tree, const std::string &path) {
  for (size_t slash = path.find('/'); slash != std::string::npos;
       slash = path.find('/', slash + 1)) {
    tree.dirs.insert(path.substr(0, slash + 1));
  }
}

Tree generate_tree(Generator &random) {
  Tree tree;
  const size_t count = 1 + random.below(8);
  for (size_t i = 0; i < count; ++i) {
    std::string dir = normalised(random.path());
    dir += dir.back() == '/' ? "" : "/";
    add_dir(tree, dir);
  }
  for (const std::string &dir : tree.dirs) {
    make_store_dir(dir);
    const bool is_template = ("/" + dir).rfind("/0/") == dir.size() - 2;
    if (random.below(is_template ? 2 : 4) != 0) {
      write_store_file(dir + "property.conf", "x");
      tree.files.insert(dir);
    }
  }
  return tree;
}

class GeneratedLockFileChoiceTest : public LockFileChoiceTest,
                                    public ::testing::WithParamInterface<unsigned> {};

TEST_P(GeneratedLockFileChoiceTest, EveryPathLocksWhatTheRuleSays) {
  Generator random(GetParam());
  size_t templates = 0;
  size_t fallbacks = 0;
  for (int round = 0; round < 25; ++round) {
    Tree tree = generate_tree(random);
    for (int i = 0; i < 40; ++i) {
      std::string path = random.path();
      if (i % 4 != 0) {  // Most of the paths exist, or hang below something that does.
        auto dir = tree.dirs.begin();
        std::advance(dir, random.below(tree.dirs.size()));
        path = *dir + (i % 4 == 1 ? normalised(path) : "");
      }
      const std::string dir = expected_lock_dir(tree, path);
      const std::string file = expected_lock_file(tree, path);
      ASSERT_EQ(lock_path(path), dir) << path;
      ASSERT_EQ(lock_file(path), file) << path;
      templates += dir != path ? 1 : 0;
      fallbacks += file != "-1" && file != dir + "property.conf" ? 1 : 0;

      int fd = -7;
      ASSERT_EQ(getLock(path.c_str(), &fd, 0, 1), file == "-1" ? -1 : 0) << path;
      if (file == "-1") {
        ASSERT_EQ(fd, -1);
        continue;
      }
      ASSERT_EQ(open_descriptors()[fd], store_path(normalised(file))) << path;
      ASSERT_EQ(releaseLock(fd), 0);
    }
    for (const std::string &dir : tree.dirs) {
      std::filesystem::remove_all(store_path(dir));
    }
    clear_log();
  }
  EXPECT_GT(templates, 50u);
  EXPECT_GT(fallbacks, 5u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, GeneratedLockFileChoiceTest,
                         ::testing::Values(1u, 22u, 333u, 4444u));

}  // namespace
}  // namespace zrcfg_test
