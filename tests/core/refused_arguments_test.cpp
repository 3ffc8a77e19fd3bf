// What calls of the core refuse before they look at the store, and the largest file that they read.
#include <gtest/gtest.h>

#include <cerrno>

#include "core/object_path.h"
#include "core/single_value.h"
#include "core/store_file.h"
#include "tests/core/core_support.h"

namespace zrcfg_test {
namespace {

constexpr uint32_t kArgument = 10;
constexpr uint32_t kNoFile = 8;
constexpr size_t kLongestDir = 274;  // 287 characters with the file's name.
constexpr size_t kLongestFile = size_t{32} << 20;

class RefusedArgumentsTest : public StoreTest {};

TEST_F(RefusedArgumentsTest, FopenWithoutAMode) {
  write_property(kDir, property_file({"Name"}, {"value"}));
  errno = 0;
  EXPECT_EQ(FOPEN(kFile, nullptr), nullptr);
  EXPECT_EQ(errno, EINVAL);
}

TEST_F(RefusedArgumentsTest, DirectoryWhosePropertyFileHasNoPath) {
  char out[512] = "untouched";
  EXPECT_EQ(getPropertyFile(std::string(400, 'd').c_str(), out), kArgument);
  EXPECT_EQ(getPropertyFile(std::string(kLongestDir + 1, 'd').c_str(), out), kArgument);
  EXPECT_STREQ(out, "untouched");
  EXPECT_EQ(getPropertyFile(std::string(kLongestDir, 'd').c_str(), out), kNoFile);
}

TEST_F(RefusedArgumentsTest, SetWithoutAPlaceForTheOldValue) {
  write_property(kDir, property_file({"Name"}, {"value"}));
  const OpenedImage image;
  uint8_t changed = 7;
  EXPECT_EQ(set_single_param_value_by_param_name(image.get(), "Name", "other", &changed, nullptr),
            kArgument);
  EXPECT_EQ(changed, 7);
}

TEST_F(RefusedArgumentsTest, FileWithoutAnEnd) {
  write_property(kDir, property_file({"Name"}, {std::string(kLongestFile, 'v')}));
  ZrcfgObject *image = nullptr;
  int lock_fd = -1;
  EXPECT_EQ(createObjByPath(&image, kDir, &lock_fd, 0, ZRCFG_NO_LOCK), kArgument);
  EXPECT_EQ(image, nullptr);
}

}  // namespace
}  // namespace zrcfg_test
