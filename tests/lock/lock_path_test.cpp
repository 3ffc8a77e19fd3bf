// The paths of locks for arguments that name no object.
#include <gtest/gtest.h>
#include <unistd.h>

#include "lock/object_lock.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

// A URL of 255 characters and the two of a template.
constexpr size_t kLongestPath = 257;

class LockPathTest : public StoreTest {};

TEST_F(LockPathTest, NullLeavesTheOtherArgumentAlone) {
  char out[512] = "untouched";
  EXPECT_EQ(getLockPath(nullptr, out), 0);
  EXPECT_EQ(getLockFile(nullptr, out), -1);
  EXPECT_STREQ(out, "untouched");
  EXPECT_EQ(getLockPath("A/B/", nullptr), 0);
  EXPECT_EQ(getLockFile("A/B/", nullptr), -1);
}

TEST_F(LockPathTest, LongPathIsCutAndHasNoLockFile) {
  char out[512] = "untouched";
  EXPECT_EQ(getLockFile(std::string(kLongestPath + 1, 'd').c_str(), out), -1);
  EXPECT_STREQ(out, "untouched");
  EXPECT_EQ(getLockPath(std::string(400, 'd').c_str(), out), 0);
  EXPECT_EQ(out, std::string(kLongestPath, 'd'));
}

TEST_F(LockPathTest, LongestPathHasItsTemplatesLock) {
  const std::string table = std::string(200, 'd') + "/" + std::string(53, 'e') + "/";
  make_store_dir(table + "0/");
  char out[512] = {};
  EXPECT_EQ(getLockPath((table + "3/").c_str(), out), 0);
  EXPECT_EQ(out, table + "0/");
}

TEST_F(LockPathTest, PathMayBeReplacedInPlace) {
  make_store_dir("Z/1/B/0/");
  char path[512] = "Z/1/B/3/";
  EXPECT_EQ(getLockPath(path, path), 0);
  EXPECT_STREQ(path, "Z/1/B/0/");
}

TEST_F(LockPathTest, TemplateThatIsACircleOfLinksIsNone) {
  write_property("A/B/3/", property_file({"Name"}, {"value"}));
  ASSERT_EQ(symlink("0", store_path("A/B/0").c_str()), 0);
  ZrcfgObject *image = nullptr;
  int lock_fd = -1;
  ASSERT_EQ(createObjByPath(&image, "A/B/3/", &lock_fd, 0, ZRCFG_LOCK_SHARED), 0u);
  EXPECT_GE(lock_fd, 0);
  destroyObj(image, lock_fd);
}

}  // namespace
}  // namespace zrcfg_test
