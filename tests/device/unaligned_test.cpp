// Tests that headers and records are served at any address, on targets that trap on unaligned
// words.
#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "attr/param_attr.h"
#include "tests/support/property_builder.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr size_t kShifts = 8;

// `bytes` at an address that is `shift` behind a multiple of eight, and nothing behind them.
class At {
 public:
  At(const std::string &bytes, size_t shift)
      : shift_(shift), room_((bytes.size() + shift + 7) / 8) {
    memcpy(data(), bytes.data(), bytes.size());
  }
  unsigned char *data() { return reinterpret_cast<unsigned char *>(room_.data()) + shift_; }
  std::string bytes(size_t size) {
    return std::string(reinterpret_cast<const char *>(data()), size);
  }

 private:
  size_t shift_;
  std::vector<uint64_t> room_;
};

TEST(UnalignedTest, HeadersAreReadAtEveryAddress) {
  HeaderFields shown;
  shown.device_type = 0x41;
  HeaderFields other_device;
  other_device.device_type = 0x40;
  HeaderFields hidden;
  hidden.hide = 1;
  for (size_t shift = 0; shift < kShifts; ++shift) {
    EXPECT_EQ(objIsHide(At(header_bytes(shown), shift).data()), 0) << shift;
    EXPECT_EQ(objIsHide(At(header_bytes(other_device), shift).data()), 1) << shift;
    EXPECT_EQ(objIsHide(At(header_bytes(hidden), shift).data()), 1) << shift;
  }
}

TEST(UnalignedTest, RecordsAreReadAtEveryAddress) {
  ParamFields shown;
  shown.name = "Name";
  shown.device_type = 1;
  ParamFields hidden = shown;
  hidden.hide = 1;
  for (size_t shift = 0; shift < kShifts; ++shift) {
    EXPECT_EQ(paramIsHide(At(param_bytes(shown), shift).data()), 0) << shift;
    EXPECT_EQ(paramIsHide(At(param_bytes(hidden), shift).data()), 1) << shift;
  }
}

// A word of four bytes is the one that a careless store would write at once.
TEST(UnalignedTest, RecordsAreChangedAtEveryAddress) {
  ParamFields before;
  before.name = "Name";
  before.param_check = 0x11223344;
  ParamFields after = before;
  after.param_check = 1193046;  // 0x00123456
  after.noti = 6;
  after.inform_tr069 = 1;
  after.accesslist = "Subscriber";
  after.area = "expert";
  for (size_t shift = 0; shift < kShifts; ++shift) {
    At record(param_bytes(before), shift);
    EXPECT_EQ(setParamAttrCommonFunc(record.data(), 16, "1193046"), 0u);
    EXPECT_EQ(setParamAttrCommonFunc(record.data(), 3, "6"), 0u);
    EXPECT_EQ(setParamAttrCommonFunc(record.data(), 15, "1"), 0u);
    EXPECT_EQ(setParamAttrCommonFunc(record.data(), 10, "Subscriber"), 0u);
    EXPECT_EQ(setParamAttrCommonFunc(record.data(), 11, "expert"), 0u);
    EXPECT_EQ(record.bytes(kParamBytes), param_bytes(after)) << shift;
  }
}

}  // namespace
}  // namespace zrcfg_test
