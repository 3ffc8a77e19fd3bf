// No memory for files that do not fit into the first block that is read.
#include <gtest/gtest.h>

#include <cerrno>

#include "tests/support/libc_hooks.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr char kDir[] = "Gateway/Large/";
constexpr uint32_t kNotOpened = 10;
constexpr size_t kBlock = 48u << 10;

class LargeFileFaultTest : public StoreTest {
 protected:
  // Opens the object while the `nth` allocation fails; 0 for none.
  static uint32_t open_object(unsigned nth) {
    ZrcfgObject *image = nullptr;
    int lock_fd = -1;
    std::vector<Fault> faults;
    if (nth > 0) {
      faults.push_back(fail_once(Call::kAllocate, nth, ENOMEM));
    }
    CallWatch watch(faults);
    const uint32_t result = createObjByPath(&image, kDir, &lock_fd, 0, ZRCFG_NO_LOCK);
    watch.stop();
    EXPECT_EQ(watch.faults_hit(), nth > 0 ? 1u : 0u);
    EXPECT_EQ(image != nullptr, result == 0);
    if (image != nullptr) {
      destroyObj(image, -1);
    }
    return result;
  }
};

TEST_F(LargeFileFaultTest, LongFileIsReadWithEveryBlockOrGives10) {
  write_property(kDir, property_file({"Name"}, {std::string(3 * kBlock, 'v')}));
  EXPECT_EQ(open_object(0), 0u);
  for (unsigned nth = 1; nth <= 3; ++nth) {
    EXPECT_EQ(open_object(nth), kNotOpened) << nth;
  }
}

// What the length word announces beyond the end of the file needs room too.
TEST_F(LargeFileFaultTest, FileThatEndsWithinItsRecordsIsOpenedOrGives10) {
  PropertyFile file = property_file({"Name"}, {"value"});
  file.length_word = static_cast<uint32_t>(kHeadBytes + 3 * kParamBytes);
  write_property(kDir, file);
  EXPECT_EQ(open_object(0), 0u);
  EXPECT_EQ(open_object(1), kNotOpened);
  EXPECT_EQ(open_object(2), kNotOpened);
}

}  // namespace
}  // namespace zrcfg_test
