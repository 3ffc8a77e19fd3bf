// Tests of object URLs, directories, property file paths and the existence of objects.
#include "core/object_path.h"

#include <gmock/gmock.h>

#include <string>

#include "tests/core/core_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr size_t kOutSize = 288;

class ObjectPathTest : public StoreTest {};

std::string converted(std::string text) {
  ChangeUrlWithDirFormat(text.data());
  return text;
}

TEST_F(ObjectPathTest, EveryDotBecomesASlash) {
  EXPECT_EQ(converted("A.B.1."), "A/B/1/");
  EXPECT_EQ(converted("A.B.1"), "A/B/1");
  EXPECT_EQ(converted("..."), "///");
  EXPECT_EQ(converted(""), "");
}

TEST_F(ObjectPathTest, NoOtherCharacterChanges) {
  std::string all;
  for (int c = 1; c < 256; ++c) {
    if (c != '.') {
      all += static_cast<char>(c);
    }
  }
  EXPECT_EQ(converted(all), all);
}

TEST_F(ObjectPathTest, ConversionEndsAtTheTerminator) {
  char text[] = {'a', '.', '\0', '.', 'b', '\0'};
  ChangeUrlWithDirFormat(text);
  EXPECT_STREQ(text, "a/");
  EXPECT_EQ(text[3], '.');
}

TEST_F(ObjectPathTest, ConversionOfNullDoesNothing) {
  ChangeUrlWithDirFormat(nullptr);
}

TEST_F(ObjectPathTest, DirExistsWhenItOpensAsADirectory) {
  make_store_dir("A/B/");
  write_store_file("A/file", "");
  EXPECT_EQ(isDirExist("A/B/"), 1);
  EXPECT_EQ(isDirExist("A/B"), 1);
  EXPECT_EQ(isDirExist("/A/B/"), 1);
  EXPECT_EQ(isDirExist(""), 1) << "the root itself";
  EXPECT_EQ(isDirExist("A/C/"), 0);
  EXPECT_EQ(isDirExist("A/file"), 0);
  EXPECT_EQ(isDirExist(nullptr), 0);
}

TEST_F(ObjectPathTest, PropertyFileIsTheDirectoryWithTheNameBehindIt) {
  write_property("A/B/1/", PropertyFile());
  char out[kOutSize] = {};
  EXPECT_EQ(getPropertyFile("A/B/1/", out), 0u);
  EXPECT_STREQ(out, "A/B/1/property.conf");
  EXPECT_THAT(fixed_log(), ElementsAre("property_file=A/B/1/property.conf exist!"));
}

TEST_F(ObjectPathTest, PropertyFileOfAUrlWithoutLastDotIsNotFound) {
  write_property("A/B/1/", PropertyFile());
  char out[kOutSize] = {};
  EXPECT_EQ(getPropertyFile("A/B/1", out), 8u);
  EXPECT_STREQ(out, "A/B/1property.conf") << "the path is there in both cases";
  EXPECT_THAT(fixed_log(), ElementsAre());
}

TEST_F(ObjectPathTest, PropertyFileOfTheEmptyPathLiesInTheRoot) {
  char out[kOutSize] = {};
  EXPECT_EQ(getPropertyFile("", out), 8u);
  EXPECT_STREQ(out, "property.conf");
  write_property("", PropertyFile());
  EXPECT_EQ(getPropertyFile("", out), 0u);
}

TEST_F(ObjectPathTest, PropertyFileNeedsOnlyToExist) {
  make_store_dir("A/property.conf/");
  char out[kOutSize] = {};
  EXPECT_EQ(getPropertyFile("A/", out), 0u);
}

TEST_F(ObjectPathTest, PropertyFileOfTheLongestDirectoryFits) {
  const std::string dir = long_path(255, '/');
  write_property(dir, PropertyFile());
  char out[kOutSize] = {};
  EXPECT_EQ(getPropertyFile(dir.c_str(), out), 0u);
  EXPECT_EQ(out, dir + "property.conf");
}

TEST_F(ObjectPathTest, PropertyFileRefusesNull) {
  char out[kOutSize] = {};
  EXPECT_EQ(getPropertyFile(nullptr, out), 10u);
  EXPECT_EQ(getPropertyFile("A/", nullptr), 10u);
}

TEST_F(ObjectPathTest, ObjectExistsWithItsDirectoryAlone) {
  make_store_dir("A/B/1/");
  EXPECT_EQ(CheckObjExist("A.B.1."), 0u);
  EXPECT_THAT(fixed_log(), ElementsAre("objUrl =  A.B.1.\n"));
  for (const LogLine &line : log_lines()) {
    EXPECT_EQ(line.module, "ZRCFG");
    EXPECT_EQ(line.level, 7);
  }
}

TEST_F(ObjectPathTest, MissingObjectGives1) {
  EXPECT_EQ(CheckObjExist("A.B.2."), 1u);
  EXPECT_THAT(fixed_log(), ElementsAre("objUrl =  A.B.2.\n", "obj_path=A/B/2/ not exist!\n"));
}

TEST_F(ObjectPathTest, NullUrlGives10) {
  EXPECT_EQ(CheckObjExist(nullptr), 10u);
  EXPECT_THAT(fixed_log(), ElementsAre("pObjUrl can't be NULL!\n"));
}

TEST_F(ObjectPathTest, UrlOf255CharactersIsLookedUp) {
  const std::string url = long_path(255, '.');
  const std::string dir = long_path(255, '/');
  EXPECT_EQ(CheckObjExist(url.c_str()), 1u);
  EXPECT_THAT(fixed_log(),
              ElementsAre("objUrl =  " + url + "\n", "obj_path=" + dir + " not exist!\n"));
  make_store_dir(dir);
  EXPECT_EQ(CheckObjExist(url.c_str()), 0u);
}

TEST_F(ObjectPathTest, UrlOf256CharactersGives1) {
  const std::string url = long_path(256, '.');
  make_store_dir(long_path(256, '/'));
  EXPECT_EQ(CheckObjExist(url.c_str()), 1u);
  EXPECT_THAT(fixed_log(),
              ElementsAre("objUrl =  " + url + "\n", "pObjUrl len=256 out of range!\n"));
}

TEST_F(ObjectPathTest, UrlWithALeadingSlashStaysUnderTheRoot) {
  make_store_dir("A/");
  EXPECT_EQ(CheckObjExist("/A."), 0u);
  EXPECT_EQ(CheckObjExist("/usr."), 1u);
}

TEST_F(ObjectPathTest, EmptyUrlIsTheRoot) {
  EXPECT_EQ(CheckObjExist(""), 0u);
}

TEST_F(ObjectPathTest, CallersUrlIsNotModified) {
  char url[] = "A.B.1.";
  CheckObjExist(url);
  EXPECT_STREQ(url, "A.B.1.");
}

}  // namespace
}  // namespace zrcfg_test
